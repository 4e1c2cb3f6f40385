# SPDX-License-Identifier: MIT
"""Checks what the two LaTeX command tables make of commands.

    python3 data/src/check_latex_commands.py

Every command of latex_standard_commands.txt, and made-up ones that begin like a short row,
must come out as its own row says or stay whole: no row may take the beginning of a longer
command. Prints one line for every problem, with the row that took it; the exit status is 1
when there is one. The replacement scan is the program's, written once more.
"""

import pathlib
import sys

import make_latex_commands as maker

FOLLOWERS = (" x", "{x}", "", "-x", "$", ",")
MADE_UP = ("emacs", "sllide", "toenglish", "slnine", "ninesmc", "ssf", "PiCture", "textish",
           "TeXas", "LaTeXing", "musil", "itsy")


def replace(text, command, replacement):
    """One row's scan: a match is not sought at the byte after a replacement, and where only
    the beginning of the command stood, the byte after that is passed over as well."""
    place = 0
    while place < len(text):
        matched = 0
        while matched < len(command) and text[place + matched:place + matched + 1] == \
                command[matched:matched + 1]:
            matched += 1
        if matched == len(command):
            text = text[:place] + replacement + text[place + matched:]
            place += len(replacement) + 1
        else:
            place += matched + 1 if matched else 1
    return text


class Table:
    """A command table as the program applies it."""

    def __init__(self, path):
        lines = path.read_bytes().split(b"START\n", 1)[1].split(b"\n")[:-1]
        first = path.read_bytes().split(b"START\n", 1)[0].count(b"\n") + 2
        self.rows = [line.partition(b"\t")[::2] for line in lines]
        self.first_line = first
        self.places = {}
        for place, (command, _) in enumerate(self.rows):
            self.places.setdefault(command, []).append(place)

    def next_row(self, text, start):
        """The first row from `start` on whose command stands in the text, or None."""
        size = len(text)
        found = {text[a:b] for a in range(size) for b in range(a + 1, size + 1)}
        places = (p for part in found & self.places.keys() for p in self.places[part])
        return min((p for p in places if p >= start), default=None)

    def apply(self, text):
        """The text after all rows, and the first row that took something of it."""
        first, place = None, self.next_row(text, 0)
        while place is not None:
            first = place if first is None else first
            text = replace(text, *self.rows[place])
            place = self.next_row(text, place + 1)
        return text, first


def own_texts(table, command):
    """What a command may become by its own rows, its arguments left aside."""
    for place in table.places.get(command, ()):
        own = table.rows[place][1]
        yield from (own, table.apply(own)[0])


def has_row_with(table, text):
    """Return whether the text begins with a row of several bytes that ends in no letter."""
    starts = (text[:end] for end in range(len(text), 1, -1))
    return any(start in table.places and not start[-1:].isalpha() for start in starts)


def problems_of(table, command):
    """What is wrong with the texts that a command comes out as."""
    for follower in map(str.encode, FOLLOWERS):
        text, first = table.apply(b"Z" + command + follower)
        rest = table.apply(b"Z" + follower)[0][1:]
        wanted = [b"Z" + own + rest for own in own_texts(table, command)]
        wanted += [b"Z" + table.apply(own + follower)[0] for own in own_texts(table, command)]
        if text not in (wanted or [b"Z" + command + rest]) and \
                not has_row_with(table, command + follower):
            line = table.first_line + (first or 0)
            seen = (command + follower).decode()
            yield f"{line}: '{seen}' becomes '{text[1:].decode()}'"


def pair_problems(table, names):
    """Pairs of commands of which the first loses its reading by what the second becomes."""
    for first in names:
        for second in (b"\\sin", b"\\alpha", b"\\TeX", b"\\log"):
            text = table.apply(b"Z" + first + second)[0]
            if b"\\" in text:
                yield f"'{(first + second).decode()}' becomes '{text[1:].decode()}'"


def main():
    problems = []
    for name in (maker.UTF8, maker.ASCII):
        table = Table(maker.TARGET_DIR / name)
        for command in [*maker.standard_commands(), *MADE_UP]:
            found = problems_of(table, b"\\" + command.encode())
            problems += [f"{name}:{problem}" for problem in found]
        words = [row[0] for row in table.rows
                 if row[0][1:].isalpha() and not row[1].startswith(maker.GUARD.encode())]
        problems += [f"{name}: {problem}" for problem in pair_problems(table, words)]
    print("\n".join(problems), end="\n" if problems else "")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
