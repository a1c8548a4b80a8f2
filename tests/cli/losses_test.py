"""What costs a run faces, or does not: files that give fewer than they list, many threads, and too little of anything.

The library that makes threads and memory scarce is named by the variable SCARCITY (scarcity.cc).
"""

import os
import re
import resource

from font_builders import apple_double, collection, fond, mac_font, resource_fork, sfnt
from tool_case import DEJAVU, ToolCase, made_font

FONT = sfnt()
FORK = resource_fork(("FOND", 9, fond(9, (0, 0, 7))), ("sfnt", 7, sfnt("Suitcase")))
FAMILY = resource_fork(("FOND", 9, fond(9, (12, 0, 200), name=b"Quill")), ("NFNT", 200, b"bits"))
ICON = resource_fork(("ICON", 1, b"icon"))
PROGRAM = b"%!PS-AdobeFont-1.0: Quill\n"
CUT_COLLECTION = collection("A", "B")[:-2]
CUT_LINE = "cut.ttc: gives 1 of the 2 faces it lists; face 1: its table name runs to byte ..."


def scarce(**limits):
    """The environment of a run under the limits that scarcity.cc reads."""
    # The library comes before the sanitizer's, whose check for leaks needs threads of its own; it makes arrays by `new`.
    asan = os.environ.get("ASAN_OPTIONS", "") + ":verify_asan_link_order=0:detect_leaks=0:alloc_dealloc_mismatch=0"
    return dict(os.environ, LD_PRELOAD=os.environ["SCARCITY"], ASAN_OPTIONS=asan, **limits)


