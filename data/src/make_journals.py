#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Write data/JournalStrings/JournalStrings.tvl from the tables in data/src.

Usage: make_journals.py [OUTPUT]

journals/FIELD.tsv holds the journals of a field, in the order of FIELDS: full name,
abbreviation, other spellings. Names stand there in UTF-8. The list has them in LaTeX, as
a BibTeX library does, and gets more spellings, made by rules:

  - the acronyms of journal_acronyms.tsv;
  - UTF-8 and ASCII for names with other letters ("für", "fur", "fuer");
  - "&" for "and" and the other way round, with "The" and without, without commas and
    round brackets, with blanks for hyphens;
  - the habits of a field, of journal_habits.tsv ("Amer." for "Am.");
  - the names between double quotes.

A made spelling that another journal has as well belongs to neither and is left out.
"""

import re
import sys
import unicodedata
from collections import defaultdict
from pathlib import Path

FIELDS = (
    "physics",
    "chemistry",
    "materials",
    "biology",
    "medicine",
    "mathematics",
    "statistics",
    "computing",
    "earth",
    "multidisciplinary",
    "economics",
    "management",
    "politics",
    "sociology",
    "psychology",
    "education",
    "linguistics",
    "geography",
    "law",
    "history",
    "philosophy",
)
HEADER = "full\tabbreviation\tvariations"
ACRONYM_HEADER = "acronym\tjournal\treason\tothers with these initials"
HABIT_HEADER = "fields\tabbreviation\tother"
SOURCE_DIR = Path(__file__).resolve().parent
TABLE_DIR = SOURCE_DIR / "journals"
ACRONYM_FILE = SOURCE_DIR / "journal_acronyms.tsv"
HABIT_FILE = SOURCE_DIR / "journal_habits.tsv"
OUTPUT_FILE = SOURCE_DIR.parent / "JournalStrings" / "JournalStrings.tvl"

# The program finds these lines by exact containment: the blanks inside them count.
JOURNAL_START = "******* Journal-start *******"
VARIATIONS = "******* Variations    *******"
JOURNAL_END = "******* Journal-end   *******"
# The program keeps twenty rows for the spellings of a journal.
MAX_VARIATIONS = 20
# Everything up to the first line that holds this word is preamble.
LIST_START = "START"
DROPPED_IN_KEYS = str.maketrans("", "", " \t.:;{}\\")

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
backslash and a letter with an accent in LaTeX, as a BibTeX library needs them. The list
begins after the next line.
"""

# ---- the tables --------------------------------------------------------------------------


class TableError(Exception):
    """A table that cannot be read; the text says which line and why."""


class Journal:
    """One row of a table: names as they stand in it, and where it stands."""

    def __init__(self, full, abbreviation, variations, place, field=""):
        self.full = full
        self.abbreviation = abbreviation
        self.variations = variations
        self.place = place
        self.field = field


def read_cells(path, header):
    """Yield the place and the cells of every row of a table with tabs between columns."""
    lines = path.read_bytes().decode("utf-8").split("\n")
    if lines[0] != header:
        raise TableError(f"{path.name}:1: the header is not '{header}'")
    if lines[-1]:
        raise TableError(f"{path.name}:{len(lines)}: no newline at the end")
    columns = header.count("\t") + 1
    for number, line in enumerate(lines[1:-1], start=2):
        cells = line.split("\t")
        if len(cells) != columns:
            raise TableError(f"{path.name}:{number}: {len(cells)} columns instead of {columns}")
        yield f"{path.name}:{number}", cells


def read_table(path):
    """Return the journals of one table, in its order."""
    return [
        Journal(full, abbreviation, rest.split(" | ") if rest else [], place, path.stem)
        for place, (full, abbreviation, rest) in read_cells(path, HEADER)
    ]


def read_journals(table_dir=TABLE_DIR):
    """Return the journals of all tables that exist, field by field."""
    paths = [table_dir / f"{field}.tsv" for field in FIELDS]
    return [journal for path in paths if path.exists() for journal in read_table(path)]


def read_acronyms(path=ACRONYM_FILE):
    """Return the acronyms as (place, acronym, full name of the journal, reason, others)."""
    return [(place, *cells) for place, cells in read_cells(path, ACRONYM_HEADER)]


def read_habits(path=HABIT_FILE):
    """Return for each field the abbreviated words and what its authors write for them."""
    habits = defaultdict(dict)
    for _, (fields, word, other) in read_cells(path, HABIT_HEADER):
        for field in fields.split(" "):
            habits[field][word] = other
    return habits


