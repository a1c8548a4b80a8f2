"""The forms that identify writes, and the fields in them."""

import json
import os
import re

import tool_case
from font_builders import fond, mac_font, resource_fork
from tool_case import ToolCase, made_font, run


class FormsTest(ToolCase):
    def identify(self, *arguments):
        result = run("identify", "-q", *arguments)
        self.assertEqual((result.returncode, result.stderr), (0, b""))
        return result.stdout

    def test_jsonl_holds_the_objects_of_json_in_one_order_whatever_the_threads(self):
        for name in ("b", "a", "c"):
            self.write(f"{name}.ttf", made_font(f"Made-{name}"))
        whole = json.loads(self.identify("--format", "json", self.folder))
        self.assertEqual([face["postScriptName"] for face in whole], ["Made-a", "Made-b", "Made-c"])
        for jobs in (1, 4):
            lines = self.identify("--format", "jsonl", "-j", jobs, self.folder).splitlines()
            self.assertEqual([json.loads(line) for line in lines], whole)

    def test_tsv_escapes_what_would_break_a_line(self):
        path = self.write("tab\tline\nreturn\rback\\slash.ttf", made_font("Made-Bold"))
        shown = str(path).replace("\\", "\\\\").replace("\t", "\\t").replace("\n", "\\n").replace("\r", "\\r")
        self.assertEqual(
            self.identify("--format", "tsv", "--fields", "path,face,postScriptName,styles,printerFont,version", path),
            f"path\tface\tpostScriptName\tstyles\tprinterFont\tversion\n{shown}\t0\tMade-Bold\tBold\t\t1.5\n".encode(),
        )
        header, line = self.identify("--format", "tsv", path).splitlines()
        self.assertEqual(header.count(b"\t"), line.count(b"\t"))
        self.assertTrue({"path", "checksum", "fondID"} <= set(header.decode().split("\t")))

    def test_several_styles_are_joined(self):
        path = self.write("a.ttf", made_font("Made-BoldItalic"))
        text = self.identify("--format", "tsv", "--fields", "styles", path)
        self.assertEqual(text, b"styles\nBold; Italic\n")

    def test_fields_choose_and_order(self):
        path = self.write("a.ttf", made_font("Made"))
        for form in ("json", "jsonl"):
            chosen = json.loads(self.identify("--format", form, "--fields", "postScriptName,fondID,face", path))
            face = chosen[0] if form == "json" else chosen
            self.assertEqual(list(face.items()), [("postScriptName", "Made"), ("fondID", None), ("face", 0)])
        self.assertEqual(
            self.identify("--fields", "postScriptName,fondID,face", path).decode(),
            "POSTSCRIPT NAME  FOND  FACE\nMade                   0\n",
        )
        stored = self.folder / "stored"
        stored.write_bytes(self.identify("--format", "xml", path))
        self.assertEqual(run("read", "--format", "tsv", "--fields", "family", stored).stdout, b"family\nMade\n")

    def test_read_tells_that_a_text_is_cut(self):
        stored = self.folder / "stored"
        stored.write_text("<FontData><PostScriptName></FontData>" * 2000 + "x" * 500000 + "</PostScriptName></FontData>")
        result = run("read", "--format", "tsv", "--fields", "face", stored)
        self.assertEqual((result.returncode, result.stdout[:7]), (1, b"face\n0\n"))
        self.assertRegex(result.stderr.decode(), f"^{stored}: .*first.*\n$")

    def test_sorted_faces(self):
        versions = {"a": "2.10", "b": "2.9", "c": "2.9", "d": "10.0"}
        sizes = {"a": 1000, "b": 999, "c": 2000, "d": 999}
        for name, version in versions.items():
            font = mac_font(f"Made-{name}", version, "Quill" if name == "b" else "Alpha")
            self.write(f"{name}.ttf", font.ljust(sizes[name], b"\0"))
        fork = resource_fork(("FOND", 7, fond(0, (0, 0, 128))), ("sfnt", 128, mac_font("Made-e", "1.0", "Alpha")))
        self.write("e.dfont", fork.ljust(3000, b"\0"))
        rows = [("path", "abcde"), ("version", "ebcad"), ("outlineFileSize", "bdace"), ("fondID", "eabcd"), ("family", "acdeb")]
        for field, order in rows:
            for form in ("json", "jsonl", "tsv", "table", "xml", "plist"):
                with self.subTest(field, form=form):
                    text = self.identify("--sort", field, "--format", form, self.folder).decode()
                    self.assertEqual(re.findall(r"Made-(.)\b(?![^\n]*Made-)", text), list(order), text)

    def test_fixed_forms_take_no_fields(self):
        path = self.write("a.ttf", made_font("Made"))
        for form in ("xml", "plist"):
            result = run("identify", "--format", form, "--fields", "path", path)
            self.assertEqual((result.returncode, result.stdout), (2, b""))
            self.assertIn(b"fixed", result.stderr)

    def test_paths_that_are_no_utf8(self):
        path = os.fsencode(self.folder) + b"/a\xff.ttf"
        with open(path, "wb") as file:
            file.write(made_font("Made"))
        self.assertIn("a\\xFF.ttf\n", self.identify(self.folder).decode())
        (face,) = json.loads(self.identify("--format", "json", self.folder))
        self.assertEqual(face["path"], os.fsdecode(path).replace("\udcff", "\ufffd"))
        self.assertEqual(self.identify("--format", "tsv", "--fields", "path", self.folder), b"path\n" + path + b"\n")

    def test_without_a_face_each_form_is_still_whole(self):
        for form, text in (("table", b""), ("json", b"[]\n"), ("jsonl", b""), ("tsv", b"path\n")):
            fields = ["--fields", "path"] if form == "tsv" else []
            result = run("identify", "--format", form, *fields, self.folder)
            self.assertEqual((result.returncode, result.stdout), (1, text))


if __name__ == "__main__":
    tool_case.main()
