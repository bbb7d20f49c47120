#!/usr/bin/env python3
"""check_includes.py accepts the allowed arrows and reports each forbidden one."""

import graphlib
import pathlib
import subprocess
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).parent))
import check_includes  # noqa: E402

CHECKER = pathlib.Path(__file__).with_name("check_includes.py")


class CheckIncludes(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.root = pathlib.Path(self.folder.name)
        for name in ("foundation", "formats", "server", "client", "peak", "plots", "dialogs"):
            self.write(f"tarnis/{name}/CMakeLists.txt", "tarnis_public_headers(\n  a.h)\n")

    def write(self, path, text):
        target = self.root / path
        target.parent.mkdir(parents=True, exist_ok=True)
        target.write_text(text, encoding="utf-8")

    def faults(self):
        result = subprocess.run([sys.executable, CHECKER, self.root], capture_output=True, text=True, check=False)
        self.assertEqual(result.returncode != 0, not result.stdout.endswith("\n0 faults\n"))
        return result.stdout

    def test_allowed_arrows(self):
        self.write("tarnis/server/a.cpp", '#include "tarnis/foundation/log.h"\n')
        self.write("tarnis/plots/a.cpp", '#include "tarnis/dialogs/selectcheckeddialog.h"\n#include <QWidget>\n')
        self.write("tarnis/dialogs/a.cpp", '#include <tarnis/plots/a.h>\n#include <tarnis/server/a.h>\n')
        self.assertEqual(self.faults(), "\n0 faults\n")

    def test_no_cycle_is_allowed(self):
        tools = {f"tools/{room}": allowed for room, allowed in check_includes.TOOL_ROOMS.items()}
        for table in (check_includes.ALLOWED, tools, check_includes.CONSOLE_ROOMS):
            graphlib.TopologicalSorter(table).prepare()

    def test_upward_arrow(self):
        self.write("tarnis/foundation/a.cpp", '#include "tarnis/server/a.h"\n')
        self.assertIn("foundation may not include server", self.faults())

    def test_sideways_arrow(self):
        self.write("tarnis/plots/a.cpp", '#include "tarnis/server/a.h"\n')
        self.assertIn("plots may not include server", self.faults())

    def test_other_dialog_from_plots(self):
        self.write("tarnis/plots/a.cpp", '#include "tarnis/dialogs/dialogchecklist.h"\n')
        self.assertIn("plots may not include dialogs", self.faults())

    def test_leaf_includes_ours(self):
        self.write("tarnis/dialogs/selectcheckeddialog.h", "")
        self.write("tarnis/dialogs/selectcheckeddialog.cpp", '#include "tarnis/foundation/log.h"\n')
        self.assertIn("includes nothing of the library", self.faults())

    def test_tool_rooms(self):
        self.write("tarnis/tools/regions/a.cpp", '#include "tarnis/plots/a.h"\n#include "tarnis/tools/panels/b_p.h"\n')
        self.assertEqual(self.faults(), "\n0 faults\n")
        self.write("tarnis/tools/base/a.cpp", '#include "tarnis/tools/panels/b_p.h"\n')
        self.assertIn("tools/base may not include tools/panels", self.faults())
        self.write("tarnis/tools/base/a.cpp", '#include "tarnis/peak/a.h"\n')
        self.assertIn("tools/base may not include peak", self.faults())

    def test_installed_header_of_a_tool(self):
        self.write("tarnis/tools/CMakeLists.txt", "tarnis_public_headers(\n  legend.h)\n")
        self.write("tarnis/tools/legend.h", "")
        self.assertIn("tarnis/tools/legend.h: has no source in a room", self.faults())
        self.write("tarnis/tools/curves/legend.cpp", '#include "tarnis/tools/legend.h"\n')
        self.write("tarnis/tools/style/a.cpp", '#include "tarnis/tools/legend.h"\n')
        self.assertEqual(self.faults(), "\n0 faults\n")
        self.write("tarnis/tools/base/a.cpp", '#include "tarnis/tools/legend.h"\n')
        self.assertIn("tarnis/tools/base/a.cpp: tarnis/tools/legend.h: tools/base may not include tools/curves",
                      self.faults())
        self.write("tarnis/tools/base/a.cpp", "")
        self.write("tarnis/tools/legend.h", "#include <tarnis/tools/maps/b.h>\n")
        self.assertIn("tarnis/tools/legend.h: tarnis/tools/maps/b.h: tools/curves may not include tools/maps",
                      self.faults())

    def test_unknown_folder(self):
        for folder in ("tarnis", "tarnis/plots", "tarnis/tools", "apps/console"):
            self.write(f"{folder}/attic/a.cpp", "")
            self.assertIn(f"{folder}/attic: has no rule", self.faults())

    def test_program_that_includes_another(self):
        self.write("apps/console/main.cpp", '#include "log/log.h"\n#include "app.h"\n')
        self.write("apps/simserver/app.h", "")
        self.write("apps/console/app.h", "")
        self.assertEqual(self.faults(), "\n0 faults\n")
        self.write("apps/simserver/faults.h", "")
        for target in ("faults.h", "simserver/faults.h"):
            self.write("apps/console/main.cpp", f'#include "{target}"\n')
            self.assertIn("no program includes another", self.faults())

    def test_readme_that_says_otherwise(self):
        self.write("tarnis/peak/README.md", "Purpose: fits.\n\nMay include: `foundation`.\n")
        self.assertEqual(self.faults(), "\n0 faults\n")
        self.write("tarnis/peak/README.md", "May include: `foundation`,\n`server`.\n")
        self.assertIn("tarnis/peak/README.md: May include: foundation", self.faults())
        self.write("tarnis/peak/README.md", "")
        self.assertIn("tarnis/peak/README.md: does not say what the folder may include", self.faults())
        self.write("tarnis/plots/raster/README.md", "May include: `foundation`, `peak`.\n")
        self.assertIn("tarnis/plots/raster/README.md: May include: foundation, plots/math", self.faults())
        self.write("tarnis/tools/base/README.md", "May include: `foundation`, `plots`, `tools/curves`.\n")
        self.assertIn("tarnis/tools/base/README.md: May include: foundation, plots", self.faults())

    def test_plot_rooms(self):
        self.write("tarnis/plots/raster/a.cpp", '#include "tarnis/plots/math/a_p.h"\n#include <QPainter>\n')
        self.assertEqual(self.faults(), "\n0 faults\n")
        self.write("tarnis/plots/math/a.cpp", '#include "tarnis/plots/raster/a_p.h"\n#include <QPainter>\n')
        faults = self.faults()
        self.assertIn("plots/math may not include it", faults)
        self.assertIn("plots/math has no widgets", faults)
        for header in ("QtWidgets/QWidget", "QPen"):
            self.write("tarnis/plots/math/a.cpp", f"#include <{header}>\n")
            self.assertIn("plots/math has no widgets", self.faults())
        self.write("tarnis/plots/math/a.cpp", '#include "tarnis/peak/a.h"\n#include <QRect>\n#include <cmath>\n')
        self.assertEqual(self.faults(), "\n0 faults\n")
        self.write("tarnis/plots/raster/a.cpp", '#include "tarnis/peak/a.h"\n')
        self.assertIn("plots/raster may not include it", self.faults())

    def test_relative_path(self):
        for path in ("apps/console/windows/a.cpp", "apps/client/a.cpp", "tarnis/peak/a.cpp", "tests/peak/a.cpp"):
            self.write(path, '#include "../a.h"\n')
            self.assertIn(f"{path}: ../a.h: write the path from the include root", self.faults())

    def test_console_rooms(self):
        self.write("apps/console/log/a.cpp", '#include "server/a.h"\n#include "ui_a.h"\n')
        self.write("apps/console/tour/a.cpp", '#include "mainwindow.h"\n')
        self.write("apps/console/main.cpp", '#include "tour/tour.h"\n')
        self.assertEqual(self.faults(), "\n0 faults\n")
        self.write("apps/console/mainwindow.h", "")
        self.write("apps/console/log/a.cpp", '#include "mainwindow.h"\n')
        self.assertIn("log may not include it", self.faults())
        self.write("apps/console/log/a.cpp", '#include "histograms/a.h"\n')
        self.assertIn("log may not include it", self.faults())
        self.write("apps/console/log/a.cpp", "")
        self.write("apps/console/mainwindow.cpp", '#include "tour/tour.h"\n')
        self.assertIn("only main.cpp", self.faults())

    def test_private_header_outside(self):
        self.write("apps/console/main.cpp", "#include <tarnis/plots/ticks_p.h>\n")
        self.assertIn("not installed", self.faults())

    def test_installed_header_includes_private_one(self):
        self.write("tarnis/plots/a.h", "#include <tarnis/plots/ticks_p.h>\n")
        self.assertIn("an installed header includes one that is not", self.faults())


if __name__ == "__main__":
    unittest.main()
