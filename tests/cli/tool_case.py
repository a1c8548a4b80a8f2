"""What the tests of the tool share: running it, a small font made here, and a folder for each test.

Each test file is run as: FILE TOOL [unittest arguments]
"""

import json
import os
import pathlib
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest

TOOL = ""
DEJAVU = pathlib.Path("/usr/share/fonts/truetype/dejavu")


def run(*arguments, **options):
    return subprocess.run([TOOL, *map(str, arguments)], capture_output=True, timeout=100, **options)


def faces(*arguments):
    return json.loads(run("identify", "--format", "json", *arguments).stdout)


def made_font(post_script_name, family="Made"):
    """A TrueType font of a name table alone."""
    texts = {1: family, 2: "Regular", 4: family + " Regular", 5: "Version 1.5", 6: post_script_name}
    records, strings = b"", b""
    for name_id, text in texts.items():
        data = text.encode("mac_roman")
        records += struct.pack(">6H", 1, 0, 0, name_id, len(data), len(strings))
        strings += data
    table = struct.pack(">3H", 0, len(texts), 6 + len(records)) + records + strings
    table += b"\0" * (-len(table) % 4)
    directory = struct.pack(">IHHHH", 0x00010000, 1, 16, 0, 0) + struct.pack(">4sIII", b"name", 0, 28, len(table))
    return directory + table


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
    TOOL = sys.argv.pop(1)
    unittest.main(module="__main__")
