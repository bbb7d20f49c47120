#!/usr/bin/env python3
"""Tests of mutate.py: its list, and where a fault is put."""
import sys
import tempfile
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
import mutate  # noqa: E402

ROOT = Path(__file__).resolve().parents[3]


def listed(text):
    with tempfile.TemporaryDirectory() as folder:
        path = Path(folder, "list.txt")
        path.write_text(text)
        return mutate.read_list(path)


class ReadList(unittest.TestCase):
    def test_reads_a_fault(self):
        self.assertEqual(listed("# comment\n\nfile: a.cpp\ntests: x.y x.z\n- a < b\n+ a <= b\nwhy: equal\n"),
                         [mutate.Mutation("a.cpp", ["x.y", "x.z"], "a < b", "a <= b", "equal")])

    def test_refuses_what_is_incomplete(self):
        for text in ("tests: x\n", "file: a\ntests: x\n- a\n", "file: a\n- a\n+ b\n", "file: a\ntests: x\n- a\n+ a\n",
                     "file: a\nnoise\n"):
            with self.subTest(text), self.assertRaises(ValueError):
                listed(text)

    def test_the_list_is_well_formed(self):
        self.assertGreaterEqual(len(mutate.read_list(mutate.DEFAULT_LIST)), 40)

    def test_the_list_fits_the_sources(self):
        for fault in mutate.read_list(mutate.DEFAULT_LIST):
            with self.subTest(fault.file):
                mutate.mutated_text((ROOT / fault.file).read_text(), fault)


class MutatedText(unittest.TestCase):
    fault = mutate.Mutation("a.cpp", ["x"], "a < b", "a <= b")

    def test_replaces_the_text(self):
        self.assertEqual(mutate.mutated_text("if (a < b)\n", self.fault), "if (a <= b)\n")

    def test_refuses_a_text_that_is_not_found_once(self):
        for text in ("", "a < b; a < b"):
            with self.subTest(text), self.assertRaises(ValueError):
                mutate.mutated_text(text, self.fault)


class ProgramOf(unittest.TestCase):
    def test_leaves_out_the_variant(self):
        for name in ("plots.hidpi", "plots.hidpi_1.5", "plots.hidpi_2", "plots.hidpi_1.5_painter"):
            with self.subTest(name):
                self.assertEqual(mutate.program_of(name), Path("plots/tst_hidpi"))
        self.assertEqual(mutate.program_of("peak.mpfit_nist"), Path("peak/tst_mpfit_nist"))


if __name__ == "__main__":
    unittest.main()
