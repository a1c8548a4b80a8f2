"""quillmark same and compare: copies, conflicts, formats, versions and near names, and attribute by attribute."""

import os
import pathlib
import re
import zlib

from font_builders import apple_double, collection, fond, mac_font, resource_fork, with_checksum
from tool_case import ToolCase

AXES = {"fvar": bytes(4)}  # the table of variation axes, which makes a font a variable one
PARTS = {"conflicts": "data", "formats": "formats", "versions": "versions", "near": "names"}
COUNTS = ["nameless", "links", "namesWithoutLetters"]


def open_type(font):
    return b"OTTO" + font[4:]


def suitcase(font):
    return resource_fork(("FOND", 128, fond(128, (0, 0, 200))), ("sfnt", 200, font))


def releases(*rows):
    return {f"{name}.ttf": mac_font("Quill", version, foundry=foundry) for name, version, foundry in rows}


def two_versions_and_a_conflict(name):
    return {f"{i}.ttf": mac_font(name, version, data=bytes(i)) for i, version in enumerate(["1", "2", "1"])}


QUILL, ELSE, OTHER = mac_font("Quill"), mac_font("Quill", data=b"else"), mac_font("Other")
NEWER, LAYOUT = mac_font("Quill", "3"), mac_font("Quill", GSUB=bytes(4))
OTF, MONOTYPE = open_type(mac_font("Quill", "001")), open_type(mac_font("Quill", foundry="Monotype"))
UNVERSIONED = mac_font("Quill", "none", data=b"else")
BOTH, FORK = collection(QUILL, OTHER), suitcase(QUILL)
LONGER = with_checksum(mac_font("Quill", data=b"longer"), zlib.crc32(QUILL))
ZERO = with_checksum(QUILL, 0)
MOVING, FIXED = mac_font("Moving", **AXES), mac_font("Fixed")
FAMILY = resource_fork(("FOND", 128, fond(128, (0, 0, 200), (0, 1, 201))), ("sfnt", 200, FIXED), ("sfnt", 201, MOVING))

