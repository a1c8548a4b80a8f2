"""quillmark split: the files it writes, what it refuses, and that nothing is left of a failure.

Usage: split_test.py TOOL [unittest arguments]
"""

import pathlib
import resource

import tool_case
from font_builders import collection, directory, fond, name_table, resource_fork, sfnt
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
        self.out.rmdir()
        self.assertEqual(self.split(ZENHEI, 1)[1], [f"{self.out}: not a folder to write to"])


if __name__ == "__main__":
    tool_case.main()
