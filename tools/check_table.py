#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Keep the table of docs/check.md what src/rig_check/finding_kinds.h says.

check_table.py         rewrites codes, severities, subjects and words; the last column, status lines, stays
check_table.py --check only compares: exit status 1 when the table says something else
"""
import os
import re
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
HEADER, PAGE = os.path.join(ROOT, "src/rig_check/finding_kinds.h"), os.path.join(ROOT, "docs/check.md")
SEVERITIES = {"Error": "error", "Warning": "warning", "Note": "note"}


def findings():
    """Code, severity, subject and words of each kind, in the order of the header."""
    with open(HEADER, encoding="utf-8") as file:
        source = re.sub(r'(?<!\\)"\s*\n\s*"', "", file.read())
    string = r'"((?:[^"\\]|\\.)*)"'
    for code, severity, subject, text in re.findall(
            r"FindingKind k\w+\{\s*%s,\s*(\w+),\s*(\w+),\s*%s" % (string, string), source):
        words = text.replace('\\"', '"').replace("{}", "…").replace("&", "&amp;").replace("<", "&lt;")
        yield code, SEVERITIES[severity], subject.lower(), words


def main():
    with open(PAGE, encoding="utf-8") as file:
        lines = file.read().split("\n")
    rows = [i for i, line in enumerate(lines) if re.match(r"\| `[a-z0-9-]+` \| (error|warning|note) \|", line)]
    last = {}  # last columns by code, in order
    for i in rows:
        cells = re.split(r"(?<!\\)\|", lines[i])
        last.setdefault(cells[1].strip(" `"), []).append(cells[-2].strip())
    wanted = []
    for code, severity, subject, words in findings():
        column = last[code].pop(0) if last.get(code) else ""
        wanted.append("| `%s` | %s | %s | %s | %s |" % (code, severity, subject, words, column))
    if [lines[i] for i in rows] == wanted:
        return 0
    if "--check" in sys.argv[1:]:
        print("docs/check.md differs from src/rig_check/finding_kinds.h; run tools/check_table.py")
        return 1
    lines[rows[0]:rows[-1] + 1] = wanted
    with open(PAGE, "w", encoding="utf-8") as file:
        file.write("\n".join(lines))
    return 0


if __name__ == "__main__":
    sys.exit(main())
