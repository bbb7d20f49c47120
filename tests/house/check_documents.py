#!/usr/bin/env python3
"""The documents' code is the code that is compiled, their tables name files that exist, and their links lead somewhere.

usage: check_documents.py ROOT
"""

import pathlib
import re
import sys

SHOWN = re.compile(r"<!-- (\S+) -->\n```cpp\n(.*?)```", re.DOTALL)
NAMED = re.compile(r"`((?:docs|apps|examples|script|tests|tarnis|cmake|benchmarks|fuzz)/[\w./-]+)`")
LINK = re.compile(r"!?\[[^\]]*\]\(([^)#:]+)\)")


def faults(root):
    for document in [*root.glob("*.md"), *root.glob("docs/*.md"), *root.glob("tarnis/*/README.md")]:
        text = document.read_text(encoding="utf-8")
        name = document.relative_to(root)
        for path, code in SHOWN.findall(text):
            source = root / path
            if not source.exists() or source.read_text(encoding="utf-8") != code:
                yield f"{name}: the code shown is not that of {path}"
        for path in NAMED.findall(text):
            if not any((root / (path + ending)).exists() for ending in ("", ".h", ".cpp")):
                yield f"{name}: no {path}"
        for path in LINK.findall(re.sub(r"```.*?```", "", text, flags=re.DOTALL)):
            if not (document.parent / path).exists():
                yield f"{name}: link to {path} leads nowhere"


def main():
    found = list(faults(pathlib.Path(sys.argv[1])))
    print("\n".join(found))
    print(f"{len(found)} faults")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
