"""quillmark same: copies, conflicts, versions and near names over made fonts.

Usage: same_test.py TOOL [unittest arguments]
"""

import json
import os
import zlib

import tool_case
from font_builders import apple_double, collection, fond, mac_font, resource_fork, with_checksum
from tool_case import ToolCase, run



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
        self.assertEqual(lists["summary"], {"files": 3, "faces": 3, "nameless": 0, "links": 3})
        self.assertNotIn("near", lists)

    def test_the_carrier_of_a_resource_fork_does_not_matter(self):
        font = mac_font("Quill")
        fork = resource_fork(("FOND", 128, fond(128, (0, 0, 200))), ("sfnt", 200, font))
        # Equal empty data forks are linked to each other by tools that save space.
        self.write_all({"loose.ttf": font, "family.dfont": fork, "Suitcase": b"", "._Suitcase": apple_double(fork)})
        os.link(self.folder / "Suitcase", self.folder / "Twin")
        self.write_all({"._Twin": apple_double(fork)})
        self.assertEqual(self.copies(self.lists()), [["Suitcase", "Twin", "family.dfont", "loose.ttf"]])

    def test_links_with_other_resource_forks_beside_them_are_files(self):
        self.write_all({"One": b"note"})
        os.link(self.folder / "One", self.folder / "Two")
        for name in ("One", "Two"):
            fork = resource_fork(("FOND", 128, fond(128, (0, 0, 200))), ("sfnt", 200, mac_font(name)))
            self.write_all({f"._{name}": apple_double(fork)})
        self.assertEqual(self.lists()["summary"], {"files": 2, "faces": 2, "nameless": 0, "links": 0})

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
        dfont = resource_fork(("FOND", 128, fond(128, (0, 0, 200))), ("sfnt", 200, mac_font("Quill", data=b"resource")))
        self.write_all({"a.ttf": quill, "b.ttf": mac_font("Quill", data=b"else"), "c.ttf": quill, "d.dfont": dfont})
        self.write_all({"e.ttf": mac_font("quill"), "f.ttf": mac_font("Able"), "g.ttf": mac_font("Able", data=b"else")})
        lists = self.lists(status=3)
        self.assertEqual(
            list(self.parts(lists["conflicts"], "data").items()),
            [("Able", [["f.ttf"], ["g.ttf"]]), ("Quill", [["a.ttf", "c.ttf"], ["b.ttf"], ["d.dfont"]])],
        )
        reverse = sorted(self.folder.iterdir(), reverse=True)
        self.assertEqual(self.lists("-j", 4, *reverse, status=3), lists)

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
        self.write_all({"a.ttf": mac_font("Quill", "2.9"), "b.ttf": mac_font("Quill", "2.10"), "c.ttf": mac_font("Quill", "2.9")})
        result = run("same", ".", cwd=self.folder)
        sums = {face["path"]: face["checksum"] for part in self.lists(status=3)["conflicts"][0]["data"] for face in part}
        a, b = (sums[str(self.folder / name)] for name in ("a.ttf", "b.ttf"))
        expected = f"""Copies: the same data in several files
POSTSCRIPT NAME  CHECKSUM  COPIED  FACE  FILE
Quill            {a}  file          ./a.ttf
Quill            {a}  file          ./c.ttf

Conflicts: one PostScript name, different data
POSTSCRIPT NAME  CHECKSUM  KIND      VERSION  FOUNDRY  FACE  FILE
Quill            {a}  TrueType  2.9      Adobe    0     ./a.ttf
Quill            {a}  TrueType  2.9      Adobe    0     ./c.ttf
Quill            {b}  TrueType  2.10     Adobe    0     ./b.ttf

Versions: one PostScript name and foundry, newest first
POSTSCRIPT NAME  CHECKSUM  KIND      VERSION  FOUNDRY  FACE  FILE
Quill            {b}  TrueType  2.10     Adobe    0     ./b.ttf
Quill            {a}  TrueType  2.9      Adobe    0     ./a.ttf
Quill            {a}  TrueType  2.9      Adobe    0     ./c.ttf

copies 1, conflicts 1, versions 1
"""
        self.assertEqual(result.stdout.decode(), expected)
        self.assertEqual(result.stderr, b"3 faces in 3 files\n")

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
