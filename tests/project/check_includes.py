#!/usr/bin/env python3
"""Reads the #include lines of a source tree and fails on an arrow that the architecture does not allow.

usage: check_includes.py ROOT
"""

import pathlib
import re
import sys

# A folder of tarnis/ may include itself and these.
ALLOWED = {
    "foundation": set(),
    "formats": {"foundation"},
    "server": {"foundation"},
    "client": {"foundation", "server"},
    "peak": {"foundation"},
    "analysis": {"foundation", "peak"},
    "plots": {"foundation", "peak"},
    "hdf5": {"foundation", "formats"},
    "export": {"foundation", "formats", "peak", "plots"},
    "dialogs": {"foundation", "formats", "server", "client", "peak", "plots", "export"},
    "tools": {"foundation", "formats", "peak", "analysis", "plots"},
    "live": {"foundation", "server", "client", "peak", "plots", "tools"},
}
# Rooms inside tarnis/plots: what else of that folder a room may include.
PLOT_ROOMS = {
    "math": {"math", "axisrange.h", "multivectorgraphwidget.h"},  # the last holds the record of a curve
    "raster": {"math", "raster", "rasterpath.h"},
}
# Rooms inside tarnis/tools: which other rooms a room may include. The installed headers at the root are free to all,
# but only the tool bar and the base class have sources there.
TOOL_ROOMS = {
    "base": set(),
    "navigation": {"base"},
    "cursors": {"base"},
    "curves": {"base"},
    "maps": {"base", "navigation"},
    "style": {"base"},
    "panels": {"base"},
    "regions": {"base", "panels"},
}
# Headers that pure arithmetic has no use for.
WIDGET_HEADERS = {"QWidget", "QPainter", "QPixmap", "QApplication", "QDialog"}
# A room of apps/console may include itself and these. mainwindow.h and tour/ are for the root and for the tour.
CONSOLE_ROOMS = {
    "app": set(),
    "notices": {"app"},
    "server": {"app", "notices"},
    "saves": {"app", "notices", "server"},
    "command": {"app", "notices", "server"},
    "settings": {"app", "notices", "server"},
    "run": {"app", "notices", "server"},
    "windows": {"app", "notices", "server"},
    "browse": {"app", "notices", "server", "command", "settings", "windows"},
    "histograms": {"app", "notices", "server", "saves", "windows"},
    "tables": {"app", "notices", "server", "windows", "histograms"},
    "log": {"app", "notices", "server", "windows"},
}
# The one exception: a leaf that includes nothing of ours.
LEAF = "tarnis/dialogs/selectcheckeddialog.h"
LEAF_USER = "plots"
# Written by the build, for everybody.
GENERATED = {"tarnis/tarnis_export.h", "tarnis/version.h"}

INCLUDE = re.compile(r'^\s*#\s*include\s*[<"]([^>"]+)[>"]', re.MULTILINE)
SOURCES = {".h", ".cpp", ".c"}


def included(path):
    return INCLUDE.findall(path.read_text(encoding="utf-8"))


def library_faults(root):
    for folder, may_include in ALLOWED.items():
        for path in sorted((root / "tarnis" / folder).rglob("*")):
            if path.suffix not in SOURCES:
                continue
            for target in included(path):
                parts = target.split("/")
                if parts[0] != "tarnis":
                    if (path.parent / target).exists():
                        yield f"{path.relative_to(root)}: {target}: write the path from the include root"
                    continue
                if target in GENERATED or parts[1] == folder or parts[1] in may_include:
                    continue
                if target == LEAF and folder == LEAF_USER:
                    continue
                yield f"{path.relative_to(root)}: {target}: {folder} may not include {parts[1]}"


def leaf_faults(root):
    leaf = root / LEAF
    if not leaf.exists():
        return
    for path in (leaf, leaf.with_suffix(".cpp")):
        for target in included(path):
            if target.startswith("tarnis/") and target not in (LEAF, "tarnis/tarnis_export.h"):
                yield f"{path.relative_to(root)}: {target}: this dialog includes nothing of the library"


def plot_room_faults(root):
    for room, may_include in PLOT_ROOMS.items():
        for path in sources_of(root / "tarnis" / "plots" / room):
            for target in included(path):
                parts = target.split("/")
                if target.startswith("tarnis/plots/") and parts[2] not in may_include:
                    yield f"{path.relative_to(root)}: {target}: plots/{room} may not include it"
                if room == "math" and target in WIDGET_HEADERS:
                    yield f"{path.relative_to(root)}: {target}: plots/math has no widgets and paints nothing"


def tool_room_faults(root):
    tools = root / "tarnis" / "tools"
    for room, may_include in TOOL_ROOMS.items():
        for path in sources_of(tools / room):
            for target in included(path):
                parts = target.split("/")
                if target.startswith("tarnis/tools/") and len(parts) == 4 and parts[2] not in {room, *may_include}:
                    yield f"{path.relative_to(root)}: {target}: tools/{room} may not include it"
    for path in sources_of(tools):
        folder = path.relative_to(tools).parts[0]
        if path.parent != tools and folder not in TOOL_ROOMS:
            yield f"{path.relative_to(root)}: {folder} is not a known room of tarnis/tools"


def console_faults(root):
    console = root / "apps" / "console"
    for room, may_include in CONSOLE_ROOMS.items():
        for path in sources_of(console / room):
            for target in included(path):
                other = target.split("/")[0]
                is_ours = (console / target).exists() or other in CONSOLE_ROOMS or other == "tour"
                if is_ours and other != room and other not in may_include:
                    yield f"{path.relative_to(root)}: {target}: {room} may not include it"
    for path in sorted(console.glob("*")):
        if path.suffix in SOURCES and path.name != "main.cpp":
            for target in included(path):
                if target.startswith("tour/"):
                    yield f"{path.relative_to(root)}: {target}: only main.cpp and the tour itself include the tour"


def sources_of(folder):
    return [path for path in sorted(folder.rglob("*")) if path.suffix in SOURCES]


def outside_faults(root):
    """Programs and examples see what an installed package has; installed headers see installed headers only."""
    for top in ("apps", "examples"):
        for path in sorted((root / top).rglob("*")):
            if path.suffix in SOURCES:
                for target in included(path):
                    if target.startswith("tarnis/") and target.endswith("_p.h"):
                        yield f"{path.relative_to(root)}: {target}: not installed"
    for path in sorted((root / "tarnis").rglob("*.h")):
        if path.stem.endswith("_p"):
            continue
        for target in included(path):
            if target.startswith("tarnis/") and target.endswith("_p.h") and is_installed(path):
                yield f"{path.relative_to(root)}: {target}: an installed header includes one that is not"


def is_installed(header):
    listing = (header.parent / "CMakeLists.txt").read_text(encoding="utf-8")
    public = re.findall(r"tarnis_public_headers\(([^)]*)\)", listing)
    return header.name in " ".join(public).split()


def main():
    root = pathlib.Path(sys.argv[1])
    faults = [
        *library_faults(root), *leaf_faults(root), *plot_room_faults(root), *tool_room_faults(root),
        *console_faults(root), *outside_faults(root)
    ]
    print("\n".join(faults))
    print(f"{len(faults)} faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
