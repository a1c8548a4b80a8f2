"""What the tests of the tool share: running it, a small font, and a folder for each test.

Each test file is run as: FILE TOOL [unittest arguments]
"""

import json
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

from font_builders import mac_font

TOOL = ""
DEJAVU = pathlib.Path("/usr/share/fonts/truetype/dejavu")


def run(*arguments, **options):
    words = [argument if isinstance(argument, bytes) else str(argument) for argument in arguments]
    return subprocess.run([TOOL, *words], capture_output=True, timeout=120, **options)


def faces(*arguments):
    return json.loads(run("identify", "--format", "json", *arguments).stdout)


def made_font(post_script_name, family="Made", data=b"data"):
    return mac_font(post_script_name, "1.5", family, foundry="", data=data, full_name=family + " Regular")


class ToolCase(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)

    def write(self, name, data):
        path = self.folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(data)
        return path

    def links(self, count, data):
        """A folder with one font under many names."""
        font = self.write("one.ttf", data)
        folder = self.folder / "many"
        folder.mkdir()
        for i in range(count):
            os.link(font, folder / f"{i:05}.ttf")
        return folder


def main():
    global TOOL
    TOOL = os.path.abspath(sys.argv.pop(1))
    unittest.main(module="__main__")
