#!/usr/bin/env python3
"""The console is the model of a host: every class that the library exports outside of namespace tarnis is used in it, and
the records and functions of its tables. A class counts as used if its name appears outside of comments, #include lines and
texts.

usage: check_console.py ROOT
"""

import pathlib
import re
import sys

OWN_NAMESPACE = re.compile(r"^namespace tarnis \{.*?^\} // namespace tarnis", re.MULTILINE | re.DOTALL)
DECLARED = re.compile(r"^(?:class|struct) TARNIS_EXPORT (\w+)", re.MULTILINE)
PLAIN = {"NameValue", "NameValues", "nvClear", "nvUpdate", "Graph2DFilter", "ModelessWidgetManager"}  # no class, or inline

# Names that a host does not use directly, with the names that the console must use instead.
INSTEAD = {
    "DelayCall": ("delay_call", "a pending call is made and owned by the function"),
    "_LogBlock": ("LOG_BLOCK", "a block is opened by the macro, which names file and line"),
    "DoubleBufferedWidget": ("XYGraphWidget", "the common ground of the plots, which shows nothing itself"),
    "PeakSearch": ("PeakSearchDialog", "the plots search and fit when their dialog asks for it"),
    "SysMsg": ("SystemMessages", "the same messages with their parts, for other languages"),
}


def code_of(text):
    text = re.sub(r'"(?:\\.|[^"\\\n])*"', '""', text)
    text = re.sub(r"//[^\n]*|/\*.*?\*/", "", text, flags=re.DOTALL)
    return re.sub(r"^\s*(?:#include[^\n]*|class \w+;)", "", text, flags=re.MULTILINE)


def exported(root):
    names = set(PLAIN)
    for header in root.glob("tarnis/*/*.h"):
        # The additions in namespace tarnis are demonstrated by examples and the command-line client.
        names.update(DECLARED.findall(OWN_NAMESPACE.sub("", header.read_text(encoding="utf-8"))))
    return names


def faults(root):
    sources = [path for ending in ("*.cpp", "*.h") for path in root.glob(f"apps/console/**/{ending}")]
    used = set(re.findall(r"\w+", "\n".join(code_of(path.read_text(encoding="utf-8")) for path in sources)))
    names = exported(root)
    for name in sorted(names - used):
        instead = INSTEAD.get(name, (name, ""))[0]
        if instead not in used:
            yield f"{name}: exported and used nowhere in apps/console"
    for name in sorted(set(INSTEAD) - names):
        yield f"{name}: an exception for what the library does not export"
    for name in sorted(set(INSTEAD) & used):
        yield f"{name}: an exception for what the console uses"


def main():
    found = list(faults(pathlib.Path(sys.argv[1])))
    for fault in found:
        print(fault)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
