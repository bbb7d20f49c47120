#!/usr/bin/env python3
"""check_console.py finds what the console does not use."""

import pathlib
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).parent))
import check_console  # noqa: E402


class CheckConsole(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)
        self.write("tarnis/plots/a.h", "class TARNIS_EXPORT Plot : public QWidget {\n")

    def write(self, path, text):
        target = self.root / path
        target.parent.mkdir(parents=True, exist_ok=True)
        target.write_text(text, encoding="utf-8")

    def is_missed(self, code):
        self.write("apps/console/windows/a.cpp", code)
        return any(fault.startswith("Plot: exported and used nowhere") for fault in check_console.faults(self.root))

    def test_used(self):
        self.assertFalse(self.is_missed("auto* plot = new Plot(this);\n"))

    def test_only_named(self):
        self.assertTrue(self.is_missed('#include <Plot>\nclass Plot;\n// Plot\n/* Plot\n */ f("Plot");\n'))

    def test_part_of_another_name(self):
        self.assertTrue(self.is_missed("new PlotFrame;\n"))

    def test_exception_that_is_none(self):
        self.write("apps/console/a.cpp", "")
        self.assertIn("DelayCall: an exception for what the library does not export", check_console.faults(self.root))


if __name__ == "__main__":
    unittest.main()
