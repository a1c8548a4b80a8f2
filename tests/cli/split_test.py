"""quillmark split: the files it writes, what it refuses, and that nothing is left of a failure."""

import pathlib
import resource
import shutil
import struct

from font_builders import collection, directory, fond, mac_font, name_table, resource_fork, sfnt
from tool_case import ToolCase

ZENHEI = pathlib.Path("/usr/share/fonts/truetype/wqy/wqy-zenhei.ttc")


class SplitTest(ToolCase):
    def split(self, font, files, told="", options="", **process):
        """Splits a file, or bytes under a name. Files are those written, in order, which are taken away again; any line told is a fault."""
        if isinstance(font, tuple):
            font = self.write(*font).relative_to(self.folder)
        names = "".join(f"out/{name}\n" for name in files)
        result = self.check(f"split {font} -o out {options}", 1 if told else 0, names, told, **process)
        out = self.folder / "out"
        written = {path.name: path.read_bytes() for path in out.glob("*")}
        shutil.rmtree(out, ignore_errors=True)
        self.assertEqual(set(written), set(files), result.stderr)
        return [written[name] for name in files]

    def test_each_file_is_the_face_that_it_was_in_the_collection(self):
        self.write("made.ttc", collection("A", "B"))
        for path, names, more in [
            (ZENHEI, ["WenQuanYiZenHei", "WenQuanYiZenHeiMono", "WenQuanYiZenHeiSharp"], ["checksum"]),
            ("made.ttc", ["A", "B"], []),  # where it is not, as in a cross-platform font, that of the whole file
        ]:
            files = self.split(path, [f"{name}.ttf" for name in names])
            paths = [self.write(f"{i}.ttf", data) for i, data in enumerate(files)]
            inside, outside = self.faces(path), self.faces(*paths)
            for key in ("postScriptName", "fullName", "version", "platform", *more):
                self.assertEqual([face[key] for face in outside], [face[key] for face in inside])
            self.assertEqual(self.run_tool(["why", *paths]).stdout.count(b": gives 1 face\n"), len(names))

    def test_names_are_safe_and_never_the_same(self):
        names = [".hidden", "-rf", "a/../b", "", "Twin", "twin", "TWIN-2", "x" * 400]
        hidden = directory({"zero": bytes(7), "name": name_table((4, "a\x1bb\x9b\u202ec\u2066"))})
        expected = ["_hidden", "_rf", "a-..-b", "face-3", "Twin", "twin-2", "TWIN-2-2", "x" * 200, "a_b__c_"]
        self.split(("odd.ttc", collection(*names, hidden)), [name + ".ttf" for name in expected])

    def test_what_cannot_be_written_is_told_and_the_others_are_written(self):
        one, two = sfnt("One"), sfnt("Two", version=b"OTTO")
        suitcase = resource_fork(("FOND", 9, fond(9, (0, 0, 1))), ("sfnt", 1, one), ("sfnt", 2, two), ("sfnt", 3, b"junk"))
        told = "a.dfont: sfnt 3 cannot be written: neither a TrueType nor an OpenType font\n"
        self.assertEqual(self.split(("a.dfont", suitcase), ["One.ttf", "Two.otf"], told), [one, two])
        outside = suitcase.replace(struct.pack(">L", len(two)) + two, struct.pack(">L", 1 << 20) + two)
        told = "a.dfont: sfnt 2 cannot be written: its data are empty or lie outside the file\na.dfont: sfnt 3 ...\n"
        self.split(("a.dfont", outside), ["One.ttf"], told)
        told = "a.ttc: face 1 cannot be written: its table name lacks 2 bytes of its padding...\n"
        self.split(("a.ttc", collection("A", "BC")[:-2]), ["A.ttf"], told)
        self.split(("junk.dfont", resource_fork(("sfnt", 3, b"junk"))), [], "...sfnt 3 cannot be written...")
        self.check("split junk.dfont -o new", 1, err="...")
        self.assertFalse((self.folder / "new").exists())

    def test_nothing_is_written_when_one_target_exists(self):
        self.write("a.ttc", collection("A", "B"))
        target = self.write("out/B.ttf", b"mine")
        for make in (lambda: target.write_text("mine"), lambda: target.symlink_to("nowhere")):
            target.unlink()
            make()
            self.check("split a.ttc -o out", 1, err="out/B.ttf: exists already; nothing was written\n")
            self.assertEqual([*target.parent.iterdir()], [target])

    def test_a_failed_write_leaves_no_half_file(self):
        def limit():
            resource.setrlimit(resource.RLIMIT_FSIZE, (1 << 20, 1 << 20))

        # Python ignores the signal of the limit, and so does the tool when it inherits that.
        told = "out/WenQuanYiZenHei.ttf: cannot be written: File too large\n"
        self.split(ZENHEI, [], told, preexec_fn=limit, restore_signals=False)

    def test_what_cannot_be_split(self):
        most, more = (struct.pack(">4s2L", b"ttcf", 0x10000, count) + b"\xFF" * 4 * (count + 1) for count in (4096, 4097))
        for name, data, reason in [
            ("a.ttf", sfnt(), "neither a collection nor a resource file, so there is nothing to split"),
            ("a.dfont", resource_fork(("ICON", 1, b"icon")), "its resources hold no TrueType or OpenType font"),
            ("more.ttc", more, "lists more than 4096 faces"),
            ("more.dfont", resource_fork(*(("sfnt", i, b"") for i in range(4097))), "holds more than 4096 outlines"),
            ("most.ttc", most, "faces 0 to 4095 cannot be written: ..."),
        ]:
            self.split((name, data), [], f"{name}: {reason}\n")
        self.split("none.ttc", [], "none.ttc: no such file\n")

    def test_the_folder_is_made(self):
        self.write("a.ttc", collection("A"))
        self.check("split a.ttc -o new/deep", 0, "new/deep/A.ttf\n")
        self.check("split a.ttc -o a.ttc", 1, err="a.ttc: not a folder to write to\n")
        self.check("split a.ttc -o a.ttc/below", 1, err="a.ttc/below: the folder cannot be made: Not a directory\n")

    def test_the_same_bytes_are_written_once(self):
        one, two = sfnt("One"), sfnt("Two")
        suitcase = resource_fork(*(("sfnt", i, two if i == 5 else one) for i in range(1, 9)), ("sfnt", 9, b"junk"))
        # The last resources share the bytes of the first: what lies elsewhere in the file is not written either.
        shared = bytearray(suitcase)
        (data_at,) = struct.unpack_from(">L", suitcase, len(suitcase) - 9 * 12 + 4)
        for i in (5, 6, 7):
            struct.pack_into(">L", shared, len(suitcase) - (9 - i) * 12 + 4, data_at)
        told = "...out/One.ttf: sfnts 1 to 4, 6 to 8 are the same bytes, written once\n..."
        for data in (suitcase, shared):
            self.assertEqual(self.split(("a.dfont", data), ["One.ttf", "Two.ttf"], told), [one, two])
        self.write("a.ttc", collection("A", "B", "A"))
        told = "out/A.ttf: faces 0, 2 are the same bytes, written once\n"
        self.check("split a.ttc -o out", 0, "out/A.ttf\nout/B.ttf\n", told)

    def test_the_bytes_are_bounded(self):
        fonts = [mac_font(name, data=bytes(40000)) for name in "AB"]
        size = len(fonts[0])
        self.write("a.ttc", collection(*fonts))
        too_many = "...bytes that --max-bytes allows; nothing was written\n"
        for bound, files, told in [(2 * size, ["A.ttf", "B.ttf"], ""), (2 * size - 1, [], too_many), ("1k", [], too_many),
                                   ("1M", ["A.ttf", "B.ttf"], "")]:  # fmt: skip
            self.split("a.ttc", files, told, f"--max-bytes {bound}")
        # Each eighth byte begins a font of 4 KiB, all of the same bytes.
        overlapping = resource_fork(*[("sfnt", i, b"") for i in range(200)], ("long", 1, b"\0\0\x10\0\0\1\0\0" * 2000))
        places = bytearray(overlapping)
        for i in range(200):
            struct.pack_into(">L", places, overlapping.index(struct.pack(">hHL", i, 0xFFFF, 4 * i)) + 4, 4 * 200 + 4 + 8 * i)
        told = "...its fonts overlap, as only those of damaged files do; nothing was written\n"
        self.split(("a.dfont", places), [], told, "--max-bytes 5k")
