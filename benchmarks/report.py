#!/usr/bin/env python3
"""Writes the speed report from what the benchmarks have measured.

usage: report.py RESULTS SOURCES > docs/performance.md

RESULTS holds NAME.json of each Google Benchmark program and NAME.txt of each other one; SOURCES holds bench_NAME.cpp, whose
first comment says what is measured.
"""

import datetime
import json
import math
import os
import pathlib
import platform
import re
import subprocess
import sys

FIELDS = {"name", "run_name", "run_type", "repetitions", "repetition_index", "threads", "iterations", "real_time",
          "cpu_time", "time_unit", "family_index", "per_family_instance_index", "label", "error_occurred",
          "error_message"}


def output_of(*command):
    try:
        return subprocess.run(command, capture_output=True, text=True, check=True).stdout.strip()
    except (OSError, subprocess.CalledProcessError):
        return ""


def processor():
    for line in pathlib.Path("/proc/cpuinfo").read_text(encoding="utf-8").splitlines():
        if line.startswith("model name"):
            return line.split(":", 1)[1].strip()
    return platform.machine()


def system():
    for line in pathlib.Path("/etc/os-release").read_text(encoding="utf-8").splitlines():
        if line.startswith("PRETTY_NAME="):
            return line.split("=", 1)[1].strip('"')
    return platform.system()


def versions():
    packages = {"Qt": "qt6-base-dev", "cminpack": "libcminpack-dev", "GSL": "libgsl-dev",
                "QCustomPlot": "libqcustomplot-dev", "Google Benchmark": "libbenchmark-dev"}
    found = [(name, output_of("dpkg-query", "-W", "-f=${Version}", package)) for name, package in packages.items()]
    compiler = output_of("c++", "--version").splitlines()
    return ", ".join([*(compiler[:1]), *(f"{name} {version}" for name, version in found if version)])


def purpose(source):
    """The comment that begins the source, as one line."""
    lines = []
    for line in source.read_text(encoding="utf-8").splitlines():
        text = line.removeprefix("//").strip()
        if not line.startswith("//") or (lines and not text):
            break
        lines.append(text)
    return " ".join(lines)


def number(value):
    value = float(value)  # what is not finite is text in JSON
    if not math.isfinite(value):
        return "–"
    if value == 0 or abs(value) >= 1000:
        return f"{value:,.0f}"
    return f"{value:.3g}"


def table(runs):
    runs = [run for run in runs if run.get("run_type") != "aggregate"]  # a fit of the complexity, for one
    counters = list(dict.fromkeys(key for run in runs for key in run if key not in FIELDS))
    yield "| benchmark | time | " + " | ".join(counter.replace("_", " ") for counter in counters) + " |"
    yield "|---|---:|" + "---:|" * len(counters)
    for run in runs:
        if "error_message" in run:
            yield f"| {run['name']} | {run['error_message']} |" + " |" * len(counters)
            continue
        name = re.sub(r"/(manual_time|real_time|iterations:\d+|process_time)", "", run["name"])
        cells = [number(run[counter]) if counter in run else "" for counter in counters]
        yield f"| {name} | {number(run['real_time'])} {run['time_unit']} | " + " | ".join(cells) + " |"


def report(results, sources):
    yield "# Speed"
    yield ""
    yield "Written by `script/bench --report`; do not edit. Ratios compare two ways to do the same work in one run. A column `a/b`"
    yield "is the time of a divided by that of b; `x peer` and `x spelt` are how many times faster ours is. Other ratios are our time"
    yield "divided by the peer's, so below 1 is faster. Absolute times depend on the machine and its other load."
    yield ""
    revision = output_of("git", "-C", str(sources), "describe", "--always")
    # The report itself is being written.
    if output_of("git", "-C", str(sources), "status", "--porcelain", "-uno", "--", ".", ":!docs/performance.md"):
        revision += "-dirty"
    yield f"- {datetime.date.today().isoformat()}, revision {revision}"
    yield f"- {processor()}, {len(os.sched_getaffinity(0))} cores, {system()}"
    yield f"- {versions()}"
    for path in sorted(results.iterdir()):
        yield ""
        yield f"## {path.stem}"
        yield ""
        yield purpose(sources / f"bench_{path.stem}.cpp")
        yield ""
        if path.suffix == ".json":
            yield from table(json.loads(path.read_text(encoding="utf-8"))["benchmarks"])
        else:
            yield "```"
            yield path.read_text(encoding="utf-8").rstrip()
            yield "```"


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    print("\n".join(report(pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]))))
