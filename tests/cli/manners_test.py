"""How the tool behaves toward terminals, pipes and signals."""

import fcntl
import itertools
import json
import os
import plistlib
import pty
import re
import select
import signal
import struct
import subprocess
import termios
import time
import xml.etree.ElementTree

import tool_case
from font_builders import directory, name_table
from tool_case import ToolCase, made_font, run

LONG = "M" * 3000  # a line of JSON that soon fills a pipe


def start(*arguments, **options):
    # A runner in the background may have the interrupt ignored, which would be inherited.
    # Unbuffered, for what a line read beforehand takes along would be lost to communicate().
    defaults = {"stdout": subprocess.PIPE, "stderr": subprocess.PIPE, "bufsize": 0}
    return subprocess.Popen(
        [tool_case.TOOL, *map(str, arguments)],
        preexec_fn=lambda: signal.signal(signal.SIGINT, signal.SIG_DFL),
        **{**defaults, **options},
    )


def wait_until_full(pipe):
    """Waits until whoever writes into the pipe has to wait for room, which shows as nothing more coming."""
    before, held = 0, held_by(pipe)
    while held == 0 or held != before:
        time.sleep(1)
        before, held = held, held_by(pipe)


def held_by(pipe):
    return struct.unpack("i", fcntl.ioctl(pipe, termios.FIONREAD, bytes(4)))[0]


def on_terminal(process, terminal):
    """What a process, the only holder of its terminal, has written there."""
    written = b""
    while True:
        try:
            part = os.read(terminal, 4096)
        except OSError:  # its end
            break
        if not part:
            break
        written += part
    process.wait(100)
    return written.decode()


def screen(written):
    """The lines that a terminal shows in the end."""
    lines, column = [""], 0
    for character in written:
        if character == "\r":
            column = 0
        elif character == "\n":
            lines.append("")
            column = 0
        else:
            lines[-1] = lines[-1][:column].ljust(column) + character + lines[-1][column + 1 :]
            column += 1
    return [line.rstrip() for line in lines]


