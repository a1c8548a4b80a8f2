"""What identify reads: lists of paths, folders, many files."""

import os
import subprocess
import unittest

from font_builders import collection
from tool_case import TOOL, ToolCase, made_font

NAMES = "identify -q --format tsv --fields postScriptName"


class InputTest(ToolCase):
    def test_lists_of_paths(self):
        self.write_all({f"{name}.ttf": made_font(name[-1]) for name in ("a", "b", "folder/deep/c", "line\no")})
        self.write_all({"lines": b"\nb.ttf\n\nfolder\na.ttf", "nuls": b"line\no.ttf\0\0a.ttf\0"})
        with open(self.folder / "lines", "rb") as file:
            rows = [
                ("--files-from lines", {}, "bca"),
                ("--files-from lines a.ttf", {}, "abca"),
                ("--files-from nuls -0", {}, "oa"),
                ("--files-from - -0 b.ttf", {"input": b"line\no.ttf\0\0a.ttf\0"}, "boa"),
                ("--files-from -", {"stdin": file}, "bca"),
            ]
            for words, options, expected in rows:
                for jobs in (1, 3):
                    file.seek(0)
                    self.check(f"{NAMES} -j {jobs} {words}", 0, "\n".join(["postScriptName", *expected, ""]), **options)
        # A path of a list counts as named.
        self.check("identify --files-from -", 1, err="none.ttf: no such file\n0 faces in 0 files\n", input=b"none.ttf\n")

    def test_how_folders_are_walked(self):
        names = ("a.ttf", "in/b.ttf", "in/deep/c.ttf", "__MACOSX/x.ttf", "._a.ttf", "../other/d.ttf")
        self.write_all({"top/" + name: made_font(name[-5]) for name in names})
        self.write("top/notes.txt", b"notes")
        links = {"in/a-deep": "deep", "in/deep/up": "../..", "links": "../other", "none": "gone", "e.ttf": "../other/d.ttf"}
        for link, target in links.items():
            os.symlink(target, self.folder / "top" / link)
        rows = [
            ("top", "adbc"),
            ("--no-recurse top", "ad"),
            ("--follow top", "adbcd"),
            ("--follow --no-recurse top top/links", "add"),
            ("--follow top top", "adbcdadbcd"),  # named twice
            ("top/links", "d"),
        ]
        for words, expected in rows:
            for jobs in (1, 3):
                self.check(f"{NAMES} -j {jobs} {words}", 0, "\n".join(["postScriptName", *expected, ""]))
        self.check("identify top", 0, "...", "4 faces in 4 files; 1 dangling link, 3 linked folders not entered (--follow), 1 other file passed over...\n")

    def test_lists_that_cannot_be_read(self):
        self.write_all({"a.ttf": made_font("a"), "nuls": b"a.ttf\0"})
        rows = [
            ("none", "No such file or directory"),
            (".", "Is a directory"),
            ("nuls", "it holds a NUL; paths separated by NUL need -0"),
            ("/dev/zero", "a line is too long for a path"),
        ]
        for path, reason in rows:
            self.check(f"{NAMES} a.ttf --files-from {path}", 1, "postScriptName\na\n", f"{path}: the list cannot be read: {reason}\n")

    def test_memory_grows_with_neither_files_nor_much_with_faces(self):
        # With such a name the faces of 10,000 files would take well over 100 MB.
        many = self.links(10000, made_font("Made", family="M" * 6000))
        self.write("some", "".join(f"{many}/{i:05}.ttf\n" for i in range(300)).encode())
        self.write_all({"one.ttc": collection("N"), "more.ttc": collection(*(f"N{i}" for i in range(2001)))})
        rows = [
            (["--files-from", "some"], 300, ["many"], 10000, 60000),
            (["one.ttc"], 1, ["more.ttc"], 2001, 2000 * 8),  # 1.5 KB a face without a sanitizer
        ]
        for few, few_faces, more, more_faces, bound in rows:
            self.assertLess(self.peak(more, more_faces) - self.peak(few, few_faces), bound)

    def peak(self, words, faces):
        # The address sanitizer keeps freed memory for a while, which is not what is looked at here.
        options = os.environ.get("ASAN_OPTIONS", "") + ":quarantine_size_mb=1"
        command = [TOOL, "identify", "-q", "--format", "jsonl", "--fields", "face", "-j", "2", *words]
        with open(self.folder / "out", "w+b") as out:
            process = subprocess.Popen(command, stdout=out, cwd=self.folder, env=dict(os.environ, ASAN_OPTIONS=options))
            _, status, usage = os.wait4(process.pid, 0)
            process.returncode = os.waitstatus_to_exitcode(status)
            out.seek(0)
            self.assertEqual((process.returncode, len(out.readlines())), (0, faces))
            return usage.ru_maxrss


if __name__ == "__main__":
    unittest.main()
