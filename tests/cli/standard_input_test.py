"""A font or a text from standard input, and faces read back from the tool's own JSON."""

import json
import os
import signal
import subprocess
import time
import unittest

from font_builders import collection, fond, mac_font, resource_fork, sfnt
from tool_case import TOOL, ToolCase, made_font

FONTS = {
    "a.ttf": made_font("Made-BoldItalic", "Größe"),
    "b.otf": sfnt("Other", b"OTTO"),
    "c.ttc": collection(mac_font("One"), mac_font("Two", foundry="Monotype")),
    "d.dfont": resource_fork(("FOND", 130, fond(0, (0, 1, 128))), ("sfnt", 128, made_font("Held"))),
    "e.dfont": resource_fork(("FOND", 9, fond(9, (9, 0, 2), name=b"Lone")), ("NFNT", 2, b"bits")),
}
WRONG_VALUE = "face 1 of its JSON: the value of {} is none that identify writes"


class StandardInputTest(ToolCase):
    def test_a_font_gives_the_faces_of_its_file(self):
        self.write_all(FONTS)
        held = self.folder / "held"
        held.mkdir()
        rows = [(name, ["--name", "folder/" + name]) for name in list(FONTS)[:4]]
        for name, words in rows + [(name, []) for name in list(FONTS)[:3]]:
            with self.subTest(name, words=words):
                options = {"input": FONTS[name], "env": dict(os.environ, TMPDIR=str(held))}
                faces = self.json_of(["identify", "--format", "json", "-", *words], **options)
                self.assertEqual(faces, [{**face, "path": "-"} for face in self.faces(name)])
                self.assertEqual(os.listdir(held), [])

    def test_it_is_one_path_among_others(self):
        words = "identify -q --format tsv --fields postScriptName"
        self.write_all({"a.ttf": made_font("A"), "-": FONTS["b.otf"]})  # a list may name the file "-"
        self.check(f"{words} -j 3 a.ttf - a.ttf", 0, "postScriptName\nA\nOther\nA\n", input=FONTS["b.otf"])
        self.check(f"{words} --files-from -", 0, "postScriptName\nOther\n", input=b"-\n")
        self.check("why - --name a.ttf", 0, "standard input: gives 1 face\n", input=FONTS["b.otf"])
        (self.folder / "-").unlink()
        self.check("same -", 1, "...", "-: no such file; - is standard input only as a path of identify, why and read\n...")

    def test_what_cannot_be_read_is_told(self):
        for data, words, reason in [
            (b"", "-", "it is empty"),
            (b"hello", "-", "a text file, not a font that Quillmark reads"),
            (FONTS["a.ttf"], "- --name a.txt", "a TrueType font, which is not read ..."),
        ]:
            self.check(f"identify -q {words}", 1, err=f"standard input: {reason}\n", input=data)
        with open("/dev/zero", "rb") as endless:
            reason = "it is larger than 1 GiB, more than is taken from there"
            self.check("identify -q -", 1, err=f"standard input: {reason}\n", stdin=endless)

    def test_an_interrupt_ends_the_wait(self):
        command = [TOOL, "identify", "-"]
        environment = dict(os.environ, TMPDIR=str(self.folder))
        with subprocess.Popen(command, stdin=subprocess.PIPE, stderr=subprocess.PIPE, env=environment) as process:
            process.stdin.write(FONTS["a.ttf"][:20])
            process.stdin.flush()
            time.sleep(1)
            process.send_signal(signal.SIGTERM)
            self.assertEqual(process.wait(100), 143)
            self.assertTrue(process.stderr.read().startswith(b"standard input: stopped before its end\nstopped after "))
        self.assertEqual(os.listdir(self.folder), [])

    def test_json_reads_back_as_every_form(self):
        self.write_all(FONTS)
        forms = ("json", "jsonl", "table", "tsv", "xml", "plist")
        written = {form: self.run_tool(f"identify -q --format {form} .").stdout for form in forms}
        faces = json.loads(written["json"])
        self.assertTrue({"styles", "fondID", "printerFont"} <= {field for face in faces for field in face}, faces)
        for form, expected in written.items():
            for source in ("json", "jsonl"):
                with self.subTest(source=source, form=form):
                    self.assertEqual(self.run_tool(f"read --format {form} -", input=written[source]).stdout, expected)
        indented = json.dumps(faces[0], indent=2) + json.dumps(faces[1], indent=2)
        self.assertEqual(self.json_of("read --format json -", input=indented.encode()), faces[:2])
        read = self.json_of("read --format json -", input=written["xml"])
        self.assertEqual([face["path"] for face in read], ["-"] * len(faces))

    def test_json_that_is_none_of_the_tool_is_told(self):
        rows = [
            ("[]", "its JSON lists no face"),
            ('[{"face":0},\n{"fa', "JSON that is damaged or cut short in line 2"),
            ('{"face":0}\n{"face":1}\n{"fa', "JSON that is damaged or cut short in line 3"),
            ('{"face":0} x', "JSON that is damaged or cut short in line 1"),
            ("[" * 100000, "JSON that is damaged or cut short in line 1"),
            ('{"a":"x","pairs":[]}', "face 1 of its JSON has no field that identify writes"),
            ('[{"face":0},7]', "face 2 of its JSON has no field that identify writes"),
            ('[{"path":"a.ttf","faces":1}]', "face 1 of its JSON has no field that identify writes"),
            ('[{"checksum":"12"}]', WRONG_VALUE.format("checksum")),
            ('[{"face":-1}]', WRONG_VALUE.format("face")),
            ('[{"fondID":40000}]', WRONG_VALUE.format("fondID")),
            ('[{"family":"a\\u0000b"}]', WRONG_VALUE.format("family")),
            ('[{"styles":["Bold",1]}]', WRONG_VALUE.format("styles")),
            ("hello", "neither stored XML, a property list of fonts, nor JSON as identify writes it"),
            ("", "it is empty"),
        ]
        for text, reason in rows:
            self.check("read -", 1, err=f"standard input: {reason}\n", input=text.encode())

    def test_fields_that_json_lacks(self):
        (face,) = self.json_of("read --format json -", input=b'[{"postScriptName":"Made-Bold","new":[1]}]')
        expected = {"path": "-", "face": 0, "postScriptName": "Made-Bold", "styles": ["Bold"], "class": "--", "family": ""}
        self.assertLessEqual(expected.items(), face.items())
        self.assertNotIn("fondID", face)


if __name__ == "__main__":
    unittest.main()
