"""The file of a catalogue: what reads it, writes it and locks it, and the files of others beside it."""

import contextlib
import os
import pathlib
import select
import shutil
import sqlite3
import struct
import subprocess

from font_builders import apple_double, directory, name_table
from losses_test import scarce
from tool_case import TOOL, ToolCase, made_font

LONE_PRINTER_FONT = b"%!PS-AdobeFont-1.0: QuillA\n/FontName /QuillA def\n"


class CatalogueFileTest(ToolCase):
    def write_slow_font(self, name):
        """A font whose last table is 1 GB of nothing."""
        font = bytearray(directory({"name": name_table((6, "Slow")), "zero": bytes(4)}))
        struct.pack_into(">L", font, 12 + 16 + 12, 0x3FFF0000)
        path = self.write(name, font)
        os.truncate(path, 0x3FFF0000 + len(font))
        return path

    def test_no_reading_takes_its_locks(self):
        self.write_all({"in/A": LONE_PRINTER_FONT, "in/b.ttf": made_font("B")})
        self.run_tool("catalogue update in/c.db in")  # so that the database is there and in its own root
        os.symlink("in/c.db", self.folder / "in.link")
        os.symlink("c.db", self.folder / "in/link.ttf")
        slow = self.write_slow_font("in/z/slow.ttf")
        inode = (self.folder / "in/c.db").stat().st_ino
        held = []
        with subprocess.Popen([TOOL, "catalogue", "update", "-q", "-j1", "in/c.db"], cwd=self.folder) as process:
            while process.poll() is None and not held:
                with contextlib.suppress(OSError):  # of files that are closed meanwhile
                    if str(slow) in {os.readlink(each) for each in pathlib.Path(f"/proc/{process.pid}/fd").iterdir()}:
                        held = [line.split()[4:6] for line in pathlib.Path("/proc/locks").read_text().splitlines()]
            process.kill()
        self.assertIn([str(process.pid), str(inode)], [[process_id, place.split(":")[2]] for process_id, place in held])
        self.check("catalogue update in/c.db", 0, err="2 faces in 3 files; ...")

    def test_hard_links_to_it_are_refused(self):
        self.write("in/a.ttf", made_font("A"))
        self.check("catalogue update -q c.db in", 0)
        os.link(self.folder / "c.db", self.folder / "hard.db")
        for name in ["c.db", "hard.db"]:
            self.check(f"catalogue update {name}", 1, err=f"quillmark: {self.folder}/{name}: the catalogue has several hard links, ...\n")
            self.check(f"catalogue list --format tsv --fields face {name}", 0, "face\n0\n")

    def test_slow_readers_keep_no_update_back(self):
        self.links(800, made_font("One"))
        self.check("catalogue update -q c.db many", 0)
        commands = ["catalogue list --format jsonl c.db", "catalogue changes --format json --since 0 c.db", "find --catalogue c.db --format jsonl One"]
        expected = [self.run_tool(words).stdout for words in commands]
        self.assertTrue(all(len(each) > 1 << 16 for each in expected))  # more than a pipe takes
        readers = [subprocess.Popen([TOOL, *words.split()], cwd=self.folder, stdout=subprocess.PIPE) for words in commands]
        for reader in readers:
            select.select([reader.stdout], [], [])
        self.write("many/two.ttf", made_font("Two"))
        self.check("catalogue update c.db", 0, err="801 faces in 801 files; 1 file added, ...")
        self.assertEqual([reader.communicate()[0] for reader in readers], expected)

    def test_strangers_beside_it_stay(self):
        self.run_tool("catalogue update old.db old")
        self.run_tool("catalogue update old.db .")
        copy = (self.folder / "old.db").read_bytes()
        other = copy[:68] + b"else" + copy[72:]
        names = ["c.db.new-notes", "c.db.newer", *(f"c.db.new-{end}" for end in ("7", "2024", "30", "30-journal"))]
        for name, data in zip(names, [b"text", b"text", b"text", copy, other, b"journal"]):
            self.write("in/" + name, data)
        self.write_all({"in/c.db.new-1": b"", "in/c.db.new-2": b"SQL", "in/c.db.new-2-journal": b""})
        self.check("catalogue update in/c.db in", 0, err="0 faces in 3 files; ...")
        self.assertEqual(sorted(os.listdir(self.folder / "in")), sorted([*names, "c.db", "c.db.lock"]))

    def test_other_databases_are_not_touched(self):
        with contextlib.closing(sqlite3.connect(self.folder / "log.db")) as database:
            database.executescript("PRAGMA journal_mode = WAL; CREATE TABLE t (x); INSERT INTO t VALUES (1)")
            for name in ["log.db", "log.db-wal"]:
                shutil.copy(self.folder / name, self.folder / ("left-" + name))
        before = {path.name: path.read_bytes() for path in self.folder.glob("left-*")}
        os.mkfifo(self.folder / "fifo.db")
        for command in ["update", "list", "merge"]:
            for name in ["left-log.db", "fifo.db"]:
                more = {"update": ["in"], "merge": ["a=log.db"]}.get(command, [])
                self.check(["catalogue", command, name, *more], 1, err="quillmark: ...: not a catalogue\n")
        self.assertEqual({path.name: path.read_bytes() for path in self.folder.glob("left-*")}, before)

    def test_a_catalogue_that_was_left_on_read_only_media_is_listed(self):
        self.write("in/a.ttf", made_font("A"))
        (self.folder / "media").mkdir()
        self.run_tool("catalogue update media/c.db in")
        with contextlib.closing(sqlite3.connect(self.folder / "media/c.db")) as database:
            database.execute("PRAGMA journal_mode = WAL")
        (self.folder / "media").chmod(0o555)
        self.check("catalogue list --format tsv --fields face media/c.db", 0, "face\n0\n", env=scarce(NO_PRIVILEGES="1"))

        self.write("media/c.db-journal", b"written half")
        self.check("catalogue list media/c.db", 1, err="quillmark: ...\n", env=scarce(NO_PRIVILEGES="1"))

    def test_the_clock_of_a_server_counts(self):
        self.write("in/a.ttf", made_font("A"))
        # By the machine's clock the file is old; by that of the disk it was written just before.
        for disk, read in [({}, 1), ({}, 0), ({"FOREIGN_DISK": "1"}, 0)]:
            self.check("catalogue update c.db in", 0, err=f"... {read} read\n", env=scarce(CLOCK_AHEAD="9", **disk))
        (self.folder / "in/a.ttf").touch()
        for _ in range(2):
            self.check("catalogue update c.db in", 0, err="... 1 read\n", env=scarce(CLOCK_AHEAD="9", FOREIGN_DISK="1"))

    def test_verify_looks_at_every_row_of_a_file(self):
        font = self.write("in/sub/a.ttf", made_font("Made-A"))
        options = {"env": scarce(CLOCK_AHEAD="9")}
        self.run_tool("catalogue update c.db in in/sub", **options)
        before = font.stat()
        font.write_bytes(made_font("Made-B"))
        os.utime(font, ns=(before.st_atime_ns, before.st_mtime_ns))
        self.check("catalogue verify c.db", 3, f"{font}\n{font}\n", "2 files read again, 2 with another result\n")
        self.check("catalogue update --ignore-ctime c.db", 0, err="... 2 changed, 0 gone, 2 read\n", **options)

    def test_verify_takes_sidecars_as_walks_do(self):
        fork = apple_double(b"no fork")
        self.write_all({"._root": fork, "a/.AppleDouble/F": fork, "b/._G": fork, "b/.AppleDouble/H": fork, "b/.AppleDouble/x": made_font("X")})
        self.run_tool(["catalogue", "update", "c.db", "._root", "a/.AppleDouble", "b"])
        self.check("catalogue verify c.db", 0, err="5 files read again, 0 with another result\n")
