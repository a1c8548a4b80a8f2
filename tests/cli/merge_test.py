"""Catalogues of several machines in one."""

import contextlib
import os
import pathlib
import shutil
import sqlite3

from font_builders import mac_font
from tool_case import TOOL, ToolCase, made_font

TABLES = pathlib.Path(TOOL).parent.parent / "share/quillmark/Resources"


class MergeTest(ToolCase):
    def setUp(self):
        super().setUp()
        self.write_all({"a/One.ttf": made_font("One"), "b/one copy.ttf": made_font("One"), "b/Two.ttf": mac_font("Two"), "b/no.ttf": b"no"})
        self.check("catalogue update -q all.db a", 0)
        self.check("catalogue update -q other.db b", 0)

    def listed(self, catalogue="all.db"):
        return self.run_tool(["catalogue", "list", "--format", "jsonl", catalogue]).stdout

    def changes(self, since):
        changes = self.json_of(f"catalogue changes --format json --since {since} all.db")
        return [(each["change"], each["path"].rpartition("/")[2]) for each in changes if each["path"].startswith("nas:")]

    def edit(self, catalogue, statement):
        with contextlib.closing(sqlite3.connect(self.folder / catalogue)) as database, database:
            database.execute(statement)

    def test_files_keep_their_label(self):
        own = self.listed()
        self.check("catalogue merge all.db nas=other.db", 0)
        self.assertEqual(self.listed(), own + self.listed("other.db").replace(b'"path":"', b'"path":"nas:'))
        listed = self.listed()
        self.check("catalogue update -q all.db", 0)
        self.check("catalogue verify -q all.db", 0)
        self.assertEqual(self.listed(), listed)
        [found] = self.json_of("find --catalogue all.db --format json One")
        self.assertEqual((found["verdict"], found["faces"][1]["path"]), ("copies", f"nas:{self.folder}/b/one copy.ttf"))
        self.check("catalogue merge new.db x=all.db", 0, err="all.db: what it holds of other machines is not taken in: nas\n")
        self.assertEqual(self.listed("new.db"), own.replace(b'"path":"', b'"path":"x:'))
        self.check("catalogue update new.db", 1, err="...the catalogue has no roots; ...")
        self.assertEqual(len(self.json_of("catalogue info --format json new.db")["runs"]), 1)

    def test_merged_again_only_what_changed_is_told(self):
        self.check("catalogue merge all.db nas=other.db", 0)
        self.assertEqual(self.changes(1), [("added", "Two.ttf"), ("added", "no.ttf"), ("added", "one copy.ttf")])
        self.write_all({"b/Two.ttf": mac_font("Two", "2.0"), "b/Three.ttf": mac_font("Three")})
        (self.folder / "b/no.ttf").unlink()
        self.check("catalogue update -q other.db", 0)
        self.check("catalogue merge all.db nas=other.db", 0)
        told = [("added", "Three.ttf"), ("changed", "Two.ttf"), ("gone", "no.ttf")]
        self.assertEqual(self.changes(2), told)
        run = self.json_of("catalogue info --format json all.db")["runs"][0]
        self.assertEqual((run["added"], run["changed"], run["gone"]), (1, 1, 1))
        self.check("catalogue merge all.db nas=other.db", 0)
        self.assertEqual((self.changes(2), self.changes(3)), (told, []))

    def test_parts_that_cannot_be_taken_leave_all_as_it_was(self):
        listed = self.listed()
        os.link(self.folder / "all.db", self.folder / "hard.db")
        (self.folder / "soft.db").symlink_to("all.db")
        data = (self.folder / "other.db").read_bytes()
        self.write("broken.db", data[:-4096])
        for part, fault in [("all", "a catalogue cannot be merged into itself"), ("hard", "a catalogue cannot ..."), ("soft", "a catalogue cannot ..."),
                            ("none", "no such catalogue; ..."), ("broken", "a damaged catalogue; make it anew")]:  # fmt: skip
            self.check(f"catalogue merge all.db x=other.db y={part}.db", 1, err=f"quillmark: ...{part}.db: {fault}\n")
            if part in ("none", "broken"):
                self.check(f"catalogue merge new.db x=other.db y={part}.db", 1, err="...")
        self.assertEqual((self.listed(), list(self.folder.glob("new.db*"))), (listed, []))

    def test_what_tables_tell_is_told_by_those_in_use(self):
        other = self.folder / "bundle/Resources"
        shutil.copytree(TABLES, other)
        table = other / "FoundryNameTable.plist"
        table.write_text(table.read_text().replace("<string>Adobe", "<string>Odd"))
        expected = self.listed("other.db")
        self.check("catalogue update -q other.db", 0, env={**os.environ, "QUILLMARK_BUNDLE": str(other.parent)})
        self.assertNotEqual(self.listed("other.db"), expected)
        self.check("catalogue merge new.db nas=other.db", 0)
        self.assertEqual(self.listed("new.db"), expected.replace(b'"path":"', b'"path":"nas:'))

    def test_one_number_of_a_file_on_two_disks_makes_no_link(self):
        self.write("b/again.ttf", made_font("One"))
        os.link(self.folder / "b/again.ttf", self.folder / "b/link.ttf")
        self.check("catalogue update -q other.db", 0)
        self.edit("other.db", "UPDATE files SET inode = 7")
        self.check("catalogue merge new.db nas=other.db sas=other.db", 0)
        same = self.json_of("same --format json --catalogue new.db", 0)
        self.assertEqual(([len(copy["paths"]) for copy in same["copies"]], same["summary"]["links"]), ([2, 4], 2))
