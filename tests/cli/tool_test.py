"""The command-line tool from outside: arguments, exact output, exit codes.

Usage: tool_test.py TOOL [unittest arguments]
"""

import itertools
import json
import os
import pathlib
import plistlib
import shutil
import subprocess
import sys
import tempfile
import unicodedata
import unittest

TOOL = ""
DEJAVU = pathlib.Path("/usr/share/fonts/truetype/dejavu")
COLLECTION = pathlib.Path("/usr/share/fonts/truetype/wqy/wqy-zenhei.ttc")
BITMAP_FONT = """STARTFONT 2.1
FONT -quillmark-Marker-Medium-R-Normal--12-120-75-75-C-80-ISO8859-1
SIZE 12 75 75
FONTBOUNDINGBOX 8 12 0 -2
STARTPROPERTIES 4
FAMILY_NAME "Marker"
WEIGHT_NAME "Medium"
FONT_ASCENT 10
FONT_DESCENT 2
ENDPROPERTIES
CHARS 1
STARTCHAR A
ENCODING 65
SWIDTH 640 0
DWIDTH 8 0
BBX 8 2 0 0
BITMAP
FF
FF
ENDCHAR
ENDFONT
"""
URW = pathlib.Path("/usr/share/fonts/opentype/urw-base35")


def run(*arguments, **options):
    return subprocess.run([TOOL, *map(str, arguments)], capture_output=True, timeout=60, **options)


def faces(*arguments):
    return json.loads(run("identify", "--format", "json", *arguments).stdout)


def columns(text):
    wide = sum(unicodedata.east_asian_width(c) in "WF" for c in text)
    return len(text) + wide - sum(unicodedata.combining(c) != 0 for c in text)


