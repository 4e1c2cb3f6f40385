#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Every source and every test that docs/QUIRKS.md names exists: check_quirks.py PROJECT-DIRECTORY

A row is "| oddity | why | source | test |", its names in backticks. A test is "Suite.Name" or
"case/operation/promise".
"""

import re
import sys
from pathlib import Path

TEST = re.compile(r"\bTEST(?:_F|_P)?\(\s*(\w+)\s*,\s*(\w+)\s*\)")
NAME = re.compile(r"`([^`]+)`")


def known_tests(project):
    tests = set()
    for source in (project / "tests").rglob("*.cpp"):
        tests |= {f"{suite}.{name}" for suite, name in TEST.findall(source.read_text("utf-8"))}
    for command in (project / "tests" / "cases").glob("*/*/command"):
        tests.add(f"case/{command.parent.relative_to(project / 'tests' / 'cases')}")
    return tests


def main(arguments):
    project = Path(arguments[0])
    tests = known_tests(project)
    rows = 0
    complaints = []
    for number, line in enumerate((project / "docs/QUIRKS.md").read_text("utf-8").splitlines(), 1):
        cells = line.replace(r"\|", "").split("|")[1:-1]
        if len(cells) != 4 or set(cells[0]) <= {"-"} or cells[0].strip() == "oddity":
            continue
        rows += 1
        sources, named = NAME.findall(cells[2]), NAME.findall(cells[3])
        if not sources or not named:
            complaints.append(f"line {number}: a source and a test are wanted")
        complaints += [f"line {number}: no source {s}" for s in sources
                       if not (project / s).is_file()]
        complaints += [f"line {number}: no test {t}" for t in named if t not in tests]
    if rows == 0:
        complaints.append("there is no row")
    print(f"{rows} rows", *complaints, sep="\n")
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
