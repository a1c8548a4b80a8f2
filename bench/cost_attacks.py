#!/usr/bin/env python3
"""Small inputs (0.1 to 2 MB) that repeat or scatter their bytes so that an identifier which does not bound its
work spends much time or memory on them.

    python3 bench/cost_attacks.py DIR [NAME...]

writes one file (one folder, where several files are needed) for each input and prints its name and bytes.
bench/cost runs the built library and tool over them. Every generator takes a size n.
"""
import os
import random
import struct
import sys
U16, U32 = struct.Struct(">H").pack, struct.Struct(">I").pack


def fork(data, types, names=b""):
    """A resource fork. types: list of (type, refs, share) with refs = [(id, name offset, data offset)];
    share = index of the type whose reference list this one repeats. The longest list is laid out last, because
    a list starts at a 16-bit offset."""
    order = sorted((i for i, t in enumerate(types) if t[2] is None), key=lambda i: len(types[i][1]))
    head = 2 + 8 * len(types)
    at, pos = {}, head + len(names)
    for i in order:
        at[i] = pos
        pos += 12 * len(types[i][1])
    assert all(p < 65536 for p in at.values())
    body = U16(len(types) - 1)
    for i, (tag, refs, share) in enumerate(types):
        body += tag + U16((len(refs if share is None else types[share][1]) - 1) & 0xFFFF) + U16(at[i if share is None else share])
    body += names
    for i in order:
        body += b"".join(U16(r[0] & 0xFFFF) + U16(r[1]) + U32(r[2]) + U32(0) for r in types[i][1])
    fork_head = U32(256) + U32(256 + len(data)) + U32(len(data)) + U32(28 + len(body))
    m = fork_head + U32(0) + U16(0) + U16(0) + U16(28) + U16(28 + head) + body
    return fork_head.ljust(256, b"\0") + data + m


NONAME = 0xFFFF


def fond_head(kerning=0, style_map=0, family=200, international=0):
    h = bytearray(52)
    h[2:4] = U16(family)
    h[20:24] = U32(kerning)
    h[24:28] = U32(style_map)
    h[48:50] = U16(international)
    return bytes(h)


def entries(list_):
    return U16((len(list_) - 1) & 0xFFFF) + b"".join(U16(size) + U16(style) + U16(i & 0xFFFF) for size, style, i in list_)


def style_map(strings, index=bytes(48)):
    return bytes(10) + index + U16(len(strings)) + b"".join(bytes([len(s)]) + s for s in strings)


def resource(data):
    return U32(len(data)) + data


def mm_names(rng, count):
    """Bytes in which a Pascal string that holds MM_ begins at nearly every offset, each another name."""
    out = bytearray()
    while len(out) < count + 130:
        out += bytes(rng.choice(b"abcdefghijklmnopqrstuvwxyzBCDEFGHIJK") for _ in range(14)) + b"MM_"
    return bytes(out)


def nfnt():
    return resource(bytes(26))


def fond_places(n=4000):
    """n references name FONDs 64 bytes apart that overlap, each of 32,767 associations: FONDs x styles."""
    data = bytearray()
    for _ in range(n):
        data += U32(0) + fond_head() + U16(32766) + bytes(6)
    data += b"".join(U16(12) + U16(k) + U16(k) for k in range(32767))
    data += bytes(4)
    for k in range(n):
        data[64 * k:64 * k + 4] = U32(len(data) - 64 * k - 4)
    refs = [(k, NONAME, 64 * k) for k in range(n)]
    return fork(bytes(data), [(b"FOND", refs, None)])


