"""Small fonts, collections and resource files, made in memory field by field."""

import struct
import zlib

FOUNDRIES = {"Adobe": "Adobe Systems Incorporated", "Monotype": "Monotype Imaging Inc."}


def name_table(*names, platform=(3, 1, 0x409), encoding="utf-16-be"):
    """Records of (name ID, text), of Windows unless told."""
    records, strings = b"", b""
    for number, text in names:
        encoded = text.encode(encoding)
        records += struct.pack(">6H", *platform, number, len(encoded), len(strings))
        strings += encoded
    return struct.pack(">3H", 0, len(names), 6 + len(records)) + records + strings


def directory(tables, version=b"\0\1\0\0"):
    """The directory and the tables behind it, padded but for the last."""
    head = version + struct.pack(">4H", len(tables), 0, 0, 0)
    offset = 12 + 16 * len(tables)
    body = b""
    for tag, data in tables.items():
        body += bytes(-len(body) % 4)
        words = struct.unpack(f">{(len(data) + 3) // 4}L", data + bytes(-len(data) % 4))
        head += struct.pack(">4s3L", tag.encode(), sum(words) & 0xFFFFFFFF, offset + len(body), len(data))
        body += data
    return head + body


def sfnt(name="Quill", version=b"\0\1\0\0"):
    return directory({"name": name_table((6, name)), "zero": bytes(8)}, version)


def mac_font(name, version="1.0", family="Quill", foundry="Adobe", data=b"data", full_name=None, **tables):
    """A Macintosh font: it has Macintosh names, and not the tables of a cross-platform one. In a collection it keeps its bytes."""
    texts = {1: family, 4: full_name or name, 5: f"Version {version}", 8: FOUNDRIES.get(foundry, foundry)}
    if name:
        texts[6] = name
    table = name_table(*texts.items(), platform=(1, 0, 0), encoding="mac_roman")
    return directory({"glyf": data, "name": table + bytes(-len(table) % 4), **tables})


def collection(*fonts):
    """Fonts, or names for fonts with little else, one behind the other. The last table is padded."""
    offsets, body = [], b""
    for font in fonts:
        if isinstance(font, str):
            font = directory({"zero": bytes(7), "name": name_table((6, font))})
        offsets.append(12 + 4 * len(fonts) + len(body))
        moved = bytearray(font)
        for entry in range(12, 12 + 16 * struct.unpack_from(">H", font, 4)[0], 16):
            (offset,) = struct.unpack_from(">L", font, entry + 8)
            struct.pack_into(">L", moved, entry + 8, offset + offsets[-1])
        body += moved + bytes(-len(moved) % 4)
    return b"ttcf" + struct.pack(f">2L{len(fonts)}L", 0x10000, len(fonts), *offsets) + body


def resource_fork(*resources):
    """Resources of (type, ID, data), or with a name behind it."""
    data, names, references = b"", b"", {}
    for kind, number, content, *name in resources:
        entry = struct.pack(">hHLL", number, len(names) if name else 0xFFFF, len(data), 0)
        references.setdefault(kind, []).append(entry)
        names += b"".join(bytes([len(text)]) + text for text in name)
        data += struct.pack(">L", len(content)) + content
    types = struct.pack(">H", (len(references) - 1) & 0xFFFF)
    lists = b""
    for kind, entries in references.items():
        offset = 2 + 8 * len(references) + len(lists)
        types += struct.pack(">4sHH", kind.encode(), len(entries) - 1, offset)
        lists += b"".join(entries)
    body = types + lists
    header = struct.pack(">4L", 256, 256 + len(data), len(data), 28 + len(body) + len(names))
    return header + bytes(240) + data + header + bytes(8) + struct.pack(">2H", 28, 28 + len(body)) + body + names


def fond(number, *associations, name=b""):
    """A FOND with associations of (size, style, ID), and a PostScript name that all styles share."""
    mapping = bytes(10) + bytes([1] * 48) + struct.pack(">HB", 1, len(name)) + name if name else b""
    at = 54 + 6 * len(associations) if name else 0
    record = struct.pack(">2xH20xL24xh", number, at, len(associations) - 1)
    return record + b"".join(struct.pack(">3h", *association) for association in associations) + mapping


def apple_double(fork):
    return struct.pack(">2L16xH3L", 0x00051607, 0x00020000, 1, 2, 38, len(fork)) + fork


def with_checksum(content, wanted):
    """The bytes and four more that give the whole the wanted CRC-32."""
    state = wanted ^ 0xFFFFFFFF
    for _ in range(32):  # a step of the checksum, backwards
        state = state << 1 ^ (0x1DB710641 if state >> 31 else 0)
    return content + (state ^ zlib.crc32(content) ^ 0xFFFFFFFF).to_bytes(4, "little")
