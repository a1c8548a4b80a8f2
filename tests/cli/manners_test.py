"""How the tool behaves toward terminals, pipes and signals."""

import fcntl
import itertools
import json
import os
import pty
import re
import select
import signal
import struct
import subprocess
import termios
import time

from font_builders import directory, name_table
from tool_case import TOOL, ToolCase, made_font

LONG = "M" * 3000  # a line of JSON that soon fills a pipe


def start(words, **options):
    # A runner in the background may have the interrupt ignored, which would be inherited.
    # Unbuffered, for what a line read beforehand takes along would be lost to communicate().
    return subprocess.Popen(
        [TOOL, *(words.split() if isinstance(words, str) else map(str, words))],
        preexec_fn=lambda: signal.signal(signal.SIGINT, signal.SIG_DFL),
        **{"stdout": subprocess.PIPE, "stderr": subprocess.PIPE, "bufsize": 0, **options},
    )


def wait_until_full(pipe):
    """Waits until whoever writes into the pipe has to wait for room, which shows as nothing more coming."""
    before, held = -1, 0
    while held == 0 or held != before:
        time.sleep(1)
        before, (held,) = held, struct.unpack("i", fcntl.ioctl(pipe, termios.FIONREAD, bytes(4)))


def on_terminal(process, terminal):
    """What a process, the only holder of its terminal, has written there."""
    written = b""
    try:
        while part := os.read(terminal, 4096):
            written += part
    except OSError:  # its end
        pass
    process.wait(100)
    return written.decode()


def screen(written):
    """The lines that a terminal shows in the end."""
    lines = []
    for line in written.split("\n"):
        shown = ""
        for part in line.split("\r"):
            shown = part + shown[len(part) :]
        lines.append(shown.rstrip())
    return lines