class MannersTest(ToolCase):
    def terminal(self, columns=0):
        outside, inside = pty.openpty()
        self.addCleanup(os.close, outside)
        fcntl.ioctl(inside, termios.TIOCSWINSZ, struct.pack("4H", 0, columns, 0, 0))
        return outside, inside

    def shown(self, columns, *arguments):
        """The lines that go to a terminal, standard error included."""
        outside, inside = self.terminal(columns)
        process = start(*arguments, stdout=inside, stderr=inside, env={**os.environ, "TERM": "dumb"})
        os.close(inside)
        return on_terminal(process, outside).split("\r\n")[:-1]

    def test_an_interrupt_leaves_a_whole_document(self):
        font = self.write("a.ttf", made_font("Made"))
        missing = self.folder / "missing"
        readers = {
            "json": lambda text: [face["postScriptName"] for face in json.loads(text)],
            "jsonl": lambda text: [json.loads(line)["postScriptName"] for line in text.splitlines()],
            "plist": lambda text: [font["PostScriptName"] for font in plistlib.loads(text)],
            "xml": lambda text: [n.text for n in xml.etree.ElementTree.fromstring(text).iter("PostScriptName")],
            "table": lambda text: [line.split()[0] for line in text.decode().splitlines()[1:]],
        }
        for form, names in readers.items():
            for number, status in ((signal.SIGINT, 130), (signal.SIGTERM, 143)):
                with self.subTest(form=form, number=number):
                    process = start("identify", "--format", form, "--files-from", "-", stdin=subprocess.PIPE)
                    process.stdin.write(os.fsencode(font) + b"\n" + os.fsencode(missing) + b"\n")
                    # Results come in order: the font has been taken in when the next path is told of.
                    self.assertEqual(process.stderr.readline().decode(), f"{missing}: no such file\n")
                    process.send_signal(number)
                    process.wait(100)  # though the list has not ended
                    out, err = process.communicate()
                    self.assertEqual((process.returncode, names(out)), (status, ["Made"]))
                    self.assertEqual(err.decode(), "stopped after 2 files\n1 face in 1 file\n")

    def test_an_interrupt_leaves_no_lists_of_a_part(self):
        font = self.write("a.ttf", made_font("Made"))
        for number, status in ((signal.SIGINT, 130), (signal.SIGTERM, 143)):
            with self.subTest(number=number):
                process = start("same", "--files-from", "-", stdin=subprocess.PIPE)
                process.stdin.write(os.fsencode(font) + b"\n/none\n")
                self.assertEqual(process.stderr.readline(), b"/none: no such file\n")
                process.send_signal(number)
                process.wait(100)
                self.assertEqual(process.communicate(), (b"", b"stopped after 2 files; no lists were written\n"))
                self.assertEqual(process.returncode, status)

    def test_an_interrupt_tells_how_many_are_left_out(self):
        process = start("identify", "--format", "jsonl", "-j", 1, self.links(200, made_font("Made", LONG)))
        process.stdout.readline()
        wait_until_full(process.stdout)
        time.sleep(2)  # meanwhile it counts the files
        process.send_signal(signal.SIGINT)
        out, err = process.communicate(timeout=100)
        self.assertEqual(process.returncode, 130)
        stopped = re.fullmatch(r"stopped after (\d+) of 200 files\n\1 faces in \1 files\n", err.decode())
        self.assertTrue(stopped, err)
        self.assertEqual(int(stopped[1]), out.count(b"\n") + 1)
        self.assertLess(int(stopped[1]), 200)

    def test_a_folder_that_is_renamed_meanwhile_loses_no_file_silently(self):
        folder = self.links(200, made_font("Made", LONG))
        process = start("identify", "--format", "jsonl", "-j", 1, folder)
        process.stdout.readline()
        wait_until_full(process.stdout)
        folder.rename(self.folder / "renamed")
        out, err = process.communicate(timeout=100)
        *faults, _ = err.decode().splitlines()
        self.assertTrue(all(fault.endswith(".ttf: no such file") for fault in faults), err)
        self.assertEqual(1 + out.count(b"\n") + len(faults), 200)
        self.assertEqual((process.returncode, faults != []), (1, True))

    def test_a_second_interrupt_ends_at_once(self):
        process = start("identify", "--format", "jsonl", self.links(200, made_font("Made", LONG)))
        wait_until_full(process.stdout)
        process.send_signal(signal.SIGTERM)
        time.sleep(0.5)  # the first leaves it waiting for its full pipe
        process.send_signal(signal.SIGTERM)
        time.sleep(0.5)
        process.communicate(timeout=100)
        self.assertEqual(process.returncode, -signal.SIGTERM)

    def test_a_closed_pipe_ends_quietly(self):
        many = self.links(200, made_font("Made", LONG))
        for restore in (True, False):  # also where the parent ignores the signal
            process = start("identify", "--format", "jsonl", many, restore_signals=restore)
            process.stdout.readline()
            process.stdout.close()
            self.assertEqual(process.wait(100), -signal.SIGPIPE)
            self.assertEqual(process.stderr.read(), b"")
            process.stderr.close()

    def test_a_full_disk_is_1(self):
        many = self.links(3, made_font("Made"))
        for command in (["styles", "Minion-Bold"], ["identify", "--format", "jsonl", many], ["identify", many], ["--help"]):
            with self.subTest(command), open("/dev/full", "w") as full:
                process = start(*command, stdout=full)
                _, err = process.communicate(timeout=100)
                self.assertEqual((process.returncode, err), (1, b"quillmark: standard output cannot be written\n"))

    def test_progress_on_a_terminal(self):
        outside, inside = self.terminal()
        many = self.links(60, made_font("Made", LONG))
        process = start("identify", "--format", "jsonl", "-j", 1, many, self.folder / "none", stderr=inside)
        os.close(inside)
        process.stdout.readline()
        time.sleep(1)  # the full pipe keeps the work going that long
        process.stdout.read()
        written = on_terminal(process, outside)
        process.stdout.close()
        self.assertRegex(written, r"\r\d+ of 61 files, [\d.]+ a second, \d+ s left")
        self.assertEqual(screen(written), [f"{self.folder}/none: no such file", "60 faces in 60 files", ""])

    def test_progress_elsewhere(self):
        rows = [("auto", "", False), ("always", "", True), ("always", "-q", False)]
        for command, (choice, quiet, shown) in itertools.product(("identify", "same"), rows):
            with self.subTest(command=command, choice=choice, quiet=quiet):
                arguments = ["--progress", choice, "--files-from", "-"] + ([quiet] if quiet else [])
                process = start(command, *arguments, stdin=subprocess.PIPE)
                err = b""
                for pause in (0, 0.3):
                    time.sleep(pause)
                    process.stdin.write(b"/none\n")
                    err += process.stderr.readline()
                err += process.communicate(timeout=100)[1]
                self.assertEqual(b"a second" in err, shown, err)
                self.assertEqual(b"0 faces in 0 files" in err, not quiet, err)

    def test_progress_stands_until_the_end_where_results_do_not_come_before(self):
        font = os.fsencode(self.write("a.ttf", made_font("Made"))) + b"\n"
        for command in (["identify"], ["identify", "--format", "plist"], ["same"]):
            with self.subTest(command):
                outside, inside = self.terminal()
                process = start(*command, "--files-from", "-", stdin=subprocess.PIPE, stdout=inside, stderr=inside)
                os.close(inside)
                written = ""
                while written.count(" a second") < 3:
                    process.stdin.write(font)
                    if select.select([outside], [], [], 0.2)[0]:
                        written += os.read(outside, 4096).decode()
                process.stdin.close()
                written += on_terminal(process, outside)
                self.assertEqual(len(re.findall(r"\r +\r", written)), 1, written)

    def test_progress_leaves_lines_of_results_alone(self):
        outside, inside = self.terminal()
        font = self.write("a.ttf", made_font("Made"))
        process = start(
            "identify", "--format", "tsv", "--fields", "postScriptName", "--files-from", "-",
            stdin=subprocess.PIPE, stdout=inside, stderr=inside,
        )  # fmt: skip
        os.close(inside)
        written = ""
        for count in (1, 2, 3):
            process.stdin.write(os.fsencode(font) + b"\n")
            while written.count("Made") < count:
                written += os.read(outside, 4096).decode()
            time.sleep(0.2)
        process.stdin.close()
        written += on_terminal(process, outside)
        self.assertIn(" a second", written)
        self.assertEqual(screen(written), ["postScriptName", "Made", "Made", "Made", "3 faces in 3 files", ""])

    def test_bold_only_where_it_is_wanted(self):
        font = self.write("a.ttf", made_font("Made"))
        rows = [
            ({"TERM": "xterm"}, True),
            ({"TERM": "xterm", "NO_COLOR": ""}, True),
            ({"TERM": "xterm", "NO_COLOR": "1"}, False),
            ({"TERM": "dumb"}, False),
            ({}, False),
        ]
        kept = {name: value for name, value in os.environ.items() if name not in ("TERM", "NO_COLOR")}
        for environment, bold in rows:
            with self.subTest(environment):
                outside, inside = self.terminal()
                process = start("identify", font, stdout=inside, env={**kept, **environment})
                os.close(inside)
                written = on_terminal(process, outside)
                process.communicate()
                self.assertEqual("\x1b[1mPOSTSCRIPT NAME" in written, bold, written)
                self.assertEqual("\x1b" in written, bold, written)
        self.assertNotIn(b"\x1b", run("identify", font, env={**kept, "TERM": "xterm"}).stdout)

    def test_the_table_shows_every_path_whole_at_every_width(self):
        long = "b/" + "long-" * 20
        places = ["a/One-Regular.ttf", "b/One-Regular.ttf", f"{long}A-Regular.ttf", f"{long}B-Regular.ttf"]
        paths = {str(self.write(place, made_font("One", data=place.encode()))) for place in places}
        titles = ["POSTSCRIPT NAME", "FAMILY", "STYLES", "VERSION", "FOUNDRY", "CHECKSUM", "CLASS", "KIND", "PLATFORM"]
        for columns, expected in ((30, titles[:1]), (80, [titles[0], *titles[3:6]]), (300, titles)):
            for command in ("identify", "same"):
                with self.subTest(command=command, columns=columns):
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
                    self.assertEqual(found, paths)
                    if command == "identify":
                        self.assertEqual([title for title in re.split("  +", lines[0].strip()) if title != "FILE"], expected)

    def test_a_table_in_a_pipe_is_not_padded_to_its_longest_cell(self):
        long = "a" * 50 + ".ttf"
        for name in (long, "b.ttf"):
            self.write(name, made_font("Made"))
        table = run("identify", "-q", "--fields", "path,version,postScriptName", ".", cwd=self.folder).stdout.decode()
        rows = [("FILE", "VERSION  POSTSCRIPT NAME"), (f"./{long}", "1.5      Made"), ("./b.ttf", "1.5      Made")]
        self.assertEqual(table.splitlines(), [f"{first:40}  {rest}" for first, rest in rows])
        self.assertEqual(self.shown(40, "identify", "-q", "--wide", self.folder), run("identify", self.folder).stdout.decode().splitlines())

    def test_what_fonts_hold_does_not_steer_a_terminal(self):
        name = "Qu\x1bill\x9b\u202e\u2066\u200b\U000e0001"
        path = os.fsdecode(os.fsencode(self.folder) + "/\x1b]0;\x07\r\u202e\x9b\t".encode() + b"\x9b\xe2\x80.ttf")
        with open(path, "wb") as file:
            file.write(directory({"name": name_table((1, name), (4, name)), "zero": bytes(8)}, b"\0\1\0\0"))
        for arguments in (
            *(["identify", "--format", form, path] for form in ("table", "json", "jsonl", "tsv", "xml", "plist")),
            *([command, path + end] for command in ("identify", "why", "read", "resources", "split") for end in ("", "none")),
            ["same", "--format", "json", path], ["compare", path, path], ["identify", "--" + name], [name],
        ):  # fmt: skip
            with self.subTest(arguments):
                text = "\n".join(self.shown(80, *arguments))
                self.assertNotRegex(text, "[\x00-\x08\x0b-\x1f\x7f-\x9f\u200b-\u200f\u202a-\u202e\u2066-\u2069\U000e0001]")
        fields = ["identify", "-q", "--fields", "family,path", "--format"]
        piped = run(*fields, "json", path).stdout
        self.assertEqual(json.loads(piped)[0]["family"], name)
        self.assertEqual(json.loads("\n".join(self.shown(80, *fields, "json", path))), json.loads(piped))
        exact = os.fsencode(path).replace(b"\t", b"\\t").replace(b"\r", b"\\r")
        self.assertEqual(run(*fields, "tsv", path).stdout, b"family\tpath\n" + name.encode() + b"\t" + exact + b"\n")

    def test_version_tells_where_the_tables_are(self):
        result = run("version")
        self.assertEqual(result.returncode, 0)
        self.assertRegex(result.stdout.decode(), r"quillmark 1\.4\nlibrary 1\.4\ntables in /.*/Resources\nall tables loaded\n")
        tables = result.stdout.decode().splitlines()[2].removeprefix("tables in ")
        document = {"quillmark": "1.4", "library": "1.4", "tables": tables, "missingTables": []}
        self.assertEqual(json.loads(run("version", "--format", "json").stdout), document)
        none = run("version", env=dict(os.environ, QUILLMARK_BUNDLE=str(self.folder)))
        self.assertEqual(none.returncode, 1)
        self.assertIn(f"tables in {self.folder}/Resources\nFoundryNameTable.plist is missing", none.stdout.decode())


if __name__ == "__main__":
    tool_case.main()
