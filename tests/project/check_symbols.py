#!/usr/bin/env python3
"""Compares what the shared libraries export with the list beside this file.

usage: check_symbols.py FOLDER [--update]       FOLDER holds the libraries: build/dev/tarnis

Each line of the list holds a library and the demangled name of a strong dynamic symbol. Weak ones (inline functions,
templates of Qt's headers) depend on the compiler's inlining and are left out, and so are virtual tables and type
information, which are strong with Clang only. --update writes the list again: the diff is then for a reviewer.
"""

import pathlib
import subprocess
import sys

LIBRARIES = ("tarnis", "tarnis-core", "tarnis-fit")
LIST = pathlib.Path(__file__).with_name("exported_symbols.txt")
LINKER_NAMES = {"_init", "_fini", "__bss_start", "_edata", "_end"}
OF_CLASSES = ("typeinfo ", "vtable for ")


def exported(library):
    lines = subprocess.run(
        ["nm", "--dynamic", "--defined-only", "--demangle", "--format=posix", library],
        capture_output=True, text=True, check=True).stdout.splitlines()
    names = set()
    for line in lines:
        # posix format: name type value size; the demangled name may contain spaces.
        fields = line.rsplit(" ", 3)
        name, kind = fields[0], fields[1]
        if kind in "TDBR" and name not in LINKER_NAMES and not name.startswith(OF_CLASSES):
            names.add(name)
    return names


def main():
    folder = pathlib.Path(sys.argv[1])
    lines = {library: {f"{library} {name}" for name in exported(folder / f"lib{library}.so")} for library in LIBRARIES}
    names = set().union(*lines.values())
    if "--update" in sys.argv:
        LIST.write_text("\n".join(sorted(names)) + "\n", encoding="utf-8")
        return 0
    wanted = set(LIST.read_text(encoding="utf-8").splitlines())
    for name in sorted(wanted - names):
        print(f"not exported any more: {name}")
    for name in sorted(names - wanted):
        print(f"exported, not in the list: {name}")
    print(f"{len(names)} exported symbols, {len(wanted ^ names)} differences")
    return 1 if wanted != names or not all(lines.values()) else 0


if __name__ == "__main__":
    sys.exit(main())
