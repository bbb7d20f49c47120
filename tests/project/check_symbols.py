#!/usr/bin/env python3
"""Compares what the shared library exports with the list beside this file.

usage: check_symbols.py LIBRARY LIST [--update]

The list holds the demangled names of all strong dynamic symbols. Weak ones (inline functions, templates of Qt's headers)
depend on the compiler's inlining and are left out. --update writes the list anew: the diff is then for a reviewer.
"""

import pathlib
import subprocess
import sys

# The virtual tables and type information that every exported class brings along are strong; so are these of the linker.
LINKER_NAMES = {"_init", "_fini", "__bss_start", "_edata", "_end"}


def exported(library):
    lines = subprocess.run(
        ["nm", "--dynamic", "--defined-only", "--demangle", "--format=posix", library],
        capture_output=True, text=True, check=True).stdout.splitlines()
    names = set()
    for line in lines:
        # posix format: name type value size; the demangled name may hold blanks.
        fields = line.rsplit(" ", 3)
        name, kind = fields[0], fields[1]
        if kind in "TDBR" and name not in LINKER_NAMES:
            names.add(name)
    return names


def main():
    library, list_path = sys.argv[1], pathlib.Path(sys.argv[2])
    names = exported(library)
    if "--update" in sys.argv:
        list_path.write_text("\n".join(sorted(names)) + "\n", encoding="utf-8")
        return 0
    wanted = set(list_path.read_text(encoding="utf-8").splitlines())
    for name in sorted(wanted - names):
        print(f"not exported any more: {name}")
    for name in sorted(names - wanted):
        print(f"exported, not in the list: {name}")
    print(f"{len(names)} exported symbols, {len(wanted ^ names)} differences")
    return 1 if wanted != names or not names else 0


if __name__ == "__main__":
    sys.exit(main())
