#!/usr/bin/env python3
"""The API reference comes without a warning, so that no member is without a comment, and nothing exported is missing in it.

usage: check_reference.py ROOT FOLDER       FOLDER receives Doxygen's output
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import xml.etree.ElementTree as ElementTree

# Members declared by Qt's macros or added by the compiler, private parts of a class, and overrides of Qt's functions,
# which docs/Doxyfile excludes.
UNDOCUMENTED = re.compile(
    r"^(vtable|typeinfo|non-virtual thunk|virtual thunk|tarnis::PlotMapping::Bins::)"
    r"|::(~|operator|metaObject\b|qt_meta|staticMetaObject|\w*[eE]vent\(|run\(\))")
# Only names: those of all link targets of the reference.
AS_TAGS = "GENERATE_HTML=NO\nGENERATE_TAGFILE=$(TARNIS_DOCS)/tags.xml\n"


def warnings(root, folder):
    configuration = (root / "docs/Doxyfile").read_text(encoding="utf-8") + AS_TAGS
    environment = dict(os.environ, TARNIS_VERSION="0", TARNIS_DOCS=str(folder))
    run = subprocess.run(
        ["doxygen", "-"], input=configuration, cwd=root, env=environment, capture_output=True, text=True, check=False)
    found = sorted(set((run.stdout + run.stderr).splitlines()))
    return found if found or run.returncode == 0 else [f"doxygen ended with {run.returncode}"]


def documented(folder):
    """Names of all members of the reference, with the class or namespace in front."""
    names = set()
    for compound in ElementTree.parse(folder / "tags.xml").getroot():
        scope = "" if compound.get("kind") == "file" else compound.findtext("name") + "::"
        names.update(scope + member.findtext("name") for member in compound.findall("member"))
    return names


def exported(root):
    """Names of what the library exports for others to call, without parameters."""
    for symbol in (root / "tests/project/exported_symbols.txt").read_text(encoding="utf-8").splitlines():
        name = symbol.split(" ", 1)[1]
        if not UNDOCUMENTED.search(name):
            yield name.split("(")[0]


def main():
    root, folder = pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2]).resolve()
    if shutil.which("doxygen") is None:
        print("doxygen is missing: script/bootstrap test installs it")
        return 1
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    found = warnings(root, folder)
    if not found:
        names = documented(folder)
        found = [f"not in the reference: {name}" for name in sorted(set(exported(root)) - names)]
    print("\n".join(found))
    print(f"{len(found)} faults")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
