#!/usr/bin/env python3
"""Makes the three property lists that ship with the library from the tab-separated tables beside this script.

  generate.py            writes FoundryNameTable.plist, DefaultClassifications.plist and KeywordTable.plist
  generate.py --check    writes nothing; fails when a list is not what its tables give

The order of rows is the order of the lists, and it decides: the first foundry whose pattern occurs wins, the first
component that lists a word has it, and styles are ranked in table order. README.md says where a new row belongs.
"""

import csv
import pathlib
import sys
from xml.sax.saxutils import escape

HERE = pathlib.Path(__file__).resolve().parent


class Row(dict):
    """The fields of one line of a table by the names of their columns."""

    def __init__(self, place, columns, fields):
        super().__init__(zip(columns, fields))
        self.place = place
        if len(fields) != len(columns):
            self.fail(f"{len(fields)} fields, not {len(columns)}")

    def fail(self, why):
        sys.exit(f"{self.place}: {why}")

    def flag(self, column):
        if self[column] not in ("yes", "no"):
            self.fail(f"{column} is {self[column]!r}, neither yes nor no")
        return self[column] == "yes"


def rows(name):
    with open(HERE / name, encoding="utf-8", newline="") as table:
        reader = csv.reader(table, delimiter="\t", quoting=csv.QUOTE_NONE)
        columns = next(reader)
        return [Row(f"{name}:{reader.line_num}", columns, fields) for fields in reader]


def element(value, level=0):
    """One property-list value, one element a line, one tab a level."""
    tabs = "\t" * level
    if isinstance(value, bool):
        return f"{tabs}<{'true' if value else 'false'}/>\n"
    if isinstance(value, int):
        return f"{tabs}<integer>{value}</integer>\n"
    if isinstance(value, str):
        return f"{tabs}<string>{escape(value)}</string>\n"
    if isinstance(value, list):
        if not value:
            return f"{tabs}<array/>\n"
        return f"{tabs}<array>\n" + "".join(element(v, level + 1) for v in value) + f"{tabs}</array>\n"
    body = "".join(f"{tabs}\t<key>{escape(k)}</key>\n{element(v, level + 1)}" for k, v in sorted(value.items()))
    return f"{tabs}<dict>\n{body}{tabs}</dict>\n"


def document(root):
    return (
        '<?xml version="1.0" encoding="UTF-8"?>\n'
        '<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">\n'
        f'<plist version="1.0">\n{element(root)}</plist>\n'
    )


def foundries():
    entries = []
    for row in rows("foundries.tsv"):
        entry = {"FoundryName": row["name"], "Pattern": row["pattern"]}
        if row["creator_codes"]:
            entry["CreatorCode"] = row["creator_codes"].split(",")
        entries.append(entry)
    return entries


def rows_by(name, column):
    """The rows by what they hold in a column, where no two may hold the same."""
    unique = {}
    for row in rows(name):
        if row[column] in unique:
            row.fail(f"{row[column]!r} is listed already")
        unique[row[column]] = row
    return unique


def classifications():
    classes = list(rows_by("classes.tsv", "class"))
    mappings = rows_by("classifications.tsv", "family")
    for row in mappings.values():
        if row["class"] == "None" or row["class"] not in classes:
            row.fail(f"{row['class']!r} is no class for a family")
    return {
        "Default Classifications": classes,
        "Mappings": {family: row["class"] for family, row in mappings.items()},
    }


def keywords():
    listed = rows_by("style_components.tsv", "constant")
    words = {constant: [] for constant in listed}
    for row in rows_by("style_words.tsv", "word").values():
        if row["constant"] not in words:
            row.fail(f"no component has the constant {row['constant']!r}")
        words[row["constant"]].append(row["word"])
    styles = rows("styles.tsv")
    for row in styles:
        for constant in row["constants"].split():
            if constant not in listed:
                row.fail(f"no component has the constant {constant!r}")
    components = [
        {
            "style-constant": int(constant),
            "display": row["display"],
            "is-modifier": row.flag("modifier"),
            "compounds": row.flag("compounds"),
            "match-strings": words[constant],
        }
        for constant, row in listed.items()
    ]
    styles = [
        {
            "display": row["display"],
            "isweight": row.flag("weight"),
            "components": [int(constant) for constant in row["constants"].split()],
        }
        for row in styles
    ]
    return {"Components": components, "Styles": styles}


LISTS = {
    "FoundryNameTable.plist": foundries,
    "DefaultClassifications.plist": classifications,
    "KeywordTable.plist": keywords,
}


def main():
    check = sys.argv[1:] == ["--check"]
    if sys.argv[1:] and not check:
        sys.exit(__doc__)
    stale = []
    for name, make in LISTS.items():
        text = document(make())
        path = HERE / name
        if not check:
            path.write_text(text, encoding="utf-8", newline="\n")
        elif not path.exists() or path.read_text(encoding="utf-8") != text:
            stale.append(name)
    if stale:
        sys.exit(f"{', '.join(stale)}: not what the tables give; run data/generate.py")


if __name__ == "__main__":
    main()
