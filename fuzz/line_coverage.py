#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Prints which share of the lines each folder's code is reached: line_coverage.py LCOV ROOT NOT_REACHED

LCOV is what llvm-cov exports. The lines that are not reached go to the file NOT_REACHED, by file.
"""
import collections
import os
import sys


def read(path, root):
    """{file below root: {line: how often it ran}}, of all objects together"""
    files = collections.defaultdict(lambda: collections.defaultdict(int))
    name = None
    for line in open(path, encoding="utf-8"):
        kind, _, value = line.rstrip("\n").partition(":")
        if kind == "SF":
            name = os.path.relpath(value, root)
        elif kind == "DA":
            number, count = map(int, value.split(",")[:2])
            files[name][number] += count
    return files


def ranges(numbers):
    """[1, 2, 3, 7] -> "1-3 7"; numbers are sorted"""
    spans = []
    for number in numbers:
        if spans and spans[-1][1] == number - 1:
            spans[-1][1] = number
        else:
            spans.append([number, number])
    return " ".join(str(a) if a == b else "%d-%d" % (a, b) for a, b in spans)


def main():
    source, root, not_reached = sys.argv[1:]
    folders = collections.defaultdict(lambda: [0, 0])
    with open(not_reached, "w", encoding="utf-8") as out:
        for name, lines in sorted(read(source, root).items()):
            missed = sorted(number for number, count in lines.items() if count == 0)
            totals = folders[os.path.dirname(name)]
            totals[0] += len(lines) - len(missed)
            totals[1] += len(lines)
            if missed:
                out.write("%s: %s\n" % (name, ranges(missed)))
    print("| folder | lines | reached |\n|---|---|---|")
    for folder, (reached, count) in sorted(folders.items()):
        print("| `%s/` | %d | %.1f %% |" % (folder, count, 100 * reached / max(count, 1)))


if __name__ == "__main__":
    main()
