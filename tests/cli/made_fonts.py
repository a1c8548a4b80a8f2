"""Small TrueType and collection files with chosen names, made in memory."""

import struct
import zlib

FOUNDRIES = {"Adobe": "Adobe Systems Incorporated", "Monotype": "Monotype Imaging Inc."}


def sfnt(name, version="1.0", family="Quill", foundry="Adobe", data=b"data", full_name=None):
    """A font without the tables of a cross-platform one: a Macintosh font to the library."""
    texts = {1: family, 4: full_name or name, 5: f"Version {version}", 8: FOUNDRIES.get(foundry, foundry)}
    if name:
        texts[6] = name
    records, strings = b"", b""
    for identifier, text in texts.items():
        encoded = text.encode("mac_roman")
        records += struct.pack(">6H", 1, 0, 0, identifier, len(encoded), len(strings))
        strings += encoded
    table = struct.pack(">3H", 0, len(texts), 6 + len(records)) + records + strings
    tables = {b"glyf": data, b"name": table}
    offset = 12 + 16 * len(tables)
    directory, body = struct.pack(">I4H", 0x00010000, len(tables), 0, 0, 0), b""
    for tag, content in tables.items():
        padded = content + bytes(-len(content) % 4)
        total = sum(struct.unpack(f">{len(padded) // 4}I", padded)) & 0xFFFFFFFF
        directory += tag + struct.pack(">3I", total, offset + len(body), len(content))
        body += padded
    return directory + body


def collection(*fonts):
    """The fonts behind one header, their tables where they fall; four bytes more than it needs."""
    start = 12 + 4 * len(fonts)
    offsets, body = b"", b""
    for font in fonts:
        base = start + len(body)
        offsets += struct.pack(">I", base)
        moved = bytearray(font)
        for entry in range(12, 12 + 16 * struct.unpack_from(">H", font, 4)[0], 16):
            (offset,) = struct.unpack_from(">I", font, entry + 8)
            struct.pack_into(">I", moved, entry + 8, offset + base)
        body += bytes(moved)
    return b"ttcf" + struct.pack(">2I", 0x00010000, len(fonts)) + offsets + body + bytes(4)


def resource_map(*resources):
    """A resource fork of (type, identifier, bytes)."""
    by_type = {}
    data = b""
    for kind, identifier, content in resources:
        by_type.setdefault(kind, []).append((identifier, len(data)))
        data += struct.pack(">I", len(content)) + content
    types, references = struct.pack(">h", len(by_type) - 1), b""
    for kind, entries in by_type.items():
        types += kind + struct.pack(">2H", len(entries) - 1, 2 + 8 * len(by_type) + len(references))
        for identifier, offset in entries:
            references += struct.pack(">hhII", identifier, -1, offset, 0)
    length = 28 + len(types) + len(references)
    header = struct.pack(">4I", 256, 256 + len(data), len(data), length)
    return header + bytes(240) + data + header + bytes(8) + struct.pack(">2H", 28, length) + types + references


def fond(identifier, sfnt_identifier):
    """A family with one plain style whose font is an `sfnt`."""
    head = bytearray(52)
    struct.pack_into(">H", head, 2, identifier)
    return bytes(head) + struct.pack(">h3H", 0, 0, 0, sfnt_identifier)


def sidecar(fork):
    """An AppleDouble file with a resource fork."""
    return struct.pack(">II16xHIII", 0x00051607, 0x00020000, 1, 2, 38, len(fork)) + fork


def with_checksum(content, wanted):
    """The bytes and four more that give the whole the wanted CRC-32."""
    table = []
    for value in range(256):
        for _ in range(8):
            value = value >> 1 ^ (0xEDB88320 if value & 1 else 0)
        table.append(value)
    by_top_byte = {value >> 24: index for index, value in enumerate(table)}
    state, indexes = wanted ^ 0xFFFFFFFF, []
    for _ in range(4):
        indexes.append(by_top_byte[state >> 24])
        state = (state ^ table[indexes[-1]]) << 8 & 0xFFFFFFFF
    state = zlib.crc32(content) ^ 0xFFFFFFFF
    for index in reversed(indexes):
        content += bytes([(state ^ index) & 0xFF])
        state = table[index] ^ state >> 8
    return content
