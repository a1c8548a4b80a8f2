#!/usr/bin/env python3
"""Fails on an include that points against the arrows between rooms, on a ring of files inside a room, and on an inner
header that the tool uses without its being listed here; and on a page or comment that names a file which is not there."""
import graphlib
import pathlib
import re
import sys

# What each folder may include, besides itself; the public header stands as "quillmark".
PLATFORM = {
    "platform": [],  # the byte reader, sums, the budget
    "platform/text": ["platform"],
    "platform/files": ["platform"],
    "platform/core_foundation": ["platform", "platform/text"],
    "platform/property_list": ["platform", "platform/text", "platform/core_foundation"],
    "platform/resource_manager": ["platform", "platform/text", "platform/files", "platform/core_foundation"],
}
WHOLE_PLATFORM = list(PLATFORM)
ROOMS = PLATFORM | {
    "support": WHOLE_PLATFORM,
    "resources": ["support", *WHOLE_PLATFORM],
    "knowledge": ["support", *WHOLE_PLATFORM],
    "analysis": ["resources", "knowledge", "support", *WHOLE_PLATFORM, "quillmark"],
    "api": ["analysis", "knowledge", "resources", "support", *WHOLE_PLATFORM, "quillmark"],
}
TOOL = {
    "text": [],
    "faces": [],
    "output": ["faces", "text"],
    "reasons": ["text"],
    "files": ["faces", "reasons", "text"],
    "library": ["faces", "output", "reasons", "text"],
    "split": ["text"],
    "catalogue": ["faces", "files", "library", "output", "reasons", "text"],
    "resources": ["output", "text"],
    "commands": ["catalogue", "files", "faces", "library", "output", "reasons", "resources", "split", "text"],
    "": ["commands", "files", "output", "text"],  # main.cc
}
# OmString makes its wide form, and the wide forms are made of it: the one ring that stays.
KNOWN_RING = ("support/om_string", "support/wide_string")
# What the exported functions do not carry.
INNER_HEADERS = """
    analysis/collected_face.h analysis/collection.h analysis/font_extension.h analysis/font_kind.h analysis/name_match.h analysis/name_record.h
    analysis/name_table.h analysis/sfnt_data.h analysis/sfnt_directory.h
    api/creation.h api/creation_context.h api/face_fault.h api/font_array.h api/xml_reader.h
    knowledge/classification_mappings.h knowledge/foundry_name_table.h knowledge/keyword_table.h
    platform/budget.h platform/byte_reader.h platform/crc32.h platform/core_foundation/cf_bundle.h platform/core_foundation/cf_ref.h
    platform/files/apple_double.h platform/files/file_system.h platform/files/font_file.h
    platform/files/temporary_file.h platform/resource_manager/resource_map.h platform/text/ascii_case.h
    platform/text/text_encoding.h
    resources/family.h resources/fond_record.h resources/quillmark_resource_file.h resources/resource_access.h
""".split()

# The folders whose files pages and comments name.
PLACES = "src include tools tests fuzz bench script cmake data docs examples bindings completions man".split()


def includes(path):
    return re.findall(r'^#include [<"]([a-z_/0-9]+\.h)[>"]', path.read_text(encoding="utf-8"), re.M)


def sources(root):
    return {path.relative_to(root).as_posix(): path for path in sorted(root.rglob("*")) if path.suffix in (".h", ".cc")}


def folder(name):
    return name.rpartition("/")[0]


def check(root, allowed, inner=None):
    faults, graph = [], {}
    files = sources(root)
    for name, path in files.items():
        for seen in includes(path):
            if seen in files or folder(seen) == "quillmark":
                if folder(seen) != folder(name) and folder(seen) not in allowed.get(folder(name), ()):
                    if inner is None or folder(seen) != "quillmark":
                        faults.append(f"{path} includes {seen}, which {folder(name) or root} does not rest on")
                graph.setdefault(name.rpartition(".")[0], set()).add(seen.rpartition(".")[0])
            elif inner is not None and "/" in seen and seen not in inner and (root / "../../src" / seen).exists():
                faults.append(f"{path} includes {seen}, which is not among the inner headers of the tool")
    graph = {name: seen - {name} - ({KNOWN_RING[1]} if name == KNOWN_RING[0] else set()) for name, seen in graph.items()}
    try:
        graphlib.TopologicalSorter(graph).prepare()
    except graphlib.CycleError as ring:
        faults.append(f"{root}: a ring of {', '.join(ring.args[1])}")
    return faults


def missing_files(root):
    """Paths that pages, and the comments of src/ and tools/, name in full, and names of sources on pages."""
    faults = []
    known = {path.name for top in PLACES for path in (root / top).rglob("*")}
    pages = [path for path in root.glob("*.md") if path.name != "CHANGELOG.md"]
    pages += [path for top in ("docs", "data", "bindings/python") for path in (root / top).glob("*.md")]
    for path in [*pages, *sources(root / "src").values(), *sources(root / "tools").values()]:
        text = path.read_text(encoding="utf-8")
        named = re.findall(rf"(?<![\w/.~-])((?:{'|'.join(PLACES)})/[\w/.*-]*[\w*])", text)
        faults += [f"{path} names {name}, which is not there" for name in named if not list(root.glob(name))]
        if path in pages:
            bare = set(re.findall(r"`(\w+\.(?:cc|h|py))`", text)) - known
            faults += [f"{path} names {name}, which is not there" for name in sorted(bare)]
    return faults


def main():
    root = pathlib.Path(sys.argv[1])
    faults = check(root / "src", ROOMS) + check(root / "tools/quillmark", TOOL, INNER_HEADERS) + missing_files(root)
    print("\n".join(faults) or "every include follows the arrows, and every file that is named exists")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