# Files, where a text is another name of a file and a path is a link to one, and what is told of them.
SITUATIONS = [
    # Copies are other files with the same faces.
    ({"a.ttf": QUILL, "b.ttf": QUILL, "c.ttf": OTHER, "hard.ttf": "b.ttf", "link.ttf": pathlib.Path("b.ttf")},
     "copies: a.ttf b.ttf; links: 2"),
    # The carrier of a resource fork does not matter. Equal empty data forks are linked by tools that save space.
    ({"a.ttf": QUILL, "b.dfont": FORK, "c": (b"", FORK), "d": "c", "._d": apple_double(FORK)}, "copies: a.ttf b.dfont c d"),
    ({"a": (b"note", FORK), "b": "a", "._b": apple_double(suitcase(OTHER))}, ""),
    # Sizes count, and checksums of 0 do not.
    ({"a.ttf": QUILL, "b.ttf": QUILL, "c.ttf": LONGER, "d.ttf": ZERO, "e.ttf": ZERO},
     "copies: a.ttf b.ttf; conflicts: Quill a.ttf b.ttf | c.ttf"),
    # A face that different files hold is copied alone.
    ({"a.ttf": QUILL, "b.ttc": BOTH, "c.ttc": BOTH}, "copies: b.ttc c.ttc; copies: Quill a.ttf b.ttc c.ttc"),
    ({"a.ttf": MOVING, "b.dfont": FAMILY, "c.ttc": collection("First", FIXED, MOVING), "d.ttf": FIXED, "e": (b"", FAMILY)},
     "copies: b.dfont e; copies: Moving a.ttf* b.dfont* c.ttc* e*; copies: Fixed b.dfont c.ttc d.ttf e"),
    ({"a.ttf": mac_font(""), "b.ttf": mac_font(""), "c.ttf": mac_font("", data=b"else")}, "copies: a.ttf b.ttf; nameless: 3"),
    # A name with different data is a conflict, but in another format or version it is none.
    ({"a.ttf": QUILL, "b.ttf": ELSE, "c.ttf": QUILL, "e.ttf": mac_font("quill"), "f.ttf": NEWER + b"x", "g.ttf": OTHER,
      "h.ttf": mac_font("Other", data=b"else")},
     "copies: a.ttf c.ttf; conflicts: Other g.ttf | h.ttf; conflicts: Quill a.ttf c.ttf | b.ttf; "
     "versions: Quill f.ttf | a.ttf b.ttf c.ttf"),
    ({"a.ttf": QUILL, "b.ttf": LAYOUT}, "conflicts: Quill a.ttf | b.ttf"),
    ({"a.ttf": QUILL, "b.dfont": suitcase(ELSE)}, "formats: Quill a.ttf | b.dfont"),
    ({"a.ttf": QUILL, "b.ttc": collection(ELSE, "More")}, "formats: Quill a.ttf | b.ttc"),
    ({"a.ttf": QUILL, "b.ttf": ELSE, "c.otf": OTF}, "conflicts: Quill a.ttf | b.ttf; formats: Quill a.ttf b.ttf | c.otf"),
    ({"a.ttf": QUILL, "b.ttf": NEWER}, "versions: Quill b.ttf | a.ttf"),
    ({"a.ttf": QUILL, "b.otf": open_type(NEWER)}, "versions: Quill b.otf | a.ttf"),
    ({"a.ttf": QUILL, "b.ttf": UNVERSIONED}, "conflicts: Quill a.ttf | b.ttf"),
    ({"a.ttf": QUILL, "b.otf": MONOTYPE}, "conflicts: Quill a.ttf | b.otf"),
    (releases(("a", "2.9", "Adobe"), ("b", "2.10", "Adobe"), ("c", "002.010", "Adobe"), ("d", "1", "Monotype"),
              ("e", "10.0", "Adobe"), ("f", f"2.1{'0' * 30}", "Adobe")),
     "conflicts: Quill a.ttf | b.ttf | c.ttf | d.ttf | e.ttf | f.ttf; versions: Quill e.ttf | f.ttf | b.ttf c.ttf | a.ttf"),
    # Names without a letter say nothing. Of a Macintosh name, only ASCII stays: the third reads "??".
    (two_versions_and_a_conflict("-"), "namesWithoutLetters: 3"),
    (two_versions_and_a_conflict("éß"), "namesWithoutLetters: 3"),
    (two_versions_and_a_conflict("-7"), "conflicts: -7 0.ttf | 2.ttf; versions: -7 1.ttf | 0.ttf 2.ttf"),
    # Near names differ in punctuation alone.
    ({f"{i}.ttf": mac_font(name) for i, name in enumerate(["Quill-Bold", "QuillBold", "Quill-bold", "Quill-Bold-Old", "--", "_"])},
     "near: Quill-Bold 0.ttf | 3.ttf | 1.ttf; namesWithoutLetters: 2"),
]  # fmt: skip


def told(lists):
    """The lists as one text: each group with its name and files, variable faces with a star, and a bar between its parts."""
    def files(faces):
        return " ".join(os.path.normpath(face["path"]) + "*" * face["variable"] for face in faces)

    groups = []
    for copy in lists["copies"]:
        faces = f"{copy['faces'][0]['postScriptName']} {files(copy['faces'])}"
        groups.append("copies: " + (" ".join(map(os.path.normpath, copy["paths"])) if copy["copied"] == "file" else faces))
    for name, key in PARTS.items():
        groups += [f"{name}: {group['postScriptName']} {' | '.join(map(files, group[key]))}" for group in lists[name]]
    groups += [f"{name}: {lists['summary'][name]}" for name in COUNTS if lists["summary"][name]]
    return "; ".join(groups)


