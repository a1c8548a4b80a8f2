"""What the commands write of sound files and stored texts: forms, fields, and what was lost."""

import itertools
import os
import re
import struct

from font_builders import collection, fond, mac_font, resource_fork, sfnt
from tool_case import DEJAVU, ToolCase, made_font


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

    def test_each_field_has_its_own_value(self):
        fields = ("path,face,postScriptName,family,fullName,displayName,windowsFullName,styles,class,foundry,kind,version,platform,"
                  "checksum,legacyChecksum,kerningChecksum,outlineFileSize,printerFont,printerFontExists,fondID,style")  # fmt: skip
        values = ("0,DejaVuSans-Bold,DejaVu Sans,DejaVu Sans Bold,DejaVuSans-Bold,DejaVu Sans Bold,Bold,Humanist Sans Serif,"
                  "DejaVu Fonts,OpenType - TT,2.37,crossplatform,FD8FF11C,FD8FF11C,00000000,708920,,,,")  # fmt: skip
        self.check(["identify", "-q", "--format", "tsv", DEJAVU], 0, f"{fields}\n{DEJAVU},{values}\n".replace(",", "\t"))

    def test_a_field_alone_has_the_value_that_it_has_among_all(self):
        fonts = mac_font("Made-A", "1.0", "Made", kern=bytes(8)), mac_font("Made-B", "2.0", "Made")
        family = resource_fork(("FOND", 9, fond(9, (12, 0, 200), (0, 1, 7), name=b"Quill")), ("NFNT", 200, b"bits"), ("sfnt", 7, fonts[0]))
        self.write_all({"a.ttc": collection(*fonts), "a.ttf": sfnt("Made-C"), "a.dfont": family, "Quill": b"/FullName (Quill One)"})
        rows = [line.split("\t") for line in self.identify("--format tsv .").decode().splitlines()]
        self.assertEqual(len(rows), 6)
        for field, *values in zip(*rows):
            self.check(f"identify -q --format tsv --fields {field} .", 0, "\n".join([field, *values, ""]))

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
                text = self.identify(f"--sort {field} --format {form} .").decode()
                self.assertEqual(re.findall(r"Made-(.)\b(?![^\n]*Made-)", text), list(order), (field, text))

    def test_paths_that_are_no_utf8(self):
        self.write(os.fsdecode(b"a\xff.ttf"), made_font("Made"))
        self.assertIn("a\\xFF.ttf\n", self.identify(".").decode())
        self.assertEqual(self.faces(".")[0]["path"], "./a\ufffd.ttf")
        self.assertEqual(self.identify("--format tsv --fields path ."), b"path\n./a\xff.ttf\n")

    def test_without_a_face_each_form_is_still_whole(self):
        for form, text in (("table", ""), ("json", "[]\n"), ("jsonl", ""), ("tsv --fields path", "path\n")):
            self.check(f"identify --format {form} .", 1, text, "0 faces in 0 files\n")

    def test_what_reading_loses_is_told(self):
        block = "<FontData><PostScriptName>{}</PostScriptName><Checksum>{}</Checksum></FontData>"
        entry = "<dict><key>PostScriptName</key><string>{}</string><key>KerningChecksum</key><string>{}</string></dict>"
        fewer = "gives 2 of the 3 faces it lists: a PostScript name that comes again is left out"
        large = "of 7FFFFFFF, which stands for itself and every larger one"
        rows = [
            ([("A", "FFFFFFFF"), ("B", "0"), ("A", "0")], f"stored: {fewer}; 1 face has a checksum {large}\n"),
            ([("A", "80000000"), ("B", "7FFFFFFF")], f"stored: 2 faces have a checksum {large}\n"),
            ([("A", "7FFFFFFE"), ("B", "0")], ""),
        ]
        for (face, head, end), (values, told) in itertools.product([(block, "", ""), (entry, "<array>", "</array>")], rows):
            self.write("stored", (head + "".join(face.format(*value) for value in values) + end).encode())
            self.check("read stored", 0, "...", told)

        self.write("one", b"<array><dict><key>PostScriptName</key><string><![CDATA[<FontData></FontData>]]></string></dict></array>")
        self.check("read --format tsv --fields postScriptName,fondID one", 0, "postScriptName\tfondID\n<FontData></FontData>\t\n")
        self.write("cut", b"<FontData><PostScriptName></FontData>" * 2000 + b"x" * 500000 + b"</PostScriptName></FontData>")
        self.check("read --format tsv --fields face cut", 1, "face\n0\n...", "cut: ...first...\n")
        self.write("bad", b"<plist><array/></plist>")
        self.check("read bad", 1, err="bad: a property list that is cut short or damaged, or lists no fonts\n")
        self.check("read .", 1, err=".: a folder, not a file\n")

    def test_tells_styles_and_classes(self):
        for words, status, text, document in [
            (["styles", "Minion-BoldItalic"], 0, "Bold\nItalic\n", {"styles": ["Bold", "Italic"]}),
            (["styles", "Minion"], 1, "", {"styles": []}),
            (["classify", "HELVETICA"], 0, "Grotesque Sans Serif\n", {"class": "Grotesque Sans Serif"}),
            (["classify", "No Such Family", "Helvetica"], 0, "Grotesque Sans Serif\n", {"class": "Grotesque Sans Serif"}),
            (["classify", "No Such Family"], 1, "--\n", {"class": "--"}),
        ]:
            self.check(words, status, text)
            self.assertEqual(self.json_of([*words, "--format", "json"], status), document)

    def test_works_without_tables_and_says_so(self):
        environment = dict(os.environ, QUILLMARK_BUNDLE=str(self.folder))
        words = ["identify", "--format", "json", "--fields", "foundry,class,styles", DEJAVU]
        nothing = '[\n  {"foundry":"--","class":"--","styles":[]}\n]\n'
        self.check(words, 0, nothing, "...these tables are missing...", env=environment)
        for name in ("FoundryNameTable", "KeywordTable", "DefaultClassifications"):
            self.write(f"Resources/{name}.plist", b"broken" if name[0] == "D" else b"<plist><dict/></plist>")
        self.check(words, 0, nothing, "...KeywordTable.plist...", env=environment)

    def test_shows_the_resources_and_families_of_a_file(self):
        family = fond(9, (0, 0, 7), (12, 1, 200), name=b"Marker")
        fork = bytearray(resource_fork(("FOND", 9, family, b"Mark"), ("NFNT", 200, b"bits"), ("sfnt", 7, sfnt()), ("sfnt", 8, b"")))
        struct.pack_into(">L", fork, fork.index(struct.pack(">hH", 8, 0xFFFF)) + 4, 9999)
        self.write("a.dfont", fork)
        text = """TYPE  ID   SIZE                   NAME
FOND  9    133                    Mark
NFNT  200  4
sfnt  7    80
sfnt       data outside the file

FOND 9 Mark
STYLE  ASSOCIATIONS  POSTSCRIPT NAME  PRINTER FONT
0      outline 7     Marker
1      12 pt 200     Marker           Marke (missing)
"""
        self.check("resources a.dfont", 0, text)
        document = """{
  "path": "a.dfont",
  "resources": [
    {"type":"FOND","id":9,"size":133,"name":"Mark"},
    {"type":"NFNT","id":200,"size":4,"name":""},
    {"type":"sfnt","id":7,"size":80,"name":""},
    {"type":"sfnt"}
  ],
  "resourcesLeftOut": 0,
  "fonds": [
    {"id":9,"name":"Mark","styles":[{"style":0,"associations":[{"size":0,"id":7}],"postScriptName":"Marker"},..."""
        self.check("resources --format json a.dfont", 0, document + '"printerFont":"Marke","printerFontExists":false}]}\n  ]\n}\n')
        self.check(["resources", DEJAVU], 1, err="...: no resource map in either fork\n")
