"""Asks the command-line tool for what the library does not tell: why a file gives no face."""

import json
import os
import pathlib
import shutil
import subprocess
from typing import Optional

from . import _library


def _path() -> str:
    """The tool that QUILLMARK_TOOL names, and no other then; the one of the library's prefix; one on PATH."""
    named = os.environ.get("QUILLMARK_TOOL")
    if named:
        return named
    for folder in pathlib.Path(_library.load()._name).parents:
        if folder.name in ("lib", "lib64"):
            beside = shutil.which(str(folder.parent / "bin/quillmark"))
            if beside:
                return beside
            break
    found = shutil.which("quillmark")
    if found is None:
        raise OSError("the quillmark tool, which tells reasons, is neither beside the library nor on PATH")
    return found


def reason_of(path: bytes) -> Optional[str]:
    """The reason that `quillmark why` gives for one path that is there."""
    tool = _path()
    shown = b"./" + path if path.startswith(b"-") else path  # no option
    command = [tool, "why", "--format", "json", shown]
    try:
        done = subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True)
    except OSError as fault:
        raise OSError(f"the quillmark tool cannot be run: {fault}") from None
    try:
        (entry,) = json.loads(done.stdout)
        return entry["reason"]
    except (ValueError, KeyError, TypeError):
        fault = _library.to_text(done.stderr).strip()
        raise OSError(f"{tool} why gave no answer, status {done.returncode}: {fault}") from None
