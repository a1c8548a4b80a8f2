"""Small fonts, collections and resource files, made in memory field by field."""

import struct


def name_table(*names):
    """Windows US English records of (name ID, text)."""
    texts = [text.encode("utf-16-be") for _, text in names]
    table = struct.pack(">HHH", 0, len(names), 6 + 12 * len(names))
    offset = 0
    for (number, _), text in zip(names, texts):
        table += struct.pack(">6H", 3, 1, 0x409, number, len(text), offset)
        offset += len(text)
    return table + b"".join(texts)


def directory(tables, start, version):
    """The directory and the tables behind it, padded but for the last, whose offsets count from `start` on."""
    head = version + struct.pack(">4H", len(tables), 0, 0, 0)
    offset = start + 12 + 16 * len(tables)
    body = b""
    for tag, data in tables.items():
        body += bytes(-len(body) % 4)
        head += struct.pack(">4s3L", tag.encode(), 0, offset + len(body), len(data))
        body += data
    return head + body


def sfnt(name="Quill", version=b"\0\1\0\0", **tables):
    return directory({"name": name_table((6, name)), "zero": bytes(8), **tables}, 0, version)


def collection(*names):
    """One face a name. The last table is padded."""
    offsets, fonts = [], b""
    for name in names:
        offsets.append(12 + 4 * len(names) + len(fonts))
        fonts += directory({"zero": bytes(7), "name": name_table((6, name))}, offsets[-1], b"\0\1\0\0")
        fonts += bytes(-len(fonts) % 4)
    return b"ttcf" + struct.pack(">2L", 0x10000, len(names)) + struct.pack(f">{len(names)}L", *offsets) + fonts


def resource_fork(*resources):
    """Resources of (type, ID, data)."""
    data, references = b"", {}
    for kind, number, content in resources:
        references.setdefault(kind, []).append(struct.pack(">hHLL", number, 0xFFFF, len(data), 0))
        data += struct.pack(">L", len(content)) + content
    types = struct.pack(">H", (len(references) - 1) & 0xFFFF)
    lists = b""
    for kind, entries in references.items():
        offset = 2 + 8 * len(references) + len(lists)
        types += struct.pack(">4sHH", kind.encode(), len(entries) - 1, offset)
        lists += b"".join(entries)
    body = types + lists
    header = struct.pack(">4L", 256, 256 + len(data), len(data), 28 + len(body))
    return header + bytes(240) + data + header + bytes(8) + struct.pack(">2H", 28, 28 + len(body)) + body


def fond(number, *associations, name=b""):
    """A FOND with associations of (size, style, ID), and a PostScript name that all styles share."""
    mapping = bytes(10) + bytes([1] * 48) + struct.pack(">HB", 1, len(name)) + name if name else b""
    at = 54 + 6 * len(associations) if name else 0
    record = struct.pack(">2xH20xL24xh", number, at, len(associations) - 1)
    return record + b"".join(struct.pack(">3h", *association) for association in associations) + mapping


def apple_double(fork):
    return struct.pack(">2L16xH3L", 0x00051607, 0x00020000, 1, 2, 38, len(fork)) + fork
