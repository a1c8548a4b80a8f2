"""Many files at the same time: what threads share, and too few threads or too little memory for them.

Usage: jobs_test.py TOOL [unittest arguments]
The library that makes threads and memory scarce is named by the variable SCARCITY (scarcity.cc).
"""

import json
import os

import tool_case
from font_builders import collection, fond, mac_font, resource_fork
from tool_case import ToolCase, made_font, run

TOO_LITTLE = "there is too little memory for it"


def scarce(**limits):
    """The environment of a run under limits: threads, block (bytes)."""
    # The library comes before the sanitizer's, whose check for leaks needs threads of its own.
    asan = os.environ.get("ASAN_OPTIONS", "") + ":verify_asan_link_order=0:detect_leaks=0"
    names = {f"SCARCE_{name.upper()}": str(value) for name, value in limits.items()}
    return dict(os.environ, LD_PRELOAD=os.environ["SCARCITY"], ASAN_OPTIONS=asan, **names)


class JobsTest(ToolCase):
    def test_printer_fonts_of_several_folders(self):
        family = resource_fork(("FOND", 9, fond(9, (12, 0, 200), name=b"P0")), ("NFNT", 200, b"bits"))
        paths = []
        for i in range(8):
            if i % 2:
                self.write(f"{i}/Family.dfont", family)
            for k in range(12):
                paths.append(self.write(f"{i}/P{k}.pfb", b"\x80\1\0\0\0\0%!PS-AdobeFont-1.0"))
                paths.append(self.write(f"{i}/P{k}", b"%!PS-AdobeFont-1.0"))
                paths.append(self.write(f"{i}/P{k}.pfm", b"\0\1" + bytes(99)))
        for command in ("identify", "same"):
            alone, together = (run(command, "-j", jobs, *sorted(paths, key=lambda path: path.name)) for jobs in (1, 8))
            self.assertEqual((together.returncode, together.stdout), (1, alone.stdout))
            self.assertEqual(together.stderr, alone.stderr)
            self.assertEqual(together.stderr.count(b"give " + bytes(self.folder)), 4)

    def test_threads_that_cannot_be_started(self):
        self.write("a.ttf", made_font("Twin"))
        self.write("b.ttf", made_font("Twin"))
        for command in (["identify", "--format", "json"], ["same", "--format", "json"]):
            expected = run(*command, self.folder)
            self.assertIn(b"Twin", expected.stdout)
            for threads in (0, 1, 3):  # counting takes the first
                with self.subTest(command=command, threads=threads):
                    result = run(*command, "-j", 8, self.folder, env=scarce(threads=threads))
                    self.assertEqual((result.returncode, result.stdout), (0, expected.stdout), result.stderr)
                    self.assertEqual(result.stderr, expected.stderr)

    def test_too_little_memory_costs_one_file(self):
        rows = [
            ("too many faces", collection(*[f"N{i}" for i in range(8000)]), "json", TOO_LITTLE),
            ("too long lines", collection(*[mac_font(f"N{i}", family='"' * 400) for i in range(4000)]), "jsonl", TOO_LITTLE),
            ("too large a collection", collection("N", mac_font("M", data=bytes(4 << 20))), "json", "cannot be read whole: "),
        ]
        for name, content, form, reason in rows:
            folder = self.folder / name
            for path, data in [("a.ttf", made_font("A")), ("b.ttc", content), ("c.ttf", made_font("C"))]:
                self.write(f"{name}/{path}", data)
            for jobs in (1, 4):
                with self.subTest(name, jobs=jobs):
                    result = run("identify", "--format", form, "-j", jobs, folder, env=scarce(block=3 << 20))
                    line, counts = result.stderr.decode().splitlines()
                    self.assertTrue(line.startswith(f"{folder}/b.ttc: {reason}"), line)
                    self.assertEqual((result.returncode, counts[:18]), (1, "2 faces in 2 files"))
                    text = result.stdout.decode()
                    faces = json.loads(text) if form == "json" else [json.loads(line) for line in text.splitlines()]
                    self.assertEqual([face["postScriptName"] for face in faces], ["A", "C"])


if __name__ == "__main__":
    tool_case.main()
