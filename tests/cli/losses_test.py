"""What files that give no face, or fewer than they list, do to a run: lines, counts and the exit status."""

import json
import os
import resource

import tool_case
from font_builders import apple_double, collection, fond, resource_fork, sfnt
from tool_case import ToolCase, run

FONT = sfnt()
FORK = resource_fork(("FOND", 9, fond(9, (0, 0, 7))), ("sfnt", 7, sfnt("Suitcase")))
FAMILY = resource_fork(("FOND", 9, fond(9, (12, 0, 200), name=b"Quill")), ("NFNT", 200, b"bits"))
BITMAPS = resource_fork(("FOND", 9, fond(9, (12, 1, 200))), ("NFNT", 200, b"bits"))
ICON = b"\0\0\1\0\1\0" + bytes(90)
CUT_COLLECTION = collection("A", "B")[:-2]
CUT_REASON = "gives 1 of the 2 faces it lists; face 1: its table name runs to byte "
MORE = "; quillmark why FOLDER says more"

# Each set of files is a folder, and the closing line counts all of them so.
KINDS = {
    "{} damaged" + MORE: {
        "cut.ttf": FONT[:40],
        "cut.ttc": collection("A")[:12],
        "cut.dfont": FORK[:-1],
        "cut fork": (b"", FORK[:-1]),
        "cut": FONT[:40],
        "zip.otf": b"PK\3\4",
        "text.ttf": b"true",
        "empty.ttf": b"",
        "icons.dfont": resource_fork(("ICON", 1, b"icon")),
        "no family": resource_fork(("sfnt", 7, FONT)),
        "bad outline": (b"", FORK.replace(b"name", b"NAME")),
    },
    "{} dangling links" + MORE: {"nowhere.ttf": "none", "nowhere": "none", "loop": "loop"},
    "{} linked folders not entered (--follow)": {"up": "..", "here.ttf": "."},
    "{} Type 1 without a family file" + MORE: {
        "a.pfb": b"\x80\1\0\0\0\0%!PS-AdobeFont-1.0",
        "a": b"%!PS-AdobeFont-1.0: A\n",
        "b": (b"", resource_fork(("POST", 501, b"%!"))),
    },
    "{} other files passed over": {
        "web.ttf": b"wOFF" + bytes(40),
        "a.bdf": b"STARTFONT 2.1\n",
        "a.afm": b"StartFontMetrics 4.1\n",
        "font": FONT,
        "collection.ttf": collection("A"),
        "font.ttc": FONT,
        "bitmaps.dfont": BITMAPS,
        "true": b"true\n",
        "a.ico": ICON,
        "theme.cache": b"\0\1\0\0" + bytes(90),
        "a.txt": b"text",
        "empty": b"",
        "pipe.ttf": os.mkfifo,
    },
}


