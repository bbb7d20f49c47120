#!/usr/bin/env python3
"""Each library and program needs the libraries of its component and no other, and the libraries' names hold their version.

usage: check_components.py FOLDER VERSION [PROGRAM...]

FOLDER holds the libraries, VERSION is what their names end with. The programs are those on Tarnis::Core.
"""

import pathlib
import re
import subprocess
import sys

SYSTEM = {"libstdc++", "libm", "libgcc_s", "libc", "ld-linux-x86-64", "ld-linux-aarch64"}
FIT = SYSTEM
CORE = FIT | {"libtarnis-fit", "libQt6Core", "libQt6Network"}
CORE_PROGRAM = CORE | {"libtarnis-core"}
HDF5 = CORE_PROGRAM | {"libhdf5", "libhdf5_serial"}
WIDGETS = CORE_PROGRAM | {"libQt6Gui", "libQt6Widgets", "libQt6PrintSupport"}


def entries(path, name):
    """The values of a dynamic entry."""
    text = subprocess.run(["objdump", "-p", path], capture_output=True, text=True, check=True).stdout
    return re.findall(rf"^\s*{name}\s+(\S+)$", text, re.MULTILINE)


def faults(path, allowed):
    needed = {name.split(".so")[0] for name in entries(path, "NEEDED")}
    if not needed:
        yield f"{path}: needs no library"
    for name in sorted(needed - allowed):
        yield f"{path}: needs {name}"


def main():
    folder, version = pathlib.Path(sys.argv[1]), sys.argv[2]
    found = []
    for name, allowed in {"tarnis-fit": FIT, "tarnis-core": CORE, "tarnis-hdf5": HDF5, "tarnis": WIDGETS}.items():
        library = folder / f"lib{name}.so"
        if name == "tarnis-hdf5" and not library.exists():
            continue  # a build without the HDF5 library
        found += faults(library, allowed)
        if entries(library, "SONAME") != [f"lib{name}.so.{version}"]:
            found.append(f"{library}: its name is not lib{name}.so.{version}")
    for program in sys.argv[3:]:
        found += faults(program, CORE_PROGRAM)
        if "libtarnis-core" not in " ".join(entries(program, "NEEDED")):
            found.append(f"{program}: does not need libtarnis-core")
    print("\n".join(found))
    print(f"{len(found)} faults")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
