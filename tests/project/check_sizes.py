#!/usr/bin/env python3
"""Finds source files of more than 500 lines and functions of more than 60: check_sizes.py ROOT

A longer one needs an entry with its reason in the tables below. The rows of a data-driven test (name_data()) may have any
length. Prints a line for each fault, also for an entry that is no longer needed; exits with 1 if there is one.
"""
import re
import sys
from pathlib import Path

MAX_FILE_LINES = 500
MAX_FUNCTION_LINES = 60
FOLDERS = ("apps", "benchmarks", "examples", "fuzz", "tarnis", "tests")

# file: reason
LONG_FILES = {}
# (file, function): reason
LONG_FUNCTIONS = {
    ("benchmarks/bench_livewindows.cpp", "run"): "one measurement from its start to its report",
    ("benchmarks/bench_plot2d.cpp", "map"): "all drawings of a map, measured by turns in one loop",
    ("tests/dialogs/tst_deletedwhileopen.cpp", "boxes"): "a table: one row for each box",
    ("tests/support/frameoracle.cpp", "paintFrame"): "the written rules of a frame in their order",
}

# The format puts the braces of a function on lines of their own, at the same indentation.
OPENING = re.compile(r"^( *)\{$")
NAME = re.compile(r"([~\w]+|operator\S+)\(")


def functions(lines):
    """(name, number of the first line, number of lines with the braces) of each function."""
    for first, line in enumerate(lines):
        opening = OPENING.match(line)
        if not opening:
            continue
        name = name_before(lines, first)
        if not name:
            continue
        closing = opening[1] + "}"
        last = next((i for i in range(first, len(lines)) if lines[i] == closing), None)
        if last is not None:
            yield name, first + 1, last - first + 1


def name_before(lines, brace):
    """The name in the declaration that ends before this line; empty for another block."""
    first = brace
    while first > 0 and lines[first - 1].strip() and not re.search(r"[;{}]$|^\s*(//|#|public|private)", lines[first - 1]):
        first -= 1
    found = NAME.search(" ".join(lines[first:brace]))
    return found[1] if found else ""


def faults(root, long_files=None, long_functions=None):
    unused_files = dict(LONG_FILES if long_files is None else long_files)
    unused_functions = dict(LONG_FUNCTIONS if long_functions is None else long_functions)
    found = []
    for path in sorted(p for folder in FOLDERS for p in (root / folder).rglob("*") if p.suffix in (".cpp", ".h", ".c")):
        name = path.relative_to(root).as_posix()
        lines = path.read_text(encoding="utf-8").splitlines()
        if len(lines) > MAX_FILE_LINES and not unused_files.pop(name, None):
            found.append(f"{name}: {len(lines)} lines, at most {MAX_FILE_LINES}: split it, or give a reason in check_sizes.py")
        for function, line, count in functions(lines):
            if count <= MAX_FUNCTION_LINES or function.endswith("_data"):
                continue
            if not unused_functions.pop((name, function), None):
                found.append(f"{name}:{line}: {function}() has {count} lines, at most {MAX_FUNCTION_LINES}: split it, or give "
                             "a reason in check_sizes.py")
    found += [f"{name}: a reason for a file that is not too long or does not exist" for name in unused_files]
    found += [f"{name}: a reason for {function}(), which is not too long or does not exist"
              for name, function in unused_functions]
    return found


def main():
    found = faults(Path(sys.argv[1]))
    print("\n".join(found + [f"{len(found)} faults"]))
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