# ---- letters -----------------------------------------------------------------------------

LATEX_LETTERS = {
    "ß": r"{\ss}", "ø": r"{\o}", "Ø": r"{\O}", "æ": r"{\ae}", "Æ": r"{\AE}",
    "œ": r"{\oe}", "Œ": r"{\OE}", "å": r"{\aa}", "Å": r"{\AA}", "ł": r"{\l}",
    "Ł": r"{\L}", "đ": r"{\dj}", "Đ": r"{\DJ}", "ı": r"{\i}",
}
LATEX_ACCENTS = {
    "\u0300": "`", "\u0301": "'", "\u0302": "^", "\u0303": "~", "\u0304": "=",
    "\u0306": "u", "\u0307": ".", "\u0308": '"', "\u030a": "r", "\u030b": "H",
    "\u030c": "v", "\u0323": "d", "\u0327": "c", "\u0328": "k",
}
ASCII_LETTERS = {
    "ß": "ss", "ø": "o", "Ø": "O", "æ": "ae", "Æ": "Ae", "œ": "oe", "Œ": "Oe",
    "ł": "l", "Ł": "L", "đ": "d", "Đ": "D", "ı": "i",
}
# How a letter is written out where its accent is not to be had.
WRITTEN_OUT = {
    "ä": "ae", "ö": "oe", "ü": "ue", "Ä": "Ae", "Ö": "Oe", "Ü": "Ue",
    "ø": "oe", "Ø": "Oe", "å": "aa", "Å": "Aa",
}


def latex_letter(letter):
    """Return a letter as LaTeX has it, or itself when there is no such form."""
    if letter.isascii():
        return letter
    if letter in LATEX_LETTERS:
        return LATEX_LETTERS[letter]
    base, mark = (unicodedata.normalize("NFD", letter) + " ")[:2]
    accent = LATEX_ACCENTS.get(mark)
    if accent is None or not base.isascii():
        return letter
    base = {"i": r"\i", "j": r"\j"}.get(base, base) if not accent.isalpha() else base
    return f"{{\\{accent}{{{base}}}}}" if accent.isalpha() else f"{{\\{accent}{base}}}"


def library_form(name):
    """Return a name as a library has it: ASCII, and no bare &."""
    name = escaped(name)
    return name if name.isascii() else "".join(map(latex_letter, name))


def escaped(name):
    """Return a name with a backslash before each &, which would stop LaTeX."""
    return re.sub(r"(?<!\\)&", r"\\&", name) if "&" in name else name


def plain_form(name, letters=ASCII_LETTERS):
    """Return a name in ASCII, accents dropped where `letters` has nothing for a letter."""
    name = "".join(letters.get(c, c) for c in name)
    name = "".join(ASCII_LETTERS.get(c, c) for c in name)
    return "".join(c for c in unicodedata.normalize("NFD", name) if not unicodedata.combining(c))


def squeeze(name):
    """Return the key by which the program compares names: only ASCII letters lose case."""
    kept = name.translate(DROPPED_IN_KEYS)
    return kept.upper() if kept.isascii() else re.sub("[a-z]+", lambda m: m[0].upper(), kept)


# ---- spellings made by rules -------------------------------------------------------------

# Titles before which many write an article.
WITH_ARTICLE = re.compile(
    r"^(Journal of|Review of|International Journal of|Annals of|Quarterly Journal of|"
    r"Economic (Journal|Record|History)|Oxford|Cambridge (Journal|Quarterly)|Philosophical|"
    r"(American|British|European|Australian|Canadian|Scandinavian|Asian) (Journal|\S+ Review))"
    r"|[a-z] (Journal|Review|Quarterly)$"
    r"|^\S+ (Historian|Psychologist|Sociologist|Economist|Statistician|Naturalist)$"
)
# A title of another language has its own articles.
FOREIGN = re.compile(r"\b(de|des|der|die|für|la|le|les|el|et|und|di|della|do|da|voor|du|en)\b")


def ampersand_forms(name):
    """Return a name with "&" for "and" and the other way round."""
    return [name.replace(" and ", " & "), name.replace(" & ", " and ")]


def article_forms(name):
    """Return a name without its "The", or with it where that is usual."""
    if name.startswith("The "):
        return [name.removeprefix("The ")]
    return ["The " + name] if WITH_ARTICLE.search(name) and not FOREIGN.search(name) else []


