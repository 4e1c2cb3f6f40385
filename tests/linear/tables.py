#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs Text with large tables of LaTeX commands, and fails when it takes more memory than 50 times
the size of the table: tables.py TARVEL-BATCH

20 MB of such a table must not take a gigabyte.
"""
import os
import resource
import shutil
import subprocess
import sys
import tempfile

SIZE = 3_000_000
MOST = 50
LIBRARY = "@article{k,\n  title = {a},\n}\n"
TABLES = {
    "empty rows": "\n" * SIZE,
    "rows of one command": "a\n" * (SIZE // 2),
    "rows of many commands": "".join(f"{number:06}\n" for number in range(SIZE // 7)),
}


def main():
    source = os.path.dirname(os.path.abspath(sys.argv[1]))
    failures = 0
    with tempfile.TemporaryDirectory() as directory:
        program = os.path.join(directory, "tarvel-batch")
        shutil.copy(sys.argv[1], program)
        for name in ("JournalStyles", "LaTeXCommands"):
            shutil.copytree(os.path.join(source, name), os.path.join(directory, name))
        with open(os.path.join(directory, "lit.bib"), "w", encoding="ascii") as file:
            file.write(LIBRARY)
        table = os.path.join(directory, "LaTeXCommands/LaTeXCommands_linux.tvl")
        for name, rows in TABLES.items():
            with open(table, "w", encoding="ascii") as file:
                file.write("START\n" + rows)
            subprocess.run([program, "--quiet", "text", "lit.bib"], cwd=directory, check=True)
            # The highest peak of all runs so far: each table must be within the limit.
            peak = resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss * 1024
            print(f"{name}: at most {peak // 2**20} MiB")
            failures += peak > MOST * SIZE
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
