"""quillmark compare: two files, or stored texts, attribute by attribute.

Usage: compare_test.py TOOL [unittest arguments]
"""

import json

import tool_case
from font_builders import collection, mac_font
from tool_case import ToolCase, run



class CompareTest(ToolCase):
    def pairs(self, a, b, status):
        result = run("compare", "--format", "json", a, b)
        self.assertEqual(result.returncode, status, result.stderr)
        return [
            (pair["faceA"], pair["faceB"], {row["attribute"]: row["verdict"] for row in pair["attributes"]})
            for pair in json.loads(result.stdout)["pairs"]
        ]

    def test_tells_what_agrees_and_what_conflicts(self):
        one = self.write("one.ttf", mac_font("Quill", "1.0"))
        rows = [
            ("equal", mac_font("Quill", "1.0"), 0, {}),
            ("data", mac_font("Quill", "1.0", data=b"else"), 3, {"checksum": "differs", "legacyChecksum": "differs"}),
            ("longer", mac_font("Quill", "1.0", data=b"longer"), 3, {"checksum": "differs", "outlineFileSize": "differs"}),
            ("version", mac_font("Quill", "1.1"), 3, {"version": "differs", "foundry": "same"}),
            ("case", mac_font("Quill", "1.0", family="QUILL"), 3, {"family": "sameButForCase"}),
            ("no foundry", mac_font("Quill", "1.0", foundry=""), 3, {"foundry": "onlyA", "checksum": "differs"}),
            ("name", mac_font("Squill", "1.0", full_name="quill"), 3, {"postScriptName": "differs", "family": "same"}),
        ]
        for name, other, status, verdicts in rows:
            with self.subTest(name):
                ((_, _, told),) = self.pairs(one, self.write(f"{name}.ttf", other), status)
                self.assertEqual({key: told.get(key) for key in verdicts}, verdicts)
                if status == 0:
                    self.assertEqual(set(told.values()), {"same"})

    def test_pairs_each_face_of_a_with_the_nearest_name(self):
        a = self.write("a.ttc", collection(mac_font("Able"), mac_font("Baker"), mac_font("Lone"), mac_font("cast")))
        b = self.write("b.ttc", collection(mac_font("CAST"), mac_font("baker"), mac_font("Baker"), mac_font("Able"), mac_font("Only")))
        result = run("compare", "--format", "json", a, b)
        told = [(pair["postScriptName"], pair["faceA"], pair["faceB"]) for pair in json.loads(result.stdout)["pairs"]]
        self.assertEqual(told, [("Able", 0, 3), ("Baker", 1, 2), ("cast", 3, 0)])
        self.assertEqual(result.returncode, 3)
        self.assertIn(b"3 pairs of faces, ", result.stderr)
        self.assertIn(b"; without a partner: 1 of A, 2 of B\n", result.stderr)

    def test_a_stored_text_agrees_with_the_font_it_was_made_of(self):
        fonts = [mac_font("Quill", foundry="Unknown & Co", data=bytes([i])) for i in range(16)]
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
        other = self.write("other.ttf", mac_font("Quill", "2.0", foundry="Unknown & Co"))
        self.assertEqual(self.pairs(other, self.folder / "xml", 3)[0][2]["version"], "differs")

    def test_nothing_to_compare_is_1_with_a_line(self):
        one = self.write("one.ttf", mac_font("Quill", family="One"))
        two = self.write("two.ttf", mac_font("Other", family="One"))
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
        a = self.write("a.ttf", mac_font("Quill", "1.0", family="Quill"))
        b = self.write("b.ttf", mac_font("Quill", "1.1", family="QUILL"))
        lines = run("compare", a, b).stdout.decode().splitlines()
        self.assertEqual(lines[:4], [f"A: {a}", f"B: {b}", "", "Quill: face 0 of A, face 0 of B"])
        self.assertEqual(lines[4].split(), ["ATTRIBUTE", "VERDICT", "A", "B"])
        cells = {line.split()[0]: line.split()[1:] for line in lines[5:]}
        self.assertEqual(cells["family"], ["differs", "in", "case", "Quill", "QUILL"])
        self.assertEqual(cells["version"], ["differs", "Version", "1.0", "Version", "1.1"])
        self.assertEqual(cells["kind"], ["same", "TrueType", "TrueType"])


if __name__ == "__main__":
    tool_case.main()