class SameTest(ToolCase):
    def lists(self, *arguments, status=0):
        return self.json_of(["same", "--near", "--format", "json", *arguments], status)

    def test_situations(self):
        top = self.folder
        for number, (files, expected) in enumerate(SITUATIONS):
            self.folder = top / str(number)
            for name, content in files.items():
                if isinstance(content, str):
                    os.link(self.folder / content, self.folder / name)
                elif isinstance(content, pathlib.Path):
                    (self.folder / name).symlink_to(content)
                else:
                    self.write(name, content)
            with self.subTest(files=[*files], expected=expected):
                self.assertEqual(told(self.lists(".", status=3 if "conflicts" in expected else 0)), expected)

    def test_neither_order_nor_threads_count(self):
        paths = self.write_all({"a.ttf": QUILL, "b.ttf": ELSE, "c.ttf": QUILL, "d.ttf": OTHER, "e.ttf": OTHER})
        lists = self.lists(self.folder, self.folder / "e.ttf", status=3)
        summary = {"files": 5, "faces": 5, "nameless": 0, "links": 1, "namesWithoutLetters": 0}
        self.assertEqual(lists["summary"], summary)
        again = self.lists("-j", 4, *reversed(paths), status=3)
        self.assertEqual(again, {**lists, "summary": {**summary, "links": 0}})

    def test_file_sizes_are_those_of_the_fork_that_is_read(self):
        fork = suitcase(QUILL)
        self.write_all({"loose.ttf": QUILL, "family.dfont": fork, "Suitcase": (b"", fork)})
        sizes = [len(apple_double(fork)) - len(apple_double(b"")), len(fork), len(QUILL)]
        self.assertEqual(self.lists(".")["copies"][0]["fileSizes"], sizes)

    def test_identify_tells_which_fonts_are_variable(self):
        self.write_all({"a.ttf": MOVING, "b.ttc": collection(FIXED, MOVING), "c.dfont": FAMILY})
        told = "postScriptName\tvariable\nMoving\ttrue\nFixed\tfalse\nMoving\ttrue\nFixed\tfalse\nMoving\ttrue\n"
        words = "-q --format {} --fields postScriptName,variable"
        self.check(f"identify {words.format('tsv')} .", 0, told)
        faces = self.run_tool(f"identify {words.format('json')} .").stdout
        self.check(f"read {words.format('tsv')[3:]} -", 0, told, input=faces)

    def test_lists_can_be_left_out(self):
        self.write_all({"a.ttf": QUILL, "b.ttf": ELSE})
        names = ["copies", "conflicts", "formats", "versions", "near"]
        self.assertNotIn("near", self.json_of("same --format json .", 3))
        for left_out, words in [
            (["conflicts"], "--without conflicts"),
            (["near", "copies"], "--without near --without copies"),
            (["formats", "versions", "near"], "--without formats,versions,near"),
        ]:
            kept = [name for name in names if name not in left_out]
            status = 3 if "conflicts" in kept else 0
            self.assertEqual([*self.lists(*words.split(), ".", status=status)], [*kept, "summary"])
            table = self.run_tool(f"same --near {words} .").stdout.decode().lower()
            self.assertEqual({name for name in names if re.search(rf"^{name}\b", table, re.MULTILINE)}, {*kept})

    def test_the_table_is_grouped_with_paths_last(self):
        old, other = mac_font("Quill", "2.9"), mac_font("Quill", "2.9", data=b"else" * 300)
        self.write_all({"a.ttf": old, "c.ttf": old, "d.ttf": other, "e.otf": open_type(old)})
        self.write("new/b.ttf", mac_font("Quill", "2.10", **AXES))
        a, d = (f"{zlib.crc32(font):08X}" for font in (old, other))
        expected = f"""Conflicts: 1 (one PostScript name, different data)
  CHECKSUM  SIZE    FILE
Quill  (2.9, TrueType, Adobe)
  {a}  168 B   ./a.ttf
  {a}  168 B   ./c.ttf
  {d}  1.4 kB  ./d.ttf

Formats: 1 (one font in several formats)
  KIND           SIZE    FILE
Quill  (2.9, Adobe)
  TrueType       168 B   ./a.ttf
...
  OpenType - PS  168 B   ./e.otf

Versions: 1 (one font in several versions, newest first)
  VERSION  KIND                SIZE    FILE
Quill  (Adobe)
  2.10     TrueType, variable  188 B   ./new/b.ttf
...
  2.9      OpenType - PS       168 B   ./e.otf

Copies: 1 (the same data in several files, 168 B besides the first of each)
  SIZE   FILE
Quill  (2.9, TrueType)
  168 B  ./a.ttf
  168 B  ./c.ttf

conflicts 1, formats 1, versions 1, copies 1
"""
        self.check("same .", 3, expected, "5 faces in 5 files\n")

    def test_tsv_is_a_line_a_face(self):
        other = mac_font("Quill", data=b"longer", **AXES)
        self.write_all({"a\tb.ttf": QUILL, "c.ttf": QUILL, "d.ttf": other})
        quill, moving = (f"Quill TrueType 1.0 Adobe {zlib.crc32(font):08X} {len(font)}" for font in (QUILL, other))
        expected = f"""list group part copied path face postScriptName kind version foundry checksum fileSize variable
copies 1 1 file ./a\\tb.ttf - {quill} false
copies 1 1 file ./c.ttf - {quill} false
conflicts 1 1 - ./a\\tb.ttf 0 {quill} false
conflicts 1 1 - ./c.ttf 0 {quill} false
conflicts 1 2 - ./d.ttf 0 {moving} true
"""
        self.check("same --format tsv .", 3, expected.replace(" - ", "  ").replace(" ", "\t"), "3 faces in 3 files\n")

    def test_a_named_path_without_a_face_is_1_even_with_conflicts(self):
        self.write_all({"a.ttf": QUILL, "b.ttf": ELSE, "text": b"no font"})
        self.check("same . missing", 1, "...conflicts 1...", "missing: no such file\n...")
        self.check("same text", 1, err="text: a text file, ...")
        self.assertEqual(self.json_of("same --format json text", 1)["conflicts"], [])


