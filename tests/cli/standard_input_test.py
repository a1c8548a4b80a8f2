"""A font or a text from standard input, and faces read back from the tool's own JSON."""

import json
import os
import signal
import subprocess
import time

import tool_case
from font_builders import collection, fond, mac_font, resource_fork, sfnt
from tool_case import ToolCase, made_font, run

FONTS = {
    "a.ttf": made_font("Made-BoldItalic", "Größe"),
    "b.otf": sfnt("Other", b"OTTO"),
    "c.ttc": collection(mac_font("One"), mac_font("Two", foundry="Monotype")),
    "d.dfont": resource_fork(("FOND", 130, fond(0, (0, 1, 128))), ("sfnt", 128, made_font("Held"))),
    "e.dfont": resource_fork(("FOND", 9, fond(9, (9, 0, 2), name=b"Lone")), ("NFNT", 2, b"bits")),
}


class StandardInputTest(ToolCase):
    def identify(self, data, *arguments, **options):
        """The folder for temporary files is empty before and after."""
        held = self.folder / "held"
        held.mkdir(exist_ok=True)
        result = run("identify", *arguments, input=data, env=dict(os.environ, TMPDIR=str(held)), **options)
        self.assertEqual(os.listdir(held), [])
        return result

    def test_a_font_gives_the_faces_of_its_file(self):
        rows = [(name, ["--name", "folder/" + name]) for name in list(FONTS)[:4]]
        for name, words in rows + [(name, []) for name in list(FONTS)[:3]]:
            with self.subTest(name, words=words):
                path = self.write(name, FONTS[name])
                expected = json.loads(run("identify", "--format", "json", path).stdout)
                result = self.identify(FONTS[name], "--format", "json", "-", *words)
                self.assertEqual((result.returncode, len(expected) > 0), (0, True), result.stderr)
                self.assertEqual(json.loads(result.stdout), [{**face, "path": "-"} for face in expected])

    def test_it_is_one_path_among_others(self):
        path = self.write("a.ttf", FONTS["a.ttf"])
        result = self.identify(FONTS["b.otf"], "-j", "3", "--format", "tsv", "--fields", "postScriptName", path, "-", path)
        self.assertEqual(result.stdout.decode().split()[1:], ["Made-BoldItalic", "Other", "Made-BoldItalic"])
        self.write("-", FONTS["b.otf"])  # which a list may name
        listed = run("identify", "--format", "tsv", "--fields", "postScriptName", "--files-from", "-", input=b"-\n", cwd=self.folder)
        self.assertEqual(listed.stdout, b"postScriptName\nOther\n")
        self.assertEqual(run("why", "-", "--name", "a.ttf", input=FONTS["a.ttf"]).stdout, b"standard input: gives 1 face\n")
        self.assertIn(b"standard input only as a path of identify, why and read\n", run("same", "-").stderr)

    def test_what_cannot_be_read_is_told(self):
        rows = [
            (b"", ["-"], 1, "standard input: it is empty\n"),
            (b"hello", ["-"], 1, "standard input: a text file, not a font that Quillmark reads\n"),
            (FONTS["a.ttf"], ["-", "--name", "a.txt"], 1, "standard input: a TrueType font, which is not read "),
            (b"", ["-", "-"], 2, 'quillmark identify: "-" stands for standard input, which can be read only once\n'),
            (b"", ["-", "--files-from", "-"], 2, 'quillmark identify: "-" stands for standard input, '),
            (b"", [".", "--name", "a.ttf"], 2, "quillmark identify: --name is for a font from standard input, "),
            (b"", ["-", "--name", "a/.."], 2, "quillmark identify: --name: no name for a file\n"),
        ]
        for data, words, status, line in rows:
            with self.subTest(words):
                result = self.identify(data, "-q", *words)
                self.assertEqual((result.returncode, result.stdout), (status, b""))
                self.assertTrue(result.stderr.decode().startswith(line), result.stderr)
        with open("/dev/zero", "rb") as endless:
            result = run("identify", "-q", "-", stdin=endless)
        self.assertEqual(result.stderr, b"standard input: it is larger than 1 GiB, more than is taken from there\n")

    def test_an_interrupt_ends_the_wait(self):
        command = [tool_case.TOOL, "identify", "-"]
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
        for name, data in FONTS.items():
            self.write(f"fonts/{name}", data)
        written = {form: run("identify", "-q", "--format", form, self.folder / "fonts").stdout
                   for form in ("json", "jsonl", "table", "tsv", "xml", "plist")}  # fmt: skip
        faces = json.loads(written["json"])
        self.assertTrue({"styles", "fondID", "printerFont"} <= {field for face in faces for field in face}, faces)
        indented = json.dumps(faces[0], indent=2) + json.dumps(faces[1:][0], indent=2)
        for form, expected in written.items():
            for source in ("json", "jsonl"):
                with self.subTest(source=source, form=form):
                    self.assertEqual(run("read", "--format", form, "-", input=written[source]).stdout, expected)
        self.assertEqual(json.loads(run("read", "--format", "json", "-", input=indented.encode()).stdout), faces[:2])
        self.assertEqual(run("read", "--format", "json", "-", input=written["xml"]).stdout.count(b'"path":"-"'), len(faces))

    def test_json_that_is_none_of_the_tool_is_told(self):
        wrong = "the value of {} is none that identify writes"
        rows = [
            ("[]", "its JSON lists no face"),
            ('[{"face":0},\n{"fa', "JSON that is damaged or cut short in line 2"),
            ('{"face":0}\n{"face":1}\n{"fa', "JSON that is damaged or cut short in line 3"),
            ('{"face":0} x', "JSON that is damaged or cut short in line 1"),
            ("[" * 100000, "JSON that is damaged or cut short in line 1"),
            ('{"a":"x","pairs":[]}', "face 1 of its JSON has no field that identify writes"),
            ('[{"face":0},7]', "face 2 of its JSON has no field that identify writes"),
            ('[{"path":"a.ttf","faces":1}]', "face 1 of its JSON has no field that identify writes"),
            ('[{"checksum":"12"}]', "face 1 of its JSON: " + wrong.format("checksum")),
            ('[{"face":-1}]', "face 1 of its JSON: " + wrong.format("face")),
            ('[{"fondID":40000}]', "face 1 of its JSON: " + wrong.format("fondID")),
            ('[{"family":"a\\u0000b"}]', "face 1 of its JSON: " + wrong.format("family")),
            ('[{"styles":["Bold",1]}]', "face 1 of its JSON: " + wrong.format("styles")),
            ("hello", "neither stored XML, a property list of fonts, nor JSON as identify writes it"),
            ("", "it is empty"),
        ]
        for text, reason in rows:
            with self.subTest(text[:40]):
                result = run("read", "-", input=text.encode())
                self.assertEqual((result.returncode, result.stdout), (1, b""))
                self.assertEqual(result.stderr.decode(), f"standard input: {reason}\n")

    def test_fields_that_json_lacks(self):
        read = json.loads(run("read", "--format", "json", "-", input=b'[{"postScriptName":"Made-Bold","new":[1]}]').stdout)
        expected = {"path": "-", "face": 0, "postScriptName": "Made-Bold", "styles": ["Bold"], "class": "--", "family": ""}
        self.assertEqual({field: read[0][field] for field in expected}, expected)
        self.assertNotIn("fondID", read[0])


if __name__ == "__main__":
    tool_case.main()