def mm_kerning(n=600):
    """One FOND under n names with MM (12 bytes each): the pass is made anew for each name, with 32,768 kerning
    sub-tables (a step forward over 128 KB and one back, by turns) walked, sorted and summed each time."""
    rng = random.Random(1)
    assoc = entries([(12, 0, 1)])
    smap = style_map([b"Base"])
    head = 52 + len(assoc) + len(smap)
    kern_at = head
    pairs = 32000
    kern = bytearray(U16(32767) + U16(0) + U16(pairs))
    kern += rng.randbytes(4 * pairs)
    back = -(4 * pairs + 8) // 4
    kern += U16(9) + U16(back & 0xFFFF) + bytes(16)
    rec = fond_head(kerning=kern_at, style_map=52 + len(assoc)) + assoc + smap + bytes(kern)
    data = resource(rec)
    nf = len(data)
    data += nfnt()
    names = mm_names(rng, min(n, 60000))
    refs = [(k, k, 0) for k in range(n)]
    return fork(data, [(b"FOND", refs, None), (b"NFNT", [(1, NONAME, nf)], None)], names)


def many_faces(n=3000):
    """n FONDs of 48 styles, each style with a PostScript name of its own and no printer font beside it: faces
    that stay, paths and printer fonts that are remembered. Memory: FONDs x 48."""
    rng = random.Random(4)
    codes = []
    for i in range(48):
        codes.append((i & 1) | (i & 2) | ((i & 4) << 1) | ((i & 8) << 1) | (32 if i & 16 else 0) | (64 if i & 32 else 0))
    assoc = entries([(12, c, 1) for c in codes])
    index = bytes([0] + list(range(2, 49)))
    data = bytearray()
    for k in range(n):
        base = bytes(rng.choice(b"ABCDEFGHIJKLMNOPQRSTUVWXYZ") for _ in range(6))
        # suffix list s: one byte, a string number from 49 on
        strings = [base] + [bytes([48 + (i % 8) + 1, 57 + i // 8]) for i in range(47)]
        while len(strings) < 48:
            strings.append(b"\x31")
        strings += [bytes([97 + i]) + b"x" for i in range(8)] + [bytes([65 + i]) + b"y" for i in range(8)]
        data += resource(fond_head(style_map=52 + len(assoc)) + assoc + style_map(strings, index))
    offs, at = [], 0
    while at < len(data):
        offs.append(at)
        at += 4 + int.from_bytes(data[at:at + 4], "big")
    nf = len(data)
    data += nfnt()
    return fork(bytes(data), [(b"FOND", [(k, NONAME, o) for k, o in enumerate(offs)], None), (b"NFNT", [(1, NONAME, nf)], None)])


def printer_files(n=250):
    """FOLDER: a family file with n overlapping FONDs of 32,767 styles beside a lone printer font, which is asked
    about: the search for its family keeps a record for each FOND and style. Memory and time: FONDs x styles."""
    data = bytearray()
    for k in range(n):
        data += U32(0) + fond_head() + U16(32766) + bytes(6)
    tail = len(data)
    data += b"".join(U16(12) + U16(k) + U16(k) for k in range(32767)) + style_map([b"Base"] * 250) + bytes(4)
    for k in range(n):
        data[64 * k:64 * k + 4] = U32(len(data) - 64 * k - 4)
        here = 64 * k + 4
        data[here + 24:here + 28] = U32(tail + 32767 * 6 - here)
    family = fork(bytes(data), [(b"FOND", [(k, NONAME, 64 * k) for k in range(n)], None)])
    seg = b"\x01\0%!PS-AdobeFont-1.0: Lone 1\n/FontName /Lone def\n"
    lone = fork(resource(seg), [(b"POST", [(501, NONAME, 0)], None)])
    return {"family": family, "Lone": lone}


def sjis_text():
    return b"\x83\x41" * 511 + b"\x81"  # 1,023 bytes; the last is half a character


def name_table(records=32767):
    """Records whose texts are 1,023 bytes of Shift-JIS that fail at their last byte."""
    text_at = 60000
    out = bytearray(U16(0) + U16(records) + U16(text_at - 0))
    rec = U16(1) + U16(0) + U16(0) + U16(1) + U16(1023) + U16(0)
    out += U16(1) + U16(0) + U16(11) + U16(1) + U16(0) + U16(0)
    out += rec * (records - 1)
    out[text_at:text_at + 1023] = sjis_text()
    return bytes(out)


def dfont_names(n=60):
    """n outlines of one FOND, at places of their own (32 bytes each), share one table as in ttf_names: faces x
    records x text."""
    t = name_table()
    assoc = entries([(0, k, k + 1) for k in range(n)])
    rec = resource(fond_head() + assoc)
    sf = bytearray()
    end = 32 * n + len(t)
    for k in range(n):
        here = 32 * k + 4
        sf += U32(end - here) + U32(0x00010000) + U16(1) + bytes(6) + b"name" + bytes(4) + U32(32 * n - here) + U32(len(t))
    data = rec + bytes(sf) + t
    return fork(data, [(b"sfnt", [(k + 1, NONAME, len(rec) + 32 * k) for k in range(n)], None), (b"FOND", [(128, NONAME, 0)], None)])


def _ttc(offsets, head_pad=0):
    return b"ttcf" + U32(0x00010000) + U32(len(offsets)) + b"".join(map(U32, offsets))


def ttc_past_table(n=60):
    """Collection whose faces share a name table that runs past its 6 bytes into two tables behind it: joined for
    each face, and its texts, which lie across the seam, decoded anew. Faces x records x text; 64 bytes a face."""
    t = bytearray(name_table())
    t[4:6] = U16(0x7FFF)  # with offset 16,733 below: texts at 49,500
    delta = 49500 - 0x7FFF
    recs = U16(1) + U16(0) + U16(0) + U16(1) + U16(1023) + U16(delta)
    t[18:6 + 12 * 32767] = recs * 32766
    t[6:18] = U16(1) + U16(0) + U16(11) + U16(1) + U16(0) + U16(0)
    t[18:30] = U16(1) + U16(0) + U16(11) + U16(1) + U16(0) + U16(0)
    t[49500:50523] = sjis_text()
    t = bytes(t[:6 + 12 * 32767 + 2])
    base = 12 + 4 * n
    at = base + 60 * n
    dirs = b""
    for k in range(n):
        dirs += U32(0x00010000) + U16(3) + bytes(6)
        dirs += b"name" + U32(k) + U32(at) + U32(6)
        dirs += b"zzz1" + bytes(4) + U32(at + 8) + U32(49992)
        dirs += b"zzz2" + bytes(4) + U32(at + 50000) + U32((len(t) - 50000) // 4 * 4)
    return _ttc([base + 60 * k for k in range(n)]) + dirs + t + bytes(1000)


def xml_open_names(n=6000):
    """XML blocks whose name is never closed but at the end: each takes all that follows."""
    return b"<FontData><PostScriptName></FontData>\n" * n + b"</PostScriptName></FontData>"


def split_fill_disk(n=2000, size=1_000_000):
    """Suitcase of n outlines, all references to the same 1 MB: `split` writes n MB. Up to 65,535 x 16 MB."""
    name = U16(0) + U16(1) + U16(18) + U16(1) + U16(0) + U16(0) + U16(6) + U16(4) + U16(0) + b"Name"
    sf = U32(0x00010000) + U16(1) + bytes(6) + b"name" + bytes(4) + U32(28) + U32(len(name)) + name
    return fork(resource(sf + bytes(size)), [(b"sfnt", [(k, NONAME, 0) for k in range(n)], None)])


def shuffled(seed, items):
    items = list(items)
    random.Random(seed).shuffle(items)
    return items


def stated(data, end):
    """A resource's length word, then `data`: the resource goes on to `end`, counted from the word."""
    return U32(end - 4) + data


def overlapping_fonds(n, stride, head, tail, count=0x7FFF):
    """n FONDs, `stride` bytes apart, each of which reaches to the end of `tail`."""
    data = bytearray()
    size = n * stride + len(tail)
    for k in range(n):
        rec = bytearray(head(k, n * stride - stride * k - 4))
        rec += U16(count & 0xFFFF)
        data += stated(bytes(rec), size - stride * k).ljust(stride, b"\0")
    return bytes(data) + tail, [(k, NONAME, stride * k) for k in range(n)]


def fond_random_styles(n=12000):
    """As fond_places, with the styles in random order: sorting them costs more than a walk."""
    styles = shuffled(7, range(32768))
    tail = b"".join(U16(12) + U16(s) + U16(s) for s in styles[:32000])
    data, refs = overlapping_fonds(n, 64, lambda k, to: fond_head(), tail, 32766)
    return fork(data, [(b"FOND", refs, None)])


def kerning_random_styles(n=6000):
    """FONDs that share a kerning table of 32,768 sub-tables without pairs, their styles in random order."""
    styles = shuffled(8, range(32768))
    return kerning_shared(n, U16(32767) + b"".join(U16(s) + U16(0) for s in styles) + bytes(16))


def kerning_shared(n, kerning):
    """n FONDs of one style and a printer font name, which share a kerning table."""
    tail = kerning + style_map([b"Base"])
    data, refs = overlapping_fonds(n, 80, lambda k, to: fond_head(kerning=to, style_map=to + len(kerning)), tail, 0)
    data = bytearray(data)
    for k in range(n):
        data[80 * k + 58:80 * k + 64] = U16(12) + U16(0) + U16(1)
    nf = len(data)
    return fork(bytes(data) + nfnt(), [(b"FOND", refs, None), (b"NFNT", [(1, NONAME, nf)], None)])


def kerning_one_pair(n=6000):
    """FONDs that share a kerning table of sub-tables of one style with one pair each: short sums, many."""
    return kerning_shared(n, U16(32767) + (U16(0) + U16(1) + b"abcd") * 32768 + bytes(16))


def mapping_shared(n=12000, slash=b""):
    """FONDs of 48 styles that share a style mapping table of 255 strings."""
    strings = [slash + b"Base"] + [bytes([i]) * 1 for i in range(1, 255)]
    strings[200:] = [bytes([65 + i % 26, 97 + i % 25]) * 40 for i in range(55)]
    for i in range(48):
        strings[60 + i] = bytes([201 + i, 202 + i % 50, 203 + i % 20])
    tail = style_map(strings, bytes([61 + i for i in range(48)]))
    data, refs = overlapping_fonds(n, 64, lambda k, to: fond_head(style_map=to), tail, 0)
    return fork(data, [(b"FOND", refs, None)])


def mapping_slash_names(n=2500):
    """FONDs of 48 styles, each with a long printer font name of its own that holds a slash: names without files."""
    rng = random.Random(3)
    codes = [(i & 1) | (i & 2) | ((i & 4) << 1) | ((i & 8) << 1) | (32 if i & 16 else 0) | (64 if i & 32 else 0) for i in range(48)]
    assoc = entries([(12, c, 1) for c in codes])
    data, refs = bytearray(), []
    shared = [bytes([2 + i]) for i in range(48)]
    long = [b"/" + bytes(rng.choice(b"ABCDEFGHIJKLMNOPQRSTUVWXYZ-") for _ in range(60)) for _ in range(40)]
    lists = [bytes([50 + rng.randrange(40) for _ in range(4)]) for _ in range(48)]
    for k in range(n):
        strings = [b"%05d" % k] + lists + long
        rec = fond_head(style_map=52 + len(assoc)) + assoc + style_map(strings, bytes([2 + i for i in range(48)]))
        refs.append((k, NONAME, len(data)))
        data += resource(rec)
        if len(data) > 1500000:
            break
    return fork(bytes(data), [(b"FOND", refs, None)])


def map_types(n=65535):
    """A map of n types, which share one reference list."""
    body = U16((n - 1) & 0xFFFF) + b"".join(U32(0x40000000 + 2654435761 * k % 0x3FFFFFFF) + U16(0) + U16(0) for k in range(n))
    head = U32(256) + U32(256 + 16) + U32(16) + U32(28 + len(body))
    return head.ljust(256, b"\0") + bytes(16) + head + U32(0) + U16(0) + U16(0) + U16(28) + U16(28) + body


def map_ids_unreadable(n=60000):
    """A double-byte FOND whose 32,767 entries name FONTs that lie outside the data: each is looked up in vain."""
    rng = random.Random(5)
    tail = b"".join(U16(12) + U16(0) + U16(k) for k in range(32767)) + bytes(8)
    data, refs = overlapping_fonds(400, 64, lambda k, to: fond_head(international=1, family=20000), tail, 32766)
    fonts = [(k & 0xFFFF, NONAME, 0xFFFFF0) for k in range(5000)]
    return fork(data, [(b"FOND", refs, None), (b"FONT", fonts, None)])


def sfnt(tables, stated=None):
    """A font of (tag, bytes)."""
    at = 12 + 16 * len(tables)
    head, body = U32(0x00010000) + U16(len(tables) if stated is None else stated) + bytes(6), b""
    for tag, data in tables:
        head += tag + bytes(4) + U32(at + len(body)) + U32(len(data))
        body += data
    return head + body


def plain_name():
    return U16(0) + U16(1) + U16(18) + U16(1) + U16(0) + U16(0) + U16(6) + U16(4) + U16(0) + b"Name"


def ttf_tables(n=32767):
    """One font whose directory lists n tables, looked up for every required and layout table."""
    return sfnt([(b"zzzz", b"")] * (n - 1) + [(b"name", plain_name())])


def dfont_tables(n=4000):
    """n outlines at places of their own that share one directory entry list of 32,767 tables."""
    t = plain_name()
    listed = b"zzzz" + bytes(12)
    count = 32700
    end = 16 * n + 12 + 16 * 32767 + 400
    data = bytearray()
    for k in range(n):
        # the length word, the version and the number of tables; the rest of the entries follow behind
        data += U32(end - 16 * k - 4) + U32(0x00010000) + U16(32767) + bytes(6)
    data += listed * 32767
    data = data.ljust(end, b"\0")
    rec = resource(fond_head() + entries([(0, k, k + 1) for k in range(n)]))
    return fork(bytes(data) + rec, [(b"sfnt", [(k + 1, NONAME, 16 * k) for k in range(n)], None), (b"FOND", [(128, NONAME, len(data))], None)])


def name_short_texts(n=60, text=b"\x83\x41", platform=1, language=11, records=32767, name_id=6):
    """n outlines share a name table whose records hold short texts that have to be decoded."""
    t = bytearray(U16(0) + U16(records) + U16(60000))
    t += U16(platform) + U16(0) + U16(11) + U16(1) + U16(0) + U16(0)
    t += (U16(platform) + U16(1) + U16(language) + U16(name_id) + U16(len(text)) + U16(0)) * (records - 1)
    t[60000:60000 + len(text)] = text
    t = bytes(t)
    rec = resource(fond_head() + entries([(0, k, k + 1) for k in range(n)]))
    sf, end = bytearray(), 32 * n + len(t)
    for k in range(n):
        here = 32 * k + 4
        sf += U32(end - here) + U32(0x00010000) + U16(1) + bytes(6) + b"name" + bytes(4) + U32(32 * n - here) + U32(len(t))
    return fork(rec + bytes(sf) + t, [(b"sfnt", [(k + 1, NONAME, len(rec) + 32 * k) for k in range(n)], None), (b"FOND", [(128, NONAME, 0)], None)])


def name_short_japanese():
    return name_short_texts(2000, b"\x81", 1, 12)


def name_short_unicode():
    return name_short_texts(2000, b"\xd8\x00", 3, 0x409)


def name_surrogates():
    """UTF-16 texts of 1,022 bytes that fail at their last unit."""
    return name_short_texts(2000, b"\x30\x42" * 510 + b"\xd8\x00", 3, 0x409)


def name_empty_texts():
    """Records without a text."""
    return name_short_texts(2000, b"", 3, 0x409)


def name_ascii_unicode():
    return name_short_texts(2000, b"\0a" * 500 + b"\xd8\x00", 3, 0x409)


def ttc_empty_faces(n=200000):
    """A collection of n faces whose directories lie one byte apart and hold no table."""
    base = 12 + 4 * n
    return _ttc(shuffled(9, range(base, base + n))) + bytes(n + 64)


def outlines_twice(n=10000):
    """FOLDER: two copies of a file whose FOND has n styles, each with an outline and a name of its own: `same` lists
    all faces, and looks into every outline."""
    data, refs = bytearray(), []
    for k in range(n):
        name = b"N%x" % k
        table = U16(0) + U16(1) + U16(18) + U16(1) + U16(0) + U16(0) + U16(6) + U16(len(name)) + U16(0) + name
        refs.append((k, NONAME, len(data)))
        data += resource(sfnt([(b"name", table)]))
    family = [(128, NONAME, len(data))]
    data += resource(fond_head() + entries([(0, k, k) for k in range(n)]))
    whole = fork(bytes(data), [(b"FOND", family, None), (b"sfnt", refs, None)])
    return {"a.dfont": whole, "b.dfont": whole}


def ttc_many_names(n=9000):
    """n faces of one table each, with names of 1,023 characters that differ."""
    rng = random.Random(11)
    text = bytes(rng.choice(b"abcdefghijklmnopqrstuvwxyz") for _ in range(n + 2000))
    base = 12 + 4 * n
    size = 28 + 30
    body = b""
    tail_at = base + size * n
    parts = []
    for k in range(n):
        here = base + size * k
        # one record whose text begins behind all faces: an offset of at most 65535 + 32767 reaches it
        parts.append(U32(0x00010000) + U16(1) + bytes(6) + b"name" + bytes(4) + U32(here + 28) + U32(30 + 40) +
                     U16(0) + U16(1) + U16(20) + U16(1) + U16(0) + U16(0) + U16(6) + U16(40) + U16(0) + b"%012d" % k)
    return _ttc([base + size * k for k in range(n)]) + b"".join(parts) + text


def ttc_many_tables(n=60000):
    """Faces, 16 bytes apart, that each list hundreds of the small tables behind them."""
    t = 500
    base = 12 + 4 * n
    return _ttc([base + 16 * k for k in range(n)]) + (U32(0x00010000) + U16(t) + bytes(2) + U32(1) + U32(4)) * (n + t)


def post_chain(n=32000):
    """FOLDER: printer fonts whose chains of n segments are one block, named by the styles of a family."""
    chain = fork(resource(b"\x01\0%!PS-AdobeFont-1.0: Lone 1\n/FontName /Lone def\n".ljust(2048, b"/")),
                 [(b"POST", [(501 + k, NONAME, 0) for k in range(min(n, 32267))], None)])
    rec = fond_head(style_map=52 + 8) + entries([(12, 0, 1)]) + style_map([b"Lone"])
    family = fork(resource(rec) + nfnt(), [(b"FOND", [(1, NONAME, 0)], None), (b"NFNT", [(1, NONAME, 4 + len(rec))], None)])
    return {"family": family, "Lone": chain}


def printer_shared(n=30000):
    """FOLDER: FONDs that all name one printer font with two full headers."""
    seg = (b"\x01\0%!PS-AdobeFont-1.0: Lone 1\n/FontName /Lone def\n/FamilyName (" + "\u00e9".encode() * 900).ljust(2047, b"x") + b")"
    second = (b"\x01\0/Notice (adobe " + b"(" * 1000).ljust(2000, b"y") + b"/FullName (" + b"z" * 3000 + b")"
    lone = fork(resource(seg) + resource(second), [(b"POST", [(501, NONAME, 0), (502, NONAME, 4 + len(seg))], None)])
    tail = style_map([b"Lone"])
    data, refs = overlapping_fonds(n, 64, lambda k, to: fond_head(style_map=to), tail, 0)
    data = bytearray(data)
    for k in range(n):
        data[64 * k + 58:64 * k + 64] = U16(12) + U16(k & 0xFFFF) + U16(1)
    nf = len(data)
    return {"family": fork(bytes(data) + nfnt(), [(b"FOND", refs, None), (b"NFNT", [(1, NONAME, nf)], None)]), "Lone": lone}


def deep_folder(n=900):
    """FOLDER: a family in a folder n levels down whose styles name many missing printer fonts."""
    return {"/".join(["a"] * min(n, 900)) + "/family": many_faces(60)}


def sidecars(n=60):
    """FOLDER: n levels, each with an AppleDouble sidecar of 65,535 entries for the font at the bottom."""
    double = U32(0x00051607) + U32(0x00020000) + bytes(16) + U16(0xFFFF) + (U32(7) + bytes(8)) * 1000
    made, path = {}, ["a"] * n
    for k in range(n):
        made["/".join(path[:k] + ["__MACOSX"] + path[k:] + ["._font"])] = double
    made["/".join(path + ["font"])] = sfnt([(b"name", plain_name())])
    return made


def xml_angles(n=1000000):
    """XML of a start tag and a million angle brackets: every search stops at each of them."""
    return b"<FontData>" + b"<" * n + b"</FontData>"


def xml_tag_starts(n=50000):
    """As xml_angles, of starts of tags that are never whole."""
    return b"<FontData>" + b"<OutlineFile</OutlineFile" * n + b"</FontData>"


def xml_placeholders(n=2000):
    """Faces whose values name the placeholders of the values behind them."""
    one = b"<FontData><PostScriptName>%06d" + b"PLACEHOLDER_FOUNDRY" * 24 + b"</PostScriptName><Foundry>" + b"PLACEHOLDER_FAMILY" * 27 + b"</Foundry><Family>" + b"PLACEHOLDER_VERSION" * 26 + b"</Family><Version>" + b"x" * 500 + b"</Version></FontData>\n"
    return b"".join(one % k for k in range(n))[:1200000]


def xml_many_faces(n=16000):
    """Faces of a few bytes each."""
    return b"".join(b"<FontData><PostScriptName>%x</PostScriptName></FontData>" % k for k in range(n))


def xml_shared_tail(n=20000):
    """Blocks with names of their own whose other values all stand at the end of the text, long."""
    return b"".join(b"<FontData><PostScriptName>%x</PostScriptName>" % k + b"</FontData>" for k in range(n)) + b"".join(
        b"<%s>" % t + b"v" * 2000 + b"</%s>" % t for t in (b"FontKind", b"Family", b"Foundry", b"Version", b"OutlineFileName"))


def xml_long_cell(n=9000):
    """Thousands of small faces and one whose name is very long: a table would pad every row to it."""
    return xml_many_faces(n) + b"<FontData><PostScriptName>" + b"W" * 400000 + b"</PostScriptName><Family>" + "\u4e00".encode() * 100000 + b"</Family></FontData>"


def plist_of(body):
    return b'<?xml version="1.0" encoding="UTF-8"?>\n<plist version="1.0"><array>' + body + b"</array></plist>"


def plist_empty_values(n=140000):
    """A property list of empty dictionaries."""
    return plist_of(b"<dict/>" * n)


def plist_short_keys(n=45000):
    """One dictionary with many keys."""
    return plist_of(b"<dict>" + b"".join(b"<key>%x</key><dict/>" % k for k in shuffled(2, range(n))) + b"</dict>")


def plist_many_faces(n=14000):
    return plist_of(b"".join(b"<dict><key>PostScriptName</key><string>%x</string></dict>" % k for k in range(n)))


def plist_entities(n=90000):
    """One text of character references."""
    return plist_of(b"<dict><key>Foundry</key><string>" + b"&#x4e00;" * n + b"</string></dict>")


def plist_arrays(n=110000):
    return plist_of(b"<array/>" * n)


def plist_nested(n=500):
    return plist_of((b"<array>" * n + b"</array>" * n) * 100)


def json_deep(n=1000000):
    return b"[" * n


def json_arrays(n=330000):
    return b"[" + b"[]," * n + b"[]]"


def json_objects(n=120000):
    return b"[" + b'{"a":0},' * n + b"{}]"


def json_objects_inside(n=330000):
    """One object that holds a list of empty objects."""
    return b'[{"a":[' + b"{}," * n + b"{}]}]"


def json_keys(n=60000):
    """One object with many keys, which a list of members searches one by one."""
    return b"[{" + b",".join(b'"k%x":0' % k for k in range(n)) + b"}]"


def json_same_keys(n=100000):
    return b"[{" + b",".join([b'"k":[]'] * n) + b"}]"


def jsonl_lines(n=300000):
    return b"{}\n" * n


def json_bare_faces(n=90000):
    return b"[" + b",".join([b'{"style":0}'] * n) + b"]"


def jsonl_faces(n=9000):
    return b"".join(b'{"path":"/%x","faces":[{"postScriptName":"%x"}]}\n' % (k, k) for k in range(n))


def zero_bytes(n=1000000):
    """No font at all: the readers and the tool's search for known formats."""
    return bytes(n)


def percent_header(n=1000000):
    """FOLDER: alone, as `why` looks at the other files of the folder."""
    return {"font.ps": b"%!PS-AdobeFont-1.0: A\n" + b"/FontName (" * (n // 11)}


ATTACKS = {
    "fond_places": ("", fond_places),
    "mm_kerning": ("", mm_kerning),
    "many_faces": ("", many_faces),
    "printer_files": ("", printer_files),
    "dfont_names": (".dfont", dfont_names),
    "ttc_past_table": (".ttc", ttc_past_table),
    "xml_open_names": (".xml", xml_open_names),
    "split_fill_disk": (".dfont", split_fill_disk),
    "fond_random_styles": ("", fond_random_styles),
    "kerning_random_styles": ("", kerning_random_styles),
    "kerning_one_pair": ("", kerning_one_pair),
    "mapping_shared": ("", mapping_shared),
    "mapping_slash_names": ("", mapping_slash_names),
    "map_types": ("", map_types),
    "map_ids_unreadable": ("", map_ids_unreadable),
    "ttf_tables": (".ttf", ttf_tables),
    "dfont_tables": (".dfont", dfont_tables),
    "name_short_japanese": (".dfont", name_short_japanese),
    "name_short_unicode": (".dfont", name_short_unicode),
    "name_surrogates": (".dfont", name_surrogates),
    "name_ascii_unicode": (".dfont", name_ascii_unicode),
    "name_empty_texts": (".dfont", name_empty_texts),
    "outlines_twice": ("", outlines_twice),
    "ttc_empty_faces": (".ttc", ttc_empty_faces),
    "ttc_many_names": (".ttc", ttc_many_names),
    "ttc_many_tables": (".ttc", ttc_many_tables),
    "post_chain": ("", post_chain),
    "printer_shared": ("", printer_shared),
    "deep_folder": ("", deep_folder),
    "sidecars": ("", sidecars),
    "percent_header": ("", percent_header),
    "zero_bytes": (".ttf", zero_bytes),
    "xml_angles": (".xml", xml_angles),
    "xml_tag_starts": (".xml", xml_tag_starts),
    "xml_placeholders": (".xml", xml_placeholders),
    "xml_many_faces": (".xml", xml_many_faces),
    "xml_shared_tail": (".xml", xml_shared_tail),
    "xml_long_cell": (".xml", xml_long_cell),
    "plist_empty_values": (".plist", plist_empty_values),
    "plist_arrays": (".plist", plist_arrays),
    "plist_nested": (".plist", plist_nested),
    "plist_short_keys": (".plist", plist_short_keys),
    "plist_many_faces": (".plist", plist_many_faces),
    "plist_entities": (".plist", plist_entities),
    "json_deep": (".json", json_deep),
    "json_arrays": (".json", json_arrays),
    "json_objects": (".json", json_objects),
    "json_objects_inside": (".json", json_objects_inside),
    "json_keys": (".json", json_keys),
    "json_same_keys": (".json", json_same_keys),
    "json_bare_faces": (".json", json_bare_faces),
    "jsonl_lines": (".jsonl", jsonl_lines),
    "jsonl_faces": (".jsonl", jsonl_faces),
}


def main():
    out = sys.argv[1]
    os.makedirs(out, exist_ok=True)
    for name in sys.argv[2:] or ATTACKS:
        suffix, make = ATTACKS[name]
        made = make()
        if isinstance(made, dict):
            for file, data in made.items():
                path = os.path.join(out, name, file)
                os.makedirs(os.path.dirname(path), exist_ok=True)
                open(path, "wb").write(data)
            print(name, sum(map(len, made.values())))
        else:
            open(os.path.join(out, name + suffix), "wb").write(made)
            print(name, len(made))


if __name__ == "__main__":
    main()
