#!/usr/bin/env python3
"""Fails on a file or folder under /usr that tests, fuzz targets, examples or benchmarks name and that no package of
script/bootstrap --tests brings: on another machine it would be missing. A package brings also what its dependencies
bring, and what every Debian has is there. Fonts count by their file names alone, too, where an installed package has
one of that name."""

import pathlib
import re
import shutil
import subprocess
import sys

PATH = re.compile(r"(?<![\w.}/])/usr/[\w./+-]*[\w+]")
FONT = re.compile(r"(?<![\w-])[\w-]+\.(?:ttf|ttc|otf|otc|t1|pfb|pfa|afm)\b")


def query(*arguments):
    return subprocess.run(["dpkg-query", *arguments], capture_output=True, text=True).stdout


def owners(*patterns):
    """Paths that match, with the packages that they come with."""
    found = re.findall(r"^(?!diversion )(.+): (/.+)$", query("--search", *patterns), re.M)
    return {path: set(re.sub(r":\w+", "", packages).split(", ")) for packages, path in found}


def main(source):
    if not shutil.which("dpkg-query"):
        return 77
    arrays = re.findall(r"^\w+=\(([^)]*)\)", (source / "script/bootstrap").read_text(), re.M)
    brought = {word for words in arrays for word in words.split()}
    depends = re.sub(r"\([^)]*\)|:\w+", "", query("-W", "-f", "${Pre-Depends},${Depends},", *brought))
    brought |= set(re.split(r"[\s,|]+", depends))
    brought |= set(re.findall(r"^(\S+) yes$", query("-W", "-f", "${Package} ${Essential}\n"), re.M))

    named = {}  # path or file name of a font: a file that names it
    for folder in ("tests", "fuzz", "examples", "bench"):
        for file in filter(pathlib.Path.is_file, (source / folder).rglob("*")):
            text = file.read_bytes().decode("ascii", "ignore")
            named.update((name, file) for name in PATH.findall(text) + FONT.findall(text) if "quillmark" not in name)

    paths = [name for name in named if name.startswith("/")]
    by_name = owners(*(path for name in paths for path in (name, name.removeprefix("/usr"))))
    by_name = {name: by_name.get(name, set()) | by_name.get(name.removeprefix("/usr"), set()) for name in paths}
    for path, packages in owners("/usr/share/fonts/*").items():
        if (name := pathlib.Path(path).name) in named:
            by_name.setdefault(name, set()).update(packages)
    missing = {name: packages for name, packages in by_name.items() if not packages & brought}
    for name, packages in sorted(missing.items()):
        print(f"{named[name]}: {name} comes with no package of script/bootstrap; installed with:", *(packages or ["none"]))
    return 1 if missing else 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1])))
