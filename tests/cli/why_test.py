"""quillmark why: a file of each kind that gives no face, the reason that is told, and how its folder counts it."""

import gzip
import io
import os
import stat
import struct
import zipfile

from font_builders import apple_double, collection, fond, name_table, resource_fork, sfnt
from tool_case import ToolCase


def zipped():
    data = io.BytesIO()
    with zipfile.ZipFile(data, "w") as archive:
        archive.writestr("font.ttf", sfnt())
    return data.getvalue()


def sized(text, at):
    """`text` filled up to a size that stands as a little-endian number at an offset."""
    return patched(text + bytes(90), at, "<L", len(text) + 90)


def patched(data, at, form, value):
    return data[:at] + struct.pack(form, value) + data[at + struct.calcsize(form) :]


def suitcase(*associations, outline=None, bitmaps=b"bits", name=b""):
    """A family of one FOND, with a bitmap 2 and perhaps an outline 7."""
    sfnts = [] if outline is None else [("sfnt", 7, outline)]
    return resource_fork(("FOND", 9, fond(9, *associations, name=name)), ("NFNT", 2, bitmaps), *sfnts)


FONT = sfnt()
FORK = resource_fork(("ICON", 1, b"icon"), ("vers", 1, b"1.0"))
PCF = b"\x01fcp" + bytes(40)
TFM = struct.pack(">12H", 6 + 3 + 7, 3, 1, 0, 1, 1, 1, 1, 1, 1, 1, 0) + bytes(40)
UNFIT_NAME = struct.pack(">3H6H", 0, 1, 18, 3, 1, 0x409, 6, 2, 0) + b"\xD8\0"
MORE = "; quillmark why {} says more"
NO_FACE = "neither a readable outline font nor the name of a printer font"
SEVERAL = collection("A", "B")
ONE = collection("A")
LONE = "read only through the Macintosh font family file that names it: none in this folder does"

