#!/usr/bin/env python3
"""Puts known faults into a scratch checkout, one at a time, and looks whether the tests notice.

mutate.py TREE [--list FILE] [--only REGEX] [--programs FOLDER]

TREE is a checkout that nobody works in, configured as build/dev. Each fault of the list costs the compilation of one
file, the linking of what needs it, and the tests that the list names. --only takes the faults whose file matches.
--programs runs the test programs of that folder in place of TREE's where they load the shared libraries: what another
revision's tests find. Exits with 1 if a fault survives that the list does not give a reason for.
"""
import argparse
import json
import os
import re
import subprocess
import sys
import time
from dataclasses import dataclass, field
from pathlib import Path

DEFAULT_LIST = Path(__file__).with_name("mutations.txt")
VARIANT = re.compile(r"(_[\d.]+|_painter)+$")  # of a program that runs again at a pixel ratio or on another road
TEST_TIMEOUT_S = 240  # a fault may let a test wait for ever


@dataclass
class Mutation:
    file: str
    tests: list[str] = field(default_factory=list)
    original: str = ""
    mutated: str | None = None
    why: str = ""


def read_list(path):
    """The faults of a list; ValueError with the line's number where it is not well-formed."""
    mutations = []
    for number, line in enumerate(path.read_text().splitlines(), 1):
        key, _, value = line.partition(" ")
        if not line.strip() or line.startswith("#"):
            continue
        if key == "file:":
            mutations.append(Mutation(value))
        elif not mutations:
            raise ValueError(f"{path}:{number}: a fault begins with 'file:'")
        elif key == "tests:":
            mutations[-1].tests = value.split()
        elif key == "-":
            mutations[-1].original = value
        elif key == "+":
            mutations[-1].mutated = value
        elif key == "why:":
            mutations[-1].why = value
        else:
            raise ValueError(f"{path}:{number}: expected file:, tests:, -, + or why:")
    for mutation in mutations:
        if not mutation.tests or not mutation.original or mutation.mutated in (None, mutation.original):
            raise ValueError(f"{path}: {mutation.file}: tests:, - and + are needed, and must differ")
    return mutations


def mutated_text(text, mutation):
    """The source with the fault; ValueError unless the original text is found once."""
    count = text.count(mutation.original)
    if count != 1:
        raise ValueError(f"{mutation.file}: found {count} times, not once: {mutation.original}")
    return text.replace(mutation.original, mutation.mutated)


def program_of(name):
    """The program of a test, below the folder of the tests."""
    folder, test = VARIANT.sub("", name).split(".")
    return Path(folder, f"tst_{test}")


class Tree:
    """A checkout with its build."""

    def __init__(self, folder, programs=None):
        self.folder = folder.resolve()
        self.build = self.folder / "build" / "dev"
        self.programs = programs.resolve() if programs else None
        self.borrowed = {}
        listing = subprocess.run(["ctest", "--show-only=json-v1"], cwd=self.build, check=True, capture_output=True)
        self.tests = {test["name"]: test for test in json.loads(listing.stdout)["tests"]}

    def names(self, patterns):
        found = [name for name in self.tests if any(re.match(pattern, name) for pattern in patterns)]
        if not found:
            raise ValueError(f"no test matches {patterns}")
        return found

    def _program(self, name):
        """Where the build puts the test's program; CTest does not say so before it is built."""
        return self.build / "tests" / program_of(name)

    def _borrowed(self, name):
        """The program of --programs for this test, if it loads the shared libraries."""
        if self.programs and name not in self.borrowed:
            program = self.programs / self._program(name).name
            needed = subprocess.run(["readelf", "-d", program], capture_output=True, text=True).stdout
            self.borrowed[name] = program if "libtarnis" in needed else None
        return self.borrowed.get(name)

    def make(self, names):
        """Builds what these tests need; false if it does not compile."""
        targets = ["tarnis" if self._borrowed(name) else self._program(name).name for name in names]
        return subprocess.run(["ninja", "-C", self.build, *targets], stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT).returncode == 0

    def failing(self, names):
        """The first of the tests that fails, or None."""
        return next((name for name in names if not self._passes(name)), None)

    def _passes(self, name):
        test = self.tests[name]
        environment = dict(os.environ)
        properties = {entry["name"]: entry["value"] for entry in test["properties"]}
        environment.update(entry.split("=", 1) for entry in properties.get("ENVIRONMENT", []))
        command = [str(self._borrowed(name) or self._program(name))]
        if self._borrowed(name):
            environment["LD_LIBRARY_PATH"] = str(self.build / "tarnis")
        try:
            return subprocess.run(command, cwd=properties.get("WORKING_DIRECTORY", self.build), env=environment,
                                  stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                  timeout=TEST_TIMEOUT_S).returncode == 0
        except subprocess.TimeoutExpired:
            return False


def try_out(tree, mutation):
    """Which test noticed; None if none did."""
    path = tree.folder / mutation.file
    original = path.read_text()
    names = tree.names(mutation.tests)
    path.write_text(mutated_text(original, mutation))
    try:
        if not tree.make(names):
            raise ValueError(f"{mutation.file}: does not compile: {mutation.mutated}")
        return tree.failing(names)
    finally:
        path.write_text(original)


def check_texts(tree, mutations):
    """Fails at once on a fault whose line has changed."""
    for mutation in mutations:
        mutated_text((tree.folder / mutation.file).read_text(), mutation)


def check_baseline(tree, mutations):
    names = sorted({name for mutation in mutations for name in tree.names(mutation.tests)})
    if not tree.make(names):
        raise ValueError("the checkout does not compile without a fault")
    failing = tree.failing(names)
    if failing:
        raise ValueError(f"{failing} fails without a fault")


def report(tree, mutations):
    """Tries all; returns the survivors."""
    survivors = []
    for number, mutation in enumerate(mutations, 1):
        started = time.monotonic()
        noticed = try_out(tree, mutation)
        if noticed is None:
            survivors.append(mutation)
        print(f"{number:3}/{len(mutations)} {time.monotonic() - started:5.0f} s  {noticed or 'SURVIVES':32} "
              f"{mutation.file}: {mutation.mutated}", flush=True)
    return survivors


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("tree", type=Path)
    parser.add_argument("--list", type=Path, default=DEFAULT_LIST)
    parser.add_argument("--only", default="")
    parser.add_argument("--programs", type=Path)
    parser.add_argument("--no-baseline", action="store_true", help="do not first run the tests without a fault")
    options = parser.parse_args()
    try:
        mutations = [m for m in read_list(options.list) if re.search(options.only, m.file)]
        if not mutations:
            raise ValueError(f"no fault is in a file that matches {options.only}")
        tree = Tree(options.tree, options.programs)
        check_texts(tree, mutations)
        if not options.no_baseline:
            check_baseline(tree, mutations)
        survivors = report(tree, mutations)
    except (OSError, ValueError, subprocess.CalledProcessError) as error:
        print(f"mutate: {error}", file=sys.stderr)
        return 2
    for mutation in survivors:
        if mutation.why:
            print(f"cannot be found: {mutation.file}: {mutation.why}")
    unexplained = [mutation for mutation in survivors if not mutation.why]
    print(f"{len(mutations)} faults, {len(mutations) - len(survivors)} found, {len(unexplained)} survive without a reason")
    return 1 if unexplained else 0


if __name__ == "__main__":
    sys.exit(main())
