"""What identify reads: lists of paths, folders, many files."""

import os
import subprocess

import tool_case
from font_builders import collection
from tool_case import ToolCase, made_font, run


class InputTest(ToolCase):
    def names(self, *arguments, **options):
        result = run("identify", "-q", "--format", "tsv", "--fields", "postScriptName", *arguments, **options)
        self.assertEqual((result.returncode, result.stderr), (0, b""))
        return result.stdout.decode().split()[1:]

    def test_lists_of_paths(self):
        a, b = (self.write(f"{name}.ttf", made_font(name)) for name in "ab")
        deep = self.write("folder/deep/c.ttf", made_font("c"))
        odd = self.write("line\nend.ttf", made_font("odd"))
        lines = self.write("lines", f"\n{b}\n\n{deep.parent.parent}\n{a}".encode())
        nuls = self.write("nuls", os.fsencode(odd) + b"\0\0" + os.fsencode(a) + b"\0")
        with open(lines, "rb") as file:
            rows = [
                (["--files-from", lines], {}, ["b", "c", "a"]),
                (["--files-from", lines, a], {}, ["a", "b", "c", "a"]),
                (["--files-from", nuls, "-0"], {}, ["odd", "a"]),
                (["--files-from", "-", "-0", b], {"input": nuls.read_bytes()}, ["b", "odd", "a"]),
                (["--files-from", "-"], {"stdin": file}, ["b", "c", "a"]),
            ]
            for arguments, options, expected in rows:
                with self.subTest(arguments):
                    for jobs in (1, 3):
                        file.seek(0)
                        self.assertEqual(self.names("-j", jobs, *arguments, **options), expected)

    def test_how_folders_are_walked(self):
        for name in ("a.ttf", "in/b.ttf", "in/deep/c.ttf", "__MACOSX/x.ttf", "../other/d.ttf"):
            self.write("top/" + name, made_font(name[-5]))
        top = self.folder / "top"
        for link, target in {"in/a-deep": "deep", "in/deep/up": "../..", "links": "../other", "none": "gone"}.items():
            os.symlink(target, top / link)
        rows = [
            ([top], "abc"),
            (["--no-recurse", top], "a"),
            (["--follow", top], "abcd"),
            (["--follow", "--no-recurse", top, top / "links"], "ad"),
            (["--follow", top, top], "abcdabcd"),  # named twice
            ([top / "links"], "d"),
        ]
        for arguments, expected in rows:
            with self.subTest(arguments):
                self.assertEqual(self.names("-j", 3, *arguments), list(expected))

    def test_a_path_of_a_list_counts_as_named(self):
        missing = self.folder / "missing.ttf"
        result = run("identify", "--files-from", "-", input=os.fsencode(missing) + b"\n")
        self.assertEqual(result.returncode, 1)
        self.assertEqual(result.stderr.decode(), f"{missing}: no such file\n0 faces in 0 files\n")

    def test_lists_that_cannot_be_read(self):
        a = self.write("a.ttf", made_font("a"))
        nuls = self.write("nuls", os.fsencode(a) + b"\0")
        rows = [
            (self.folder / "none", "No such file or directory"),
            (self.folder, "Is a directory"),
            (nuls, "it holds a NUL; paths separated by NUL need -0"),
            ("/dev/zero", "a line is too long for a path"),
        ]
        for path, reason in rows:
            with self.subTest(reason):
                result = run("identify", "-q", "--format", "tsv", "--fields", "face", a, "--files-from", path)
                self.assertEqual((result.returncode, result.stdout), (1, b"face\n0\n"))
                self.assertEqual(result.stderr.decode(), f"{path}: the list cannot be read: {reason}\n")
        for arguments in (["-0", a], ["--files-from"]):
            self.assertEqual(run("identify", *arguments).returncode, 2)

    def test_results_come_while_the_list_is_still_open(self):
        a = self.write("a.ttf", made_font("a"))
        for jobs in ("1", "3"):
            command = [tool_case.TOOL, "identify", "-q", "--format", "tsv", "--fields", "face", "-j", jobs, "--files-from", "-"]
            with subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE) as process:
                process.stdin.write(os.fsencode(a) + b"\n")
                process.stdin.flush()
                self.assertEqual([process.stdout.readline() for _ in range(2)], [b"face\n", b"0\n"])
                process.stdin.close()
                self.assertEqual(process.wait(100), 0)

    def test_a_folder_that_cannot_be_listed_is_told(self):
        self.write("a.ttf", made_font("a"))
        here = os.open(self.folder, os.O_RDONLY)
        self.addCleanup(os.close, here)
        for _ in range(20):  # deeper than the system takes a path
            os.mkdir("d" * 250, dir_fd=here)
            deeper = os.open("d" * 250, os.O_RDONLY, dir_fd=here)
            self.addCleanup(os.close, deeper)
            here = deeper
        result = run("identify", "-q", "--format", "tsv", "--fields", "postScriptName", self.folder)
        self.assertEqual((result.returncode, result.stdout), (1, b"postScriptName\na\n"))
        self.assertTrue(result.stderr.endswith(b": the folder cannot be read: File name too long\n"), result.stderr)

    def test_memory_does_not_grow_with_the_number_of_files(self):
        # With such a name the faces of 10,000 files would take well over 100 MB.
        many = self.links(10000, made_font("Made", family="M" * 6000))
        some = self.folder / "some"
        some.write_text("".join(f"{many}/{i:05}.ttf\n" for i in range(300)))
        few_peak, few_lines = self.peak_and_lines("--files-from", str(some))
        many_peak, many_lines = self.peak_and_lines(str(many))
        self.assertEqual((few_lines, many_lines), (300, 10000))
        self.assertLess(many_peak - few_peak, 60000)

    def test_a_face_takes_little_memory(self):
        few, many = (self.write(f"{n}.ttc", collection(*(f"N{i}" for i in range(n)))) for n in (1, 2001))
        few_peak, many_peak = (self.peak_and_lines(str(path))[0] for path in (few, many))
        self.assertLess(many_peak - few_peak, 2000 * 8)  # 1.5 KB without a sanitizer

    def peak_and_lines(self, *arguments):
        # The address sanitizer keeps freed memory for a while, which is not what is looked at here.
        options = os.environ.get("ASAN_OPTIONS", "") + ":quarantine_size_mb=1"
        command = [tool_case.TOOL, "identify", "-q", "--format", "jsonl", "--fields", "face", "-j", "2", *arguments]
        with open(self.folder / "out", "w+b") as out:
            process = subprocess.Popen(command, stdout=out, env=dict(os.environ, ASAN_OPTIONS=options))
            _, status, usage = os.wait4(process.pid, 0)
            process.returncode = os.waitstatus_to_exitcode(status)
            self.assertEqual(process.returncode, 0)
            out.seek(0)
            return usage.ru_maxrss, sum(1 for _ in out)


if __name__ == "__main__":
    tool_case.main()