# By what the closing line counts the files of a folder as: name of the file, its bytes, and what the reason says.
REASONS = {
    "{} other files passed over": [
        # Fonts in formats that are not read.
        ("a.woff", b"wOFF" + bytes(40), "a WOFF web font, which Quillmark does not read: convert it"),
        ("a.ttf", b"wOFF" + bytes(40), "a WOFF web font despite its extension .ttf, which"),
        ("a.eot", sized(bytes(34) + b"LP", 0), "an EOT web font"),
        ("a.pcf.gz", gzip.compress(PCF), "a PCF bitmap font, compressed with gzip, which"),
        ("a.fnt", sized(b"\0\3", 2), "a Windows bitmap font (FNT)"),
        ("a.fon", patched(b"MZ" + bytes(62) + b"NE" + bytes(40), 60, "<L", 64), "FON bitmaps or FOT link"),
        ("a.fon", b"junk" * 9, "no file with the extension .fon is"),
        ("a.pfm", sized(b"\0\1", 2), "a Windows metrics file of a printer font (PFM)"),
        ("a.cff", b"\1\0\4\2" + bytes(9), "a bare CFF font"),
        ("a.t42", b"%!PS-TrueTypeFont-65536\n", "a Type 42 PostScript font"),
        ("a.tfm", TFM, "a TeX metric file"),
        ("a.svg", b'<?xml version="1.0"?><svg><defs><font id="a"/></defs></svg>', "an SVG font"),
        # No fonts.
        ("a.gz", gzip.compress(b"text"), "a gzip archive, not a font"),
        ("a.hqx", b"(This file must be converted with BinHex 4.0)\n", "a BinHex archive, not a font: unpack it with"),
        ("a.txt", b"true\n", "a text file, not a font that Quillmark reads"),
        ("theme.cache", b"\0\1\0\0" + bytes(90), "unknown data, not a font that Quillmark reads"),
        ("a", (b"", FORK), "a resource file without fonts: it holds ICON, vers"),
        ("a.dfont", suitcase((12, 1, 2)), f"{NO_FACE} (FOND 9, style 1: it has bitmaps only"),
        ("empty", b"", "empty, and no resource fork was found for it"),
        # Sound fonts under another name.
        ("a", FONT, "a TrueType font, which is not read without its extension: its name must end in .ttf"),
        ("a.pfb", sfnt(version=b"OTTO"), "an OpenType font, which is not read under the extension .pfb: its name must end in .otf"),
    ],
    "{} with the wrong extension" + MORE: [
        ("a.ttc", FONT, "a TrueType font despite its extension .ttc: its name must end in .ttf"),
        ("a.ttf", SEVERAL, "a TrueType collection despite its extension .ttf, and collections are read by"),
    ],
    "{} Type 1 without a family file" + MORE: [
        ("a.pfb", b"\x80\1\0\0\0\0%!PS-AdobeFont-1.0", f"a PostScript Type 1 printer font (PFB), {LONE}"),
        ("a", b"%!PS-AdobeFont-1.0: A\n", "a PostScript Type 1 printer font, read only through"),
        ("a.pfb", b"junk", f"a printer font by its extension .pfb, {LONE}; put the two together and give the family file"),
        ("Lone", (b"", resource_fork(("POST", 501, b"%!"))), "a printer font, read only through"),
    ],
    "{} damaged" + MORE: [
        # No fonts, though they are called so.
        ("a.ttf", zipped(), "a ZIP archive despite its extension .ttf, not a font: unpack it"),
        ("a.otf", b"\n <!DOCTYPE HTML><p>404", "a web page despite its extension .otf, not a font: get the file again"),
        ("a.ttf", b"", "empty"),
        # Damaged fonts.
        ("a.ttf", FONT[:12], "a TrueType font that is damaged: the file ends before the list of tables, after 12 bytes"),
        ("a", FONT[:40], "a TrueType font that is damaged"),
        ("a.ttf", patched(FONT, 4, ">H", 0), "its header states 0 tables"),
        ("a.ttf", patched(FONT, 4, ">H", 0x8000), "its header states 32768 tables"),
        ("a.ttf", patched(FONT[:28], 4, ">H", 9), "the file ends inside the list of tables: 9 are stated, 0 are there"),
        ("a.ttf", FONT.replace(b"name", b"NAME", 1), "it has no name table"),
        ("a.ttf", patched(FONT, 20, ">L", 0), "its name table has the offset 0"),
        ("a.ttf", patched(FONT, 20, ">L", 900), f"its name table runs to byte {900 + 28}, and the file has {len(FONT)} bytes"),
        ("a.ttf", sfnt(name=""), "every name in its name table is empty or lies outside the font"),
        ("a.ttf", patched(FONT, 46, ">H", 0), "its name table lists no names"),
        ("a.ttf", FONT.replace(name_table((6, "Quill")), UNFIT_NAME + bytes(8)), "no name in its name table is valid text"),
        # Collections.
        ("a.ttc", b"junk" * 9, "not a collection, which its extension .ttc makes Quillmark expect"),
        ("a.ttc", ONE[:12], "a damaged collection: the file ends inside its header"),
        ("a.ttc", patched(ONE, 4, ">L", 9), "a collection of an unknown version"),
        ("a.ttc", patched(ONE, 8, ">L", 0), "a damaged collection: its header states 0 faces"),
        ("a.ttc", patched(ONE, 12, ">L", 9999), "face 0: its list of tables lies at byte 9999"),
        ("a.ttc", patched(ONE, 20, ">H", 9999), "face 0: the file ends inside its list of tables"),
        ("a.ttc", patched(ONE, 40, ">L", 9999), "face 0: its table zero runs to byte"),
        ("a.ttc", SEVERAL[:16], "faces 0, 1: the file ends inside the list of faces"),
        ("a.ttc", collection("AB")[:-2], "face 0: its table name lacks 2 bytes of its padding"),
        ("a.ttc", ONE.replace(b"name", b"NAME"), "face 0: it has no name table"),
        # Resource files.
        ("a.dfont", FORK, "a resource file without fonts: it holds ICON, vers"),
        ("a.dfont", resource_fork(("sfnt", 128, FONT)), "a resource file with fonts that no FOND resource names: it holds sfnt"),
        ("a.dfont", FORK[:9], "a damaged resource file: it ends inside its header"),
        ("a.dfont", patched(FORK, 8, ">L", 5000), f"its data area runs to byte 5256, and the fork has {len(FORK)}"),
        ("a.dfont", FORK[:-1], f"its map runs to byte {len(FORK)}, and the fork has {len(FORK) - 1}"),
        ("a.dfont", patched(FORK, 12, ">L", 29), "its map has fewer than 30 bytes"),
        ("a", (b"", patched(FORK, len(FORK) - 42, ">H", 99)), "whose resource fork, in "),
        ("a.dfont", patched(FORK, len(FORK) - 42, ">H", 99), "its type list runs to byte 830, and the map has"),
        ("a.dfont", patched(FORK, len(FORK) - 36, ">H", 99), "the list of ICON resources runs to byte"),
        ("a", suitcase((9, 0, 2), name=b"A/B"), "printer font holds a slash"),
        ("a", resource_fork(("FOND", 9, fond(9, (9, 0, 2), name=b"A"))), "only when the file holds NFNT resources"),
        ("a.dfont", suitcase((0, 0, 200)), "(FOND 9, style 0: no readable sfnt resource has the number 200"),
        ("a.dfont", suitcase((0, 0, 7), outline=FONT[:40]), "sfnt 7 is damaged: its name table runs to byte 72, and sfnt 7 has 40 bytes"),
        ("a.dfont", suitcase(), "(FOND 9 lists no styles)"),
    ],
}


