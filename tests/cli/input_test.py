"""What is read: lists of paths, folders, standard input, and faces from the tool's own JSON."""

import json
import os
import subprocess

from font_builders import collection, fond, mac_font, resource_fork, sfnt
from tool_case import TOOL, ToolCase, made_font

NAMES = "identify -q --format tsv --fields postScriptName"

FONTS = {
    "a.ttf": made_font("Made-BoldItalic", "Größe"),
    "b.otf": sfnt("Other", b"OTTO"),
    "c.ttc": collection(mac_font("One"), mac_font("Two", foundry="Monotype")),
    "d.dfont": resource_fork(("FOND", 130, fond(0, (0, 1, 128))), ("sfnt", 128, made_font("Held"))),
    "e.dfont": resource_fork(("FOND", 9, fond(9, (9, 0, 2), name=b"Lone")), ("NFNT", 2, b"bits")),
}
WRONG_VALUE = "face 1 of its JSON: the value of {} is none that identify writes"


class InputTest(ToolCase):
    def check_names(self, words, names, **options):
        for jobs in (1, 3):
            self.check(f"{NAMES} -j {jobs} {words}", 0, "\n".join(["postScriptName", *names, ""]), **options)

    def test_lists_of_paths(self):
        self.write_all({f"{name}.ttf": made_font(name[-1]) for name in ("a", "b", "folder/deep/c", "line\no")})
        nuls = b"line\no.ttf\0\0a.ttf\0"
        self.write_all({"lines": b"\nb.ttf\n\nfolder\na.ttf", "nuls": nuls})
        self.check_names("--files-from lines a.ttf", "abca")
        self.check_names("--files-from nuls -0", "oa")
        self.check_names("--files-from - -0 b.ttf", "boa", input=nuls)
        # A path of a list counts as named.
        for command in ("identify", "read", "resources", "split"):
            self.check([command, ""], 1, err='"": no such file\n...')
        self.check(["compare", "", "a.ttf"], 1, err='"": no such file\n')
        self.check("identify --files-from -", 1, err="none.ttf: no such file\n0 faces in 0 files\n", input=b"none.ttf\n")

    def test_how_folders_are_walked(self):
        names = ("a.ttf", "in/b.ttf", "in/deep/c.ttf", "__MACOSX/x.ttf", "._a.ttf", "../other/d.ttf")
        self.write_all({"top/" + name: made_font(name[-5]) for name in names})
        self.write("top/notes.txt", b"notes")
        links = {"in/a-deep": "deep", "in/deep/up": "../..", "links": "../other", "none": "gone", "e.ttf": "../other/d.ttf"}
        for link, target in links.items():
            os.symlink(target, self.folder / "top" / link)
        self.check_names("top", "adbc")
        self.check_names("--no-recurse top", "ad")
        self.check_names("--follow --no-recurse top top/links", "add")
        self.check_names("--follow top top", "adbcdadbcd")
        self.check_names("top/links", "d")
        self.check("identify top", 0, "...", "4 faces in 4 files; 1 dangling link, 3 linked folders not entered (--follow), 1 other file passed over...\n")
        self.check("identify --no-recurse top", 0, "...", "2 faces in 2 files; 1 dangling link, 2 folders not entered (--no-recurse), 1 other...\n")
        self.check("why top/in", 0, "...a-deep: a link to a folder, not a file (--follow enters it)\n...")

    def test_lists_that_cannot_be_read(self):
        self.write_all({"a.ttf": made_font("a"), "nuls": b"a.ttf\0"})
        for path, reason in [
            ("none", "No such file or directory"),
            (".", "Is a directory"),
            ("nuls", "it holds a NUL; paths separated by NUL need -0"),
            ("/dev/zero", "a line is too long for a path"),
        ]:
            self.check(f"{NAMES} a.ttf --files-from {path}", 1, "postScriptName\na\n", f"{path}: the list cannot be read: {reason}\n")

    def test_memory_grows_with_neither_files_nor_much_with_faces(self):
        # With such a name the faces of 10,000 files would take well over 100 MB.
        many = self.links(10000, made_font("Made", family="M" * 6000))
        self.write("some", "".join(f"{many}/{i:05}.ttf\n" for i in range(300)).encode())
        self.write_all({f"{count}.ttc": collection(*(f"N{i}" for i in range(count))) for count in (1001, 8001)})
        fields = ["--format", "jsonl", "--fields", "face"]
        self.assertLess(self.peak("many", *fields) - self.peak("--files-from", "some", *fields), 60000)
        for words in ("--format jsonl", "--sort face", "--sort face --format xml", "--sort face --format plist"):
            with self.subTest(words):  # about 2.1 KB a face; 0.7 without a sanitizer
                low, high = (self.peak(f"{count}.ttc", *words.split()) for count in (1001, 8001))
                self.assertLess(high - low, 7000 * 2.5)

    def peak(self, *words):
        # The address sanitizer keeps freed memory for a while, which is not what is looked at here.
        options = os.environ.get("ASAN_OPTIONS", "") + ":quarantine_size_mb=1"
        command = [TOOL, "identify", "-q", "-j", "2", *words]
        environment = dict(os.environ, ASAN_OPTIONS=options)
        process = subprocess.Popen(command, stdout=subprocess.DEVNULL, cwd=self.folder, env=environment)
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        self.assertEqual(process.returncode, 0)
        return usage.ru_maxrss

    def test_a_font_gives_the_faces_of_its_file(self):
        self.write_all(FONTS)
        (self.folder / "held").mkdir()
        environment = dict(os.environ, TMPDIR=str(self.folder / "held"))
        for name in list(FONTS)[:4]:
            expected = [{**face, "path": "-"} for face in self.faces(name)]
            for words in ["--name folder/" + name] + [""] * (name != "d.dfont"):  # which nothing inside tells
                faces = self.json_of(f"identify --format json - {words}", input=FONTS[name], env=environment)
                self.assertEqual(faces, expected, words)
        self.assertEqual(os.listdir(self.folder / "held"), [])

    def test_it_is_one_path_among_others(self):
        self.write_all({"a.ttf": made_font("A"), "-": FONTS["b.otf"]})  # a list may name the file "-"
        self.check_names("a.ttf - a.ttf", ["A", "Other", "A"], input=FONTS["b.otf"])
        self.check_names("--files-from -", ["Other"], input=b"-\n")
        self.check("why - --name a.ttf", 0, "standard input: gives 1 face\n", input=FONTS["b.otf"])
        (self.folder / "-").unlink()
        self.check("same -", 1, "...", "-: no such file; - is standard input only as a path of identify, why and read\n...")

    def test_what_cannot_be_read_is_told(self):
        for data, words, reason in [
            (b"", "-", "it is empty"),
            (b"hello", "-", "a text file, not a font that Quillmark reads"),
            (FONTS["a.ttf"], "- --name a.txt", "a TrueType font, which is not read ..."),
        ]:
            self.check(f"identify -q {words}", 1, err=f"standard input: {reason}\n", input=data)
        with open("/dev/zero", "rb") as endless:
            reason = "it is larger than 1 GiB, more than is taken from there"
            self.check("identify -q -", 1, err=f"standard input: {reason}\n", stdin=endless)

    def test_json_reads_back_as_every_form(self):
        self.write_all(FONTS)
        forms = ("json", "jsonl", "table", "tsv", "xml", "plist")
        written = {form: self.run_tool(f"identify -q --format {form} .").stdout for form in forms}
        faces = json.loads(written["json"])
        self.assertTrue({"styles", "fondID", "printerFont"} <= {field for face in faces for field in face}, faces)
        for form, expected in written.items():
            for source in ("json", "jsonl"):
                self.check(f"read --format {form} -", 0, expected.decode(), "...", input=written[source])
        indented = json.dumps(faces[0], indent=2) + json.dumps(faces[1], indent=2)
        self.assertEqual(self.json_of("read --format json -", input=indented.encode()), faces[:2])
        kept = "--format tsv --fields postScriptName,family,kind,foundry,version,outlineFileSize"
        for form in ("xml", "plist"):
            self.check(f"read {kept} -", 0, self.run_tool(f"identify {kept} .").stdout.decode(), "...", input=written[form])
        self.check("read --format tsv --fields path -", 0, "path\n" + "-\n" * len(faces), "...", input=written["xml"])
        told = "standard input: its faces are more than its bytes can hold; only the first ones are read\n"
        self.check("read --format tsv --fields face -", 1, "face\n...3000\n...", told, input=b'{"style":0}' * 9000)

    def test_json_that_is_none_of_the_tool_is_told(self):
        for text, reason in [
            ("[]", "its JSON lists no face"),
            ('[{"face":0},\n{"fa', "JSON that is damaged or cut short in line 2"),
            ('{"face":0}\n{"face":1}\n{"fa', "JSON that is damaged or cut short in line 3"),
            ("[" * 100000, "JSON that is damaged or cut short in line 1"),
            ('{"a":"x","pairs":[]}', "face 1 of its JSON has no field that identify writes"),
            ('[{"face":0},7]', "face 2 of its JSON has no field that identify writes"),
            ('[{"checksum":"12"}]', WRONG_VALUE.format("checksum")),
            ('[{"face":-1}]', WRONG_VALUE.format("face")),
            ('[{"fondID":40000}]', WRONG_VALUE.format("fondID")),
            ('[{"family":"a\\u0000b"}]', WRONG_VALUE.format("family")),
            ('[{"styles":["Bold",1]}]', WRONG_VALUE.format("styles")),
            ("", "it is empty"),
        ]:
            self.check("read -", 1, err=f"standard input: {reason}\n", input=text.encode())

    def test_fields_that_json_lacks(self):
        (face,) = self.json_of("read --format json -", input=b'[{"postScriptName":"Made-Bold","new":[1]}]')
        expected = {"path": "-", "face": 0, "postScriptName": "Made-Bold", "styles": ["Bold"], "class": "--", "family": ""}
        self.assertLessEqual(expected.items(), face.items())
        self.assertNotIn("fondID", face)
