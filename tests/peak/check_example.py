#!/usr/bin/env python3
"""What docs/fitting.md says an example prints is what it prints.

usage: check_example.py PROGRAM DOCUMENT [INPUT]       INPUT: a file for the program to read
"""

import pathlib
import re
import subprocess
import sys


def main():
    program, document = map(pathlib.Path, sys.argv[1:3])
    text = document.read_text(encoding="utf-8")
    quoted = re.search(rf"<!-- printed by {program.stem} -->\n```\n(.*?)```", text, re.DOTALL)
    given = pathlib.Path(sys.argv[3]).read_text(encoding="utf-8") if len(sys.argv) > 3 else None
    printed = subprocess.run([program], input=given, check=True, capture_output=True, text=True, timeout=60).stdout
    print(printed, end="")
    if not quoted or quoted.group(1) != printed:
        print(f"{document} quotes something else")
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
