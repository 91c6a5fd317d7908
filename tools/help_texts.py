#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Keeps what `fbx2czp COMMAND --help` prints in tests/golden/help.txt, where a change of it shows.

tools/help_texts.py [--check] FBX2CZP   writes that file anew, or compares it
"""
import difflib
import pathlib
import re
import subprocess
import sys

FILE = pathlib.Path(__file__).parent.parent / "tests" / "golden" / "help.txt"


def help_of(tool, *command):
    return subprocess.run([tool, *command, "--help"], check=True, capture_output=True, text=True).stdout


def texts(tool):
    first = help_of(tool)
    commands = re.findall(r"^  ([a-z]+) ", first.split("Subcommands:\n")[1], re.MULTILINE)
    parts = [("", first)] + [(" " + command, help_of(tool, command)) for command in commands]
    return "".join(f"$ fbx2czp{command} --help\n{text}\n" for command, text in parts)


def main(arguments):
    if len(arguments) not in (1, 2) or arguments[:-1] not in ([], ["--check"]):
        sys.exit(__doc__)
    made = texts(arguments[-1])
    if len(arguments) == 1:
        FILE.write_text(made, encoding="utf-8")
        return
    kept = FILE.read_text(encoding="utf-8")
    if made != kept:
        sys.stdout.writelines(difflib.unified_diff(kept.splitlines(True), made.splitlines(True), str(FILE), "--help"))
        sys.exit(f"if that is meant: tools/help_texts.py {arguments[-1]}")


main(sys.argv[1:])
