"""Which files the fonts of names are, and what else a catalogue answers without reading fonts."""

import contextlib
import itertools
import json
import sqlite3
import subprocess

from font_builders import collection, fond, mac_font, resource_fork
from tool_case import TOOL, ToolCase, made_font

FILES = {
    "a/Gar.ttf": mac_font("Gar-Regular", family="Gar Mono", full_name="Gar Mono"),
    "a/GarBI.ttf": mac_font("Gar-BoldItalic", family="Gar Mono", full_name="GarBI"),
    "a/One.ttf": made_font("One"),
    "b/one copy.ttf": made_font("One"),
    "b/Two.ttf": mac_font("Two", "1.0"),
    "c/Two.ttf": mac_font("Two", "2.0"),
    "c/Odd.ttc": collection("Odd-A", "Odd-B"),
    "c/Suit.dfont": resource_fork(("FOND", 9, fond(9, (0, 0, 7))), ("sfnt", 7, made_font("Held"))),
    "c/unnamed.ttf": made_font("", "Family"),
    "c/Moving.ttf": mac_font("Moving", fvar=b"axes"),
    "c/Moved.ttf": mac_font("Moving", "1.5", fvar=b"axes"),
    "c/no.ttf": b"no font",
    "a/Zed.ttf": mac_font("ZedCondensed-BoldItalic", family="Zed Condensed", full_name="ZedBI"),
    "a/Blanks.ttf": mac_font("Blanks-Bold", family="Two  Blanks", full_name="Blanks"),
}
# Name, verdict, rule, names of the files.
ANSWERS = [
    ("gar-bolditalic", "exact", "postScriptName", ["GarBI.ttf"]),
    ("One", "copies", "postScriptName", ["One.ttf", "one copy.ttf"]),
    ("TWO", "ambiguous", "postScriptName", ["Two.ttf", "Two.ttf"]),
    ("garbi", "exact", "fullName", ["GarBI.ttf"]),
    ("gar mono  Italic Bold", "exact", "familyAndStyle", ["GarBI.ttf"]),
    ("Gar Mono Regular", "exact", "familyAndStyle", ["Gar.ttf"]),
    ("gar mono italic BOLD", "exact", "familyAndStyle", ["GarBI.ttf"]),
    ("zed condensed italic bold", "exact", "familyAndStyle", ["Zed.ttf"]),
    ("two  blanks bold", "exact", "familyAndStyle", ["Blanks.ttf"]),
    ("Gar Mono Bold", "missing", None, []),
    ("Gar Mono Regular Banana", "missing", None, []),
    ("Odd-B", "exact", "postScriptName", ["Odd.ttc"]),
    ("oddB", "near", "near", ["Odd.ttc"]),
    ("held", "exact", "postScriptName", ["Suit.dfont"]),
    ("--", "missing", None, []),
    ("Gar", "missing", None, []),
]


