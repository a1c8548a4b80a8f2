"""quillmark same: copies, conflicts, formats, versions and near names over made fonts.

Usage: same_test.py TOOL [unittest arguments]
"""

import json
import os
import re
import zlib

import tool_case
from font_builders import apple_double, collection, fond, mac_font, resource_fork, with_checksum
from tool_case import ToolCase, run

AXES = {"fvar": bytes(4)}  # the table of variation axes, which makes a font a variable one


def open_type(font):
    return b"OTTO" + font[4:]


class SameTest(ToolCase):
    def write_all(self, files):
        for name, content in files.items():
            self.write(name, content)

    def lists(self, *arguments, status=0):
        result = run("same", "--format", "json", *(arguments or [self.folder]))
        self.assertEqual(result.returncode, status, result.stderr)
        return json.loads(result.stdout)

    def names(self, faces):
        return [os.path.relpath(face["path"], self.folder) for face in faces]

    def parts(self, groups, key):
        return {group["postScriptName"]: [self.names(part) for part in group[key]] for group in groups}

    def copies(self, lists):
        return [
            sorted(os.path.relpath(path, self.folder) for path in copy["paths"])
            if copy["copied"] == "file"
            else [copy["faces"][0]["postScriptName"], *self.names(copy["faces"])]
            for copy in lists["copies"]
        ]

    def test_copies_are_other_files_with_the_same_faces(self):
        self.write_all({"b.ttf": mac_font("Quill"), "a/c.ttf": mac_font("Quill"), "d.ttf": mac_font("Other")})
        os.symlink("b.ttf", self.folder / "linked.ttf")
        os.link(self.folder / "b.ttf", self.folder / "hard.ttf")
        lists = self.lists(self.folder, self.folder / "d.ttf")
        self.assertEqual(self.copies(lists), [["a/c.ttf", "b.ttf"]])
        self.assertEqual(lists["summary"], {"files": 3, "faces": 3, "nameless": 0, "links": 3, "namesWithoutLetters": 0})
        self.assertNotIn("near", lists)

    def test_the_carrier_of_a_resource_fork_does_not_matter(self):
        font = mac_font("Quill")
        fork = resource_fork(("FOND", 128, fond(128, (0, 0, 200))), ("sfnt", 200, font))
        # Equal empty data forks are linked to each other by tools that save space.
        self.write_all({"loose.ttf": font, "family.dfont": fork, "Suitcase": b"", "._Suitcase": apple_double(fork)})
        os.link(self.folder / "Suitcase", self.folder / "Twin")
        self.write_all({"._Twin": apple_double(fork)})
        lists = self.lists()
        self.assertEqual(self.copies(lists), [["Suitcase", "Twin", "family.dfont", "loose.ttf"]])
        self.assertEqual(lists["formats"], [])
        sizes = [len(apple_double(fork)) - len(apple_double(b""))] * 2 + [len(fork), len(font)]
        self.assertEqual(lists["copies"][0]["fileSizes"], sizes)

    def test_links_with_other_resource_forks_beside_them_are_files(self):
        self.write_all({"One": b"note"})
        os.link(self.folder / "One", self.folder / "Two")
        for name in ("One", "Two"):
            fork = resource_fork(("FOND", 128, fond(128, (0, 0, 200))), ("sfnt", 200, mac_font(name)))
            self.write_all({f"._{name}": apple_double(fork)})
        summary = self.lists()["summary"]
        self.assertEqual((summary["files"], summary["links"]), (2, 0))

    def test_sizes_count_and_checksums_of_0_do_not(self):
        font, longer = mac_font("Quill"), mac_font("Quill", data=b"longer")
        self.write_all({"a.ttf": font, "b.ttf": font, "c.ttf": with_checksum(longer, zlib.crc32(font))})
        self.write_all({"d.ttf": with_checksum(font, 0), "e.ttf": with_checksum(font, 0)})
        lists = self.lists(status=3)
        self.assertEqual(self.copies(lists), [["a.ttf", "b.ttf"]])
        self.assertEqual(self.parts(lists["conflicts"], "data"), {"Quill": [["a.ttf", "b.ttf"], ["c.ttf"]]})

    def test_a_face_that_different_files_hold_is_copied_alone(self):
        quill, other = mac_font("Quill"), mac_font("Other")
        both = collection(quill, other)
        self.write_all({"loose.ttf": quill, "one.ttc": both, "two.ttc": both})
        lists = self.lists()
        self.assertEqual(self.copies(lists), [["one.ttc", "two.ttc"], ["Quill", "loose.ttf", "one.ttc", "two.ttc"]])
        self.assertEqual(lists["conflicts"], [])

    def test_a_name_with_different_data_is_a_conflict_and_status_3(self):
        quill = mac_font("Quill")
        self.write_all({"a.ttf": quill, "b.ttf": mac_font("Quill", data=b"else"), "c.ttf": quill})
        self.write_all({"e.ttf": mac_font("quill"), "f.ttf": mac_font("Able"), "g.ttf": mac_font("Able", data=b"else")})
        lists = self.lists(status=3)
        self.assertEqual(
            list(self.parts(lists["conflicts"], "data").items()),
            [("Able", [["f.ttf"], ["g.ttf"]]), ("Quill", [["a.ttf", "c.ttf"], ["b.ttf"]])],
        )
        reverse = sorted(self.folder.iterdir(), reverse=True)
        self.assertEqual(self.lists("-j", 4, *reverse, status=3), lists)

    def test_formats_and_versions_are_no_conflicts(self):
        quill, other = mac_font("Quill", "2.0"), mac_font("Quill", "2.0", data=b"else")
        newer, layout = mac_font("Quill", "3"), mac_font("Quill", "2.0", GSUB=bytes(4))
        dfont = resource_fork(("FOND", 128, fond(128, (0, 0, 200))), ("sfnt", 200, other))
        apart, unversioned = [["a.ttf"], ["b.ttf"]], mac_font("Quill", "none", data=b"else")
        otf = open_type(mac_font("Quill", "002"))
        rows = [
            # files, then the parts in conflict, those of formats, those of versions
            ({"a.ttf": quill, "b.otf": otf}, [], [["a.ttf"], ["b.otf"]], []),
            ({"a.ttf": quill, "b.dfont": dfont}, [], [["a.ttf"], ["b.dfont"]], []),
            ({"a.ttf": quill, "b.ttc": collection(other, "More")}, [], [["a.ttf"], ["b.ttc"]], []),
            ({"a.ttf": quill, "b.ttf": layout}, apart, [], []),
            ({"a.ttf": quill, "b.ttf": newer}, [], [], apart[::-1]),
            ({"a.ttf": quill, "b.otf": open_type(newer)}, [], [], [["b.otf"], ["a.ttf"]]),
            ({"a.ttf": quill, "b.ttf": other, "c.ttf": newer}, apart, [], [["c.ttf"], ["a.ttf", "b.ttf"]]),
            ({"a.ttf": quill, "b.ttf": other, "c.otf": otf}, apart, [["a.ttf", "b.ttf"], ["c.otf"]], []),
            ({"a.ttf": quill, "b.ttf": unversioned}, apart, [], []),
            ({"a.ttf": quill, "b.otf": open_type(mac_font("Quill", "2.0", foundry="Monotype"))}, [["a.ttf"], ["b.otf"]], [], []),
        ]
        for number, (files, *expected) in enumerate(rows):
            with self.subTest(files=list(files), number=number):
                folder = str(number)
                self.write_all({f"{folder}/{name}": content for name, content in files.items()})
                lists = self.lists(self.folder / folder, status=3 if expected[0] else 0)
                keys = {"conflicts": "data", "formats": "formats", "versions": "versions"}
                parts = [self.parts(lists[name], key).get("Quill", []) for name, key in keys.items()]
                self.assertEqual(parts, [[[f"{folder}/{name}" for name in part] for part in group] for group in expected])

    def test_names_without_a_letter_say_nothing(self):
        # Of a Macintosh name, only ASCII stays: the third reads "??".
        for number, (name, conflicts) in enumerate([("-", 0), ("._", 0), ("éß", 0), ("-7", 1), ("Q", 1)]):
            folder = str(number)
            self.write_all({f"{folder}/{data}.ttf": mac_font(name, str(data), data=bytes(data)) for data in (1, 2)})
            self.write_all({f"{folder}/3.ttf": mac_font(name, "1", data=b"else")})
            with self.subTest(name):
                lists = self.lists("--near", self.folder / folder, status=3 * conflicts)
                found = [len(lists[name]) for name in ("conflicts", "versions", "near")]
                self.assertEqual(found, [conflicts, conflicts, 0])
                self.assertEqual(lists["summary"]["namesWithoutLetters"], 0 if conflicts else 3)

    def test_variable_fonts_are_marked_however_they_are_carried(self):
        variable, fixed = mac_font("Moving", **AXES), mac_font("Fixed")
        fork = resource_fork(
            ("FOND", 128, fond(128, (0, 0, 200), (0, 1, 201))), ("sfnt", 200, fixed), ("sfnt", 201, variable)
        )
        self.write_all({"a.ttf": variable, "b.dfont": fork, "c.ttc": collection("First", fixed, variable), "d.ttf": fixed})
        self.write_all({"e": b"", "._e": apple_double(fork)})
        faces = [face for copy in self.lists()["copies"] for face in copy["faces"]]
        marks = {(name, face["postScriptName"], face["variable"]) for name, face in zip(self.names(faces), faces)}
        expected = {(name, "Moving", True) for name in ("a.ttf", "b.dfont", "c.ttc", "e")}
        self.assertEqual(marks, expected | {(name, "Fixed", False) for name in ("b.dfont", "c.ttc", "d.ttf", "e")})

    def test_lists_can_be_left_out(self):
        self.write_all({"a.ttf": mac_font("Quill"), "b.ttf": mac_font("Quill", data=b"else")})
        names = ["copies", "conflicts", "formats", "versions", "near"]
        for left_out, arguments in [
            (["conflicts"], ["--without", "conflicts"]),
            (["near", "copies"], ["--without", "near", "--without", "copies"]),
            (["formats", "versions", "near"], ["--without", "formats,versions,near"]),
        ]:
            with self.subTest(arguments):
                kept = [name for name in names if name not in left_out]
                status = 3 if "conflicts" in kept else 0
                self.assertEqual([*self.lists("--near", *arguments, self.folder, status=status)], [*kept, "summary"])
                for form in ("table", "tsv"):
                    text = run("same", "--near", "--format", form, *arguments, self.folder).stdout.decode().lower()
                    shown = {name for name in names if re.search(rf"^{name}\b", text, re.MULTILINE)}
                    self.assertEqual(shown, set(kept if form == "table" else set(kept) & {"conflicts"}))
        self.assertEqual(run("same", "--without", "near,all", self.folder).returncode, 2)

    def test_versions_are_of_one_foundry_newest_first(self):
        rows = [("a", "2.9", "Adobe"), ("b", "2.10", "Adobe"), ("c", "002.010", "Adobe"), ("d", "1", "Monotype")]
        rows += [("e", "10.0", "Adobe"), ("f", f"2.1{'0' * 30}", "Adobe")]
        self.write_all({f"{name}.ttf": mac_font("Quill", version, foundry=foundry) for name, version, foundry in rows})
        self.write_all({"g.ttf": mac_font("Even", "1.0"), "h.ttf": mac_font("Even", "1.00")})
        versions = self.lists(status=3)["versions"]
        self.assertEqual(self.parts(versions, "versions"), {"Quill": [["e.ttf"], ["f.ttf"], ["b.ttf", "c.ttf"], ["a.ttf"]]})

    def test_near_names_differ_in_punctuation_alone(self):
        names = {"a": "Quill-Bold", "b": "QuillBold", "c": "Quill-bold", "d": "Quill-Bold-Old", "e": "--", "f": "_"}
        self.write_all({f"{file}.ttf": mac_font(name) for file, name in names.items()})
        near = self.lists("--near", self.folder)["near"]
        self.assertEqual(self.parts(near, "names"), {"Quill-Bold": [["a.ttf"], ["d.ttf"], ["b.ttf"]]})

    def test_faces_without_a_name_are_counted_and_can_be_copies(self):
        self.write_all({"a.ttf": mac_font(""), "b.ttf": mac_font(""), "c.ttf": mac_font("", data=b"else")})
        lists = self.lists()
        self.assertEqual((self.copies(lists), lists["summary"]["nameless"]), ([["a.ttf", "b.ttf"]], 3))

    def test_the_table_is_grouped_with_paths_last(self):
        old, other = mac_font("Quill", "2.9"), mac_font("Quill", "2.9", data=b"else" * 300)
        self.write_all({"a.ttf": old, "c.ttf": old, "d.ttf": other, "e.otf": open_type(old)})
        self.write_all({"new/b.ttf": mac_font("Quill", "2.10", **AXES)})
        result = run("same", ".", cwd=self.folder)
        parts = self.lists(status=3)["conflicts"][0]["data"]
        a, d = (part[0]["checksum"] for part in parts)
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
  TrueType       168 B   ./c.ttf
  TrueType       1.4 kB  ./d.ttf
  OpenType - PS  168 B   ./e.otf

