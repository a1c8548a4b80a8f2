"""quillmark why: a file of each kind that gives no face, and the reason that is told.

Usage: why_test.py TOOL [unittest arguments]
"""

import gzip
import io
import os
import pathlib
import socket
import struct
import zipfile

import tool_case
from font_builders import apple_double, collection, fond, name_table, resource_fork, sfnt
from tool_case import ToolCase, run

HOME = os.getcwd()


def zipped():
    data = io.BytesIO()
    with zipfile.ZipFile(data, "w") as archive:
        archive.writestr("font.ttf", sfnt())
    return data.getvalue()


def sized(text, at, extra=90):
    """`text` filled up to a size that stands as a little-endian number at an offset."""
    data = bytearray(text + bytes(extra))
    data[at : at + 4] = struct.pack("<L", len(data))
    return bytes(data)


def patched(data, at, form, value):
    size = struct.calcsize(form)
    return data[:at] + struct.pack(form, value) + data[at + size :]


FONT = sfnt()
FORK = resource_fork(("ICON", 1, b"icon"), ("vers", 1, b"1.0"))
PCF = b"\x01fcp" + bytes(40)
UNFIT_TEXT = struct.pack(">3H6H", 0, 1, 18, 3, 1, 0x409, 6, 2, 0) + b"\xD8\0"
NO_FACE = "neither a readable outline font nor the name of a printer font"

