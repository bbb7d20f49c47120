#!/usr/bin/env python3
"""The documents' code is the code that is compiled, their tables name files that exist, their links lead somewhere, every
folder with sources has a README that says where to start and names files that exist, and docs/api.md names every exported
class.

usage: check_documents.py ROOT
       check_documents.py ROOT --write DOCUMENT FOLDER   writes the files that the document shows into the folder
       check_documents.py ROOT --typed DOCUMENT SCRIPT   prints the commands that the document says the script types
"""

import pathlib
import re
import sys

SHOWN = re.compile(r"<!-- (\S+) -->\n```(?:cpp|cmake)\n(.*?)```", re.DOTALL)
FENCED = re.compile(r"^```(\w*)\n(.*?)^```", re.DOTALL | re.MULTILINE)
TYPED = re.compile(r"<!-- typed by (\S+) -->\n```sh\n(.*?)```", re.DOTALL)
NAMED = re.compile(r"`((?:docs|apps|examples|script|tests|tarnis|cmake|benchmarks|fuzz)/[\w./-]+)`")
LINK = re.compile(r"!?\[[^\]]*\]\(([^)#:]+)\)")
SCRIPT = re.compile(r"(?<!\S)(script/\w+)")
EXPORTED = re.compile(r"^(?:class|struct) TARNIS_\w*EXPORT (\w+)", re.MULTILINE)
OPTION = re.compile(r"-D(TARNIS_\w+)")
SOURCE = re.compile(r"`([\w./]+\.(?:h|cpp|c|py|sh|ui))`")
ROOMS = ("apps", "benchmarks", "examples", "fuzz", "tarnis", "tests")
SOURCES = {".c", ".cpp", ".h", ".py"}
KINDS = {"", "cpp", "cmake", "sh", "transcript", "recipe"}  # without one: output


def blocks(root, document, text):
    """Faults of the fenced blocks: a block of code is that of a file, the words of a command exist."""
    shown = {code for _, code in SHOWN.findall(text)}
    options = (root / "CMakeLists.txt").read_text(encoding="utf-8")
    for kind, code in FENCED.findall(text):
        if kind not in KINDS:
            yield f"{document}: a block of the kind '{kind}'"
        if kind in ("cpp", "cmake") and code not in shown:
            yield f"{document}: a block of {kind} that is no file"
        if kind == "sh":
            for path in SCRIPT.findall(code):
                if not (root / path).exists():
                    yield f"{document}: no {path}"
            for option in OPTION.findall(code):
                if f"option({option} " not in options:
                    yield f"{document}: no option {option}"
    for path, code in SHOWN.findall(text):
        source = root / path
        if not source.exists() or source.read_text(encoding="utf-8") != code:
            yield f"{document}: the code shown is not that of {path}"
    for path, _ in TYPED.findall(text):
        name = document.name
        if not (root / path).exists() or name not in (root / path).read_text(encoding="utf-8"):
            yield f"{document}: {path} does not type what is shown"


def rooms(root):
    """Faults of the folders: a stranger finds a README wherever there are sources."""
    folders = {path.parent for room in ROOMS for path in (root / room).rglob("*") if path.suffix in SOURCES}
    for folder in sorted({root / room for room in ROOMS} | folders):
        readme = folder / "README.md"
        if folder.parent == root / "examples":
            continue  # a program each, in the README above
        if not readme.exists():
            yield f"{folder.relative_to(root)}: no README.md"
            continue
        text = readme.read_text(encoding="utf-8")
        if "Start reading" not in text:
            yield f"{readme.relative_to(root)}: does not say where to start reading"
        for name in SOURCE.findall(text):
            if not any((base / name).exists() for base in (folder, root)) and not list(folder.rglob(name)):
                yield f"{readme.relative_to(root)}: no {name}"


def reference(root):
    """Faults of the first page of the reference: it names every exported class of each folder with public headers, and
    nothing that the headers of the folder do not hold."""
    rows = dict(re.findall(r"^\| `tarnis/(\w+)` \| (.*) \|$", (root / "docs/api.md").read_text(encoding="utf-8"), re.MULTILINE))
    for folder in sorted(path.parent for path in (root / "tarnis").glob("*/CMakeLists.txt")):
        headers = [path for path in folder.rglob("*.h") if not path.name.endswith("_p.h")]
        text = "".join(path.read_text(encoding="utf-8") for path in headers)
        if "EXPORT" not in text:
            continue
        named = set(re.findall(r"`(?:tarnis::)?(\w+)`", rows.get(folder.name, "")))
        for name in sorted(set(EXPORTED.findall(text)) - named):
            yield f"docs/api.md: no `{name}` of tarnis/{folder.name}"
        for name in sorted(named):
            if not re.search(rf"\b{name}\b", text):
                yield f"docs/api.md: the headers of tarnis/{folder.name} hold no `{name}`"


def faults(root):
    yield from rooms(root)
    yield from reference(root)
    readmes = [path for room in ROOMS for path in sorted((root / room).rglob("README.md"))]
    for path in [*root.glob("*.md"), *root.glob("docs/*.md"), *readmes]:
        text = path.read_text(encoding="utf-8")
        document = path.relative_to(root)
        yield from blocks(root, document, text)
        for name in NAMED.findall(text):
            if not any((root / (name + ending)).exists() for ending in ("", ".h", ".cpp")):
                yield f"{document}: no {name}"
        # Code, fenced or indented, may contain brackets that look like a link.
        prose = re.sub(r"^ {4}.*$", "", re.sub(r"```.*?```", "", text, flags=re.DOTALL), flags=re.MULTILINE)
        for link in LINK.findall(prose):
            if not (path.parent / link).exists():
                yield f"{document}: link to {link} leads nowhere"


def write(document, folder):
    folder.mkdir(parents=True, exist_ok=True)
    for path, code in SHOWN.findall(document.read_text(encoding="utf-8")):
        (folder / pathlib.PurePosixPath(path).name).write_text(code, encoding="utf-8")


def main():
    root = pathlib.Path(sys.argv[1])
    if len(sys.argv) > 4 and sys.argv[2] == "--write":
        write(root / sys.argv[3], pathlib.Path(sys.argv[4]))
        return 0
    if len(sys.argv) > 4 and sys.argv[2] == "--typed":
        text = (root / sys.argv[3]).read_text(encoding="utf-8")
        commands = "".join(code for script, code in TYPED.findall(text) if script == sys.argv[4])
        print(commands, end="")
        return 0 if commands else 1
    found = list(faults(root))
    print("\n".join(found))
    print(f"{len(found)} faults")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
