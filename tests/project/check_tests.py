#!/usr/bin/env python3
"""Finds waits for a time, and upper limits of times, in the tests: check_tests.py ROOT

Tests wait for conditions with tests/support/wait.h. Prints a line for each fault; exits with 1 if there is one.
"""
import re
import sys
from pathlib import Path

# The soak runs for a time, by design.
EXEMPT = {"tests/console/consolesoak.cpp", "tests/support/wait.h", "tests/support/wait.cpp"}

FAULTS = [
    (re.compile(r"\bQTest::q(Wait|Sleep)\("), "waits for a time: wait for a condition"),
    (re.compile(r"\bQThread::m?u?sleep\(|\bsleep_for\(|\bsleep_until\("), "waits for a time: wait for a condition"),
    (re.compile(r"\bQTRY_"), "gives up too early on a busy machine: use TRY_VERIFY and TRY_COMPARE of tests/support/wait.h"),
    (re.compile(r"\.wait\([^)]"), "has a limit of its own: use eventually() of tests/support/wait.h"),
    (re.compile(r"QVERIFY2?\(.*\b(elapsed|nsecsElapsed)\(\)\s*<"),
     "fails on a busy machine: measure speed in benchmarks/"),
]


def faults(root):
    found = []
    for path in sorted((root / "tests").glob("*/*")):
        name = path.relative_to(root).as_posix()
        if path.suffix not in (".cpp", ".h") or name in EXEMPT:
            continue
        for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
            code = line.split("//")[0]
            found += [f"{name}:{number}: {advice}" for pattern, advice in FAULTS if pattern.search(code)]
    return found


def main():
    found = faults(Path(sys.argv[1]))
    print("\n".join(found + [f"{len(found)} faults"]))
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
