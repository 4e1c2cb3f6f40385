#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Check the journal tables and the journal list made from them.

Usage: check_journals.py [LIST]

Prints a line for each problem and exits with 1 when there is one. The rules are those the
program's reader imposes, and one of house style: a word of a title is abbreviated in the
same way in every row, but for the reasoned exceptions in journal_word_exceptions.tsv.
"""

import re
import sys
import unicodedata
from collections import Counter, defaultdict
from pathlib import Path

import make_journals as tables

# What the program's reader looks for and holds, stated here once more so that a slip in the
# generator is seen.
LIST_START = "START"
JOURNAL_START = "******* Journal-start *******"
VARIATIONS = "******* Variations    *******"
JOURNAL_END = "******* Journal-end   *******"
MARKERS = (JOURNAL_START, VARIATIONS, JOURNAL_END)
MAX_NAME_BYTES = 500
MAX_VARIATIONS = 20
DROPPED_IN_KEYS = set(" \t.:;{}\\")
EXCEPTION_FILE = tables.SOURCE_DIR / "journal_word_exceptions.tsv"
EXCEPTION_HEADER = "word\tabbreviation\ttitle\treason"
# A whole title, as the word of an exception; the end of the title of an exception that
# holds for every title with that beginning.
ANY = "*"
# Words that an abbreviated title leaves out.
SILENT_WORDS = frozenset(
    "& a al am an and at aus da de dei del della den der des di die do dos du e et for from für"
    " fur i il in into its la las le les los no of on og och per sur the to und v van von y"
    " zu".split()
)


def squeeze(name):
    """Return the key by which the program compares names: only ASCII letters lose case."""
    kept = (c for c in name if c not in DROPPED_IN_KEYS)
    return "".join(c.upper() if c.isascii() else c for c in kept)


# ---- bytes of the files ------------------------------------------------------------------


def check_bytes(path):
    """Yield problems of line ends and encoding."""
    data = path.read_bytes()
    if b"\r" in data:
        yield f"{path.name}: holds a carriage return"
    if b"\0" in data:
        yield f"{path.name}: holds a zero byte"
    if not data.endswith(b"\n"):
        yield f"{path.name}: the last line has no newline"
    try:
        data.decode("utf-8")
    except UnicodeDecodeError as error:
        yield f"{path.name}: not UTF-8 ({error})"


# ---- single rows -------------------------------------------------------------------------


def check_name(kind, name):
    """Yield what is wrong with one name, abbreviation or variation."""
    if not name:
        yield f"empty {kind}"
    elif not squeeze(name):
        yield f"{kind} '{name}' has an empty key"
    if name != name.strip() or "  " in name:
        yield f"{kind} '{name}' has superfluous blanks"
    if len(tables.library_form(name).encode("utf-8")) >= MAX_NAME_BYTES:
        yield f"{kind} '{name[:40]}...' is {MAX_NAME_BYTES} bytes or longer"
    if any(marker in name for marker in MARKERS):
        yield f"{kind} '{name}' holds a marker"
    if any(ord(c) < 32 or ord(c) == 127 for c in name):
        yield f"{kind} '{name!r}' holds a control character"
    # Written into a library as they stand, these would upset LaTeX or BibTeX.
    if kind != "variation" and re.search(r'[{}"#%$_~^\\]', name):
        yield f"{kind} '{name}' holds a character with a meaning in LaTeX"
    if "|" in name:
        yield f"{kind} '{name}' holds the separator of variations"


def check_row(journal):
    """Yield the problems of one row."""
    yield from check_name("full name", journal.full)
    yield from check_name("abbreviation", journal.abbreviation)
    if len(journal.variations) > MAX_VARIATIONS:
        yield f"{len(journal.variations)} variations, {MAX_VARIATIONS} at most"
    own = {squeeze(journal.full), squeeze(journal.abbreviation)}
    for variation in journal.variations:
        yield from check_name("variation", variation)
        key = squeeze(variation)
        if key in own:
            yield f"variation '{variation}' is already covered by the row"
        own.add(key)


def check_rows(journals):
    """Yield the problems of the rows one by one."""
    for journal in journals:
        for problem in check_row(journal):
            yield f"{journal.place}: {journal.full}: {problem}"


# ---- keys over all rows ------------------------------------------------------------------


def names_of(journal):
    """Return the kinds and names of one journal."""
    yield "full name", journal.full
    yield "abbreviation", journal.abbreviation
    for variation in journal.variations:
        yield "variation", variation


def check_keys(journals):
    """Yield keys that belong to more than one journal: only the first would be found."""
    owners = {}
    for journal in journals:
        for kind, name in names_of(journal):
            key = squeeze(name)
            first = owners.setdefault(key, (journal, kind))
            if first[0] is not journal:
                other = first[0]
                yield (
                    f"{journal.place}: {journal.full}: {kind} '{name}' is also the"
                    f" {first[1]} of '{other.full}' ({other.place})"
                )


# ---- the list made from the tables -------------------------------------------------------


def parse_list(lines):
    """Return the blocks of a list as the program reads it, and the line of START."""
    start = next((n for n, line in enumerate(lines) if LIST_START in line), None)
    blocks = []
    rest = iter(lines[start + 1 :] if start is not None else [])
    for line in rest:
        if JOURNAL_START not in line:
            continue
        full, abbreviation = next(rest, ""), next(rest, "")
        for line in rest:
            if VARIATIONS in line:
                break
        variations = []
        for line in rest:
            if JOURNAL_END in line:
                break
            variations.append(line)
        blocks.append((full, abbreviation, variations))
    return blocks, start


def check_marker_lines(name, lines):
    """Yield lines that look like a marker and are none."""
    for number, line in enumerate(lines, start=1):
        if line.startswith("***") and line not in MARKERS:
            yield f"{name}:{number}: '{line}' is not exactly a marker"


def check_list(path, journals):
    """Yield the problems of the list: its form, and whether it is what the tables give."""
    if not path.exists():
        yield f"{path.name}: missing, run make_journals.py"
        return
    yield from check_bytes(path)
    text = path.read_bytes().decode("utf-8", errors="replace")
    lines = text.split("\n")
    yield from check_marker_lines(path.name, lines)
    blocks, start = parse_list(lines)
    if start is None or lines[start] != LIST_START:
        yield f"{path.name}: the first line with {LIST_START} is not that word alone"
    if text != tables.render(journals):
        yield f"{path.name}: not what make_journals.py writes from the tables"
    wanted = [tables.list_names(journal) for journal in journals]
    found = [[full, abbreviation, *variations] for full, abbreviation, variations in blocks]
    if found != wanted:
        yield f"{path.name}: read back, it gives {len(found)} other blocks than the tables"
    yield from check_blocks(path.name, found)


def check_blocks(name, blocks):
    """Yield blocks with too many spellings and keys that two blocks of the list share."""
    owners = {}
    for number, block in enumerate(blocks, start=1):
        if len(block) - 2 > MAX_VARIATIONS:
            yield f"{name}: block {number} ({block[0]}) has {len(block) - 2} variations"
        if not block[0] or not block[1]:
            yield f"{name}: block {number} has an empty name, which ends the lookup"
        for entry in block:
            if re.search(r"(?<!\\)&", entry):
                yield f"{name}: '{entry}' has a bare &, which would stop LaTeX"
            first = owners.setdefault(squeeze(entry), number)
            if first != number:
                yield f"{name}: '{entry}' stands in the blocks {first} and {number}"


# ---- words -------------------------------------------------------------------------------


def title_words(title):
    """Return the words of a title without punctuation and elided articles."""
    words = (word.strip(",:;()[]'") for word in title.split())
    words = (re.sub(r"^[dlDL]['’]", "", word) for word in words)
    return [word for word in words if word.strip(".-–/")]


def short_words(abbreviation):
    """Return the words of an abbreviation without a place or year in brackets behind it."""
    return title_words(re.sub(r" \([^()]*\)$", "", abbreviation))


def is_silent(word):
    """Tell whether an abbreviation leaves a word out; the A of "Physica A" stays."""
    return word.casefold() in SILENT_WORDS and not (len(word) == 1 and word.isupper())


def letters_of(word):
    """Return the letters and digits of a word without accents and case."""
    plain = unicodedata.normalize("NFD", word.casefold())
    return [c for c in plain if c.isalnum()]


def is_contraction(short, word):
    """Tell whether the letters of an abbreviated word stand in the word in this order."""
    letters, source = letters_of(short), letters_of(word)
    if not letters or letters[:1] != source[:1]:
        return False
    rest = iter(source)
    return all(c in rest for c in letters)


def align(words, shorts):
    """Return the pairs of title words and abbreviated words, or None when none fits.

    The abbreviated words keep the order of the title. A title word may be passed over;
    of all ways the one that passes over the fewest sounding words is taken, and of
    these the one with the most words left as they are.
    """
    best = {0: ((0, 0), [])}  # abbreviated words used -> ((passed over, shortened), pairs)
    for word in words:
        cost = 0 if is_silent(word) else 1
        following = {}
        for used, ((passed, shortened), pairs) in best.items():
            options = [(used, (passed + cost, shortened), pairs)]
            if used < len(shorts) and is_contraction(shorts[used], word):
                price = (passed, shortened + (shorts[used] != word))
                options.append((used + 1, price, pairs + [(word, shorts[used])]))
            for key, price, chain in options:
                if key not in following or price < following[key][0]:
                    following[key] = (price, chain)
        best = following
    return best.get(len(shorts), (None, None))[1]


def word_forms(journals):
    """Return, for every title word, its abbreviations with the rows that use them.

    Titles of one word are not abbreviated at all and say nothing about the word.
    """
    forms = defaultdict(lambda: defaultdict(list))
    strangers = []
    for journal in journals:
        words, shorts = title_words(journal.full), short_words(journal.abbreviation)
        if len(words) < 2:
            continue
        pairs = align(words, shorts)
        if pairs is None:
            strangers.append(journal)
            continue
        for word, short in pairs:
            forms[word.casefold()][short.casefold()].append((journal, short))
    return forms, strangers


def read_exceptions(path=EXCEPTION_FILE):
    """Return the exceptions as (word, abbreviation, title) and the problems of their file."""
    lines = path.read_text(encoding="utf-8").split("\n")
    problems = [] if lines[0] == EXCEPTION_HEADER else [f"{path.name}:1: wrong header"]
    exceptions = {}
    for number, line in enumerate(lines[1:-1], start=2):
        cells = line.split("\t")
        if len(cells) != 4 or not all(cells):
            problems.append(f"{path.name}:{number}: four filled columns are needed")
            continue
        key = (cells[0].casefold(), cells[1].casefold(), cells[2])
        if key in exceptions:
            problems.append(f"{path.name}:{number}: stands twice")
        exceptions[key] = number
    return exceptions, problems


def matching_exceptions(exceptions, word, short, title):
    """Return the exceptions that allow this abbreviation of a word in this title."""
    return {
        key
        for key in exceptions
        if key[:2] == (word.casefold(), short.casefold())
        and (key[2] == title or (key[2].endswith(ANY) and title.startswith(key[2][:-1])))
    }


def judge_word(word, by_short, exceptions):
    """Return the rows that write a word in another way than most, and the exceptions used.

    Rows with an exception have no say in what the usual form is.
    """
    allowed = {
        (short, journal): matching_exceptions(exceptions, word, short, journal.full)
        for short, rows in by_short.items()
        for journal, _ in rows
    }
    plain = [place for place, found in allowed.items() if not found]
    counts = Counter(short for short, _ in plain)
    usual = max(counts, key=lambda short: (counts[short], short)) if counts else None
    odd = [(usual, short, journal) for short, journal in plain if short != usual]
    used = {key for (short, _), found in allowed.items() if short != usual for key in found}
    return odd, used


def check_words(journals):
    """Yield words that are abbreviated in different ways, and exceptions without use."""
    exceptions, problems = read_exceptions()
    yield from problems
    forms, strangers = word_forms(journals)
    used = set()
    for journal in strangers:
        allowed = matching_exceptions(exceptions, ANY, journal.abbreviation, journal.full)
        used |= allowed
        if not allowed:
            yield (
                f"{journal.place}: '{journal.abbreviation}' is no contraction of"
                f" '{journal.full}'"
            )
    for word, by_short in sorted(forms.items()):
        odd, used_here = judge_word(word, by_short, exceptions)
        used |= used_here
        for usual, short, journal in odd:
            yield (
                f"{journal.place}: {journal.full}: '{word}' is '{short}' here and"
                f" '{usual}' elsewhere"
            )
    # A table that is not there yet may be the one that needs an exception.
    complete = all((tables.TABLE_DIR / f"{field}.tsv").exists() for field in tables.FIELDS)
    for key in sorted(exceptions.keys() - used if complete else ()):
        yield f"{EXCEPTION_FILE.name}:{exceptions[key]}: no row needs this exception"


def main(arguments):
    """Run all checks and print what they find."""
    list_file = Path(arguments[0]) if arguments else tables.OUTPUT_FILE
    table_files = sorted(tables.TABLE_DIR.glob("*.tsv"))
    problems = [p for path in [*table_files, EXCEPTION_FILE] for p in check_bytes(path)]
    known = {f"{field}.tsv" for field in tables.FIELDS}
    problems += [f"{p.name}: no such field" for p in table_files if p.name not in known]
    try:
        journals = tables.read_journals()
    except (tables.TableError, UnicodeDecodeError) as error:
        problems.append(str(error))
        journals = []
    for check in (check_rows, check_keys, check_words):
        problems += check(journals)
    problems += check_list(list_file, journals)
    for problem in problems:
        print(problem)
    print(f"{len(journals)} journals, {len(problems)} problems")
    return 1 if problems or not journals else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
