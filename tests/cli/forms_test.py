"""The forms that identify writes, and the fields in them."""

import os
import re
import unittest

from font_builders import fond, mac_font, resource_fork
from tool_case import ToolCase, made_font


class FormsTest(ToolCase):
    def identify(self, words):
        return self.check(f"identify -q {words}", 0, "...").stdout

    def test_tsv_escapes_what_would_break_a_line(self):
        self.write("tab\tline\nreturn\rback\\slash.ttf", made_font("Made-BoldItalic"))
        self.check(
            "identify -q --format tsv --fields path,face,postScriptName,styles,printerFont,version .", 0,
            "path\tface\tpostScriptName\tstyles\tprinterFont\tversion\n"
            "./tab\\tline\\nreturn\\rback\\\\slash.ttf\t0\tMade-BoldItalic\tBold; Italic\t\t1.5\n",
        )  # fmt: skip
        header, line = self.identify("--format tsv .").splitlines()
        self.assertEqual(header.count(b"\t"), line.count(b"\t"))
        self.assertTrue({"path", "checksum", "fondID"} <= set(header.decode().split("\t")))

    def test_fields_choose_and_order(self):
        self.write("a.ttf", made_font("Made"))
        face = '{"postScriptName":"Made","fondID":null,"face":0}\n'
        table = "POSTSCRIPT NAME  FOND  FACE\nMade                   0\n"
        for form, text in [("json", f"[\n  {face}]\n"), ("jsonl", face), ("table", table)]:
            self.check(f"identify -q --format {form} --fields postScriptName,fondID,face a.ttf", 0, text)
        self.write("stored", self.identify("--format xml a.ttf"))
        self.check("read --format tsv --fields family stored", 0, "family\nMade\n", "...")

    def test_sorted_faces(self):
        rows = [("a", "2.10", "Alpha", 1000), ("b", "2.9", "Quill", 999), ("c", "2.9", "Alpha", 2000), ("d", "10.0", "Alpha", 999)]
        for name, version, family, size in rows:
            self.write(f"{name}.ttf", mac_font(f"Made-{name}", version, family).ljust(size, b"\0"))
        fork = resource_fork(("FOND", 7, fond(0, (0, 0, 128))), ("sfnt", 128, mac_font("Made-e", "1.0", "Alpha")))
        self.write("e.dfont", fork.ljust(3000, b"\0"))
        orders = [("path", "abcde"), ("version", "ebcad"), ("outlineFileSize", "bdace"), ("fondID", "eabcd"), ("family", "acdeb")]
        for number, (field, order) in enumerate(orders):
            for form in ("json", "jsonl", "tsv", "table", "xml", "plist") if number == 1 else ("tsv",):
                with self.subTest(field, form=form):
                    text = self.identify(f"--sort {field} --format {form} .").decode()
                    self.assertEqual(re.findall(r"Made-(.)\b(?![^\n]*Made-)", text), list(order), text)

    def test_paths_that_are_no_utf8(self):
        self.write(os.fsdecode(b"a\xff.ttf"), made_font("Made"))
        self.assertIn("a\\xFF.ttf\n", self.identify(".").decode())
        self.assertEqual(self.faces(".")[0]["path"], "./a\ufffd.ttf")
        self.assertEqual(self.identify("--format tsv --fields path ."), b"path\n./a\xff.ttf\n")

    def test_without_a_face_each_form_is_still_whole(self):
        for form, text in (("table", ""), ("json", "[]\n"), ("jsonl", ""), ("tsv --fields path", "path\n")):
            self.check(f"identify --format {form} .", 1, text, "0 faces in 0 files\n")


if __name__ == "__main__":
    unittest.main()
