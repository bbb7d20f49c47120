#!/usr/bin/env python3
"""check_sizes.py finds files and functions that are too long."""

import pathlib
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).parent))
import check_sizes  # noqa: E402

FILE = "tarnis/plots/a.cpp"


def function(declaration, lines):
    """A function of so many lines, with its braces."""
    return f"{declaration}\n{{\n" + "    f();\n" * (lines - 2) + "}\n"


class CheckSizes(unittest.TestCase):
    def faults(self, code, files=None, functions=None):
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder, FILE)
            path.parent.mkdir(parents=True)
            path.write_text(code, encoding="utf-8")
            return check_sizes.faults(pathlib.Path(folder), files or {}, functions or {})

    def test_files(self):
        self.assertEqual(self.faults("int a;\n" * 500), [])
        self.assertEqual(len(self.faults("int a;\n" * 501)), 1)
        self.assertEqual(self.faults("int a;\n" * 501, {FILE: "a table"}), [])

    def test_functions(self):
        self.assertEqual(self.faults(function("void A::f()", 60)), [])
        self.assertIn("f() has 61 lines", self.faults(function("void A::f()", 61))[0])
        self.assertEqual(self.faults(function("void A::f()", 61), {}, {(FILE, "f"): "a list"}), [])

    def test_long_declarations(self):
        for declaration in ("A::A(int a,\n    int b)\n    : B(a)\n    , m_b(b)", "template <typename T> bool A<T>::A(T t) const"):
            with self.subTest(declaration):
                self.assertIn(": A() has 70 lines", self.faults("int x;\n\n" + function(declaration, 70))[0])

    def test_functions_in_a_class(self):
        member = "".join(f"    {line}\n" for line in function("void f() override", 61).splitlines())
        self.assertIn("f() has 61 lines", self.faults("class A {\n" + member + "};\n")[0])

    def test_rows_of_a_test(self):
        self.assertEqual(self.faults(function("void readsRows_data()", 100)), [])

    def test_reasons_that_are_not_needed(self):
        self.assertEqual(len(self.faults("int a;\n", {FILE: "a table"}, {(FILE, "f"): "a list"})), 2)


if __name__ == "__main__":
    unittest.main()
