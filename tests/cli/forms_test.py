"""The forms that identify writes, and the fields in them."""

import json
import os

import tool_case
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

    def test_wrong_fields_are_wrong_usage(self):
        path = self.write("a.ttf", made_font("Made"))
        unknown = run("identify", "--fields", "path,nme", path)
        self.assertEqual((unknown.returncode, unknown.stdout), (2, b""))
        for word in (b'"nme"', b"postScriptName", b"kerningChecksum", b"style"):
            self.assertIn(word, unknown.stderr)
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
