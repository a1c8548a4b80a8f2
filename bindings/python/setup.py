"""Has setuptools put what it makes on the way into a temporary folder, so that this one stays clean."""

import atexit
import shutil
import tempfile

from setuptools import setup

made = tempfile.mkdtemp()
atexit.register(shutil.rmtree, made, ignore_errors=True)
setup(options={"build": {"build_base": made}, "egg_info": {"egg_base": made}})
