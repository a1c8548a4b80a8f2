#!/usr/bin/env python3
"""Runs bench/run --quick and looks at its tables: every row is there and found faces, or tells what is not
installed. No time is looked at.
  quick_test.py FOLDER_OF_PROGRAMS
"""
import os
import subprocess
import sys

ALL_ROWS = ["limit", "the same with zlib", "Quillmark, 1 thread", "Quillmark, 2 threads", "Quillmark, names",
            "what it asks", "quillmark identify -j 1", "quillmark identify -j 2", "quillmark identify of path", "fc-scan",
            "FreeType", "fontTools"]
OTHERS = ALL_ROWS[9:]
WITHOUT_FACES = [*ALL_ROWS[:2], ALL_ROWS[5]]
TINY_ROWS = ["limit", "yardstick", "Quillmark"]
SIZES = 2  # of each growth row, in a quick run
GROWTH_ROWS = ["collection, each face", "collection, all faces", "plain file", "faces read from XML",
               "faces written to XML", "faces read from a property list", "faces written to a property list",
               "name of style words", "name of beginnings", "name of one letter", "suitcase, a FOND",
               "suitcase, one FOND"]
NOTHING_TO_FIND = ["name of beginnings", "name of one letter"]


def tables(text):
    """Section title -> rows of cells, heads and rules left out."""
    sections, rows, lines = {}, None, text.splitlines()
    for number, line in enumerate(lines):
        if line.startswith("### "):
            rows = sections.setdefault(line[4:].split(":")[0], [])
        elif line.startswith("| ") and not lines[number + 1].startswith("|---"):
            rows.append([cell.strip() for cell in line.strip("|").split(" | ")])
    return sections


def expect_names(section, rows, names):
    assert len(rows) == len(names), f"{section}: {len(rows)} rows in place of {len(names)}"
    for row, name in zip(rows, names):
        assert row[0].startswith(name), f"{section}: {row[0]!r} in place of {name!r}"


def main():
    run = os.path.join(os.path.dirname(os.path.abspath(__file__)), "run")
    text = subprocess.run([sys.executable, run, "--quick", "--programs", sys.argv[1]], check=True,
                          stdout=subprocess.PIPE, text=True).stdout
    print(text)
    found = tables(text)
    for section, names in (("All", ALL_ROWS), ("Files of 100 KB and more", ALL_ROWS[:4]),
                           ("Files below 100 KB", ALL_ROWS[:4]), ("Collections", ALL_ROWS[:4])):
        expect_names(section, found[section], names)
        for row, name in zip(found[section], names):
            if name not in WITHOUT_FACES and not (name in OTHERS and row[2].startswith("not installed")):
                assert int(row[2]) > 0 and int(row[3]) > 0, f"{section}: {name} found no face"
    faces = {row[2] for row in found["All"] if row[0].lower().startswith("quillmark")}
    assert len(faces) == 1, f"the library and the tool found different faces: {faces}"

    expect_names("One font", found["One font"][:2], ["quillmark identify", "quillmark identify of path"])
    expect_names("Tiny files", found["Tiny files"], TINY_ROWS)
    expect_names("Growth", found["Growth"], [name for name in GROWTH_ROWS for _ in range(SIZES)])
    for row in found["Growth"]:
        if not row[0].startswith(tuple(NOTHING_TO_FIND)):
            assert int(row[2]) > 0, f"Growth: {row[0]} found nothing"
    print("bench.quick: 1 passed, 0 failed")


main()