class LossesTest(ToolCase):
    def write_all(self, folder, files):
        for name, data in files.items():
            if isinstance(data, str):
                (self.folder / folder).mkdir(exist_ok=True)
                (self.folder / folder / name).symlink_to(data)
                continue
            if data is os.mkfifo:
                data(self.folder / folder / name)
                continue
            data, fork = data if isinstance(data, tuple) else (data, None)
            self.write(f"{folder}/{name}", data)
            if fork is not None:
                self.write(f"{folder}/._{name}", apple_double(fork))
        return self.folder / folder

    def test_files_of_folders_are_counted_by_what_they_are(self):
        for i, (kind, files) in enumerate(KINDS.items()):
            with self.subTest(kind):
                folder = self.write_all(f"{i}", files)
                self.write(f"{i}/good.ttf", FONT)
                result = run("identify", folder)
                self.assertEqual(result.stderr.decode(), "1 face in 1 file; " + kind.format(len(files)) + "\n")
                self.assertEqual(result.returncode, 0)
                self.assertIn(kind.format(len(files)), run("same", folder).stderr.decode())

    def test_incomplete_collections_and_printer_fonts_with_a_family(self):
        twins = self.write("a/twins.ttc", collection("A", "A"))
        cut = self.write("a/cut.ttc", CUT_COLLECTION)
        family = fond(9, (0, 0, 7), (0, 1, 8), (0, 2, 9), (12, 3, 10))
        half = self.write("a/half.dfont", resource_fork(("FOND", 9, family), ("sfnt", 7, FONT), ("sfnt", 8, FONT[:40])))
        self.write_all("a", {"Family.dfont": FAMILY, "Quill": b"%!PS-AdobeFont-1.0: Quill\n"})
        result = run("identify", self.folder)
        closing = "4 faces in 4 files; 2 incomplete, 1 other file passed over" + MORE + "\n"
        self.assertEqual((result.returncode, result.stderr.decode()), (0, closing))

        named = run("identify", "--format", "tsv", twins, cut, half)
        self.assertEqual((named.returncode, named.stdout.count(b"\n")), (1, 4))
        line, half_line, closing = named.stderr.decode().splitlines()
        self.assertTrue(line.startswith(f"{cut}: {CUT_REASON}"), line)
        outlines = (
            "FOND 9, style 1: sfnt 8 is damaged: its name table runs to byte 72, and sfnt 8 has 40 bytes: the rest is missing "
            "or the font is damaged; FOND 9, style 2: no readable sfnt resource has the number 9, which the style names first"
        )
        self.assertEqual((half_line, closing), (f"{half}: gives 1 face; {outlines}", "3 faces in 3 files"))

    def test_why_tells_of_each_file_in_a_folder(self):
        folder = self.write_all("a", {**{k: v for kind in KINDS.values() for k, v in kind.items()}, "cut2.ttc": CUT_COLLECTION})
        twins = self.write("a/twins.ttc", collection("A", "A"))
        good = self.write("a/good.ttc", collection("A", "B"))
        told = run("why", folder)
        self.assertEqual((told.returncode, told.stderr), (0, b""))
        lines = told.stdout.decode().splitlines()
        self.assertEqual({line.split(": ")[0] for line in lines}, {os.fspath(p) for p in folder.iterdir() if p.name[:2] != "._" and p != good})
        self.assertIn(f"{twins}: gives 1 of the 2 faces it lists; face 1: the PostScript name of face 0, A", lines)

        identified = run("identify", "--why", folder)
        *whys, closing = identified.stderr.decode().splitlines()
        self.assertEqual((identified.returncode, whys), (0, lines))
        self.assertNotIn("quillmark why", closing)

        found = json.loads(run("why", "--format", "json", folder, good).stdout)
        self.assertEqual(found.pop(), {"path": str(good), "faces": 2, "listed": 2, "reason": None})
        self.assertEqual([entry["path"] for entry in found], [line.split(": ")[0] for line in lines])
        kinds = {os.path.basename(entry["path"]): (entry["faces"], entry["listed"]) for entry in found}
        self.assertEqual([kinds[name] for name in ("twins.ttc", "cut2.ttc", "cut.ttf")], [(1, 2), (1, 2), (0, None)])
        self.assertTrue(all(entry["reason"] for entry in found))

    def test_files_of_folders_that_cannot_be_read_are_faults(self):
        user = {"user": 65534} if os.getuid() == 0 else {}
        self.folder.chmod(0o755)
        self.write("good.ttf", FONT)
        closed = self.write("closed.ttf", FONT)
        hidden = self.write("unsearchable/a.ttf", FONT)
        locked = self.write("unlistable/a.ttf", FONT)
        linked = self.folder / "linked.ttf"
        linked.symlink_to(hidden)
        failing = self.folder / "failing.ttf"
        failing.symlink_to("/proc/self/mem")  # a regular file whose first bytes cannot be read
        closed.chmod(0)
        hidden.parent.chmod(0o744)
        locked.parent.chmod(0o311)
        self.addCleanup(hidden.parent.chmod, 0o755)
        self.addCleanup(locked.parent.chmod, 0o755)
        if run("--version", **user).returncode != 0:
            self.skipTest("the tool cannot be run by another user")
        expected = [
            f"{closed}: no permission to read it",
            f"{failing}: cannot be read: Input/output error",
            f"{linked}: no permission to look into its folder",
            f"{locked.parent}: the folder cannot be read: Permission denied",
            f"{hidden}: no permission to look into its folder",
        ]
        for command, last in [("identify", ["1 face in 1 file"]), ("same", ["1 face in 1 file"]), ("why", [])]:
            with self.subTest(command):
                result = run(command, self.folder, **user)
                self.assertEqual((result.returncode, result.stderr.decode().splitlines()), (1, expected + last))
        found = json.loads(run("why", "--format", "json", self.folder, **user).stdout)
        self.assertEqual([f"{entry['path']}: {entry['reason']}" for entry in found], expected)

    def test_too_few_open_files_cost_no_face(self):
        self.links(100, (tool_case.DEJAVU / "DejaVuSans.ttf").read_bytes())  # read long enough to be open together
        self.write_all("many", {"c.dfont": FORK, "d": (b"", FORK), "Family": (b"", FAMILY), "Quill": b"%!PS-AdobeFont-1.0: Quill\n"})
        arguments = ["identify", "-j", 8, "--format", "json", self.folder / "many"]
        whole = run(*arguments)
        self.assertEqual(whole.returncode, 0)
        refused = 0
        for limit in (6, 14, 15, 24):
            with self.subTest(limit=limit):
                result = run(*arguments, preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_NOFILE, (limit, limit)))
                if result.returncode == 0:
                    self.assertEqual((result.stdout, result.stderr), (whole.stdout, whole.stderr))
                else:
                    refused += 1
                    self.assertEqual((result.returncode, result.stdout), (1, b""))
                    self.assertRegex(result.stderr.decode(), rf"too few files can be open .* \(ulimit -n\): {limit}, and 1[5-9] are needed\n")
        self.assertIn(refused, (1, 2, 3))

    def test_large_counts_are_grouped(self):
        result = run("identify", self.links(1000, b"no font"))
        self.assertEqual(result.stderr.decode(), "0 faces in 0 files; 1,000 damaged" + MORE + "\n")


if __name__ == "__main__":
    tool_case.main()