class MannersTest(ToolCase):
    def on_terminal(self, words, columns=0, **options):
        """Starts the tool on a terminal: the process, and the terminal's other end."""
        outside, inside = pty.openpty()
        self.addCleanup(os.close, outside)
        fcntl.ioctl(inside, termios.TIOCSWINSZ, struct.pack("4H", 0, columns, 0, 0))
        process = start(words, **{"stdout": inside, "stderr": inside, **options})
        os.close(inside)
        return process, outside

    def shown(self, columns, *arguments):
        """The lines that go to a terminal, standard error included."""
        process, terminal = self.on_terminal(arguments, columns, env={**os.environ, "TERM": "dumb"})
        return on_terminal(process, terminal).split("\r\n")[:-1]

    def test_an_interrupt_leaves_a_whole_document_and_no_lists_of_a_part(self):
        font = self.write("a.ttf", made_font("Made"))
        commands = ["same", "identify", *(f"identify --format {form}" for form in ("json", "jsonl", "plist", "xml"))]
        for command, (number, status) in itertools.product(commands, ((signal.SIGINT, 130), (signal.SIGTERM, 143))):
            with self.subTest(command, number=number):
                whole = b"" if command == "same" else self.run_tool([*command.split(), font]).stdout
                process = start(f"{command} --files-from -", stdin=subprocess.PIPE)
                process.stdin.write(bytes(font) + b"\n/none\n")
                # Results come in order: the font has been taken in when the next path is told of.
                self.assertEqual(process.stderr.readline(), b"/none: no such file\n")
                process.send_signal(number)
                process.wait(100)  # though the list has not ended
                out, err = process.communicate()
                self.assertEqual((process.returncode, out), (status, whole))
                closing = "; no lists were written" if command == "same" else "\n1 face in 1 file"
                self.assertEqual(err.decode(), f"stopped after 2 files{closing}\n")

    def full_pipe(self, *options):
        """A run that waits for room in the pipe for its results, of which the first line is read."""
        process = start(["identify", "--format", "jsonl", "-j", 1, *options, self.links(200, made_font("Made", LONG))])
        process.stdout.readline()
        wait_until_full(process.stdout)
        return process

    def test_an_interrupt_tells_how_many_are_left_out(self):
        process = self.full_pipe("--progress", "always")
        time.sleep(2)  # meanwhile it counts the files
        process.send_signal(signal.SIGINT)
        out, err = process.communicate(timeout=100)
        self.assertEqual(process.returncode, 130)
        stopped = re.search(r"stopped after (\d+) of 200 files\n\1 faces in \1 files\n$", err.decode())
        self.assertTrue(stopped, err)
        self.assertEqual(int(stopped[1]), out.count(b"\n") + 1)
        self.assertLess(int(stopped[1]), 200)

    def test_a_folder_that_is_renamed_meanwhile_loses_no_file_silently(self):
        process = self.full_pipe()
        (self.folder / "many").rename(self.folder / "renamed")
        out, err = process.communicate(timeout=100)
        *faults, _ = err.decode().splitlines()
        self.assertTrue(all(fault.endswith(".ttf: no such file") for fault in faults), err)
        self.assertEqual(1 + out.count(b"\n") + len(faults), 200)
        self.assertEqual((process.returncode, faults != []), (1, True))

    def test_a_second_interrupt_ends_at_once(self):
        process = self.full_pipe()
        for _ in range(2):
            process.send_signal(signal.SIGTERM)
            time.sleep(0.5)  # the first leaves it waiting for its full pipe
        process.communicate(timeout=100)
        self.assertEqual(process.returncode, -signal.SIGTERM)

    def test_an_interrupt_ends_the_wait_for_a_font(self):
        process = start("identify -", stdin=subprocess.PIPE, env=dict(os.environ, TMPDIR=str(self.folder)))
        process.stdin.write(made_font("Made")[:20])
        time.sleep(1)
        process.send_signal(signal.SIGTERM)
        self.assertEqual(process.wait(100), 143)
        self.assertIn(b"standard input: stopped before its end\nstopped after ", process.communicate()[1])
        self.assertEqual(os.listdir(self.folder), [])

    def test_a_closed_pipe_ends_quietly(self):
        words = ["identify", "--format", "jsonl", self.links(200, made_font("Made", LONG))]
        for restore in (True, False):  # also where the parent ignores the signal
            process = start(words, restore_signals=restore)
            process.stdout.readline()
            process.stdout.close()
            self.assertEqual((process.wait(100), process.stderr.read()), (-signal.SIGPIPE, b""))
            process.stderr.close()

    def test_a_full_disk_is_1(self):
        self.links(3, made_font("Made"))
        for words in ("styles Minion-Bold", "identify --format jsonl many", "identify many", "--help"):
            with open("/dev/full", "w") as full:
                result = self.run_tool(words, capture_output=False, stdout=full, stderr=subprocess.PIPE)
                self.assertEqual((result.returncode, result.stderr), (1, b"quillmark: standard output cannot be written\n"))

    def test_progress_on_a_terminal(self):
        words = ["identify", "--format", "jsonl", "-j", 1, self.links(60, made_font("Made", LONG)), "/none"]
        process, terminal = self.on_terminal(words, stdout=subprocess.PIPE)
        process.stdout.readline()
        time.sleep(1)  # the full pipe keeps the work going that long
        process.stdout.read()
        written = on_terminal(process, terminal)
        process.stdout.close()
        self.assertRegex(written, r"\r\d+ of 61 files, [\d.]+ a second, \d+ s left")
        self.assertEqual(screen(written), ["/none: no such file", "60 faces in 60 files", ""])

    def test_progress_elsewhere(self):
        rows = [("--progress auto", False), ("--progress always", True), ("--progress always -q", False)]
        for command, (words, shown) in itertools.product(("identify", "same"), rows):
            with self.subTest(command, words=words):
                process = start(f"{command} {words} --files-from -", stdin=subprocess.PIPE)
                err = b""
                for pause in (0, 0.3):
                    time.sleep(pause)
                    process.stdin.write(b"/none\n")
                    err += process.stderr.readline()
                err += process.communicate(timeout=100)[1]
                self.assertEqual((b"a second" in err, b"0 faces in 0 files" in err), (shown, "-q" not in words), err)

    def fed(self, words, is_enough):
        """What a terminal gets while a list of fonts is open, until that is enough, and when it ends."""
        font = os.fsencode(self.write("a.ttf", made_font("Made"))) + b"\n"
        process, terminal = self.on_terminal(f"{words} --files-from -", stdin=subprocess.PIPE)
        written = ""
        while not is_enough(written):
            process.stdin.write(font)
            if select.select([terminal], [], [], 0.2)[0]:
                written += os.read(terminal, 4096).decode()
        process.stdin.close()
        return written + on_terminal(process, terminal)

    def test_progress_stands_until_the_end_where_results_do_not_come_before(self):
        for command in ("identify", "identify --format plist", "same"):
            written = self.fed(command, lambda written: written.count(" a second") >= 3)
            self.assertEqual(len(re.findall(r"\r +\r", written)), 1, written)

    def test_progress_leaves_lines_of_results_alone(self):
        words = "identify --format tsv --fields postScriptName -j "
        for jobs in "13":
            written = self.fed(words + jobs, lambda written: " a second" in written and written.count("Made") >= 3)
            header, *lines, closing, end = screen(written)
            self.assertEqual((header, {*lines}, end), ("postScriptName", {"Made"}, ""))
            self.assertEqual(closing, f"{len(lines):,} faces in {len(lines):,} files")

    def test_bold_only_where_it_is_wanted(self):
        self.write("a.ttf", made_font("Made"))
        kept = {name: value for name, value in os.environ.items() if name not in ("TERM", "NO_COLOR")}
        for environment, bold in [
            ({"TERM": "xterm"}, True),
            ({"TERM": "xterm", "NO_COLOR": ""}, True),
            ({"TERM": "xterm", "NO_COLOR": "1"}, False),
            ({"TERM": "dumb"}, False),
            ({}, False),
        ]:
            process, terminal = self.on_terminal("identify -q a.ttf", cwd=self.folder, env={**kept, **environment})
            written = on_terminal(process, terminal)
            self.assertEqual(("\x1b[1mPOSTSCRIPT NAME" in written, "\x1b" in written), (bold, bold), (environment, written))
        self.assertNotIn(b"\x1b", self.run_tool("identify a.ttf", env={**kept, "TERM": "xterm"}).stdout)

    def test_the_table_shows_every_path_whole_at_every_width(self):
        long = "b/" + "long-" * 20
        places = ["a/One-Regular.ttf", "b/One-Regular.ttf", f"{long}A-Regular.ttf", f"{long}B-Regular.ttf"]
        paths = {str(self.write(place, made_font("One") + place.encode())) for place in places}
        titles = ["POSTSCRIPT NAME", "FAMILY", "STYLES", "VERSION", "FOUNDRY", "CHECKSUM", "CLASS", "KIND", "PLATFORM"]
        for columns, expected in ((30, titles[:1]), (60, [titles[0], titles[3], titles[5]]), (80, [titles[0], *titles[3:6]]), (300, titles)):
            for command in ("identify", "same"):
                lines = self.shown(columns, command, "-q", self.folder)
                folder, found = "", set()
                for line in lines:
                    if line.endswith("/"):
                        folder = line
                    elif line.endswith(".ttf"):
                        name = line.split()[-1]
                        found.add(name if "/" in name else folder + name)
                    elif command == "identify":
                        self.assertLessEqual(len(line), columns)
                self.assertEqual(found, paths, lines)
            shown = self.shown(columns, "identify", "-q", self.folder)[0]
            self.assertEqual([title for title in re.split("  +", shown.strip()) if title != "FILE"], expected)

    def test_names_that_differ_never_look_equal(self):
        names = [f"Made-Condensed-{style}Oblique" for style in ("Bold", "Semibold")]
        self.write_all({f"{name[15]}.ttf": made_font(name) for name in names})
        lines = self.shown(36, "identify", "-q", self.folder)
        self.assertEqual([line.strip() for line in lines[2:] if line.startswith("  M")], names)
        self.assertNotIn("", lines)
        long, like_its_cut = "A" * 30, "A" * 13 + "…" + "A" * 6
        stored = self.write("stored", json.dumps([{"family": name} for name in (long, like_its_cut)]).encode())
        self.assertEqual(self.shown(20, "read", "--fields", "family", stored)[1:], [long, like_its_cut])

    def test_a_table_in_a_pipe_is_not_padded_to_its_longest_cell(self):
        wide = "e\u0301 文泉驛"  # a mark that takes no column, and characters that take two
        names = ["./" + "a" * 50 + ".ttf", "./b.ttf", f"./{wide}.ttf"]
        self.write_all(dict.fromkeys(names, made_font("Made")))
        rows = [("FILE", "VERSION  POSTSCRIPT NAME"), *((name, "1.5      Made") for name in names)]
        table = "".join(f"{first:{38 if wide in first else 40}}  {rest}\n" for first, rest in rows)
        self.check("identify -q --fields path,version,postScriptName .", 0, table)
        piped = self.run_tool(["identify", "-q", self.folder]).stdout.decode()
        self.assertEqual(self.shown(40, "identify", "-q", "--wide", self.folder), piped.splitlines())

    def test_what_fonts_hold_does_not_steer_a_terminal(self):
        name = "Qu\x1bill\x9b\u202e\u2066\u200b\U000e0001"
        path = os.fsdecode(os.fsencode(self.folder) + "/\x1b]0;\x07\r\u202e\x9b\t".encode() + b"\x9b\xe2\x80.ttf")
        with open(path, "wb") as file:
            file.write(directory({"name": name_table((1, name), (4, name)), "zero": bytes(8)}, b"\0\1\0\0"))
        alone = ["--progress", "never"]  # which goes back to the start of its line
        for arguments in (
            *(["identify", *alone, "--format", form, path] for form in ("table", "json", "jsonl", "tsv", "xml", "plist")),
            *([command, path + end] for command in ("read", "resources", "split") for end in ("", "none")),
            *([command, *alone, path + end] for command in ("identify", "why", "same") for end in ("", "none")),
            ["compare", path, path], ["identify", "--" + name], [name],
        ):  # fmt: skip
            with self.subTest(arguments):
                text = "\n".join(self.shown(80, *arguments))
                self.assertNotRegex(text, "[\x00-\x08\x0b-\x1f\x7f-\x9f\u200b-\u200f\u202a-\u202e\u2066-\u2069\U000e0001]")
        fields = ["identify", "-q", "--fields", "family,path", "--format"]
        piped = self.json_of([*fields, "json", path])
        self.assertEqual(piped[0]["family"], name)
        self.assertEqual(json.loads("\n".join(self.shown(80, *fields, "json", path))), piped)
        exact = path.replace("\t", "\\t").replace("\r", "\\r")
        self.check([*fields, "tsv", path], 0, f"family\tpath\n{name}\t{exact}\n")

    def test_version_tells_where_the_tables_are(self):
        told = self.check("version", 0, "quillmark 1.4\nlibrary 1.4\ntables in /.../Resources\nall tables loaded\n...\n").stdout.decode()
        tables = told.splitlines()[2].removeprefix("tables in ")
        database = told.splitlines()[4].partition("catalogue with ")[2] or None
        document = {"quillmark": "1.4", "library": "1.4", "tables": tables, "missingTables": [], "catalogue": database}
        self.assertEqual(self.json_of("version --format json"), document)
        missing = f"...tables in {self.folder}/Resources\nFoundryNameTable.plist is missing..."
        self.check("version", 1, missing, env=dict(os.environ, QUILLMARK_BUNDLE=str(self.folder)))
