"""quillmark compare: two files, or stored texts, attribute by attribute.

Usage: compare_test.py TOOL [unittest arguments]
"""

import json
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

from made_fonts import collection, sfnt

TOOL = ""


def run(*arguments):
    return subprocess.run([TOOL, *map(str, arguments)], capture_output=True, timeout=60)


class CompareTest(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)

    def write(self, name, content):
        (self.folder / name).write_bytes(content)
        return self.folder / name

    def pairs(self, a, b, status):
        result = run("compare", "--format", "json", a, b)
        self.assertEqual(result.returncode, status, result.stderr)
        return [
            (pair["faceA"], pair["faceB"], {row["attribute"]: row["verdict"] for row in pair["attributes"]})
            for pair in json.loads(result.stdout)["pairs"]
        ]

    def test_tells_what_agrees_and_what_conflicts(self):
        one = self.write("one.ttf", sfnt("Quill", "1.0"))
        rows = [
            ("equal", sfnt("Quill", "1.0"), 0, {}),
            ("data", sfnt("Quill", "1.0", data=b"else"), 3, {"checksum": "differs", "legacyChecksum": "differs"}),
            ("longer", sfnt("Quill", "1.0", data=b"longer"), 3, {"checksum": "differs", "outlineFileSize": "differs"}),
            ("version", sfnt("Quill", "1.1"), 3, {"version": "differs", "foundry": "same"}),
            ("case", sfnt("Quill", "1.0", family="QUILL"), 3, {"family": "sameButForCase"}),
            ("no foundry", sfnt("Quill", "1.0", foundry=""), 3, {"foundry": "onlyA", "checksum": "differs"}),
            ("name", sfnt("Squill", "1.0", full_name="quill"), 3, {"postScriptName": "differs", "family": "same"}),
        ]
        for name, other, status, verdicts in rows:
            with self.subTest(name):
                ((_, _, told),) = self.pairs(one, self.write(f"{name}.ttf", other), status)
                self.assertEqual({key: told.get(key) for key in verdicts}, verdicts)
                if status == 0:
                    self.assertEqual(set(told.values()), {"same"})

    def test_pairs_each_face_of_a_with_the_nearest_name(self):
        a = self.write("a.ttc", collection(sfnt("Able"), sfnt("Baker"), sfnt("Lone"), sfnt("cast")))
        b = self.write("b.ttc", collection(sfnt("CAST"), sfnt("baker"), sfnt("Baker"), sfnt("Able"), sfnt("Only")))
        result = run("compare", "--format", "json", a, b)
        told = [(pair["postScriptName"], pair["faceA"], pair["faceB"]) for pair in json.loads(result.stdout)["pairs"]]
        self.assertEqual(told, [("Able", 0, 3), ("Baker", 1, 2), ("cast", 3, 0)])
        self.assertEqual(result.returncode, 3)
        self.assertIn(b"3 pairs of faces, ", result.stderr)
        self.assertIn(b"; without a partner: 1 of A, 2 of B\n", result.stderr)

    def test_a_stored_text_agrees_with_the_font_it_was_made_of(self):
        fonts = [sfnt("Quill", foundry="Unknown & Co", data=bytes([i])) for i in range(16)]
        seen = set()
        for number, content in enumerate(fonts):
            font = self.write(f"{number}.ttf", content)
            for form in ("xml", "plist"):
                stored = self.write(form, run("identify", "--format", form, font).stdout)
                ((_, _, told),) = self.pairs(stored, font, 0)
                self.assertEqual((told["foundry"], told["version"], told["outlineFileSize"]), ("same", "same", "same"))
                self.assertNotIn("fullName", told)
                checksum = int(json.loads(run("identify", "--format", "json", font).stdout)[0]["checksum"], 16)
                self.assertEqual(told["checksum"], "same" if checksum < 0x7FFFFFFF else "unknown")
                seen.add(told["checksum"])
            if len(seen) == 2:
                break
        self.assertEqual(seen, {"same", "unknown"})
        self.assertEqual(self.pairs(self.folder / "xml", self.folder / "plist", 0)[0][2]["kind"], "same")
        other = self.write("other.ttf", sfnt("Quill", "2.0", foundry="Unknown & Co"))
        self.assertEqual(self.pairs(other, self.folder / "xml", 3)[0][2]["version"], "differs")

    def test_nothing_to_compare_is_1_with_a_line(self):
        one = self.write("one.ttf", sfnt("Quill", family="One"))
        two = self.write("two.ttf", sfnt("Other", family="One"))
        text = self.write("text", b"no font")
        rows = [
            (one, two, f"{one}: no face shares a name with one of {two}"),
            (one, text, f"{text}: a text file, not a font that Quillmark reads"),
            (self.folder / "missing", one, f"{self.folder / 'missing'}: no such file"),
        ]
        for a, b, line in rows:
            with self.subTest(line):
                result = run("compare", a, b)
                self.assertEqual((result.returncode, result.stdout), (1, b""))
                self.assertEqual(result.stderr.decode(), line + "\n")
        self.assertEqual(run("compare", one).returncode, 2)

    def test_the_table_has_a_row_an_attribute(self):
        a = self.write("a.ttf", sfnt("Quill", "1.0", family="Quill"))
        b = self.write("b.ttf", sfnt("Quill", "1.1", family="QUILL"))
        lines = run("compare", a, b).stdout.decode().splitlines()
        self.assertEqual(lines[:4], [f"A: {a}", f"B: {b}", "", "Quill: face 0 of A, face 0 of B"])
        self.assertEqual(lines[4].split(), ["ATTRIBUTE", "VERDICT", "A", "B"])
        cells = {line.split()[0]: line.split()[1:] for line in lines[5:]}
        self.assertEqual(cells["family"], ["differs", "in", "case", "Quill", "QUILL"])
        self.assertEqual(cells["version"], ["differs", "Version", "1.0", "Version", "1.1"])
        self.assertEqual(cells["kind"], ["same", "TrueType", "TrueType"])


if __name__ == "__main__":
    TOOL = os.path.abspath(sys.argv.pop(1))
    unittest.main()
