#!/usr/bin/env python3
"""check_tests.py finds waits for a time."""

import pathlib
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).parent))
import check_tests  # noqa: E402


class CheckTests(unittest.TestCase):
    def faults(self, code, name="tests/client/tst_a.cpp"):
        with tempfile.TemporaryDirectory() as folder:
            path = pathlib.Path(folder, name)
            path.parent.mkdir(parents=True)
            path.write_text(code, encoding="utf-8")
            return check_tests.faults(pathlib.Path(folder))

    def test_waits_for_a_time(self):
        for code in ("QTest::qWait(50);", "QThread::msleep(1);", "std::this_thread::sleep_for(5ms);"):
            with self.subTest(code):
                self.assertEqual(len(self.faults(code + "\n")), 1)

    def test_upper_limits(self):
        self.assertEqual(len(self.faults("QVERIFY(timer.elapsed() < 100);\n")), 1)
        self.assertEqual(self.faults("QVERIFY(timer.elapsed() >= 100);\n"), [])

    def test_waits_of_qt(self):
        self.assertEqual(len(self.faults("QTRY_COMPARE(count, 3);\n")), 1)
        self.assertEqual(len(self.faults("return spy.wait(30000);\n")), 1)
        self.assertEqual(self.faults("thread.wait();\n"), [])

    def test_conditions(self):
        self.assertEqual(self.faults("TRY_VERIFY(done); // not QTest::qWait(50)\n"), [])

    def test_the_one_place_that_waits(self):
        self.assertEqual(self.faults("std::this_thread::sleep_for(5ms);\n", "tests/support/wait.cpp"), [])


if __name__ == "__main__":
    unittest.main()
