"""quillmark compare: two files, or stored texts, attribute by attribute."""

import unittest

from font_builders import collection, mac_font
from tool_case import ToolCase

QUILL = mac_font("Quill", "1.0")


class CompareTest(ToolCase):
    def verdicts(self, a, b, status):
        (pair,) = self.json_of(["compare", "--format", "json", a, b], status)["pairs"]
        return {row["attribute"]: row["verdict"] for row in pair["attributes"]}

    def test_tells_what_agrees_and_what_conflicts(self):
        one = self.write("one.ttf", QUILL)
        rows = [
            (mac_font("Quill", data=b"else"), {"checksum": "differs", "legacyChecksum": "differs"}),
            (mac_font("Quill", data=b"longer"), {"checksum": "differs", "outlineFileSize": "differs"}),
            (mac_font("Quill", "1.1"), {"version": "differs", "foundry": "same"}),
            (mac_font("Quill", family="QUILL"), {"family": "sameButForCase"}),
            (mac_font("Quill", foundry=""), {"foundry": "onlyA", "checksum": "differs"}),
            (mac_font("Squill", full_name="quill"), {"postScriptName": "differs", "family": "same"}),
        ]
        for other, expected in rows:
            with self.subTest(expected):
                self.assertLessEqual(expected.items(), self.verdicts(one, self.write("other.ttf", other), 3).items())
        self.assertEqual(set(self.verdicts(one, self.write("equal.ttf", QUILL), 0).values()), {"same"})

    def test_pairs_each_face_of_a_with_the_nearest_name(self):
        self.write("a.ttc", collection(*map(mac_font, ["Able", "Baker", "Lone", "cast"])))
        self.write("b.ttc", collection(*map(mac_font, ["CAST", "baker", "Baker", "Able", "Only"])))
        told = self.json_of("compare --format json a.ttc b.ttc", 3)["pairs"]
        pairs = [(pair["postScriptName"], pair["faceA"], pair["faceB"]) for pair in told]
        self.assertEqual(pairs, [("Able", 0, 3), ("Baker", 1, 2), ("cast", 3, 0)])
        self.check("compare a.ttc b.ttc", 3, "...", "3 pairs of faces, ...; without a partner: 1 of A, 2 of B\n")

    def test_a_stored_text_agrees_with_the_font_it_was_made_of(self):
        seen = set()
        for number in range(16):  # until the checksum is among those that are stored whole, and among the others
            font = self.write("a.ttf", mac_font("Quill", foundry="Unknown & Co", data=bytes([number])))
            whole = int(self.faces(font)[0]["checksum"], 16) < 0x7FFFFFFF
            for form in {"xml", "plist"} if whole not in seen else ():
                told = self.verdicts(self.write(form, self.run_tool(f"identify --format {form} a.ttf").stdout), font, 0)
                expected = {"foundry": "same", "version": "same", "outlineFileSize": "same"}
                self.assertLessEqual({**expected, "checksum": "same" if whole else "unknown"}.items(), told.items())
                self.assertNotIn("fullName", told)
            seen.add(whole)
        self.assertEqual(seen, {True, False})
        self.assertEqual(self.verdicts("xml", "plist", 0)["kind"], "same")
        self.write("other.ttf", mac_font("Quill", "2.0", foundry="Unknown & Co"))
        self.assertEqual(self.verdicts("other.ttf", "xml", 3)["version"], "differs")

    def test_nothing_to_compare_is_1_with_a_line(self):
        self.write_all({"one.ttf": QUILL, "two.ttf": mac_font("Other"), "text": b"no font"})
        self.check("compare one.ttf two.ttf", 1, err="one.ttf: no face shares a name with one of two.ttf\n")
        self.check("compare one.ttf text", 1, err="text: a text file, not a font that Quillmark reads\n")
        self.check("compare missing one.ttf", 1, err="missing: no such file\n")

    def test_the_table_has_a_row_an_attribute(self):
        self.write_all({"a.ttf": QUILL, "b.ttf": mac_font("Quill", "1.1", family="QUILL")})
        table = """A: a.ttf\nB: b.ttf

Quill: face 0 of A, face 0 of B
ATTRIBUTE        VERDICT          A                           B
postScriptName   same             Quill                       Quill
family           differs in case  Quill                       QUILL
...
outlineFileSize  same             168                         168
"""
        self.check("compare a.ttf b.ttf", 3, table, "...")


if __name__ == "__main__":
    unittest.main()
