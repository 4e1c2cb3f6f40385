#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Check the journal tables and the journal list made from them.

Usage: check_journals.py [LIST]

Prints a line for each problem, with the file and line of the row, and exits with 1 when
there is one. What is checked:

  - the form that the program's reader needs;
  - that no spelling belongs to two journals;
  - that every acronym of up to five capitals stands in journal_acronyms.tsv with a reason,
    and with the other journals that have these initials;
  - that every abbreviation is what ISO 4 makes of the title with the words of
    journal_words.tsv, but for the reasoned exceptions in journal_word_exceptions.tsv;
  - that the list is what make_journals.py writes.
"""

import re
import sys
from collections import defaultdict
from pathlib import Path

import iso4
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
LEAST_JOURNALS = 7500
MAX_ACRONYM = 5  # letters
EXCEPTION_FILE = tables.SOURCE_DIR / "journal_word_exceptions.tsv"
EXCEPTION_HEADER = "word\tabbreviation\ttitle\treason"
# A whole title, as the word of an exception; the end of the title of an exception that
# holds for every title with that beginning.
ANY = "*"


def squeeze(name):
    """Return the key by which the program compares names: only ASCII letters lose case."""
    kept = re.sub(r"[ \t.:;{}\\]+", "", name)
    return re.sub("[a-z]+", lambda letters: letters[0].upper(), kept)


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
    if re.search("[\0-\37\177]", name):
        yield f"{kind} '{name!r}' holds a control character"
    # Written into a library as they stand, these would upset LaTeX or BibTeX.
    if kind != "variation" and re.search(r'[{}"#%$_~^\\]', name):
        yield f"{kind} '{name}' holds a character with a meaning in LaTeX"
    if kind != "variation" and not tables.library_form(name).isascii():
        yield f"{kind} '{name}' holds a letter that has no LaTeX form here"
    if "|" in name:
        yield f"{kind} '{name}' holds the separator of variations"


def check_row(journal):
    """Yield the problems of one row."""
    yield from check_name("full name", journal.full)
    yield from check_name("abbreviation", journal.abbreviation)
    if len(journal.variations) > MAX_VARIATIONS:
        yield f"{len(journal.variations)} variations, {MAX_VARIATIONS} at most"
    own = {listed_key(journal.full), listed_key(journal.abbreviation)}
    for variation in journal.variations:
        yield from check_name("variation", variation)
        key = listed_key(variation)
        if key in own:
            yield f"variation '{variation}' is already covered by the row"
        own.add(key)


def listed_key(name):
    """Return the key of a name of the tables as the list has it."""
    return squeeze(tables.library_form(name))


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
            first = owners.setdefault(listed_key(name), (journal, kind))
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


def check_list(path, journals, habits):
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
    wanted = tables.list_blocks(journals, habits)
    if text != tables.render(wanted):
        yield f"{path.name}: not what make_journals.py writes from the tables"
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
        if not (block[0] + block[1]).isascii():
            yield f"{name}: block {number} ({block[0]}) would bring UTF-8 into a library"
        for entry in block:
            if re.search(r"(?<!\\)&", entry):
                yield f"{name}: '{entry}' has a bare &, which would stop LaTeX"
            first = owners.setdefault(squeeze(entry), number)
            if first != number:
                yield f"{name}: '{entry}' stands in the blocks {first} and {number}"


# ---- acronyms ----------------------------------------------------------------------------


def is_acronym(name):
    """Return whether a spelling is one of capitals only, up to five of them."""
    letters = re.sub("[^A-Za-z]", "", name)
    return letters.isupper() and len(letters) <= MAX_ACRONYM and len(name) <= 2 * MAX_ACRONYM


def initials(title):
    """Return the initials of a title: of its sounding words, of all, and with "&"."""
    words = [word for word in iso4.title_words(title)]
    names = [word for word in words if word != "&"]
    joined = ["&" if word.casefold() in ("and", "&") else word for word in words]
    choices = [
        [word for word in names if not iso4.is_silent(word)],
        names,
        [word for word in joined if word == "&" or not iso4.is_silent(word)],
    ]
    return {"".join(word[0] for word in choice).upper() for choice in choices}


def titles_by_initials(journals):
    """Return the titles that have given initials."""
    titles = defaultdict(set)
    for journal in journals:
        for letters in initials(journal.full):
            titles[letters].add(journal.full)
    return titles


def check_acronyms(journals, acronyms):
    """Yield acronyms without a reason, and those whose list of other journals is wrong."""
    titles = titles_by_initials(journals)
    listed = {acronym for _, acronym, *_ in acronyms}
    for place, acronym, full, reason, others in acronyms:
        found = titles[re.sub("[^A-Z0-9&]", "", acronym)] - {full}
        if not is_acronym(acronym):
            yield f"{place}: '{acronym}' is not of one to {MAX_ACRONYM} capitals"
        if not reason:
            yield f"{place}: '{acronym}' has no reason"
        if others != "; ".join(sorted(found)):
            yield f"{place}: '{acronym}' is also of: {'; '.join(sorted(found)) or 'none'}"
    for journal in journals:
        for variation in journal.variations:
            if is_acronym(variation) and variation not in listed:
                yield f"{journal.place}: '{variation}' belongs into {tables.ACRONYM_FILE.name}"


# ---- words -------------------------------------------------------------------------------


def short_words(abbreviation):
    """Return the words of an abbreviation, for comparison without regard to case."""
    return [word.casefold() for word in iso4.title_words(abbreviation)]


def read_exceptions(path=EXCEPTION_FILE):
    """Return the exceptions as (word, abbreviation, title) and the problems of their file."""
    exceptions, problems = {}, []
    for place, cells in tables.read_cells(path, EXCEPTION_HEADER):
        if not all(cells):
            problems.append(f"{place}: four filled columns are needed")
        key = tuple(cells[:3])
        if key in exceptions:
            problems.append(f"{place}: stands twice")
        exceptions[key] = place
    return exceptions, problems


def exceptions_by_word(exceptions, title):
    """Return the exceptions that hold for a title."""
    return [
        key
        for key in exceptions
        if key[2] == title or (key[2].endswith(ANY) and title.startswith(key[2][:-1]))
    ]


def without_sections(words):
    """Return the words of a title without "Part", "Section" and the like before a letter."""
    return [
        word
        for word, following in zip(words, words[1:] + [""])
        if word.casefold() not in iso4.SECTION_WORDS or len(following) > 3
    ]


def allowed_titles(title):
    """Return the ways to read a title: whole, without its subtitle, without "Part" and so on.

    What stands in brackets at the end of an abbreviation, a place, is compared apart.
    """
    main = title.split(": ")[0]
    readings = dict.fromkeys([title, main])
    return list(dict.fromkeys(
        form
        for reading in readings
        for form in (reading, " ".join(without_sections(reading.split(" "))))
    ))


def check_abbreviation(journal, words, exceptions, used):
    """Return what ISO 4 makes of a title when the row has something else, or None."""
    given = re.sub(r" \([^()]*\)$", "", journal.abbreviation)
    given = {tuple(short_words(given)), tuple(short_words(journal.abbreviation))}
    holding = exceptions_by_word(exceptions, journal.full)
    for key in holding:
        if key[0] == ANY and key[1] == journal.abbreviation:
            used.add(key)
            return None
    own = {word.casefold(): short for word, short, _ in holding}
    plain, first = words.short, None
    for overrides in ({}, own):
        words.short = {**plain, **overrides} if overrides else plain
        for title in allowed_titles(journal.full):
            shorts, unknown = words.abbreviate(title)
            first = first or " ".join(shorts)
            if not unknown and tuple(s.casefold() for s in shorts) in given:
                words.short = plain
                used.update(key for key in holding if overrides)
                return None
    words.short = plain
    return f"{first} (no row for {unknown})" if unknown else first


def check_words(journals):
    """Yield abbreviations that are not those of ISO 4, and rows and exceptions without use."""
    exceptions, problems = read_exceptions()
    words, faults = iso4.read_words(tables.read_cells(iso4.WORD_FILE, iso4.WORD_HEADER))
    yield from problems + faults
    used = set()
    for journal in journals:
        wanted = check_abbreviation(journal, words, exceptions, used)
        if wanted is not None:
            yield (
                f"{journal.place}: '{journal.abbreviation}' of '{journal.full}' would be"
                f" '{wanted}'"
            )
    # A table that is not there yet may be the one that needs an exception.
    complete = all((tables.TABLE_DIR / f"{field}.tsv").exists() for field in tables.FIELDS)
    if complete:
        for key in sorted(exceptions.keys() - used):
            yield f"{exceptions[key]}: no row needs this exception"
        for word in sorted(words.short.keys() - words.used):
            yield f"{iso4.WORD_FILE.name}: no title has '{word}'"


def check_everything(list_file):
    """Return the number of journals and all problems."""
    journals = tables.read_journals()
    acronyms, habits = tables.read_acronyms(), tables.read_habits()
    problems = [*check_rows(journals), *check_acronyms(journals, acronyms)]
    problems += check_words(journals)
    tables.add_acronyms(journals, acronyms)
    problems += [*check_keys(journals), *check_list(list_file, journals, habits)]
    if len(journals) < LEAST_JOURNALS:
        problems.append(f"{len(journals)} journals, at least {LEAST_JOURNALS} are wanted")
    return len(journals), problems


def main(arguments):
    """Run all checks and print what they find."""
    list_file = Path(arguments[0]) if arguments else tables.OUTPUT_FILE
    table_files = sorted(tables.TABLE_DIR.glob("*.tsv"))
    others = [EXCEPTION_FILE, iso4.WORD_FILE, tables.ACRONYM_FILE, tables.HABIT_FILE]
    problems = [p for path in table_files + others for p in check_bytes(path)]
    known = {f"{field}.tsv" for field in tables.FIELDS}
    problems += [f"{p.name}: no such field" for p in table_files if p.name not in known]
    count = 0
    try:
        count, more = check_everything(list_file)
        problems += more
    except (tables.TableError, UnicodeDecodeError) as error:
        problems.append(str(error))
    for problem in problems:
        print(problem)
    print(f"{count} journals, {len(problems)} problems")
    return 1 if problems or not count else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