# Name of the file, its bytes, and what the reason must say.
REASONS = [
    # Fonts in formats that are not read.
    ("a.woff", b"wOFF" + bytes(40), "a WOFF web font, which Quillmark does not read: convert it"),
    ("a.woff2", b"wOF2" + bytes(40), "a WOFF2 web font"),
    ("a.ttf", b"wOFF" + bytes(40), "a WOFF web font in spite of its extension .ttf, which"),
    ("a.eot", sized(bytes(34) + b"LP", 0), "an EOT web font"),
    ("a.bdf", b"STARTFONT 2.1\n", "a BDF bitmap font"),
    ("a.pcf", PCF, "a PCF bitmap font, which"),
    ("a.pcf.gz", gzip.compress(PCF), "a PCF bitmap font, compressed with gzip, which"),
    ("a.psfu", b"\x72\xB5\x4A\x86" + bytes(40), "a PSF console font"),
    ("a.fnt", sized(b"\0\3", 2), "a Windows bitmap font (FNT)"),
    ("a.fon", patched(b"MZ" + bytes(62) + b"NE" + bytes(40), 60, "<L", 64), "FON bitmaps or FOT link"),
    ("a.fon", b"junk" * 9, "no file with the extension .fon is"),
    ("a.inf", b"FontName X\n", "no file with the extension .inf is"),
    ("a.pfm", sized(b"\0\1", 2), "a Windows metrics file of a printer font (PFM)"),
    ("a.afm", b"StartFontMetrics 4.1\n", "an AFM metrics file"),
    ("a.cff", b"\1\0\4\2" + bytes(9), "a bare CFF font"),
    ("a.t42", b"%!PS-TrueTypeFont-65536\n", "a Type 42 PostScript font"),
    ("a.tfm", struct.pack(">12H", 6 + 3 + 7, 3, 1, 0, 1, 1, 1, 1, 1, 1, 1, 0) + bytes(40), "a TeX metric file"),
    ("a.300pk", b"\xF7\x59" + bytes(9), "a TeX packed bitmap font (PK)"),
    ("a.pfr", b"PFR0" + bytes(9), "a PFR font"),
    ("a.svg", b'<?xml version="1.0"?><svg><defs><font id="a"/></defs></svg>', "an SVG font"),
    # Printer fonts.
    ("a.pfb", b"\x80\1\0\0\0\0%!PS-AdobeFont-1.0", "a PostScript Type 1 printer font (PFB), read only through the Macintosh font family file that names it: none"),
    ("a.pfa", b"%!PS-AdobeFont-1.0: A\n", "a PostScript Type 1 printer font, read only through"),
    ("a.pfb", b"junk", "a printer font by its extension .pfb, read only through the Macintosh font family file"),
    ("Lone", (b"", resource_fork(("POST", 501, b"%!"))), "a printer font, read only through"),
    # No fonts, whatever they are called.
    ("a.ttf", zipped(), "a ZIP archive in spite of its extension .ttf, not a font: unpack it"),
    ("a.otf", b"\n <!DOCTYPE HTML><p>404", "a web page in spite of its extension .otf, not a font: get the file again"),
    ("a.ttf", b"version https://git-lfs.github.com/x\n", "a Git LFS pointer"),
    ("a.ttc", b"\x89PNG\r\n\x1A\n", "a PNG image in spite of its extension .ttc, not a font"),
    ("a.pdf", b"%PDF-1.7\n", "a PDF document, not a font"),
    ("a.gz", gzip.compress(b"text"), "a gzip archive, not a font"),
    ("a.hqx", b"(This file must be converted with BinHex 4.0)\n", "a BinHex archive, not a font: unpack it with"),
    ("a.txt", b"text", "a text file, not a font that Quillmark reads"),
    ("a", bytes(30), "unknown data, not a font that Quillmark reads"),
    # Sound fonts under another name.
    ("a", FONT, "a TrueType font, which is not read without its extension: its name must end in .ttf"),
    ("a.fon", FONT, "a TrueType font, which is not read under the extension .fon: its name"),
    ("a.pfb", sfnt(version=b"OTTO"), "an OpenType font, which is not read under the extension .pfb: its name must end in .otf"),
    ("a.ttc", FONT, "a TrueType font in spite of its extension .ttc: its name must end in .ttf"),
    ("a.ttf", collection("A", "B"), "a TrueType collection in spite of its extension .ttf, and collections are read by"),
    # Damaged fonts.
    ("a.ttf", FONT[:12], "a TrueType font that is damaged: the file ends before the list of tables, after 12 bytes"),
    ("a.ttf", patched(FONT, 4, ">H", 0), "its header states 0 tables"),
    ("a.ttf", patched(FONT, 4, ">H", 0x8000), "its header states 32768 tables"),
    ("a.ttf", patched(FONT[:28], 4, ">H", 9), "the file ends inside the list of tables: 9 are stated, 0 are there"),
    ("a.ttf", sfnt().replace(b"name", b"NAME", 1), "it has no name table"),
    ("a.ttf", patched(FONT, 20, ">L", 0), "its name table has the offset 0"),
    ("a.ttf", patched(FONT, 20, ">L", 900), f"its name table runs to byte {900 + 28}, and the file has {len(FONT)} bytes"),
    ("a.otf", sfnt(version=b"OTTO", name="")[:12], "an OpenType font that is damaged"),
    ("a.ttf", sfnt(name=""), "every name in its name table is empty or lies outside the font"),
    ("a.ttf", patched(FONT, 46, ">H", 0), "its name table lists no names"),
    # Collections.
    ("a.ttc", b"", "empty"),
    ("a.ttc", b"junk" * 9, "not a collection, which its extension .ttc makes Quillmark expect"),
    ("a.ttc", collection("A")[:12], "a damaged collection: the file ends inside its header"),
    ("a.ttc", patched(collection("A"), 4, ">L", 9), "a collection of an unknown version"),
    ("a.ttc", patched(collection("A"), 8, ">L", 0), "a damaged collection: its header states 0 faces"),
    ("a.ttc", patched(collection("A"), 12, ">L", 9999), "face 0: its list of tables lies at byte 9999"),
    ("a.ttc", patched(collection("A"), 20, ">H", 9999), "face 0: the file ends inside its list of tables"),
    ("a.ttc", patched(collection("A"), 40, ">L", 9999), "face 0: its table zero runs to byte"),
    ("a.ttc", collection("A", "B")[:16], "faces 0, 1: the file ends inside the list of faces"),
    ("a.ttc", collection("AB")[:-2], "face 0: its table name lacks 2 bytes of its padding"),
    ("a.ttc", collection("A").replace(b"name", b"NAME"), "face 0: it has no name table"),
    # Resource files.
    ("a.dfont", FORK, "a resource file without fonts: it holds ICON, vers"),
    ("a", (b"", FORK), "a resource file without fonts: it holds ICON, vers"),
    ("a.dfont", resource_fork(("sfnt", 128, FONT)), "a resource file with fonts that no FOND resource names: it holds sfnt"),
    ("a.dfont", FORK[:9], "a damaged resource file: it ends inside its header"),
    ("a.dfont", patched(FORK, 8, ">L", 5000), f"its data area runs to byte 5256, and the fork has {len(FORK)}"),
    ("a.dfont", FORK[:-1], f"its map runs to byte {len(FORK)}, and the fork has {len(FORK) - 1}"),
    ("a.dfont", patched(FORK, 12, ">L", 29), "its map has fewer than 30 bytes"),
    ("a", (b"", patched(FORK, len(FORK) - 42, ">H", 99)), "whose resource fork, in "),
    ("a.dfont", patched(FORK, len(FORK) - 42, ">H", 99), "its type list runs to byte 830, and the map has"),
    ("a.dfont", patched(FORK, len(FORK) - 36, ">H", 99), "the list of ICON resources runs to byte"),
    ("a.dfont", resource_fork(("FOND", 9, fond(9, (12, 1, 200))), ("NFNT", 200, b"bits")), f"{NO_FACE} (FOND 9, style 1: it has bitmaps only"),
    ("a", resource_fork(("FOND", 9, fond(9, (9, 0, 2), name=b"A/B")), ("NFNT", 2, b"bits")), "printer font holds a slash"),
    ("a", resource_fork(("FOND", 9, fond(9, (9, 0, 2), name=b"A"))), "only when the file holds NFNT resources"),
    ("a.dfont", resource_fork(("FOND", 9, fond(9, (0, 0, 200)))), "(FOND 9, style 0: no readable sfnt resource has the number 200"),
    ("a.dfont", resource_fork(("FOND", 9, fond(9, (0, 0, 7))), ("sfnt", 7, FONT[:40])), "sfnt 7 is damaged: its name table runs to byte 72, and sfnt 7 has 40 bytes"),
    ("a.dfont", resource_fork(("FOND", 9, fond(9))), "(FOND 9 lists no styles)"),
]


