"""The catalogue: it always equals a fresh one, whatever happens to files, updates and disks."""

import contextlib
import fcntl
import itertools
import json
import os
import pathlib
import random
import shutil
import signal
import sqlite3

from font_builders import apple_double, collection, fond, mac_font, resource_fork
from losses_test import scarce
from tool_case import TOOL, ToolCase, made_font

NAMES = ["a.ttf", "b.otf", "c.ttc", "Fam", "Fam2.dfont", "Quill", "text.txt", "._Fam", "._a.ttf", "lone.pfb", "z.pfb", "ü\n\xff"]
FOLDERS = ["", "in", "in-b", "in/deep", "in/.AppleDouble", "in/resource.frk", "__MACOSX/in", ".AppleDouble", "in/__MACOSX"]
FAMILY = resource_fork(("FOND", 9, fond(9, (12, 0, 200), name=b"Quill")), ("NFNT", 200, b"bits"))
SUITCASE = resource_fork(("FOND", 9, fond(9, (0, 0, 7))), ("sfnt", 7, made_font("Held")))
TABLES = pathlib.Path(TOOL).parent.parent / "share/quillmark/Resources"


def some_bytes(chance, name):
    """Bytes for a file of that name, of two fonts of the same size among others."""
    letter = chance.choice("AB")
    fork = chance.choice([FAMILY, SUITCASE, SUITCASE[:-1]])
    if name.endswith(".ttc"):
        return collection("A" + letter, "B" + letter)[: chance.choice([-2, None])]
    if name.startswith("._"):
        return apple_double(fork)
    if name == "Fam2.dfont":
        return fork
    outlines = f"%!PS-AdobeFont-1.0: {letter}\n/FontName /Quill{letter} def\n".encode()
    return chance.choice([made_font("Made-" + letter), mac_font("Made-" + letter), outlines, b"", apple_double(fork)])


def folders_of(root):
    return [root, *(each for each in root.rglob("*") if each.is_dir() and not each.is_symlink())]


def edit(chance, root):
    """One change below the root, of the kinds that happen to libraries of fonts."""
    name = chance.choice(NAMES)
    path = root / chance.choice(FOLDERS) / name
    there = sorted(each for each in root.rglob("*") if not each.is_dir() or each.is_symlink())
    victim = chance.choice(there) if there else path
    kind = chance.randrange(13)
    try:
        if kind < 5:
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes(some_bytes(chance, name))
        elif kind == 5:  # the same size, in place, and the old time put back
            data, before = victim.read_bytes(), victim.stat()
            victim.write_bytes(data.replace(b"Made-A", b"Made-C") if b"Made-A" in data else data[::-1])
            os.utime(victim, ns=(before.st_atime_ns, before.st_mtime_ns))
        elif kind == 6:
            victim.unlink()
        elif kind == 7:
            victim.rename(path)
        elif kind == 8:
            chance.choice(folders_of(root)).rename(root / chance.choice(["moved", "in", "__MACOSX", "in-b"]))
        elif kind == 9:
            victim.unlink(missing_ok=True)
            victim.symlink_to(chance.choice(["a.ttf", "none", "../b.otf", "."]))
        elif kind == 10:
            victim.is_dir() or victim.chmod(chance.choice([0, 0o644]))
        elif kind == 11:
            attribute = chance.choice(["user.com.apple.ResourceFork", "user.org.netatalk.ResourceFork"])
            os.setxattr(victim, attribute, chance.choice([SUITCASE, FAMILY]))
        else:
            os.truncate(victim, chance.randrange(victim.stat().st_size + 1))
    except OSError:
        pass  # what there is does not allow it


def states_between(old, new):
    """What may be listed while an update goes from one list to another: file by file, at last without what is gone."""
    listed = [{}, {}]
    for faces, text in zip(listed, [old, new]):
        for line in text.splitlines(keepends=True):
            path = json.loads(line)["path"]
            faces[path] = faces.get(path, b"") + line
    old, new = listed
    paths = sorted({*old, *new})
    done = [[*(new.get(path, old.get(path)) for path in paths[:i]), *(old.get(path, b"") for path in paths[i:])] for i in range(len(paths) + 1)]
    return [*map(b"".join, done), b"".join(new[path] for path in paths if path in new)]


