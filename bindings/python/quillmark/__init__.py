"""Tells which fonts a file holds, exactly: names, version, foundry, class, styles and checksums of every face.

>>> import quillmark
>>> for face in quillmark.identify("/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf"):
...     print(face.postscript_name, face.foundry, face.font_class, face.styles, f"{face.checksum:08X}")
DejaVuSans-Bold DejaVu Fonts Humanist Sans Serif ('Bold',) FD8FF11C

What is stored is compared as text, not as faces: the stored forms keep less than a face holds.

>>> with quillmark.FontArray.from_file("/usr/share/fonts/truetype/wqy/wqy-zenhei.ttc") as array:
...     stored = array.to_xml()
>>> [face.postscript_name for face in quillmark.from_xml(stored)]
['WenQuanYiZenHei', 'WenQuanYiZenHeiMono', 'WenQuanYiZenHeiSharp']

A file without a face that can be read is an error.

>>> quillmark.identify("/dev/null")
Traceback (most recent call last):
    ...
quillmark.QuillmarkError: no face was read: /dev/null (status 1)

Text is UTF-8; bytes of a font that are none come and go as lone surrogates ("surrogateescape"). The functions may be
called from several threads at once, and let other threads run.
"""

import ctypes
import errno
import os
from dataclasses import dataclass
from typing import Callable, List, Optional, Sequence, Tuple, Type, TypeVar, Union, overload

from . import _library, _tool
from ._library import QuillmarkError

__all__ = [
    "ATTRIBUTES_ALL", "Face", "FontArray", "QuillmarkError", "__version__", "classify", "from_property_list",
    "from_xml", "identify", "library_version", "styles", "why",
]  # fmt: skip

__version__ = "1.4.0"

Path = Union[str, bytes, "os.PathLike[str]", "os.PathLike[bytes]"]

_Value = TypeVar("_Value")

QuillmarkError.__module__ = __name__

ATTRIBUTES_ALL = 0x1FF03F


@dataclass(frozen=True)
class Face:
    """One face. An attribute that was not requested, or that a stored form does not keep, is None."""

    index: int
    """Place in the file's list of faces, from 0."""
    postscript_name: Optional[str]
    family: Optional[str]
    full_name: Optional[str]
    display_name: Optional[str]
    windows_full_name: Optional[str]
    kind: Optional[str]
    """"TrueType", "OpenType - TT", "OpenType - PS", "PostScript", "PostScript - MM", "TrueType Collection", ..."""
    version: Optional[str]
    platform: Optional[str]
    """"mac" or "crossplatform"."""
    foundry: Optional[str]
    """"--" when the library does not know the maker."""
    legacy_foundry: Optional[str]
    font_class: Optional[str]
    """Typographic class of the family; "--" when the library knows none."""
    styles: Tuple[str, ...]
    """What the PostScript name, and next the full name, tell."""
    printer_font: Optional[str]
    """Path of the file that holds the outlines; empty when they are in the font file itself."""
    windows_mm_file: Optional[str]
    checksum: Optional[int]
    """Identifies the face's data."""
    legacy_checksum: Optional[int]
    kerning_checksum: Optional[int]
    outline_file_size: Optional[int]
    """Bytes, modulo 2**32."""