class CompareTest(ToolCase):
    def verdicts(self, a, b, status):
        (pair,) = self.json_of(["compare", "--format", "json", a, b], status)["pairs"]
        return {row["attribute"]: row["verdict"] for row in pair["attributes"]}

    def test_tells_what_agrees_and_what_conflicts(self):
        one = self.write("one.ttf", QUILL)
        for other, expected in [
            (mac_font("Quill", data=b"else"), {"checksum": "differs", "legacyChecksum": "differs"}),
            (mac_font("Quill", data=b"longer"), {"checksum": "differs", "outlineFileSize": "differs"}),
            (mac_font("Quill", "1.1"), {"version": "differs", "foundry": "same"}),
            (mac_font("Quill", family="QUILL"), {"family": "sameButForCase"}),
            (mac_font("Quill", foundry=""), {"foundry": "onlyA", "checksum": "differs"}),
            (mac_font("Squill", full_name="quill"), {"postScriptName": "differs", "family": "same"}),
        ]:
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
        font = mac_font("Quill", foundry="Unknown & Co")
        for checksum, told in [(0x7FFFFFFE, "same"), (0x7FFFFFFF, "unknown")]:  # which stands for all larger ones
            self.write("a.ttf", with_checksum(font, checksum))
            for form in ("xml", "plist"):
                self.write(form, self.run_tool(f"identify --format {form} a.ttf").stdout)
                verdicts = self.verdicts(form, "a.ttf", 0)
                expected = {"foundry": "same", "version": "same", "outlineFileSize": "same", "checksum": told}
                self.assertLessEqual(expected.items(), verdicts.items())
                self.assertNotIn("fullName", verdicts)
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