class CatalogueTest(ToolCase):
    def update(self, *words, catalogue="c.db", **options):
        return self.run_tool(["catalogue", "update", catalogue, *words], **options)

    def state(self, catalogue="c.db", **options):
        """All faces, and what is told of every file."""
        faces = self.run_tool(["catalogue", "list", "--format", "jsonl", catalogue], **options)
        changes = self.run_tool(["catalogue", "changes", "--since", "0", "--format", "json", catalogue], **options)
        self.assertNotIn(b"quillmark:", faces.stderr + changes.stderr)
        files = [(each["path"], each["faces"], each["reason"]) for each in json.loads(changes.stdout) if each["change"] != "gone"]
        return faces.stdout, files

    def fresh(self, root, **options):
        (self.folder / "fresh.db").unlink(missing_ok=True)
        done = self.update(root, catalogue="fresh.db", **options)
        return done, self.state("fresh.db")

    def whole(self, catalogue="c.db"):
        """Checks the file by SQLite's own means. Gives the faces and the files without any."""
        with contextlib.closing(sqlite3.connect(self.folder / catalogue)) as database:
            self.assertEqual(database.execute("PRAGMA integrity_check").fetchall(), [("ok",)])
            self.assertEqual(database.execute("PRAGMA foreign_key_check").fetchall(), [])
            self.assertEqual(database.execute("PRAGMA application_id").fetchone(), (0x516D4361,))
            return [sorted(database.execute("SELECT * FROM " + view)) for view in ["fonts", "files_without_faces"]]

    def test_after_any_edits_it_equals_a_fresh_one(self):
        root = self.folder / "fonts"
        # The clock ahead makes every stamp count at once; with coarse ones most files must be read again.
        for seed, limits in enumerate([{}, {"CLOCK_AHEAD": "9"}, {"COARSE_STAMPS": "1"}, {"CLOCK_AHEAD": "9"}]):
            chance = random.Random(seed)
            limits = {"NO_PRIVILEGES": "1", **limits}
            shutil.rmtree(root, ignore_errors=True)
            root.mkdir()
            options = {"env": scarce(**limits)}
            for step in range(14):
                for _ in range(40 if step == 0 else chance.randrange(1, 5)):
                    edit(chance, root)
                if chance.random() < 0.5:  # files shrink while they are read, or fail to be, and a folder cannot be listed
                    folder = chance.choice(folders_of(root))
                    folder.chmod(0)
                    self.update(root, env=scarce(**limits, SHRINKING=chance.choice("fbmcl"), SCARCE_READ=chance.choice(["200", "99999"])))
                    folder.chmod(0o755)
                updated = self.update(root, **options)
                fresh, expected = self.fresh(root, **options)
                self.assertEqual(updated.returncode, fresh.returncode, updated.stderr)
                self.assertEqual(self.state(), expected, (limits, step))
                listed = self.run_tool(["identify", "-q", "--format", "jsonl", root], **options)
                self.assertEqual(listed.stdout, expected[0])
            self.whole()
            if "CLOCK_AHEAD" in limits and updated.returncode == 0:
                self.assertIn(b" 0 changed, 0 gone, 0 read\n", self.update(root, **options).stderr)

    def test_large_folders_equal_fresh_ones(self):
        options = {"env": scarce(CLOCK_AHEAD="9")}
        printer_fonts = [f"in/{place}{i}" for place in ("A", "1500", "z") for i in range(3)]
        for name in [*printer_fonts, *(f"in/{i:04}" for i in range(0, 4000, 2))]:
            self.write(name, b"%!PS-AdobeFont-1.0: Quill\n")
        chance = random.Random(1)
        for numbers in [[], [], [3999], [1], [0], range(4000), range(900, 3100)]:
            for number in numbers:  # those that are there go
                path = self.folder / f"in/{number:04}"
                path.unlink() if path.exists() else chance.random() < 0.5 and path.write_bytes(b"")
            self.update("in", **options)
            self.assertEqual(self.state(), self.fresh("in", **options)[1], numbers)
        self.assertIn(b" 0 gone, 0 read\n", self.update("in", **options).stderr)
        self.write("in/3000", (b"", FAMILY))  # what the printer fonts ask for
        self.assertIn(b" 0 gone, 10 read\n", self.update("in", **options).stderr)
        self.assertEqual(self.state(), self.fresh("in", **options)[1])

    def test_every_form_equals_that_of_identify(self):
        self.write_all({"in/a.ttc": collection("A", "B"), "in/b.ttf": made_font("Made"), "in/F.dfont": SUITCASE, "in.x/c.ttf": b""})
        self.write("top.ttf", made_font("Top"))
        roots = ["in.x", "in", "top.ttf", "/usr/share/fonts/truetype"]
        self.check(["catalogue", "update", "c.db", *roots], 0, err="...")
        roots = [self.folder / root for root in roots]
        for form in ["jsonl", "json", "tsv", "xml", "plist", "table"]:
            identified = self.run_tool(["identify", "-q", "--format", form, *roots])
            self.check(["catalog", "list", "c.db", "--format", form], 0, identified.stdout.decode())
        self.check("catalogue list c.db --format tsv --fields face,family", 0, self.run_tool(["identify", "-q", "--format", "tsv", "--fields", "face,family", *roots]).stdout.decode())  # fmt: skip

    def test_what_changed_is_told(self):
        first, second, _ = self.write_all({"in/a.ttf": made_font("A"), "in/b.ttf": b"no", "in/c.txt": b"text"})
        self.check("catalogue update c.db in", 0, err="1 face in 3 files; 3 files added, 0 changed, 0 gone, 3 read\n")
        second.write_bytes(made_font("B"))
        first.unlink()
        self.write("in/d.ttf", b"new")
        self.check("catalogue update c.db", 0, err="1 face in 3 files; 1 file added, 1 changed, 1 gone, ... read\n")
        reason = "a text file despite its extension .ttf, not a font that Quillmark reads"
        told = f"gone     {first}\nchanged  {second}\nadded    {self.folder}/in/d.ttf: {reason}\n"
        self.check("catalogue changes c.db", 0, told)
        self.assertEqual(len(self.json_of("catalogue changes c.db --since 0 --format json")), 4)
        self.check("catalogue changes c.db --since 2", 0, "")
        info = self.json_of("catalogue info c.db --format json")
        self.assertEqual((info["files"], info["faces"], info["runs"][0]["gone"]), (3, 1, 1))
        self.check("catalogue info c.db", 0, f"root {self.folder}/in, files: 3\nfaces: 1\n...run 1, ...: 3 added, ...\n")

    def test_verify_finds_what_no_stamp_shows(self):
        font = self.write("in/a.ttf", made_font("Made-A"))
        self.update("in", env=scarce(CLOCK_AHEAD="9"))
        before = font.stat()
        font.write_bytes(made_font("Made-B"))
        os.utime(font, ns=(before.st_atime_ns, before.st_mtime_ns))
        ahead = scarce(CLOCK_AHEAD="9")
        self.check("catalogue update c.db --ignore-ctime", 0, err="... 0 read\n", env=ahead)
        self.check("catalogue verify c.db --sample 5", 3, f"{font}\n", "1 file read again, 1 with another result\n")
        self.check("catalogue update c.db --ignore-ctime", 0, err="... 1 changed, 0 gone, 1 read\n", env=ahead)
        self.check("catalogue verify -q c.db", 0)

    def test_a_root_that_is_not_there_marks_nothing_as_gone(self):
        self.write("in/a.ttf", made_font("A"))
        self.update("in")
        known = self.state()
        (self.folder / "in").rename(self.folder / "away")
        self.check("catalogue update c.db", 1, err=f"{self.folder}/in: it cannot be walked: ...\n1 face ... 0 gone, 0 read\n")
        (self.folder / "in").mkdir()
        self.check("catalogue update c.db", 1, err=f"{self.folder}/in: it is empty, and another folder than before, ... 0 gone, ...")
        self.check("catalogue update c.db awry", 1, err="quillmark: awry: it cannot be walked: ...\n")
        self.assertEqual(self.state(), known)
        self.check("catalogue update -q c.db away", 0)
        self.check("catalogue list --format tsv --fields path c.db", 0, f"path\n{self.folder}/away/a.ttf\n")

    def test_files_of_what_is_not_mounted_are_kept(self):
        for mounted in ["disk/in/usb", "disk/in", "disk"]:
            (self.folder / "c.db").unlink(missing_ok=True)
            self.write_all({"disk/in/a.ttf": made_font("A"), "disk/in/usb/deep/b.ttf": made_font("B")})
            self.check("catalogue update -q c.db disk/in", 0, env=scarce(MOUNTED=f"{self.folder}/{mounted}"))
            shutil.rmtree(self.folder / mounted)
            stray = self.write(mounted + ("/in" if mounted == "disk" else "") + "/stray.ttf", made_font("Stray"))
            kept = f"{self.folder}/{mounted}: nothing is mounted there any more; ...\n3 faces in 3 files; ...0 gone, ...\n"
            self.check("catalogue update c.db", 1, err=kept)
            stray.unlink()
            if mounted == "disk/in/usb":  # what makes mount points removes them, too
                stray.parent.rmdir()
            self.check("catalogue update c.db", 1, err=kept)
            gone = 2 if mounted == "disk/in/usb" else 3
            self.check("catalogue update c.db --accept-unmounted", 0, err=f"...{gone} gone, ...")
            self.check("catalogue update -q c.db", 0)

    def test_a_folder_that_lists_its_entries_twice(self):
        self.write_all({f"in/{i}/{i}.ttf": made_font(f"A{i}") for i in range(30)})
        self.check("catalogue update c.db in -j 4", 0, err="30 faces in 30 files; ...", env=scarce(LISTS_TWICE="1"))

    def test_a_root_that_gives_no_face_is_told_each_time(self):
        self.write_all({"in/a.ttf": made_font("A"), "no.ttf": b"no", "half.ttc": collection("A", "B")[:-400]})
        told = self.run_tool(["identify", "-q", *(self.folder / each for each in ("in", "no.ttf", "half.ttc"))]).stderr.decode()
        self.assertEqual(told.count("\n"), 2)
        for words in ["c.db in no.ttf half.ttc", "c.db"]:
            self.check("catalogue update -q " + words, 1, err=told, env=scarce(CLOCK_AHEAD="9"))
        line = "c.db: the catalogue is not complete: 2 roots not giving all faces\n"
        for words in ["catalogue list c.db", "same -q --catalogue c.db", "find --catalogue c.db A"]:
            self.check(words, 1, "...", line)

    def test_it_does_not_grow_by_its_updates(self):
        fonts = self.write_all({f"in/{each}.ttf": made_font(each) for each in "AB"})
        self.update("in")
        with contextlib.closing(sqlite3.connect(self.folder / "c.db")) as database, database:
            database.executemany("INSERT INTO runs (id, started, ended) VALUES (?, 1, 1)", ((run,) for run in range(2, 1500)))
            database.executemany("INSERT INTO gone VALUES (?, 'in', 'x')", ((5 if i < 9 else 7,) for i in range(100_010)))
            database.executemany("INSERT INTO makers (text) VALUES (?)", ((str(i),) for i in range(1000)))
        fonts[0].unlink()
        self.update()
        with contextlib.closing(sqlite3.connect(self.folder / "c.db")) as database:
            rows = [database.execute(f"SELECT count(*), min({column}) FROM {table}").fetchone()
                    for table, column in [("gone", "run"), ("runs", "id"), ("makers", "id")]]  # fmt: skip
        self.assertEqual(rows, [(100_002, 7), (1001, 7), (1, 1)])
        self.check("catalogue changes c.db --since 5", 1, "...", "c.db: files that are gone are told since run 6 only\n")
        for since in (0, 6):
            self.check(f"catalogue changes c.db --since {since}", 0, "...")

    def test_other_tables_change_what_is_told_by_them_without_reading(self):
        self.write("in/a.ttf", made_font("Made-Bold"))
        self.write("in/b.ttf", mac_font("Quill-Bold", family="Helvetica"))
        self.write("in/Fam", (b"", FAMILY))
        self.write("in/Quill", b"%!PS-AdobeFont-1.0: Quill\n/Notice (Adobe) def\n")
        self.update("in", env=scarce(CLOCK_AHEAD="9"))
        other = self.folder / "bundle/Resources"
        shutil.copytree(TABLES, other)
        for table, old, new in [("FoundryNameTable", "Adobe", "Odd"), ("KeywordTable", "Bold", "Fat"), ("DefaultClassifications", "Sans", "Bare")]:
            path = other / (table + ".plist")
            path.write_text(path.read_text().replace(f"<string>{old}", f"<string>{new}"))
        environment = {"env": scarce(CLOCK_AHEAD="9", QUILLMARK_BUNDLE=str(other.parent))}
        self.check("catalogue verify c.db", 1, err="quillmark: c.db: it was made with other knowledge tables; ...\n", **environment)
        self.check("catalogue update c.db", 0, err="...0 files added, ..., 2 read\n", **environment)
        told = self.run_tool(["identify", "-q", "--format", "jsonl", self.folder / "in"], **environment).stdout
        self.assertIn(b"Odd", told)
        self.assertEqual(self.state()[0], told)

    def test_broken_off_at_any_write_it_opens_and_is_completed(self):
        root = self.folder / "in"
        options = {"CLOCK_AHEAD": "9", "CLOCK_LEAPS": "3"}  # each file is a commit of its own
        for i in range(9):
            self.write(f"in/{i % 3}/{i:02}.ttf", made_font(f"Made-{i}"))
        self.write("in/1/Quill", b"%!PS-AdobeFont-1.0: Quill\n")  # why it gives no face depends on Fam
        old = self.fresh(root, env=scarce(**options))[1][0]
        kept = (self.folder / "fresh.db").read_bytes()
        self.write_all({"in/0/03.ttf": made_font("Other"), "in/1/Fam": (b"", FAMILY), "in/2/a.ttc": collection("A", "B")})
        for i in range(5):  # so large that the file grows
            self.write(f"in/1/large{i}.ttf", made_font(f"Large{i}", "Large" * 2000))
        for gone in ["0/06.ttf", "2/02.ttf"]:
            (root / gone).unlink()
        new = self.fresh(root, env=scarce(**options))[1][0]
        expected = self.whole("fresh.db")
        points = 0
        for begin, disk, limit in itertools.product([None, kept], [{}, {"FOREIGN_DISK": "1"}], ["KILLED_AT", "FULL_AT"]):
            states = states_between(b"" if begin is None else old, new)
            # At each write of one kind of update, at some of the others.
            is_each = (disk, limit) == ({}, "FULL_AT") and begin is not None
            for point in range(1, 2000) if is_each else range(1 + points % 3, 2000, 29 if begin is None else 13):
                for left in self.folder.glob("c.db*"):
                    left.unlink()
                if begin is not None:
                    (self.folder / "c.db").write_bytes(begin)
                done = self.update("-q", root, env=scarce(**options, **disk, **{limit: str(point)}))
                names = [each.name for each in self.folder.glob("c.db*")]
                if done.returncode == 0 and len(names) == 2:
                    break
                points += 1
                with self.subTest(disk=disk, limit=limit, point=point, names=names):
                    if limit == "FULL_AT":  # when all was written but the log remains, all is well
                        self.assertEqual(done.returncode, done.stderr.count(b"\n"), done.stderr)
                        self.assertNotIn("new", "".join(names))
                    else:
                        self.assertEqual(done.returncode, -signal.SIGKILL)
                    if "c.db" in names and point % 2:  # looking would mend what the next update must mend
                        listed = self.run_tool("catalogue list --format jsonl c.db")
                        self.assertNotIn(b"quillmark:", listed.stderr)
                        self.assertIn(listed.stdout, states)
                        self.whole()
                    completed = self.update(root, env=scarce(**options))
                    self.assertEqual((completed.returncode, self.whole()), (0, expected), completed.stderr)
                    self.assertEqual({each.name for each in self.folder.glob("c.db*")}, {"c.db", "c.db.lock"})
        self.assertGreater(points, 100)

    def test_what_is_no_catalogue_stays_as_it_is(self):
        self.write("in/a.ttf", made_font("A"))
        self.update("in")
        with open(self.folder / "c.db.lock") as lock:
            fcntl.flock(lock, fcntl.LOCK_EX)
            self.check("catalogue update c.db", 1, err="quillmark: ...c.db: another update of the catalogue is at work\n")
            self.check("catalogue list --format tsv --fields face c.db", 0, "face\n0\n")
        shutil.copy(self.folder / "c.db", self.folder / "newer.db")
        for name, statement in [("newer.db", "PRAGMA user_version = 99"), ("other.db", "CREATE TABLE t (x)"), ("empty.db", "")]:
            with contextlib.closing(sqlite3.connect(self.folder / name)) as database:
                database.executescript(statement)
        self.write("text.db", b"text" * 1000)
        self.write("cut.db", (self.folder / "c.db").read_bytes()[:5000])
        rows = [("newer", "a catalogue of a newer version ..."), ("other", "not a catalogue"), ("empty", "not a catalogue"),
                ("text", "not a catalogue"), ("cut", "a damaged catalogue; ..."), ("in", "...")]  # fmt: skip
        for name, words in rows:
            path = self.folder / (name if name == "in" else name + ".db")
            before = path.read_bytes() if path.is_file() else None
            for command in ["update", "list", "info", "changes", "verify"]:
                self.check(["catalogue", command, path], 1, err=f"quillmark: {path}: {words}\n")
            self.assertEqual(path.read_bytes() if path.is_file() else None, before)
        self.check("catalogue list none.db", 1, err="quillmark: none.db: no such catalogue; ...\n")
        self.check("catalogue update no/c.db in", 1, err="quillmark: ...no/c.db.lock: the lock of the catalogue cannot be made: No such ...\n")
