#!/usr/bin/env python3
"""Fails if a private function of an exported class is an exported symbol.

usage: check_private.py INCLUDE_FOLDER SYMBOL_LIST

Private steps carry TARNIS_NO_EXPORT, or are functions of a nested class that does. The installed headers are read line
by line; the list is that of check_symbols.py.
"""

import pathlib
import re
import sys

CLASS = re.compile(r"^(class|struct) TARNIS_EXPORT (\w+)")
ACCESS = re.compile(r"^(public|protected|private)\b.*:\s*$|^Q_SIGNALS:")
FUNCTION = re.compile(r"(~?\w+)\(")


def private_functions(header):
    """Pairs of class and function, as the header declares them."""
    name, access = None, None
    for line in header.read_text(encoding="utf-8").splitlines():
        if found := CLASS.match(line):
            name, access = found.group(2), "private" if found.group(1) == "class" else "public"
        elif line.startswith("}"):
            name = None
        elif found := ACCESS.match(line):
            access = found.group(1) or "public"
        elif name and access == "private" and not line.lstrip().startswith("//"):
            if found := FUNCTION.search(line):
                yield name, found.group(1)


def main():
    folder, symbols = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
    exported = set(re.findall(r"(\w+::~?\w+)\(", symbols.read_text(encoding="utf-8")))
    headers = [path for path in folder.rglob("*.h") if not path.name.endswith("_p.h")]
    private = {f"{name}::{function}" for header in headers for name, function in private_functions(header)}
    for name in sorted(private & exported):
        print(f"{name} is private and exported: declare it with TARNIS_NO_EXPORT")
    print(f"{len(private)} private functions in {len(headers)} headers")
    return 1 if private & exported or not private else 0


if __name__ == "__main__":
    sys.exit(main())
