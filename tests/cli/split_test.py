"""quillmark split: the files it writes, what it refuses, and that nothing is left of a failure.

Usage: split_test.py TOOL [unittest arguments]
"""

import pathlib
import resource
import struct

import tool_case
from font_builders import collection, directory, fond, mac_font, name_table, resource_fork, sfnt
from tool_case import ToolCase, faces, run

ZENHEI = pathlib.Path("/usr/share/fonts/truetype/wqy/wqy-zenhei.ttc")


class SplitTest(ToolCase):
    def setUp(self):
        super().setUp()
        self.out = self.folder / "out"
        self.out.mkdir()

    def split(self, path, status=0, **options):
        result = run("split", path, "-o", self.out, **options)
        self.assertEqual(result.returncode, status, result.stderr)
        return result.stdout.decode().splitlines(), result.stderr.decode().splitlines()

    def names(self):
        return sorted(path.name for path in self.out.iterdir())

    def test_each_file_is_the_face_that_it_was_in_the_collection(self):
        made = self.write("made.ttc", collection("A", "B"))
        for path, names in [
            (ZENHEI, ["WenQuanYiZenHei", "WenQuanYiZenHeiMono", "WenQuanYiZenHeiSharp"]),
            (made, ["A", "B"]),
        ]:
            with self.subTest(path.name):
                written, errors = self.split(path)
                self.assertEqual((written, errors), ([f"{self.out}/{name}.ttf" for name in names], []))
                inside, outside = faces(path), faces(*written)
                for key in ("postScriptName", "fullName", "version", "platform"):
                    self.assertEqual([face[key] for face in outside], [face[key] for face in inside])
                if path == ZENHEI:  # a cross-platform font's checksum is that of its whole file
                    self.assertEqual([face["checksum"] for face in outside], [face["checksum"] for face in inside])
                self.assertEqual(run("why", *written).stdout.count(b": gives 1 face\n"), len(names))

    def test_names_are_safe_and_never_the_same(self):
        names = [".hidden", "-rf", "a/../b", "", "Twin", "twin", "TWIN-2", "x" * 400]
        hidden = directory({"zero": bytes(7), "name": name_table((4, "a\x1bb\x9b\u202ec\u2066"))}, b"\0\1\0\0")
        self.split(self.write("odd.ttc", collection(*names, hidden)))
        expected = ["_hidden", "_rf", "a-..-b", "face-3", "Twin", "twin-2", "TWIN-2-2", "x" * 200, "a_b__c_"]
        self.assertEqual(self.names(), sorted(name + ".ttf" for name in expected))

    def test_fonts_of_a_resource_file(self):
        truetype, opentype = sfnt("One"), sfnt("Two", version=b"OTTO")
        suitcase = resource_fork(
            ("FOND", 9, fond(9, (0, 0, 1))), ("sfnt", 1, truetype), ("sfnt", 2, opentype), ("sfnt", 3, b"junk")
        )
        written, errors = self.split(self.write("a.dfont", suitcase), 1)
        self.assertEqual(written, [f"{self.out}/One.ttf", f"{self.out}/Two.otf"])
        self.assertEqual([pathlib.Path(path).read_bytes() for path in written], [truetype, opentype])
        self.assertEqual(errors, [f"{self.folder}/a.dfont: sfnt 3 cannot be written: neither a TrueType nor an OpenType font"])
        length = struct.pack(">L", len(opentype))
        cut = suitcase.replace(length + opentype, struct.pack(">L", 1 << 20) + opentype)
        written, errors = self.split(self.write("cut.dfont", cut), 1)
        self.assertEqual(written, [])  # One.ttf is there already
        self.assertIn(f"{self.folder}/cut.dfont: sfnt 2 cannot be written: its data are empty or lie outside the file", errors)

    def test_a_face_that_cannot_be_cut_is_told_and_the_others_are_written(self):
        damaged = collection("A", "BC")[:-2]
        written, errors = self.split(self.write("a.ttc", damaged), 1)
        self.assertEqual(written, [f"{self.out}/A.ttf"])
        self.assertEqual(len(errors), 1)
        self.assertIn("face 1 cannot be written: its table name lacks 2 bytes of its padding", errors[0])

    def test_nothing_is_written_when_one_target_exists(self):
        path = self.write("a.ttc", collection("A", "B"))
        for make in (lambda target: target.write_text("mine"), lambda target: target.symlink_to("nowhere")):
            target = self.out / "B.ttf"
            make(target)
            written, errors = self.split(path, 1)
            self.assertEqual((written, errors), ([], [f"{target}: exists already; nothing was written"]))
            self.assertEqual(self.names(), ["B.ttf"])
            target.unlink()

    def test_a_failed_write_leaves_no_half_file(self):
        def limit():
            resource.setrlimit(resource.RLIMIT_FSIZE, (1 << 20, 1 << 20))

        # Python ignores the signal of the limit, and so does the tool when it inherits that.
        written, errors = self.split(ZENHEI, 1, preexec_fn=limit, restore_signals=False)
        self.assertEqual((written, self.names()), ([], []))
        self.assertEqual(errors, [f"{self.out}/WenQuanYiZenHei.ttf: cannot be written: File too large"])

    def test_what_cannot_be_split(self):
        many = b"ttcf\0\1\0\0" + (5000).to_bytes(4, "big") + bytes(40)
        rows = [
            (self.write("a.ttf", sfnt()), "neither a collection nor a resource file, so there is nothing to split"),
            (self.write("a.dfont", resource_fork(("ICON", 1, b"icon"))), "its resources hold no TrueType or OpenType font"),
            (self.write("many.ttc", many), "lists more than 4096 faces"),
            (self.write("cut.ttc", many[:12]), "a damaged collection: the file ends inside its header"),
            (self.folder / "none.ttc", "no such file"),
        ]
        for path, reason in rows:
            with self.subTest(reason):
                self.assertEqual(self.split(path, 1), ([], [f"{path}: {reason}"]))
        self.assertEqual(self.names(), [])

    def test_the_folder_is_made_when_something_is_written(self):
        top, self.out = self.out, self.out / "new/deep"
        self.split(self.write("junk.dfont", resource_fork(("sfnt", 3, b"junk"))), 1)
        self.assertEqual(list(top.iterdir()), [])
        self.split(ZENHEI)
        self.assertEqual(len(self.names()), 3)
        self.out = self.write("file", b"")
        self.assertEqual(self.split(ZENHEI, 1), ([], [f"{self.out}: not a folder to write to"]))
        self.out /= "below"
        self.assertEqual(self.split(ZENHEI, 1), ([], [f"{self.out}: the folder cannot be made: Not a directory"]))

    def test_the_same_bytes_are_written_once(self):
        one, two = sfnt("One"), sfnt("Two")
        suitcase = resource_fork(*(("sfnt", i, two if i == 5 else one) for i in range(1, 9)), ("sfnt", 9, b"junk"))
        # The last resources share the bytes of the first: what lies elsewhere in the file is not written either.
        shared = bytearray(suitcase)
        (data_at,) = struct.unpack_from(">L", suitcase, len(suitcase) - 9 * 12 + 4)
        for i in (5, 6, 7):
            struct.pack_into(">L", shared, len(suitcase) - (9 - i) * 12 + 4, data_at)
        for data in (suitcase, shared):
            written, errors = self.split(self.write("a.dfont", data), 1)
            self.assertEqual(written, [f"{self.out}/One.ttf", f"{self.out}/Two.ttf"])
            self.assertIn(f"{self.out}/One.ttf: sfnts 1 to 4, 6 to 8 are the same bytes, written once", errors)
            for path, font in zip(written, (one, two)):
                self.assertEqual(pathlib.Path(path).read_bytes(), font)
                pathlib.Path(path).unlink()
        faces = collection("A", "B", "A")
        written, errors = self.split(self.write("a.ttc", faces))
        self.assertEqual(errors, [f"{self.out}/A.ttf: faces 0, 2 are the same bytes, written once"])

    def test_the_bytes_are_bounded(self):
        path = self.write("a.ttc", collection(*(mac_font(name, data=bytes(40000)) for name in "AB")))
        size = len(mac_font("A", data=bytes(40000)))
        for bound, status in [(2 * size, 0), (f"{2 * size - 1}", 1), ("1k", 1), ("1M", 0)]:
            with self.subTest(bound):
                result = run("split", "--max-bytes", bound, path, "-o", self.out)
                self.assertEqual((result.returncode, len(self.names())), (status, 0 if status else 2), result.stderr)
                self.assertEqual(b"bytes that --max-bytes allows; nothing was written" in result.stderr, status == 1)
            for name in self.names():
                (self.out / name).unlink()
        for bound in ("-5", "5X", ""):
            self.assertEqual(run("split", "--max-bytes", bound, path).returncode, 2, bound)
        # Each eighth byte begins a font of 4 KiB, all of the same bytes.
        overlapping = resource_fork(*[("sfnt", i, b"") for i in range(200)], ("long", 1, b"\0\0\x10\0\0\1\0\0" * 2000))
        places = bytearray(overlapping)
        for i in range(200):
            struct.pack_into(">L", places, overlapping.index(struct.pack(">hHL", i, 0xFFFF, 4 * i)) + 4, 4 * 200 + 4 + 8 * i)
        result = run("split", "--max-bytes", "5k", self.write("a.dfont", places), "-o", self.out)
        self.assertEqual((result.returncode, self.names()), (1, []))
        self.assertIn(b"its fonts overlap, as only those of damaged files do; nothing was written", result.stderr)


if __name__ == "__main__":
    tool_case.main()
