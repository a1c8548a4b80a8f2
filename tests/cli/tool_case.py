"""What the tests of the tool share: running it, a small font, and a folder for each test.

In this folder, with the path of the tool as TOOL: python3 -m unittest split_test
"""

import json
import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest

from font_builders import apple_double, mac_font

TOOL = os.environ["TOOL"]
DEJAVU = pathlib.Path("/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf")


def made_font(post_script_name, family="Made"):
    return mac_font(post_script_name, "1.5", family, foundry="", full_name=family + " Regular")


class ToolCase(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)

    def write(self, name, data):
        """Makes a file of a data fork, or of a data and a resource fork, in the folder of the test."""
        data, fork = data if isinstance(data, tuple) else (data, None)
        path = self.folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(data)
        if fork is not None:
            path.with_name("._" + path.name).write_bytes(apple_double(fork))
        return path

    def write_all(self, files):
        return [self.write(name, data) for name, data in files.items()]

    def links(self, count, data):
        """A folder with one font under many names."""
        font = self.write("one.ttf", data)
        (self.folder / "many").mkdir()
        for i in range(count):
            os.link(font, self.folder / f"many/{i:05}.ttf")
        return self.folder / "many"

    def run_tool(self, words, **options):
        """Runs the tool in the folder of the test. Words are a list, or a text where none holds a blank."""
        words = words.split() if isinstance(words, str) else [w if isinstance(w, bytes) else str(w) for w in words]
        return subprocess.run([TOOL, *words], **{"capture_output": True, "timeout": 300, "cwd": self.folder, **options})

    def check(self, words, status=0, out="", err="", **options):
        """Runs the tool, and compares all that it gives with texts in which "..." stands for anything."""
        with self.subTest(words):
            result = self.run_tool(words, **options)
            self.assertEqual(result.returncode, status, result.stderr)
            for text, expected in ((os.fsdecode(result.stdout), out), (os.fsdecode(result.stderr), err)):
                if not re.fullmatch(re.escape(expected).replace(re.escape("..."), ".*"), text, re.DOTALL):
                    self.assertEqual(text, expected)
        return result

    def json_of(self, words, status=0, **options):
        result = self.run_tool(words, **options)
        self.assertEqual(result.returncode, status, result.stderr)
        return json.loads(result.stdout)

    def faces(self, *paths):
        return self.json_of(["identify", "--format", "json", *paths])