class FontArray(Sequence[Face]):
    """The faces of a file or of a stored text, held by the library until ``close`` or the end of a ``with``.

    A sequence of ``Face``: each is read when it is asked for, and stays when the array is closed.
    """

    def __init__(self, handle: ctypes.c_void_p) -> None:
        self._handle: Optional[ctypes.c_void_p] = handle

    @classmethod
    def from_file(cls, path: Path, request: int = ATTRIBUTES_ALL) -> "FontArray":
        """Reads a font file. ``request`` is a sum of QM_Attribute bits, as quillmark.h lists them."""
        name = _library.path_bytes(path)
        try:
            return cls._made("no face was read: " + os.fsdecode(name), "CreateSpecifier", name, 0, request)
        except QuillmarkError:
            _library.check_readable(path)
            raise

    @classmethod
    def from_xml(cls, text: str) -> "FontArray":
        """Reads what ``to_xml`` wrote. Checksums above 0x7FFFFFFF come back as 0x7FFFFFFF."""
        data = _library.to_bytes(text)
        return cls._made("no whole face in the XML text", "CreateSpecifierFromXML", data)

    @classmethod
    def from_property_list(cls, text: str) -> "FontArray":
        """Reads what ``to_property_list`` wrote. Checksums above 0x7FFFFFFF come back as 0x7FFFFFFF."""
        data = _library.to_bytes(text)
        return cls._made("no face in the property list", "CreateSpecifierFromPropertyList", data)

    @classmethod
    def _made(cls, message: str, function: str, *arguments: object) -> "FontArray":
        handle = ctypes.c_void_p()
        status = getattr(_library.load(), "QM_" + function)(*arguments, ctypes.byref(handle))
        if status != _library.STATUS_OK:
            raise QuillmarkError(status, message)
        return cls(handle)

    def close(self) -> None:
        handle, self._handle = self._handle, None
        if handle is not None:
            _library.load().QM_SpecifierFree(handle)

    def __enter__(self) -> "FontArray":
        return self

    def __exit__(self, kind: Optional[Type[BaseException]], value: object, trace: object) -> None:
        self.close()

    def __del__(self) -> None:
        self.close()

    def _open(self) -> ctypes.c_void_p:
        if self._handle is None:
            raise ValueError("the array is closed")
        return self._handle

    def __len__(self) -> int:
        return _library.number_of(_library.load().QM_GetFontCount, self._open())[1]

    @overload
    def __getitem__(self, index: int) -> Face: ...

    @overload
    def __getitem__(self, index: slice) -> List[Face]: ...

    def __getitem__(self, index: Union[int, slice]) -> Union[Face, List[Face]]:
        chosen = range(len(self))[index]
        return self._face(chosen) if isinstance(chosen, int) else [self._face(place) for place in chosen]

    def faces(self) -> List[Face]:
        return self[:]

    def index_of(self, fond_id: int, style: int) -> Optional[int]:
        """Index of the first face of a FOND resource and classic style code; None without one."""
        find = _library.load().QM_GetFontIndexForFONDResourceID
        status, index = _library.number_of(find, self._open(), fond_id, style)
        return index if status == _library.STATUS_OK else None

    def to_xml(self) -> str:
        return _library.stored_form_of(_library.load().QM_GetXMLRepresentation, self._open())

    def to_property_list(self) -> str:
        return _library.stored_form_of(_library.load().QM_GetPropertyListRepresentation, self._open())

    def _face(self, index: int) -> Face:
        library = _library.load()

        def text(name: str) -> Optional[str]:
            return held(_library.text_of, name)

        def number(name: str) -> Optional[int]:
            return held(_library.number_of, name)

        def held(ask: Callable[..., Tuple[int, _Value]], name: str) -> Optional[_Value]:
            status, value = ask(getattr(library, "QM_Get" + name), self._open(), index)
            return value if status == _library.STATUS_OK else None

        name, full_name, family = text("PostScriptName"), text("FullName"), text("FamilyName")
        return Face(
            index=index,
            postscript_name=name,
            family=family,
            full_name=full_name,
            display_name=text("DisplayName"),
            windows_full_name=text("WindowsFullName"),
            kind=text("KindName"),
            version=text("Version"),
            platform=text("Platform"),
            foundry=text("FoundryName"),
            legacy_foundry=text("LegacyFoundryName"),
            font_class=None if family is None else classify(family),
            styles=tuple(styles(name or "", full_name or "")),
            printer_font=text("PrinterFont"),
            windows_mm_file=text("WindowsMMFile"),
            checksum=number("QuillmarkChecksum"),
            legacy_checksum=number("LegacyQuillmarkChecksum"),
            kerning_checksum=number("KerningChecksum"),
            outline_file_size=number("OutlineFileSize"),
        )


def identify(path: Path, request: int = ATTRIBUTES_ALL) -> List[Face]:
    """Every face of a font file.

    QuillmarkError when it gives none; FileNotFoundError or another OSError when there is no file or it may not be read.
    """
    with FontArray.from_file(path, request) as array:
        return array.faces()


def why(path: Path) -> Optional[str]:
    """Why a file gives no face, or fewer than it lists; None when it gives all. Asks the command-line tool.

    FileNotFoundError or another OSError when there is no file or it may not be read, and when the tool is not there;
    IsADirectoryError for a folder.
    """
    name = _library.path_bytes(path)
    _library.check_readable(path)
    if os.path.isdir(name):
        raise IsADirectoryError(errno.EISDIR, "a folder: ask for each of its files", os.fspath(path))
    return _tool.reason_of(name)


def from_xml(text: str) -> List[Face]:
    """The faces of a stored XML text."""
    with FontArray.from_xml(text) as array:
        return array.faces()


def from_property_list(text: str) -> List[Face]:
    """The faces of a stored property list."""
    with FontArray.from_property_list(text) as array:
        return array.faces()


def styles(primary_name: str, secondary_name: str = "") -> List[str]:
    """The styles that a font's names tell.

    >>> styles("Garamond-SemiboldItalic")
    ['Semibold', 'Italic']
    """
    return _library.styles_of(primary_name, secondary_name)


def classify(family: str, alternate: Optional[str] = None) -> str:
    """The typographic class of a family, or of the alternate when that has none; "--" when neither has.

    >>> classify("DejaVu Serif")
    'Serif'
    """
    other = None if alternate is None else _library.to_bytes(alternate)
    ask = _library.load().QM_GetClassificationFromFamily
    status, name = _library.text_of(ask, _library.to_bytes(family), other)
    if status != _library.STATUS_OK:
        raise QuillmarkError(status, "the class cannot be read")
    return name


def library_version() -> Tuple[int, int]:
    """Version of the library that is loaded.

    >>> library_version()
    (1, 4)
    """
    major, minor = ctypes.c_uint32(), ctypes.c_uint32()
    _library.load().QM_GetQuillmarkVersion(ctypes.byref(major), ctypes.byref(minor))
    return major.value, minor.value