class ToolTest(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)

    def test_identifies_a_file_and_a_collection(self):
        result = run("identify", "--format", "json", DEJAVU / "DejaVuSans-Bold.ttf", COLLECTION)
        self.assertEqual((result.returncode, result.stderr), (0, b"4 faces in 2 files\n"))
        bold, *collection = json.loads(result.stdout)
        expected = {
            "postScriptName": "DejaVuSans-Bold",
            "family": "DejaVu Sans",
            "kind": "OpenType - TT",
            "platform": "crossplatform",
            "foundry": "DejaVu Fonts",
            "class": "Humanist Sans Serif",
            "styles": ["Bold"],
        }
        self.assertEqual({key: bold[key] for key in expected}, expected)
        self.assertNotIn("fondID", bold)
        self.assertEqual([face["face"] for face in collection], [0, 1, 2])
        self.assertEqual({face["kind"] for face in collection}, {"TrueType Collection"})

    def test_says_in_one_line_why_a_named_file_gives_no_face(self):
        fifo = self.folder / "fifo.ttf"
        os.mkfifo(fifo)
        lone = self.folder / "Lone.pfb"
        lone.write_bytes(b"lone")
        rows = [
            (self.folder / "missing.ttf", "no such file"),
            (fifo, "a named pipe, not a file"),
            (lone, "a printer font by its extension .pfb, read only through the Macintosh font family file that names it: "
                   "none in this folder does; put the two together and give the family file"),
        ]
        for path, reason in rows:
            with self.subTest(reason):
                result = run("identify", path)
                self.assertEqual(result.returncode, 1)
                self.assertEqual(result.stdout, b"")
                self.assertEqual(result.stderr.decode(), f"{path}: {reason}\n0 faces in 0 files\n")

    def test_walks_folders_in_a_stable_order_whatever_the_threads(self):
        for name in ("b/2.ttf", "b/1.ttf", "a.ttf", "c.otf", "__MACOSX/x.ttf", "._a.ttf"):
            path = self.folder / name
            path.parent.mkdir(exist_ok=True)
            shutil.copy(DEJAVU / "DejaVuSansMono.ttf", path)
        (self.folder / "notes.txt").write_text("notes")
        os.symlink(self.folder, self.folder / "loop")
        os.symlink(self.folder / "a.ttf", self.folder / "linked.ttf")
        one = run("identify", "--format", "json", self.folder)
        self.assertEqual(one.stderr, b"5 faces in 5 files; 1 linked folder not entered (--follow), 1 other file passed over\n")
        names = [str(pathlib.Path(face["path"]).relative_to(self.folder)) for face in json.loads(one.stdout)]
        self.assertEqual(names, ["a.ttf", "c.otf", "linked.ttf", "b/1.ttf", "b/2.ttf"])
        self.assertEqual(run("identify", "--format", "json", "-j", 4, self.folder).stdout, one.stdout)

    def test_a_folder_without_fonts_is_1(self):
        self.assertEqual(run("identify", self.folder).returncode, 1)

    def test_the_table_is_aligned_also_with_wide_characters(self):
        shutil.copy(DEJAVU / "DejaVuSans.ttf", self.folder / "文泉驛.ttf")
        shutil.copy(DEJAVU / "DejaVuSans.ttf", self.folder / "a.ttf")
        lines = run("identify", self.folder).stdout.decode().splitlines()
        self.assertEqual(len(lines), 3)
        starts = {columns(line[: line.index(cell)]) for line, cell in zip(lines, ("POSTSCRIPT", "DejaVuSans ", "DejaVuSans "))}
        self.assertEqual(len(starts), 1, lines)

    def test_stored_forms_read_back(self):
        fonts = sorted(URW.glob("Nimbus*.otf"))
        kept = ("postScriptName", "family", "kind", "foundry", "version", "outlineFileSize")
        original = [{key: face[key] for key in kept} for face in faces(*fonts)]
        for form in ("xml", "plist"):
            with self.subTest(form):
                stored = self.folder / form
                stored.write_bytes(run("identify", "--format", form, *fonts).stdout)
                read = json.loads(run("read", "--format", "json", stored).stdout)
                self.assertEqual([{key: face[key] for key in kept} for face in read], original)
                again = run("read", "--format", form, stored).stdout
                (self.folder / "again").write_bytes(again)
                self.assertEqual(run("read", "--format", form, self.folder / "again").stdout, again)
        self.assertEqual(len(plistlib.loads((self.folder / "plist").read_bytes())), len(original))

        (face,) = json.loads(run("read", "--format", "json", self.store_one("<FontData></FontData>")).stdout)
        self.assertEqual(face["postScriptName"], "<FontData></FontData>")
        self.assertNotIn("fondID", face)
        self.assertEqual(run("read", self.folder).stderr.decode(), f"{self.folder}: a folder, not a file\n")

    def test_what_reading_loses_is_told(self):
        block = "<FontData><PostScriptName>{}</PostScriptName><Checksum>{}</Checksum></FontData>"
        entry = "<dict><key>PostScriptName</key><string>{}</string><key>KerningChecksum</key><string>{}</string></dict>"
        forms = [(block, "", ""), (entry, "<array>", "</array>")]
        fewer = "gives 2 of the 3 faces it lists: a PostScript name that comes again is left out"
        large = "of 7FFFFFFF, which stands for itself and every larger one"
        rows = [
            ([("A", "FFFFFFFF"), ("B", "0"), ("A", "0")], f": {fewer}; 1 face has a checksum {large}\n"),
            ([("A", "80000000"), ("B", "7FFFFFFF")], f": 2 faces have a checksum {large}\n"),
            ([("A", "7FFFFFFE"), ("B", "0")], ""),
        ]
        for (face, head, end), (values, told) in itertools.product(forms, rows):
            stored = self.folder / "stored"
            stored.write_text(head + "".join(face.format(*value) for value in values) + end)
            result = run("read", stored)
            with self.subTest(head=head, values=values):
                self.assertEqual((result.returncode, result.stderr.decode()), (0, told and f"{stored}{told}"))

    def test_what_cannot_be_read_is_1(self):
        bad = self.folder / "bad"
        bad.write_text("<plist><array/></plist>")
        result = run("read", bad)
        self.assertEqual((result.returncode, result.stdout), (1, b""))
        self.assertEqual(result.stderr.decode(), f"{bad}: neither stored XML, a property list of fonts, nor JSON as identify writes it\n")

    def store_one(self, name):
        stored = self.folder / "one"
        stored.write_text(f"<array><dict><key>PostScriptName</key><string><![CDATA[{name}]]></string></dict></array>")
        return stored

    def test_tells_styles_and_classes(self):
        self.assertEqual(run("styles", "Minion-BoldItalic").stdout, b"Bold\nItalic\n")
        self.assertEqual(run("styles", "Minion").returncode, 1)
        self.assertEqual(run("classify", "HELVETICA").stdout, b"Grotesque Sans Serif\n")
        self.assertEqual(run("classify", "No Such Family", "Helvetica").stdout, b"Grotesque Sans Serif\n")
        unknown = run("classify", "No Such Family")
        self.assertEqual((unknown.returncode, unknown.stdout), (1, b"--\n"))
        rows = [
            (["styles", "Minion-BoldItalic"], 0, {"styles": ["Bold", "Italic"]}),
            (["styles", "Minion"], 1, {"styles": []}),
            (["classify", "Helvetica"], 0, {"class": "Grotesque Sans Serif"}),
            (["classify", "No Such Family"], 1, {"class": "--"}),
        ]
        for words, status, expected in rows:
            result = run(*words, "--format", "json")
            self.assertEqual((result.returncode, json.loads(result.stdout)), (status, expected))

    def test_works_without_tables_and_says_so(self):
        environment = dict(os.environ, QUILLMARK_BUNDLE=str(self.folder))
        result = run("identify", "--format", "json", DEJAVU / "DejaVuSans.ttf", env=environment)
        self.assertEqual(result.returncode, 0)
        self.assertIn(b"these tables are missing", result.stderr)
        self.assertEqual([(face["foundry"], face["class"]) for face in json.loads(result.stdout)], [("--", "--")])

        resources = self.folder / "Resources"
        resources.mkdir()
        for name in ("FoundryNameTable.plist", "KeywordTable.plist"):
            (resources / name).write_text("<plist><dict/></plist>")
        (resources / "DefaultClassifications.plist").write_text("broken")
        damaged = run("identify", "--format", "json", DEJAVU / "DejaVuSans.ttf", env=environment)
        self.assertEqual([face["postScriptName"] for face in json.loads(damaged.stdout)], ["DejaVuSans"])
        self.assertIn(b"KeywordTable.plist", damaged.stderr)

    def test_shows_the_faces_and_resources_of_a_bitmap_suitcase(self):
        # A real family file, made by fondu from a bitmap font.
        (self.folder / "Marker.bdf").write_text(BITMAP_FONT)
        subprocess.run(["ufond", "-dfont", "Marker.bdf"], cwd=self.folder, check=True, capture_output=True)
        (dfont,) = self.folder.glob("*.dfont")
        listing = run("resources", dfont)
        self.assertEqual(listing.returncode, 0, listing.stderr)
        shown = listing.stdout.decode().split()
        for word in ("FOND", "NFNT", "Marker"):
            self.assertIn(word, shown)
        self.assertIn("12 pt ", listing.stdout.decode())
        document = json.loads(run("resources", "--format", "json", dfont).stdout)
        self.assertEqual((document["path"], document["resourcesLeftOut"]), (str(dfont), 0))
        (family,) = document["fonds"]
        sizes = {resource["id"]: resource["size"] for resource in document["resources"] if resource["type"] == "NFNT"}
        (association,) = family["styles"][0]["associations"]
        self.assertEqual((family["name"], association["size"], association["id"] in sizes), ("Marker", 12, True))
        reason = run("identify", dfont).stderr.decode()
        self.assertIn("neither a readable outline font nor the name of a printer font", reason)
        self.assertEqual(run("resources", DEJAVU / "DejaVuSans.ttf").returncode, 1)

    def test_a_full_disk_is_1(self):
        with open("/dev/full", "w") as full:
            result = subprocess.run([TOOL, "styles", "Minion-Bold"], stdout=full, stderr=subprocess.PIPE, timeout=60)
        self.assertEqual((result.returncode, result.stderr), (1, b"quillmark: standard output cannot be written\n"))

    def test_a_closed_pipe_ends_quietly(self):
        many = self.folder
        for i in range(300):
            os.symlink(DEJAVU / "DejaVuSansMono.ttf", many / f"{i}.ttf")
        command = f"'{TOOL}' identify --format json '{many}' | head -c 10 >/dev/null"
        result = subprocess.run(["sh", "-c", command], capture_output=True, timeout=60)
        self.assertNotIn(b"error", result.stderr.lower())


if __name__ == "__main__":
    TOOL = sys.argv.pop(1)
    unittest.main()
