"""The Python module over the library of the build tree: its examples, and the library's rules for texts.

The environment tells where the module is, and the library as QUILLMARK_LIBRARY.
"""

import doctest
import operator
import os
import pathlib
import tempfile
import unittest
import unittest.mock

import quillmark

DEJAVU = "/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf"
WQY = "/usr/share/fonts/truetype/wqy/wqy-zenhei.ttc"
TOOL = pathlib.Path(os.environ["QUILLMARK_LIBRARY"]).parent.parent / "bin/quillmark"
BLOCK = "<FontData><FontKind>TrueType</FontKind><PostScriptName>{}</PostScriptName><Checksum>FFFFFFFF</Checksum></FontData>"


def load_tests(loader, tests, pattern):
    tests.addTests(doctest.DocTestSuite(quillmark))
    return tests


class Texts(unittest.TestCase):
    def test_text_of_any_length_is_whole(self):
        # Around the sizes of the buffers, where a text is cut without notice.
        for length in [0, 1, 4094, 4095, 4096, 40_000]:
            self.assertEqual(quillmark.from_xml(BLOCK.format("N" * length))[0].postscript_name, "N" * length)

    def test_bytes_that_are_no_utf8_survive(self):
        name = b"Gar\xe9mond \xff".decode("utf-8", "surrogateescape")
        with quillmark.FontArray.from_xml(BLOCK.format(name)) as array:
            self.assertEqual(array.faces()[0].postscript_name, name)
            self.assertIn(f"<PostScriptName>{name}</PostScriptName>", array.to_xml())

    def test_what_is_not_held_is_none(self):
        face = quillmark.from_xml(BLOCK.format("A"))[0]
        self.assertEqual((face.checksum, face.kind), (0x7FFFFFFF, "TrueType"))
        self.assertEqual((face.family, face.font_class, face.kerning_checksum), (None, None, None))
        self.assertIsNone(quillmark.identify(DEJAVU, request=0x1)[0].kind)

    def test_every_style(self):
        names = ("Garamond-LightItalic", "Garamond Light Italic Small Caps Condensed")
        self.assertEqual(quillmark.styles(*names), ["Light", "Italic", "Small Caps", "Condensed"])
        self.assertEqual(quillmark.styles("Garamond"), [])

    def test_nul_is_refused(self):
        for call in [quillmark.identify, quillmark.from_xml, quillmark.from_property_list, quillmark.styles, quillmark.classify]:
            self.assertRaisesRegex(ValueError, "null byte", call, DEJAVU + "\0.ttf")


class Arrays(unittest.TestCase):
    def test_both_stored_forms_come_back(self):
        kept = operator.attrgetter("postscript_name", "family", "kind", "version", "foundry", "styles", "outline_file_size")
        with quillmark.FontArray.from_file(pathlib.Path(DEJAVU)) as array:
            for again in [quillmark.from_xml(array.to_xml()), quillmark.from_property_list(array.to_property_list())]:
                self.assertEqual(kept(again[0]), kept(array[0]))
            self.assertEqual((array.index_of(-1, 0), array.index_of(128, 0)), (0, None))

    def test_refusals_carry_the_status(self):
        for call, argument, status in [(quillmark.identify, "/dev/null", 1), (quillmark.from_xml, "<FontData>", 4),
                                       (quillmark.from_property_list, "", 1)]:  # fmt: skip
            with self.subTest(call=call.__name__), self.assertRaises(quillmark.QuillmarkError) as caught:
                call(argument)
            self.assertEqual(caught.exception.status, status)

    def test_closed_array_is_not_passed_on(self):
        array = quillmark.FontArray.from_file(DEJAVU)
        array.close()
        array.close()
        for call in [array.faces, array.to_xml, array.to_property_list, lambda: array.index_of(-1, 0), lambda: array[0],
                     lambda: next(iter(array))]:  # fmt: skip
            self.assertRaisesRegex(ValueError, "closed", call)

    def test_array_is_a_sequence_of_faces(self):
        with quillmark.FontArray.from_file(WQY) as array:
            faces = array.faces()
            self.assertEqual([face.index for face in faces], [0, 1, 2])
            self.assertEqual((list(array), array[-1], array[1:]), (faces, faces[2], faces[1:]))
            self.assertRaises(IndexError, lambda: array[3])


class Files(unittest.TestCase):
    def test_file_that_is_not_there(self):
        for call in [quillmark.identify, quillmark.FontArray.from_file, quillmark.why]:
            for path, error in [("/nonexistent/a.ttf", FileNotFoundError), (DEJAVU + "/a.ttf", NotADirectoryError)]:
                with self.subTest(call=call.__name__, path=path), self.assertRaises(error) as caught:
                    call(path)
                self.assertEqual(caught.exception.filename, path)
        self.assertRaisesRegex(IsADirectoryError, "a folder: ask for each of its files: '/usr'", quillmark.why, "/usr")

    @unittest.skipUnless(TOOL.exists(), "built without the tool")
    def test_why(self):
        self.assertIsNone(quillmark.why(DEJAVU))
        self.addCleanup(os.chdir, os.getcwd())
        with tempfile.TemporaryDirectory() as folder:
            os.chdir(folder)
            pathlib.Path(os.fsdecode(b"-\xff.ttf")).write_bytes(b"\x89PNG\r\n\x1a\n")
            self.assertIn("a PNG image despite its extension .ttf", quillmark.why(b"-\xff.ttf"))

    def test_why_without_an_answer(self):
        for tool, fault in [("/nonexistent/quillmark", "cannot be run"), ("/bin/false", "no answer, status 1")]:
            with unittest.mock.patch.dict(os.environ, QUILLMARK_TOOL=tool):
                self.assertRaisesRegex(OSError, fault, quillmark.why, DEJAVU)