class WhyTest(ToolCase):
    def why(self, path, status=0, **options):
        result = run("why", path, **options)
        self.assertEqual(result.returncode, status, result.stderr)
        (line,) = (result.stderr if status else result.stdout).decode().splitlines()
        start = f"{os.fspath(path)}: "
        self.assertTrue(line.startswith(start), line)
        return line[len(start) :]

    def test_each_reason(self):
        paths = []
        for i, (name, data, _) in enumerate(REASONS):
            data, fork = data if isinstance(data, tuple) else (data, None)
            paths.append(self.write(f"{i}/{name}", data))
            if fork is not None:
                self.write(f"{i}/._{name}", apple_double(fork))
        told = run("why", *paths)
        self.assertEqual((told.returncode, told.stderr), (0, b""))
        lines = told.stdout.decode().splitlines()
        self.assertEqual(len(lines), len(paths))
        for path, line, (name, _, reason) in zip(paths, lines, REASONS):
            with self.subTest(name=name, reason=reason):
                self.assertTrue(line.startswith(f"{path}: "), line)
                self.assertIn(reason, line)
        self.assertEqual(run("identify", *paths).stderr.decode().splitlines()[:-1], lines)

    def test_names_whose_text_is_invalid(self):
        font = self.write("a.ttf", sfnt().replace(name_table((6, "Quill")), UNFIT_TEXT + bytes(8)))
        self.assertIn("no name in its name table is valid text", self.why(font))

    def test_what_is_no_file(self):
        os.mkfifo(self.folder / "fifo.ttf")
        sock = socket.socket(socket.AF_UNIX)
        self.addCleanup(sock.close)
        os.chdir(self.folder)  # names of sockets are short
        self.addCleanup(os.chdir, HOME)
        sock.bind("socket")
        self.write("file", b"")
        rows = [
            (self.folder / "fifo.ttf", 0, "a named pipe, not a file"),
            (self.folder / "socket", 0, "a socket, not a file"),
            ("/dev/null", 0, "a device, not a file"),
            (self.folder / "none.ttf", 1, "no such file"),
            (self.folder / "file/none.ttf", 1, "no such file, for a part of its path is no folder"),
        ]
        for path, status, reason in rows:
            with self.subTest(reason):
                self.assertEqual(self.why(path, status), reason)

    def test_no_permission(self):
        user = {"user": 65534} if os.getuid() == 0 else {}
        closed = self.write("closed.ttf", FONT)
        inside = self.write("folder/a.ttf", FONT)
        self.folder.chmod(0o755)
        closed.chmod(0)
        inside.parent.chmod(0o600)
        if run("--version", **user).returncode != 0:
            self.skipTest("the tool cannot be run by another user")
        try:
            self.assertEqual(self.why(closed, 1, **user), "no permission to read it")
            self.assertEqual(self.why(inside, 1, **user), "no permission to look into its folder")
        finally:
            inside.parent.chmod(0o700)

    def test_every_place_that_an_empty_file_names_is_looked_at(self):
        fork = resource_fork(("FOND", 9, fond(9, (0, 0, 200))), ("sfnt", 200, FONT))
        path = self.write("suitcase/Quill", b"")
        told = self.why(path)
        self.assertTrue(told.startswith("empty, and no resource fork was found for it: "), told)
        for place, content in [
            ("suitcase/._Quill", apple_double(fork)),
            ("suitcase/__MACOSX/._Quill", apple_double(fork)),
            ("suitcase/.AppleDouble/Quill", apple_double(fork)),
            ("suitcase/resource.frk/Quill", fork),
        ]:
            with self.subTest(place):
                self.assertIn(str(self.folder / place), told)
                carrier = self.write(place, content)
                self.assertEqual(self.why(path), "gives 1 face")
                carrier.unlink()

    def test_sidecars_name_their_file(self):
        for place, there in [("._Quill", True), ("__MACOSX/._Gone", False), (".AppleDouble/Quill", True)]:
            with self.subTest(place):
                self.write("Quill", b"")
                told = self.why(self.write(place, apple_double(FORK)))
                owner = self.folder / pathlib.Path(place).name.removeprefix("._")
                self.assertIn(f"give {owner} instead" if there else f"{owner} is not there", told)

    def test_the_family_of_a_printer_font(self):
        record = fond(9, (12, 0, 200), name=b"Quill")
        family = self.write("Family.dfont", resource_fork(("FOND", 9, record), ("NFNT", 200, b"bits")))
        self.assertIn(f"names it: give {family}", self.why(self.write("Quill", b"%!PS-AdobeFont-1.0: Quill\n")))
        self.assertIn("none in this folder", self.why(self.write("Other", b"%!PS-AdobeFont-1.0: Quill\n")))

    def test_faces_and_lost_faces(self):
        twins = collection("A", "B", "A", "D")
        twice = patched(twins, 24, ">L", struct.unpack(">L", twins[16:20])[0])
        rows = [
            ("a.ttf", FONT, "gives 1 face"),
            ("b.otf", FONT, "gives 1 face"),
            ("a.ttc", collection("A", "B"), "gives 2 faces"),
            ("c.ttc", collection("A", "AB")[:-2], "gives 1 of the 2 faces it lists; face 1: its table name lacks 2 bytes of its padding at the end of the file (as many zero bytes at the end of a copy mend that)"),
            ("b.ttc", twice, "gives 2 of the 4 faces it lists; face 2: the PostScript name of face 0, A; face 3: the same font as face 1"),
        ]
        for name, data, expected in rows:
            with self.subTest(expected):
                self.assertEqual(self.why(self.write(name, data)), expected)

    def test_paths(self):
        long = self.folder.joinpath(*["n" * 200] * 5, "a.ttf")
        long.parent.mkdir(parents=True)
        long.write_bytes(FONT)
        self.assertIn("only 1023 bytes of a path are looked at", self.why(long, 1))
        odd = os.fsencode(self.folder) + b"/\xFF.dfont"
        with open(odd, "wb") as file:
            file.write(resource_fork(("FOND", 9, fond(9, (0, 0, 7))), ("sfnt", 7, FONT)))
        self.assertIn("read by paths in UTF-8 only".encode(), run("why", odd).stderr)

    def test_only_the_beginning_of_a_huge_file_is_read(self):
        huge = self.write("huge.bin", b"\1")
        os.truncate(huge, 1 << 36)
        self.assertIn("4 GiB or larger", self.why(huge))
        os.truncate(huge, (1 << 32) - 2)
        self.assertIn("unknown data", self.why(huge))

    def test_every_cut_and_changed_byte_is_explained(self):
        suitcase = resource_fork(("FOND", 9, fond(9, (0, 0, 7))), ("sfnt", 7, FONT))
        for name, data in [("a.ttf", FONT), ("a.ttc", collection("A", "B")), ("a.dfont", suitcase)]:
            paths = []
            for at in range(0, len(data), 7):
                paths.append(self.write(f"cut{at}/{name}", data[:at]))
                paths.append(self.write(f"max{at}/{name}", data[:at] + b"\xFF" * 4 + data[at + 4 :]))
            result = run("why", *paths)
            self.assertEqual((result.returncode, result.stderr), (0, b""))
            self.assertEqual(len(result.stdout.splitlines()), len(paths))


if __name__ == "__main__":
    tool_case.main()
