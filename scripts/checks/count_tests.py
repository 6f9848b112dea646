#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 Varnel contributors
# SPDX-License-Identifier: MIT
"""Counts the tests in ctest's result files and prints "N passed, N failed" as the last line.

usage: count_tests.py RESULTS.xml...

A ctest entry is a whole program; where the program says how many cases it ran, those are counted instead. Exit 1 when
anything failed, when a result file is missing or when nothing ran at all.
"""

import re
import sys
import xml.etree.ElementTree as ElementTree
from pathlib import Path

# What each framework's own summary looks like: (passed, failed) patterns.
SUMMARIES = [
    (re.compile(r"^\[  PASSED  \] (\d+) tests?\.", re.M), re.compile(r"^\[  FAILED  \] (\d+) tests?, listed below", re.M)),
    (re.compile(r"^Totals: (\d+) passed", re.M), re.compile(r"^Totals: \d+ passed, (\d+) failed", re.M)),
    (re.compile(r"^Ran (\d+) tests? in", re.M), None),
]


def count_cases(output, passed_as_a_whole):
    """(passed, failed) of one ctest entry. A program that failed counts at least one failure, whatever it says."""
    passed = failed = 0
    for passed_pattern, failed_pattern in SUMMARIES:
        passed += sum(int(count) for count in passed_pattern.findall(output))
        if failed_pattern:
            failed += sum(int(count) for count in failed_pattern.findall(output))
    if passed_as_a_whole:
        return max(passed, 1), failed
    unittest_failures = re.search(r"^FAILED \(([^)]*)\)", output, re.M)
    if unittest_failures:
        counts = re.findall(r"(?:failures|errors)=(\d+)", unittest_failures.group(1))
        failed += sum(int(count) for count in counts)
        passed = max(passed - failed, 0)
    return passed, max(failed, 1)


def count_file(path):
    passed = failed = 0
    skipped = []
    for case in ElementTree.parse(path).getroot().iter("testcase"):
        status = case.get("status")
        output = case.findtext("system-out") or ""
        if status in ("notrun", "disabled") and case.find("failure") is None:
            skipped.append(case.get("name"))
            continue
        case_passed, case_failed = count_cases(output, status == "run" and case.find("failure") is None)
        passed += case_passed
        failed += case_failed
    return passed, failed, skipped


def main(paths):
    passed = failed = 0
    missing = [path for path in paths if not Path(path).is_file()]
    for path in paths:
        if path in missing:
            print(f"no test results in {path}: that run did not get as far as its tests")
            continue
        file_passed, file_failed, skipped = count_file(path)
        passed += file_passed
        failed += file_failed
        for name in skipped:
            print(f"skipped: {name}")
    print(f"{passed} passed, {failed} failed")
    return 1 if failed or missing or not passed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