def punctuation_forms(name):
    """Return a name without the comma before "and", commas, round brackets, hyphens."""
    forms = [re.sub(r", (and|&) ", r" \1 ", name), name.replace(",", "")]
    forms += [re.sub("[()]", "", form) for form in (name, name.replace(",", ""))]
    forms += [name.replace(" - ", " "), re.sub(r"(?<=\w)-(?=\w)", " ", name)]
    return forms


def letter_forms(name):
    """Return the UTF-8 and ASCII spellings of a name with other letters."""
    return [] if name.isascii() else [name, plain_form(name), plain_form(name, WRITTEN_OUT)]


def habit_forms(abbreviation, habits):
    """Return an abbreviation as the authors of a field write it, words one by one and all."""
    words = abbreviation.split(" ")
    places = [n for n, word in enumerate(words) if word in habits]
    choices = [[n] for n in places] if len(places) == 2 else []
    return [
        " ".join(habits[w] if n in chosen else w for n, w in enumerate(words))
        for chosen in choices + [places]
        if chosen
    ]


def made_forms(journal, habits):
    """Return the spellings that the rules make for a journal, the likely ones first."""
    full, abbreviation = journal.full, journal.abbreviation
    forms = letter_forms(full) + letter_forms(abbreviation)
    forms += ampersand_forms(full) + article_forms(full)
    forms += punctuation_forms(full)
    forms += habit_forms(abbreviation, habits.get(journal.field, {}))
    forms += [form for form in ampersand_forms(abbreviation) if form != abbreviation]
    return forms + punctuation_forms(abbreviation)


def quoted_forms(journal):
    """Return the names of a journal between double quotes, each once.

    A value written journal = "Name" reaches the comparison with its quotes. It was cut
    at its first comma before, so that a name with a comma is not met in this form.
    """
    names = dict.fromkeys([journal.full, journal.abbreviation])
    return [f'"{name}"' for name in names if "," not in name]


def written_names(journal):
    """Return the names of a row of the tables, as it has them."""
    return [journal.full, journal.abbreviation, *journal.variations]


def add_acronyms(journals, acronyms):
    """Give the journals their acronyms as variations; the name must be a journal's."""
    by_name = {journal.full: journal for journal in journals}
    for place, acronym, full, *_ in acronyms:
        if full not in by_name:
            raise TableError(f"{place}: {acronym}: no journal is named '{full}'")
        by_name[full].variations.append(acronym)


def list_blocks(journals, habits):
    """Return for each journal its names as they stand in the list, no key in two blocks.

    Names of the tables keep their keys; of the made ones only what one journal has.
    """
    made = [[escaped(form) for form in made_forms(j, habits)] for j in journals]
    owners = defaultdict(set)
    for number, forms in enumerate(made):
        for form in forms:
            owners[squeeze(form)].add(number)
    blocks = [[library_form(name) for name in written_names(j)] for j in journals]
    taken = {squeeze(name) for block in blocks for name in block}
    for block, forms, journal in zip(blocks, made, journals):
        keys = {squeeze(name) for name in block}
        for form in forms + [library_form(name) for name in quoted_forms(journal)]:
            key = squeeze(form)
            if key in keys or key in taken or len(owners[key]) > 1:
                continue
            if len(block) - 2 < MAX_VARIATIONS:
                block.append(form)
                keys.add(key)
    return blocks


# ---- the list ----------------------------------------------------------------------------


def block_lines(names):
    """Return the lines of one journal block."""
    full, abbreviation, *variations = names
    return [JOURNAL_START, full, abbreviation, VARIATIONS, *variations, JOURNAL_END, ""]


def read_all():
    """Return the journals with their acronyms, and the habits of the fields."""
    journals = read_journals()
    add_acronyms(journals, read_acronyms())
    return journals, read_habits()


def render(blocks):
    """Return the text of the journal list."""
    lines = [PREAMBLE, LIST_START, ""]
    for names in blocks:
        lines += block_lines(names)
    return "\n".join(lines)


def main(arguments):
    """Write the list to the first argument or to its place in the data folder."""
    output = Path(arguments[0]) if arguments else OUTPUT_FILE
    try:
        text = render(list_blocks(*read_all()))
    except (TableError, UnicodeDecodeError) as error:
        print(f"make_journals: {error}", file=sys.stderr)
        return 1
    output.parent.mkdir(parents=True, exist_ok=True)
    output.write_bytes(text.encode("utf-8"))
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