class LossesTest(ToolCase):
    def test_incomplete_collections_and_printer_fonts_with_a_family(self):
        bitmaps = ((12, style, 10) for style in range(3, 300))  # no loss, and more than are noted of those
        family = fond(9, (0, 0, 7), *bitmaps, (0, 301, 8), (0, 302, 9))
        half = resource_fork(("FOND", 9, family), ("sfnt", 7, FONT), ("sfnt", 8, FONT[:40]))
        files = {"twins.ttc": collection("A", "A"), "cut.ttc": CUT_COLLECTION, "half.dfont": half}
        self.write_all({**files, "Family.dfont": FAMILY, "Quill": PROGRAM})
        for name, target in [("nowhere", "none"), ("nowhere.ttf", "none"), ("loop", "loop"), ("up", ".."), ("here.ttf", ".")]:
            (self.folder / name).symlink_to(target)
        os.mkfifo(self.folder / "pipe.ttf")
        counts = (
            "2 incomplete, 3 dangling links, 2 linked folders not entered (--follow), 2 other files passed over"
            "; quillmark why . says more\n"
        )
        for command, status in [("identify", 0), ("same", 3)]:
            self.check(f"{command} .", status, out="...", err="4 faces in 4 files; " + counts)
        outlines = (
            "half.dfont: gives 1 face; "
            "FOND 9, style 301: sfnt 8 is damaged: its name table runs to byte 72, and sfnt 8 has 40 bytes: the rest is missing "
            "or the font is damaged; FOND 9, style 302: no readable sfnt resource has the number 9, which the style names first"
        )
        self.check(["identify", *files], 1, "...", f"{CUT_LINE}\n{outlines}\n3 faces in 3 files\n")

    def test_resource_forks_without_their_file(self):
        lone = {"._Fam": FAMILY, "__MACOSX/fonts/._Cut": FORK[:-1], "__MACOSX/fonts/._Here": FORK, ".AppleDouble/Net": FORK}
        self.write_all({"top/" + name: apple_double(fork) for name, fork in lone.items()})
        others = {"fonts/Here": b"", "._none": apple_double(b""), "._icon": apple_double(ICON), "._text": b"text", "__MACOSX/a.ttf": FONT}
        self.write_all({"top/" + name: data for name, data in others.items()})
        self.check("identify top", 0, "...", "1 face in 1 file; 3 resource forks without their file; ...\n")
        told = [("._Fam", "Fam"), (".AppleDouble/Net", "Net"), ("__MACOSX/fonts/._Cut", "fonts/Cut")]
        self.check("why top", 0, "".join(f"top/{lone}: ...: top/{owner} is not there; ...\n" for lone, owner in told))
        self.check("why . ._Cut", 0, "./._Cut: ...top/fonts/Cut is not there...\n._Cut: ...top/fonts/Cut is not...", cwd=self.folder / "top/__MACOSX/fonts")

    def test_why_tells_of_each_file_in_a_folder(self):
        files = {"cut.dfont": FORK[:-1], "cut.ttc": CUT_COLLECTION, "good.ttc": collection("A", "B"), "text": b"text"}
        self.write_all({**files, "twins.ttc": collection("A", "A")})
        told = self.run_tool("why .").stdout.decode()
        lines = ["./cut.dfont: a damaged resource file: ...", "./" + CUT_LINE, "./text: a text file, ...",
                 "./twins.ttc: gives 1 of the 2 faces it lists; face 1: the PostScript name of face 0, A\n"]  # fmt: skip
        self.check("why .", 0, "\n".join(lines))
        self.check("identify --why .", 0, "...", told + "4 faces in 3 files; 1 damaged, 1 incomplete, 1 other file passed over\n")
        found = self.json_of("why --format json . good.ttc")
        reasons = [re.sub("gives .*; ", "", line) for line in told.splitlines()]
        self.assertEqual(["{path}: {reason}".format(**entry) for entry in found], [*reasons, "good.ttc: None"])
        self.assertEqual([(entry["faces"], entry["listed"]) for entry in found], [(0, None), (1, 2), (0, None), (1, 2), (2, 2)])

    def test_files_of_folders_that_cannot_be_read_are_faults(self):
        user = {"user": 65534} if os.getuid() == 0 else {}
        self.folder.chmod(0o755)
        names = ["good.ttf", "closed.ttf", "unsearchable/a.ttf", "unlistable/a.ttf"]
        _, closed, hidden, locked = self.write_all(dict.fromkeys(names, FONT))
        (self.folder / "linked.ttf").symlink_to(hidden)
        (self.folder / "failing.ttf").symlink_to("/proc/self/mem")  # a regular file whose first bytes cannot be read
        for path, mode in [(closed, 0), (hidden.parent, 0o744), (locked.parent, 0o311)]:
            path.chmod(mode)
            self.addCleanup(path.chmod, 0o755)
        if self.run_tool("--version", **user).returncode != 0:
            self.skipTest("the tool cannot be run by another user")
        told = """./closed.ttf: no permission to read it
./failing.ttf: cannot be read: Input/output error
./linked.ttf: no permission to look into its folder
./unlistable: the folder cannot be read: Permission denied
./unsearchable/a.ttf: no permission to look into its folder
"""
        for command, closing in [("identify", "1 face in 1 file\n"), ("same", "1 face in 1 file\n"), ("why", "")]:
            self.check(f"{command} .", 1, "..." if closing else "", told + closing, **user)
        found = self.json_of("why --format json .", 1, **user)
        self.assertEqual(["{path}: {reason}".format(**entry) for entry in found], told.splitlines())
        self.write_all({"type1/Quill": PROGRAM, "type1/Family.dfont": FAMILY})[1].chmod(0)
        unread = "type1/Family.dfont cannot be read: Permission denied"
        self.check("why type1/Quill", 0, f"...: none in this folder does that can be read, and {unread}\n", **user)

    def test_too_few_open_files_cost_no_face(self):
        self.links(100, DEJAVU.read_bytes())  # read long enough to be open together
        self.write_all({"many/c.dfont": FORK, "many/d": (b"", FORK), "many/Family": (b"", FAMILY), "many/Quill": PROGRAM})
        words = "identify -j 8 --format json many"
        whole = self.run_tool(words)
        statuses = set()
        for limit in (6, 14, 15, 24):
            result = self.run_tool(words, preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_NOFILE, (limit, limit)))
            if result.returncode == 0:
                self.assertEqual((result.stdout, result.stderr), (whole.stdout, whole.stderr))
            else:
                refusal = rf"quillmark: too few files can be open .* \(ulimit -n\): {limit}, and 1[5-9] are needed\n"
                self.assertRegex(result.stderr.decode(), refusal)
            statuses.add(result.returncode)
        self.assertEqual(statuses, {0, 1})

    def test_large_counts_are_grouped(self):
        self.links(1000, b"no font")
        self.check("identify many", 1, err="0 faces in 0 files; 1,000 damaged; quillmark why many says more\n")

    def test_printer_fonts_of_several_folders(self):
        family = resource_fork(("FOND", 9, fond(9, (12, 0, 200), name=b"P0")), ("NFNT", 200, b"bits"))
        program = b"%!PS-AdobeFont-1.0"
        paths = []
        for i in range(8):
            if i % 2:
                self.write(f"{i}/Family.dfont", family)
            for k in range(12):
                files = {f"P{k}": program, f"P{k}.pfb": b"\x80\1\0\0\0\0" + program, f"P{k}.pfm": b"\0\1" + bytes(99)}
                paths += self.write_all({f"{i}/{name}": data for name, data in files.items()})
        paths.sort(key=lambda path: path.name)
        for command in ("identify", "same"):
            alone = self.run_tool([command, *paths])
            together = self.check([command, "-j", 8, *paths], 1, alone.stdout.decode(), alone.stderr.decode())
            self.assertEqual(together.stderr.count(b"give " + bytes(self.folder)), 4)

    def test_threads_that_cannot_be_started(self):
        self.write_all(dict.fromkeys(["a.ttf", "b.ttf"], made_font("Twin")))
        for command in ("identify --format json -j 8 .", "same --format json -j 8 ."):
            expected = self.run_tool(command)
            self.assertIn(b"Twin", expected.stdout)
            for threads in "013":  # counting takes the first
                self.check(command, 0, expected.stdout.decode(), expected.stderr.decode(), env=scarce(SCARCE_THREADS=threads))

    def test_too_little_memory_costs_one_file(self):
        sound = '{"postScriptName":"C","family":"Made"}'
        for content, form, last, told_of, reason in [
            (collection(*[f"N{i}" for i in range(8000)]), "json", sound, "b.ttc", "there is too little memory for it"),
            (collection(*[f"N{i}" for i in range(4000)]), "jsonl --sort face", '...{"postScriptName":"N3999",...}', "c.ttf",
             "there is too little memory for it"),
            (collection("N", mac_font("M", data=bytes(4 << 20))), "json", sound, "b.ttc", "cannot be read whole: ..."),
        ]:  # fmt: skip
            self.write_all({"fonts/a.ttf": made_font("A"), "fonts/b.ttc": content, "fonts/c.ttf": made_font("C")})
            lines = ['{"postScriptName":"A","family":"Made"}', last]
            out = "[\n  " + ",\n  ".join(lines) + "\n]\n" if form == "json" else "\n".join([*lines, ""])
            for jobs, told in ((1, reason), (4, reason.replace("memory for it", "memory for it (-j 1 takes the least)"))):
                self.check(
                    f"identify --format {form} --fields postScriptName,family -j {jobs} fonts", 1, out,
                    f"fonts/{told_of}: {told}\n... in 2 files...\n", env=scarce(SCARCE_BLOCK=str(3 << 20)),
                )  # fmt: skip

    def test_a_failing_disk_is_no_damage(self):
        self.write_all({"a.ttf": made_font("A"), "b.otf": bytes(2000)})
        for form in ("xml", "plist", "json"):
            self.write(form, self.run_tool(f"identify --format {form} a.ttf").stdout + b" " * 3000)
        for words in ["read xml", "read plist", "read json", "compare xml a.ttf", "resources b.otf", "split b.otf"]:
            told = f"{words.split()[1]}: cannot be read: Input/output error\n..."
            self.check(words, 1, err=told, env=scarce(SCARCE_READ="1000"))
