"""What the tests of the installation share: the build that is installed, and how programs over it are built and run.

Everything comes by environment variables, as tests/install/CMakeLists.txt sets them.
"""

import os
import pathlib
import subprocess
import tempfile
import unittest

BUILD = pathlib.Path(os.environ["QM_BUILD"])
SOURCE = pathlib.Path(os.environ["QM_SOURCE"])
LIBDIR = os.environ["QM_LIBDIR"]
VERSION = os.environ["QM_VERSION"]
HAS_TOOL = os.environ["QM_TOOL"] == "ON"
FLAGS = os.environ["QM_FLAGS"].split()  # sanitizers: a sanitized library wants hosts that are sanitized too
PRELOAD = os.environ["QM_PRELOAD"]  # their runtime, for the interpreter, which is not
DEJAVU = "/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf"
FOUNDRY = "DejaVu Fonts"


def run(*command, ok=True, **options):
    """Standard output of a command that succeeds, or else its standard error, with `ok=False`."""
    done = subprocess.run([str(part) for part in command], capture_output=True, text=True, **options)
    if (done.returncode == 0) != ok:
        raise AssertionError(f"{command} gave {done.returncode}:\n{done.stdout}{done.stderr}")
    return done.stdout if ok else done.stderr


def environment(**values):
    """This environment without what would lead to another library or other tables."""
    kept = {name: value for name, value in os.environ.items()
            if not name.startswith("QUILLMARK_") and name not in ("LD_LIBRARY_PATH", "PYTHONPATH")}
    return {**kept, "ASAN_OPTIONS": "detect_leaks=0", **{name: str(value) for name, value in values.items()}}


class InstalledTree:
    """Part of test classes. Lays a tree out once, in a temporary folder, and asks it for the maker of a font."""

    @classmethod
    def setUpClass(cls):
        holder = tempfile.TemporaryDirectory(prefix="quillmark install ")  # a blank, as paths may have
        cls.addClassCleanup(holder.cleanup)
        cls.folder = pathlib.Path(holder.name)
        cls.prefix = cls.lay_out()

    def files(self, prefix=None):
        prefix = prefix or self.prefix
        return {str(path.relative_to(prefix)) for path in prefix.rglob("*") if not path.is_dir()}

    def test_library(self):
        library = self.prefix / LIBDIR / f"libquillmark.so.{VERSION}"
        run("sh", SOURCE / "tests/c/exports_test.sh", SOURCE, library, os.environ["QM_NM"])
        self.assertIn("Library soname: [libquillmark.so.1]", run("readelf", "-dW", library))

    @unittest.skipUnless(HAS_TOOL, "built without the tool")
    def test_tool_finds_its_tables(self):
        link = self.folder / "another name"
        link.symlink_to(self.prefix / "bin/quillmark")
        for tool in [self.prefix / "bin/quillmark", link]:
            self.assertIn(FOUNDRY, run(tool, "identify", DEJAVU, env=environment(), cwd="/"))

    def test_python_module_finds_its_library(self):
        code = f"import quillmark; print(quillmark.identify({DEJAVU!r})[0].foundry, quillmark.__file__)"
        module = self.prefix / "lib/python3/dist-packages"
        env = environment(PYTHONPATH=module, LD_PRELOAD=PRELOAD, PYTHONDONTWRITEBYTECODE=1)
        self.assertEqual(run(os.environ["QM_PYTHON"], "-c", code, env=env).strip(),
                         f"{FOUNDRY} {module}/quillmark/__init__.py")