Versions: 1 (one font in several versions, newest first)
  VERSION  KIND                SIZE    FILE
Quill  (Adobe)
  2.10     TrueType, variable  188 B   ./new/b.ttf
  2.9      TrueType            168 B   ./a.ttf
  2.9      TrueType            168 B   ./c.ttf
  2.9      TrueType            1.4 kB  ./d.ttf
  2.9      OpenType - PS       168 B   ./e.otf

Copies: 1 (the same data in several files, 168 B besides the first of each)
  SIZE   FILE
Quill  (2.9, TrueType)
  168 B  ./a.ttf
  168 B  ./c.ttf

conflicts 1, formats 1, versions 1, copies 1
"""
        self.assertEqual(result.stdout.decode(), expected)
        self.assertEqual(result.stderr, b"5 faces in 5 files\n")

    def test_tsv_is_a_line_a_face(self):
        font, other = mac_font("Quill"), mac_font("Quill", data=b"longer", **AXES)
        self.write_all({"a\tb.ttf": font, "c.ttf": font, "d.ttf": other})
        header, *lines = run("same", "--format", "tsv", self.folder).stdout.decode().splitlines()
        rows = [dict(zip(header.split("\t"), line.split("\t"), strict=True)) for line in lines]
        common = {"postScriptName": "Quill", "kind": "TrueType", "version": "1.0", "foundry": "Adobe"}
        expected = []
        for place, name, content in [
            (("copies", "1", "1", "file", ""), r"a\tb.ttf", font),
            (("copies", "1", "1", "file", ""), "c.ttf", font),
            (("conflicts", "1", "1", "", "0"), r"a\tb.ttf", font),
            (("conflicts", "1", "1", "", "0"), "c.ttf", font),
            (("conflicts", "1", "2", "", "0"), "d.ttf", other),
        ]:
            row = {**dict(zip(("list", "group", "part", "copied", "face"), place)), **common}
            row |= {"path": f"{self.folder}/{name}", "checksum": f"{zlib.crc32(content):08X}"}
            expected.append(row | {"fileSize": str(len(content)), "variable": "true" if content is other else "false"})
        self.assertEqual(rows, expected)

    def test_a_named_path_without_a_face_is_1_even_with_conflicts(self):
        self.write_all({"a.ttf": mac_font("Quill"), "b.ttf": mac_font("Quill", data=b"else"), "text": b"no font"})
        missing = self.folder / "missing"
        result = run("same", self.folder, missing)
        self.assertEqual(result.returncode, 1)
        self.assertIn(f"{missing}: no such file\n".encode(), result.stderr)
        self.assertIn(b"conflicts 1", result.stdout)
        self.assertEqual(run("same", self.folder / "text").returncode, 1)
        for arguments in ([], ["--format", "xml", self.folder]):
            self.assertEqual(run("same", *arguments).returncode, 2)


if __name__ == "__main__":
    tool_case.main()
