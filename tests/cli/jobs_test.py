"""Many files at the same time: what threads share, and too few threads or too little memory for them.

The library that makes threads and memory scarce is named by the variable SCARCITY (scarcity.cc).
"""

import os
import unittest

from font_builders import collection, fond, mac_font, resource_fork
from tool_case import ToolCase, made_font


def scarce(**limits):
    """The environment of a run under limits: threads, block (bytes)."""
    # The library comes before the sanitizer's, whose check for leaks needs threads of its own.
    asan = os.environ.get("ASAN_OPTIONS", "") + ":verify_asan_link_order=0:detect_leaks=0"
    names = {f"SCARCE_{name.upper()}": str(value) for name, value in limits.items()}
    return dict(os.environ, LD_PRELOAD=os.environ["SCARCITY"], ASAN_OPTIONS=asan, **names)


class JobsTest(ToolCase):
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
            for threads in (0, 1, 3):  # counting takes the first
                self.check(command, 0, expected.stdout.decode(), expected.stderr.decode(), env=scarce(threads=threads))

    def test_too_little_memory_costs_one_file(self):
        rows = [
            (collection(*[f"N{i}" for i in range(8000)]), "json", "there is too little memory for it"),
            (collection(*[mac_font(f"N{i}", family='"' * 400) for i in range(4000)]), "jsonl", "there is too little memory for it"),
            (collection("N", mac_font("M", data=bytes(4 << 20))), "json", "cannot be read whole: ..."),
        ]
        for content, form, reason in rows:
            self.write_all({"fonts/a.ttf": made_font("A"), "fonts/b.ttc": content, "fonts/c.ttf": made_font("C")})
            lines = ['{"postScriptName":"A","family":"Made"}', '{"postScriptName":"C","family":"Made"}']
            out = "[\n  " + ",\n  ".join(lines) + "\n]\n" if form == "json" else "\n".join([*lines, ""])
            for jobs, told in ((1, reason), (4, reason.replace("memory for it", "memory for it (-j 1 takes the least)"))):
                self.check(
                    f"identify --format {form} --fields postScriptName,family -j {jobs} fonts", 1, out,
                    f"fonts/b.ttc: {told}\n2 faces in 2 files...\n", env=scarce(block=3 << 20),
                )  # fmt: skip


if __name__ == "__main__":
    unittest.main()
