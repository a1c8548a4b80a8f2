"""Finds the shared library, loads it once, and keeps its calling rules: sizes of buffers, encodings, statuses."""

import ctypes
import functools
import os
import pathlib
import stat
from ctypes import POINTER, c_char_p, c_int16, c_int32, c_uint32, c_void_p
from typing import Iterator, List, Tuple, Union

SONAME = "libquillmark.so.1"

STATUS_OK = 0
STATUS_FAILED = 1
STATUS_OUT_OF_RANGE = 4
STATUS_NOT_HELD = 5

_TEXT_OF_FACE = (
    "KindName", "FamilyName", "PostScriptName", "FullName", "DisplayName", "Platform", "PrinterFont",
    "WindowsFullName", "Version", "FoundryName", "LegacyFoundryName", "WindowsMMFile",
)  # fmt: skip
_NUMBER_OF_FACE = ("KerningChecksum", "QuillmarkChecksum", "LegacyQuillmarkChecksum", "OutlineFileSize")

# By the bounds that quillmark.h states: what holds all texts of a font file but two, and many times the longest style.
_TEXT_BYTES = 4096
_STYLE_BYTES = 512
# The tables hold about 200 styles.
_MOST_STYLES = 256


class QuillmarkError(Exception):
    """The library refused a call. ``status`` is its answer, a value of ``QM_Status`` in quillmark.h."""

    def __init__(self, status: int, message: str) -> None:
        super().__init__(status, message)
        self.status = status
        self.message = message

    def __str__(self) -> str:
        return f"{self.message} (status {self.status})"


def _candidates() -> Iterator[str]:
    """Names for the loader, best first: the one that was asked for, alone; the one of this prefix; any."""
    named = os.environ.get("QUILLMARK_LIBRARY")
    if named:
        yield named
        return
    for folder in pathlib.Path(__file__).resolve().parents:
        if folder.name in ("lib", "lib64"):
            for pattern in (SONAME, f"*-linux-gnu*/{SONAME}", f"../lib64/{SONAME}"):
                yield from sorted(map(str, folder.glob(pattern)))
            break
    yield SONAME


@functools.lru_cache(maxsize=None)
def load() -> ctypes.CDLL:
    """The library, with the types of its functions declared."""
    faults = []
    for name in _candidates():
        try:
            library = ctypes.CDLL(name)
            break
        except OSError as fault:
            faults.append(str(fault))
    else:
        raise OSError("the Quillmark library cannot be loaded: " + "; ".join(faults))

    def declare(name: str, *arguments: object, result: object = c_int32) -> None:
        function = getattr(library, "QM_" + name)
        function.argtypes = arguments
        function.restype = result

    for name in _TEXT_OF_FACE:
        declare("Get" + name, c_void_p, c_uint32, c_char_p, c_int32)
    for name in _NUMBER_OF_FACE:
        declare("Get" + name, c_void_p, c_uint32, POINTER(c_uint32))
    for name in ("XML", "PropertyList"):
        declare("CreateSpecifierFrom" + name, c_char_p, POINTER(c_void_p))
        declare(f"Get{name}Representation", c_void_p, c_char_p, POINTER(c_uint32))
    declare("GetQuillmarkVersion", POINTER(c_uint32), POINTER(c_uint32), result=None)
    declare("CreateSpecifier", c_char_p, c_int32, c_uint32, POINTER(c_void_p))
    declare("SpecifierFree", c_void_p)
    declare("GetFontCount", c_void_p, POINTER(c_uint32))
    declare("GetFontIndexForFONDResourceID", c_void_p, c_int16, c_int16, POINTER(c_uint32))
    declare("GetStyles", c_char_p, c_char_p, c_uint32, c_int32, POINTER(c_uint32), POINTER(c_char_p))
    declare("GetClassificationFromFamily", c_char_p, c_char_p, c_char_p, c_int32)
    return library


def to_bytes(text: str) -> bytes:
    """Text as the library takes it."""
    return without_nul(text.encode("utf-8", "surrogateescape"))


def to_text(data: bytes) -> str:
    """Text of the library. Names come out of font files: bytes that are not UTF-8 become lone surrogates."""
    return data.decode("utf-8", "surrogateescape")


def path_bytes(path: Union[str, bytes, "os.PathLike[str]", "os.PathLike[bytes]"]) -> bytes:
    return without_nul(os.fsencode(path))


def check_readable(path: Union[str, bytes, "os.PathLike[str]", "os.PathLike[bytes]"]) -> None:
    """Raises the system's error, FileNotFoundError above all, when there is no such file or it may not be read."""
    name = os.fspath(path)  # as the caller gave it, for OSError.filename
    if stat.S_ISREG(os.stat(name).st_mode):
        open(name, "rb").close()


def without_nul(data: bytes) -> bytes:
    """A NUL would end the text unnoticed on the other side."""
    if b"\0" in data:
        raise ValueError("embedded null byte")
    return data


def text_of(function: "ctypes._FuncPointer", *arguments: object) -> Tuple[int, str]:
    """Status and whole text of a function that takes a buffer and its size last, and cuts without notice.

    Only long paths, names in a comment of a printer font, and texts of stored forms can need a second call.
    """
    size = _TEXT_BYTES
    while True:
        buffer = ctypes.create_string_buffer(size)
        status = function(*arguments, buffer, size)
        if status != STATUS_OK or len(buffer.value) < size - 1:
            return status, to_text(buffer.value)
        size *= 2


def number_of(function: "ctypes._FuncPointer", *arguments: object) -> Tuple[int, int]:
    value = c_uint32()
    return function(*arguments, ctypes.byref(value)), value.value


def stored_form_of(function: "ctypes._FuncPointer", array: c_void_p) -> str:
    """The text of a function that says what size it needs. Asked twice, as an array does not change."""
    size = c_uint32()
    function(array, ctypes.create_string_buffer(1), ctypes.byref(size))
    buffer = ctypes.create_string_buffer(size.value)
    status = function(array, buffer, ctypes.byref(size))
    if status != STATUS_OK:
        raise QuillmarkError(status, "the faces cannot be written")
    return to_text(buffer.value)


def styles_of(primary: str, secondary: str, most: int = _MOST_STYLES) -> List[str]:
    count = c_uint32()  # stays 0 when the names tell no style
    block = ctypes.create_string_buffer(most * _STYLE_BYTES)
    start = ctypes.addressof(block)
    buffers = (c_char_p * most)(*range(start, start + len(block), _STYLE_BYTES))
    names = to_bytes(primary), to_bytes(secondary)
    status = load().QM_GetStyles(*names, most, _STYLE_BYTES, ctypes.byref(count), buffers)
    if status != STATUS_OK:
        raise QuillmarkError(status, "the styles cannot be read")
    if count.value == most:
        return styles_of(primary, secondary, 2 * most)  # there may be more
    return [to_text(buffers[i]) for i in range(count.value)]
