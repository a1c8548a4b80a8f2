"""The command-line tool from outside: what each command gives of real fonts, stored forms and damaged tables."""

import itertools
import os
import pathlib
import shutil
import struct
import unicodedata
import unittest

from font_builders import fond, resource_fork, sfnt
from tool_case import DEJAVU, ToolCase

COLLECTION = pathlib.Path("/usr/share/fonts/truetype/wqy/wqy-zenhei.ttc")
URW = pathlib.Path("/usr/share/fonts/opentype/urw-base35")

def columns(text):
    wide = sum(unicodedata.east_asian_width(c) in "WF" for c in text)
    return len(text) + wide - sum(unicodedata.combining(c) != 0 for c in text)


class ToolTest(ToolCase):
    def test_identifies_a_file_and_a_collection(self):
        bold, *collection = self.faces(DEJAVU.with_name("DejaVuSans-Bold.ttf"), COLLECTION)
        expected = {"postScriptName": "DejaVuSans-Bold", "family": "DejaVu Sans", "kind": "OpenType - TT", "styles": ["Bold"],
                    "platform": "crossplatform", "foundry": "DejaVu Fonts", "class": "Humanist Sans Serif"}  # fmt: skip
        self.assertEqual({key: bold[key] for key in expected}, expected)
        self.assertNotIn("fondID", bold)
        kind = "TrueType Collection"
        self.assertEqual([(face["face"], face["kind"]) for face in collection], [(0, kind), (1, kind), (2, kind)])

    def test_the_table_is_aligned_also_with_wide_characters(self):
        for name in ("文泉驛.ttf", "a.ttf"):
            shutil.copy(DEJAVU, self.folder / name)
        lines = self.run_tool("identify .").stdout.decode().splitlines()
        cells = ["POSTSCRIPT", "DejaVuSans ", "DejaVuSans "]
        self.assertEqual(len({columns(line[: line.index(cell)]) for line, cell in zip(lines, cells, strict=True)}), 1, lines)

    def test_stored_forms_read_back(self):
        fonts = sorted(URW.glob("Nimbus*.otf"))
        kept = ("postScriptName", "family", "kind", "foundry", "version", "outlineFileSize")
        original = [[face[key] for key in kept] for face in self.faces(*fonts)]
        for form in ("xml", "plist"):
            with self.subTest(form):
                self.write("stored", self.run_tool(["identify", "--format", form, *fonts]).stdout)
                read = self.json_of("read --format json stored")
                self.assertEqual([[face[key] for key in kept] for face in read], original)
        self.write("one", b"<array><dict><key>PostScriptName</key><string><![CDATA[<FontData></FontData>]]></string></dict></array>")
        (face,) = self.json_of("read --format json one")
        self.assertEqual((face["postScriptName"], "fondID" in face), ("<FontData></FontData>", False))

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

        self.write("cut", b"<FontData><PostScriptName></FontData>" * 2000 + b"x" * 500000 + b"</PostScriptName></FontData>")
        self.check("read --format tsv --fields face cut", 1, "face\n0\n...", "cut: ...first...\n")
        self.write("bad", b"<plist><array/></plist>")
        self.check("read bad", 1, err="bad: neither stored XML, a property list of fonts, nor JSON as identify writes it\n")
        self.check("read .", 1, err=".: a folder, not a file\n")

    def test_tells_styles_and_classes(self):
        rows = [
            (["styles", "Minion-BoldItalic"], 0, "Bold\nItalic\n", {"styles": ["Bold", "Italic"]}),
            (["styles", "Minion"], 1, "", {"styles": []}),
            (["classify", "HELVETICA"], 0, "Grotesque Sans Serif\n", {"class": "Grotesque Sans Serif"}),
            (["classify", "No Such Family", "Helvetica"], 0, "Grotesque Sans Serif\n", {"class": "Grotesque Sans Serif"}),
            (["classify", "No Such Family"], 1, "--\n", {"class": "--"}),
        ]
        for words, status, text, document in rows:
            self.check(words, status, text)
            self.assertEqual(self.json_of([*words, "--format", "json"], status), document)

    def test_works_without_tables_and_says_so(self):
        environment = dict(os.environ, QUILLMARK_BUNDLE=str(self.folder))
        words = ["identify", "--format", "json", "--fields", "foundry,class", DEJAVU]
        nothing = '[\n  {"foundry":"--","class":"--"}\n]\n'
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
]
,"resourcesLeftOut": 0,
"fonds": [
  {"id":9,"name":"Mark","styles":[{"style":0,"associations":[{"size":0,"id":7}],"postScriptName":"Marker"},..."""
        self.check("resources --format json a.dfont", 0, document + '"printerFont":"Marke","printerFontExists":false}]}\n]\n}\n')
        self.check(["resources", DEJAVU], 1, err="...: no resource map in either fork\n")


if __name__ == "__main__":
    unittest.main()
