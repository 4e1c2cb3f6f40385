# SPDX-License-Identifier: MIT
"""What is known to be lost in silence. `prove.py` counts it apart and prints the list, so that it is
not forgotten; a row goes when the program warns of the loss."""
import bisect
import dataclasses
import re
from typing import Callable

import judge


@dataclasses.dataclass
class Gap:
    text: str                            # for people
    operations: tuple
    whats: tuple
    fits: Callable = lambda library, loss: True


def is_encoding(_, loss):
    return loss.entry.text.lower().startswith("% encoding:")


def behind(library, loss):
    """The text between the loss's entry and the next one, and before the entry's head."""
    entries = library.entries
    at = bisect.bisect_left([entry.start for entry in entries], loss.entry.start)
    end = entries[at + 1].start if at + 1 < len(entries) else len(library.text)
    return library.text[loss.entry.end:end]


def has_tags_behind(library, loss):
    return "=" in behind(library, loss)


def has_tags(_, loss):
    return "=" in loss.entry.text


def is_comment(_, loss):
    return loss.entry.text.lower().startswith("@comment")


def is_in_error(library, loss):
    return any(not entry.whole and entry.line <= loss.entry.line <= entry.last + 1
               for entry in library.entries)


def is_head(_, loss):
    return loss.entry.text.startswith("@")


def is_long_definition(library, loss):
    return hasattr(loss.tag, "value") and "\n" in library.text[
        library.text.rfind("@", 0, loss.tag.start):loss.tag.end]


def has_cut_definition(library, loss):
    """Whether a definition in parentheses is such that Journals cuts its line."""
    return re.search(r"@string\s*\([^\n]*journal", library.text, re.IGNORECASE) is not None


def follows_joined(_, loss):
    return any(tag.form == "joined" and tag.start <= loss.tag.start for tag in loss.entry.tags)


def is_preamble(_, loss):
    return getattr(loss.tag, "name", "") == "preamble"


def has_twin(library, loss):
    return sum(entry.key == loss.entry.key for entry in library.entries) > 1


def is_comma_first(library, loss):
    line = library.text[library.line_start(loss.tag.start):loss.tag.start]
    return line.strip() == ","


def is_one_line(_, loss):
    return loss.entry.line == loss.entry.last


def follows_parenthesis(library, loss):
    before = library.lines(loss.entry.line - 1, loss.entry.line - 1) if loss.entry.line > 1 else ""
    return before.startswith(")")


def has_equal(_, loss):
    return any(tag is not loss.tag and tag.text == loss.tag.text for tag in loss.entry.tags)


def follows_run_on(library, loss):
    """Whether one of the two entries before has no line that begins with "}"."""
    place = next(at for at, entry in enumerate(library.entries) if entry is loss.entry)
    return any("\n}" not in library.text[entry.start:entry.end]
               for entry in library.entries[max(place - 2, 0):place])


def follows_mark(library, loss):
    return library.text.startswith("\xef\xbb\xbf") and loss.entry.line == 1


GAPS = (
    Gap("the line '% Encoding: ...' before the first entry, which JabRef writes anew",
        ("clean-doubles", "clean-tags"), (judge.TEXT,), is_encoding),
    Gap("a line behind an entry that reads like a tag is taken for the entry's",
        ("extract", "text", "clean-tags"),
        (judge.FOREIGN, judge.GONE, judge.TWICE, judge.MISSING), has_tags_behind),
    Gap("text that reads like tags, behind an entry that BibTeX ends early, is changed as tags are",
        ("clean-authors", "clean-tags", "journals"), (judge.TEXT,), has_tags),
    Gap("an @comment that is taken for the tag 'comment' of the entry before; the log names the tag",
        ("clean-tags",), (judge.TEXT,), is_comment),
    Gap("pieces of an entry that BibTeX reports an error in",
        ("clean-tags", "clean-doubles"), (judge.TEXT,), is_in_error),
    Gap("words of an entry that BibTeX reports an error in",
        ("extract", "text"), (judge.FOREIGN,), lambda library, loss: not loss.entry.whole),
    Gap("an entry whose head BibTeX cannot read, dropped as a double",
        ("clean-doubles", "compare"), (judge.TEXT,), is_head),
    Gap("a definition of several lines", ("clean-tags", "clean-doubles", "extract"),
        (judge.STRING,), is_long_definition),
    Gap("what BibTeX takes for a part of a definition in parentheses that Journals cut: line-cut "
        "names the definition", ("journals",),
        (judge.STRING, judge.TEXT, judge.ENTRY, judge.BROKEN), has_cut_definition),
    Gap("tags behind one whose value is joined of quotes and braces", ("clean-tags",),
        (judge.CHANGED,), follows_joined),
    Gap("a preamble behind a damaged entry", ("clean-characters", "clean-tags"), (judge.TEXT,),
        is_preamble),
    Gap("of several entries of one key, which key-twice names, another one is taken",
        ("extract",), (judge.ENTRY, judge.CHANGED, judge.FOREIGN, judge.GONE), has_twin),
    Gap("every second tag of an entry whose lines begin with the commas", ("clean-tags",),
        (judge.GONE,), is_comma_first),
    Gap("an entry on one line that is longer than Clean authors reads", ("clean-authors",),
        (judge.ENTRY, judge.BROKEN), is_one_line),
    Gap("text behind an entry in parentheses", ("clean-tags",), (judge.TEXT,), follows_parenthesis),
    Gap("one of two tags of the same value: which one was written under another name is not known",
        ("clean-tags",), (judge.RENAMED,), has_equal),
    Gap("the second entry behind one that runs on", ("compare",), (judge.ENTRY,), follows_run_on),
    Gap("a definition behind a byte order mark", ("extract", "clean-tags"), (judge.STRING,),
        follows_mark),
    Gap("an entry that BibTeX takes for a part of the damaged one before it in the output",
        ("extract", "clean-doubles", "compare"), (judge.BROKEN,)),
)


def of(operation, library, loss):
    """The text of the gap that the loss falls into; empty when it is in none."""
    for gap in GAPS:
        if operation in gap.operations and loss.what in gap.whats and gap.fits(library, loss):
            return gap.text
    return ""
