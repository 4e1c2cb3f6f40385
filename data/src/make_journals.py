#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Write data/JournalStrings/JournalStrings.tvl from the tables in data/src/journals.

Usage: make_journals.py [OUTPUT]

The tables are read in the order of FIELDS; a field without a table is left out. Within a
table the rows keep their order, which is the order in which the program looks them up.
"""

import re
import sys
from pathlib import Path

FIELDS = (
    "physics",
    "chemistry",
    "materials",
    "biology",
    "medicine",
    "mathematics",
    "computing",
    "earth",
    "multidisciplinary",
)
HEADER = "full\tabbreviation\tvariations"
SOURCE_DIR = Path(__file__).resolve().parent
TABLE_DIR = SOURCE_DIR / "journals"
OUTPUT_FILE = SOURCE_DIR.parent / "JournalStrings" / "JournalStrings.tvl"

# The program finds these lines by exact containment: the blanks inside them count.
JOURNAL_START = "******* Journal-start *******"
VARIATIONS = "******* Variations    *******"
JOURNAL_END = "******* Journal-end   *******"
# The program keeps twenty rows for the spellings of a journal.
MAX_VARIATIONS = 20
# Everything up to the first line that holds this word is preamble.
LIST_START = "START"

PREAMBLE = """\
Journal names of Tarvel: full name, abbreviation and other spellings.

This file is generated from the tables in data/src/journals; change those and run
data/src/make_journals.py. It is free for any use (CC0-1.0).

Each journal is one block: the journal-start line, the full name, the abbreviation, the
line that opens the other spellings, one line for each of them, the journal-end line.
The program compares names without blanks, tabs, full stops, colons, semicolons, braces
and backslashes and without regard to letter case: a spelling that differs only in these
needs no line of its own. A journal may have up to twenty other spellings; a name must
be shorter than 500 bytes. Neither name may be empty. An ampersand is written with a
backslash, as a BibTeX library needs it. The list begins behind the next line.
"""


class TableError(Exception):
    """A table that cannot be read; the text says which line and why."""


class Journal:
    """One row of a table: names as they stand in it, and where it stands."""

    def __init__(self, full, abbreviation, variations, place):
        self.full = full
        self.abbreviation = abbreviation
        self.variations = variations
        self.place = place


def parse_row(line, place):
    """Return the journal of one table line."""
    cells = line.split("\t")
    if len(cells) != 3:
        raise TableError(f"{place}: {len(cells)} columns instead of 3")
    full, abbreviation, rest = cells
    variations = rest.split(" | ") if rest else []
    return Journal(full, abbreviation, variations, place)


def read_table(path):
    """Return the journals of one table, in its order."""
    text = path.read_bytes().decode("utf-8")
    lines = text.split("\n")
    if lines[0] != HEADER:
        raise TableError(f"{path.name}:1: the header is not the three column names")
    if lines[-1]:
        raise TableError(f"{path.name}:{len(lines)}: no newline at the end")
    rows = enumerate(lines[1:-1], start=2)
    return [parse_row(line, f"{path.name}:{number}") for number, line in rows]


def read_journals(table_dir=TABLE_DIR):
    """Return the journals of all tables that exist, field by field."""
    paths = [table_dir / f"{field}.tsv" for field in FIELDS]
    return [journal for path in paths if path.exists() for journal in read_table(path)]


def library_form(name):
    """Return a name as it is written into a library: a bare & would stop LaTeX."""
    return re.sub(r"(?<!\\)&", r"\\&", name)


def quoted_forms(journal):
    """Return the names of a journal between double quotes, each once.

    A value written journal = "Name" reaches the comparison with its quotes. It was cut
    at its first comma before, so that a name with a comma is not met in this form.
    """
    names = dict.fromkeys([journal.full, journal.abbreviation])
    return [f'"{name}"' for name in names if "," not in name]


def list_names(journal):
    """Return full name, abbreviation and other spellings as they stand in the list."""
    names = [journal.full, journal.abbreviation, *journal.variations]
    room = max(0, MAX_VARIATIONS - len(journal.variations))
    return [library_form(name) for name in names + quoted_forms(journal)[:room]]


def block_lines(journal):
    """Return the lines of one journal block."""
    full, abbreviation, *variations = list_names(journal)
    return [JOURNAL_START, full, abbreviation, VARIATIONS, *variations, JOURNAL_END, ""]


def render(journals):
    """Return the text of the journal list."""
    lines = [PREAMBLE, LIST_START, ""]
    for journal in journals:
        lines += block_lines(journal)
    return "\n".join(lines)


def main(arguments):
    """Write the list to the first argument or to its place in the data folder."""
    output = Path(arguments[0]) if arguments else OUTPUT_FILE
    try:
        text = render(read_journals())
    except (TableError, UnicodeDecodeError) as error:
        print(f"make_journals: {error}", file=sys.stderr)
        return 1
    output.parent.mkdir(parents=True, exist_ok=True)
    output.write_bytes(text.encode("utf-8"))
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