class FindTest(ToolCase):
    def setUp(self):
        super().setUp()
        self.write_all(FILES)
        self.check("catalogue update -q c.db a b c", 0)

    def test_verdicts_rules_and_statuses(self):
        names = [name for name, *_ in ANSWERS]
        for where in (["--catalogue", "c.db"], ["--in", "a", "--in", "b", "--in", "c"]):
            found = self.json_of(["find", *where, "--format", "json", "--", *names], 4)
            told = [(each["query"], each["verdict"], each["rule"], [f["path"].rpartition("/")[2] for f in each["faces"]]) for each in found]
            self.assertEqual(told, ANSWERS)
        listed = "\ufeffOne\r\n\n held \n".encode()
        for name, status in [("One", 0), ("Two", 3), ("OddB", 4)]:
            self.check(f"find --catalogue c.db --format jsonl --names-from - {name}", status, "...", input=listed)
        self.check("find --catalogue c.db --format jsonl -0 --names-from - Two", 4, "...", input=b"held\0nope")
        self.check("find --catalogue c.db --like --names-from -", 4, "...", input=b"a " * 32000, timeout=10)
        self.check("find --in none --in a One", 1, "...", "...none: it cannot be walked: ...\n")
        self.check("find --catalogue none.db One", 1, err="quillmark: none.db: no such catalogue; ...\n")
        self.check("find --catalogue c.db --names-from none One", 1, "...", "none: the list cannot be read: ...\n")
        table = "NAME  VERDICT  RULE            POSTSCRIPT NAME  VERSION  CHECKSUM  FILE\n"
        self.check("find --catalogue c.db held", 0, table + "held  exact    postScriptName  Held ...\n")

    def test_guesses_are_of_the_class_and_styles(self):
        self.write_all({"d/H.ttf": mac_font("Helvetica-Bold", family="Helvetica"), "d/I.ttf": mac_font("Helvetica-Italic", family="Helvetica")})
        [found] = self.json_of("find --in d --like --format json Arial-Bold", 4)
        self.assertEqual((found["faces"], [face["postScriptName"] for face in found["guesses"]]), ([], ["Helvetica-Bold"]))
        self.check("find --in d --like Arial-Bold", 4, "...\nArial-Bold  guess ...")

    def test_an_update_meanwhile_is_seen(self):
        finder = subprocess.Popen([TOOL, *"find --catalogue c.db --format jsonl --names-from -".split()], cwd=self.folder, stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        with finder:
            verdicts = []
            for _ in range(2):
                finder.stdin.write(b"Gar Mono Bold\n")
                finder.stdin.flush()
                verdicts.append(json.loads(finder.stdout.readline())["verdict"])
                self.write("a/GarB.ttf", mac_font("Gar-Bold", family="Gar Mono", full_name="GarB"))
                self.check("catalogue update -q c.db", 0)
        self.assertEqual(verdicts, ["missing", "exact"])

    def test_same_gives_what_it_gives_over_the_files(self):
        roots = [self.folder / "a", self.folder / "b", self.folder / "c", "/usr/share/fonts"]
        self.check(["catalogue", "update", "-q", "c.db", *roots], 0)
        for form in ["table", "json", "tsv"]:
            words = ["same", "--near", "--format", form]
            live = self.run_tool([*words, *roots])
            kept = self.run_tool([*words, "--catalogue", "c.db"])
            self.assertEqual((kept.returncode, kept.stdout), (live.returncode, live.stdout))
        self.assertEqual(kept.stderr.partition(b"; quillmark why")[0], live.stderr.partition(b"; quillmark why")[0])

    def test_what_a_catalogue_lacks_is_told(self):
        (self.folder / "b").rename(self.folder / "away")
        self.check("catalogue update -q c.db", 1, err="...")
        with contextlib.closing(sqlite3.connect(self.folder / "c.db")) as database, database:
            database.execute("UPDATE files SET outcome = 9 WHERE reason IS NOT NULL")
        line = "c.db: the catalogue is not complete: 1 root not walked whole, 1 file that could not be read\n"
        for words in ["find --catalogue c.db nope Two", "catalogue list c.db", "catalogue info c.db", "same -q --catalogue c.db"]:
            self.check(words, 1, "...", line)

    def test_any_value_in_any_row_is_borne(self):
        values = [None, -1, 1 << 32, (1 << 63) - 1, -1 << 63, 1e300, "", "x" * 5000, b"\xff\0\n", "[" * 5000]
        with contextlib.closing(sqlite3.connect(self.folder / "c.db")) as database:
            tables = database.execute("SELECT name FROM sqlite_schema WHERE type = 'table'").fetchall()
            columns = {table: [row[1] for row in database.execute(f"PRAGMA table_info({table})")] for (table,) in tables}
        commands = ["catalogue list c.db", "catalogue list --format xml c.db", "catalogue info c.db", "catalogue changes --since 0 c.db", "catalogue merge m.db x=c.db",
                    "same -q --near --catalogue c.db", "find --like --catalogue c.db Two Moving Odd-B Arial-Bold gar"]  # fmt: skip
        whole = (self.folder / "c.db").read_bytes()
        # One column of every table at a time; the numbers of faces also by themselves.
        rounds = [{table: names[i] for table, names in columns.items() if i < len(names)} for i in range(len(columns["faces"]))]
        for number, edits in enumerate([*rounds, {"faces": "face"}]):
            self.write("c.db", whole)
            with contextlib.closing(sqlite3.connect(self.folder / "c.db")) as database, database:
                database.execute("PRAGMA writable_schema = ON")
                database.execute("UPDATE sqlite_schema SET sql = replace(sql, ' NOT NULL', '') WHERE type = 'table'")
            with contextlib.closing(sqlite3.connect(self.folder / "c.db")) as database, database:
                for table, column in edits.items():
                    hostile = itertools.cycle(values[1:5] if column == "id" else values[number % 3 :])
                    database.create_function("hostile", 0, lambda: next(hostile))  # noqa: B023
                    database.execute(f"UPDATE OR IGNORE {table} SET {column} = hostile()")
            for command in commands:
                done = self.run_tool(command)
                self.assertIn(done.returncode, [0, 1, 3, 4], (edits, command, done.stderr))
                self.assertLessEqual(done.stderr.count(b"\n"), 1, (edits, command, done.stderr))