class WhyTest(ToolCase):
    def why(self, path, reason):
        return self.check(["why", path], 0, f"{path}: {reason}\n").stdout.decode()

    def test_each_reason(self):
        for number, (kind, rows) in enumerate(REASONS.items()):
            paths = [f"{number}/{i}/{name}" for i, (name, _, _) in enumerate(rows)]
            for path, (_, data, _) in zip(paths, rows):
                self.write(path, data)
            told = self.run_tool(["why", *paths])
            self.assertEqual((told.returncode, told.stderr), (0, b""))
            lines = told.stdout.decode().splitlines()
            for path, line, (_, _, reason) in zip(paths, lines, rows, strict=True):
                with self.subTest(path, reason=reason):
                    self.assertTrue(line.startswith(f"{path}: "), line)
                    self.assertIn(reason, line)
            self.check(["identify", *paths], 1, err="\n".join([*lines, "0 faces in 0 files", ""]))
            self.write(f"{number}/good.ttf", FONT)
            self.check(f"identify {number}", out="...", err=f"1 face in 1 file; {kind.format(len(rows), number)}\n")

    def test_what_is_no_file(self):
        os.mkfifo(self.folder / "fifo.ttf")
        os.mknod(self.folder / "socket", stat.S_IFSOCK)
        self.write("file", b"")
        for path, kind in [("fifo.ttf", "named pipe"), ("socket", "socket"), ("/dev/null", "device")]:
            self.why(path, f"a {kind}, not a file")
        self.check("why none.ttf", 1, err="none.ttf: no such file\n")
        self.check("why file/a", 1, err="file/a: no such file, for a part of its path is no folder\n")

    def test_every_place_that_an_empty_file_names_is_looked_at(self):
        fork = suitcase((0, 0, 7), outline=FONT)
        path = self.write("Quill", b"")
        told = self.why(path, "...")
        for place in ("._Quill", "__MACOSX/._Quill", ".AppleDouble/Quill", "resource.frk/Quill"):
            self.assertIn(str(self.folder / place), told)
            carrier = self.write(place, fork if "frk" in place else apple_double(fork))
            self.why(path, "gives 1 face")
            carrier.unlink()

    def test_sidecars_name_their_file(self):
        self.write("Quill", b"")
        for place, told in [("._Quill", "give {}/Quill instead"), ("__MACOSX/._Gone", "{}/Gone is not there"),
                            (".AppleDouble/Quill", "give {}/Quill instead")]:  # fmt: skip
            self.why(self.write(place, apple_double(FORK)), f"...{told.format(self.folder)}...")

    def test_the_family_of_a_printer_font(self):
        family = self.write("Family.dfont", suitcase((12, 0, 2), name=b"Quill"))
        for name, told in [("Quill", f"names it: give {family}"), ("Other", "none in this folder")]:
            self.why(self.write(name, b"%!PS-AdobeFont-1.0: Quill\n"), f"...{told}...")

    def test_faces_and_lost_faces(self):
        twins = collection("A", "B", "A", "D")
        for name, data, expected in [
            ("a.ttc", SEVERAL, "gives 2 faces"),
            ("c.ttc", collection("A", "AB")[:-2], "gives 1 of the 2 faces it lists; face 1: its table name lacks 2 bytes "
             "of its padding at the end of the file (as many zero bytes at the end of a copy mend that)"),
            ("b.ttc", patched(twins, 24, ">L", struct.unpack(">L", twins[16:20])[0]), "gives 2 of the 4 "
             "faces it lists; face 2: the PostScript name of face 0, A; face 3: the same font as face 1"),
        ]:  # fmt: skip
            self.why(self.write(name, data), expected)

    def test_paths(self):
        long = self.write("/".join(["n" * 200] * 5) + "/a.ttf", FONT)
        self.check(["why", long], 1, err="...only 1023 bytes of a path are looked at...")
        self.write(b"\xFF.dfont".decode(errors="surrogateescape"), suitcase((0, 0, 7), outline=FONT))
        self.check([b"why", b"\xFF.dfont"], 1, err="...read by paths in UTF-8 only...")

    def test_only_the_beginning_of_a_huge_file_is_read(self):
        huge = self.write("huge.bin", b"\1")
        for size, told in [(1 << 36, "4 GiB or larger"), ((1 << 32) - 2, "unknown data")]:
            os.truncate(huge, size)
            self.why(huge, f"...{told}...")

    def test_every_cut_and_changed_byte_is_explained(self):
        for name, data in [("a.ttf", FONT), ("a.ttc", SEVERAL), ("a.dfont", suitcase((0, 0, 7), outline=FONT))]:
            paths = []
            for at in range(0, len(data), 7):
                paths.append(self.write(f"cut{at}/{name}", data[:at]))
                paths.append(self.write(f"max{at}/{name}", data[:at] + b"\xFF" * 4 + data[at + 4 :]))
            result = self.run_tool(["why", *paths])
            self.assertEqual((result.returncode, result.stderr, result.stdout.count(b"\n")), (0, b"", len(paths)))
