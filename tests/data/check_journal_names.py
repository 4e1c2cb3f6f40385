#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Run Journals over the names of journal_names.tsv and compare what they become.

Usage: check_journal_names.py PROGRAM
"""

import subprocess
import sys
import tempfile
from pathlib import Path

TABLE = Path(__file__).resolve().with_name("journal_names.tsv")
BEGINNING, END = "  journal = {", "},\n"


def renamed(program, names, choice):
    """Return what the program makes of the names, full or abbreviated."""
    with tempfile.TemporaryDirectory() as directory:
        library = Path(directory) / "lib.bib"
        library.write_text("".join(
            f"@article{{k{number},\n{BEGINNING}{name}{END}}}\n"
            for number, name in enumerate(names)))
        subprocess.run([program, "journals", "--journal-names", choice, library],
                       check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        lines = library.with_name("lib_journal.bib").read_text().splitlines(keepends=True)
    return [line[len(BEGINNING):-len(END)] for line in lines if line.startswith(BEGINNING)]


def main():
    lines = enumerate(TABLE.read_text().splitlines(), 1)
    rows = [(number, *line.split("\t")) for number, line in lines if line[:1] != "#"]
    names = [row[1] for row in rows]
    problems = []
    for choice, column in (("full", 2), ("abbreviated", 3)):
        for row, got in zip(rows, renamed(sys.argv[1], names, choice)):
            wanted = row[1] if row[column] == "-" else row[column]
            if got != wanted:
                problems.append(f"{TABLE.name}:{row[0]}: '{row[1]}' became '{got}',"
                                f" not '{wanted}'")
    print("\n".join(problems) or f"{len(rows)} names")
    return 1 if problems or len(rows) < 50 else 0


if __name__ == "__main__":
    sys.exit(main())
