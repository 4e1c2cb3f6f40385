# SPDX-License-Identifier: MIT
"""Judges of the references that Extract and Text print: each value that the format of the style
prints stands in the reference, in its place, and nothing else does.

Author lists are compared by their surnames. Everything is compared without letter case, accents,
punctuation and braces, and where plain text stands for a LaTeX command anything may stand.
"""
import collections
import functools
import math
import os
import re

import people
from judge import (BROKEN, COMMAND, ENTRY, FOREIGN, GONE, HALF, MISSING, UNBALANCED, Loss,
                   read_warnings)

STYLES = {"aps": "APS", "acs": "ACS", "iop": "IOP", "nature": "NATURE", "wiley": "WILEY",
          "springer": "SPRINGER_C"}
KINDS = {"article": "article", "book": "book", "incollection": "incol", "inproceedings": "inpro",
         "phdthesis": "phd", "masterthesis": "phd"}
# The values of each format after the label, in their order: a row for the formats it is true of.
A_LONG, A_SHORT = "author title journal volume pages year", "author journal volume pages year"
A_LONG_YEAR = "author title journal year volume pages"
A_SHORT_YEAR = "author journal year volume pages"
BOOK = "author title publisher address year"
CHAPTER = "author booktitle editor publisher address year"
ORDERS = {
    "ACS": (A_LONG_YEAR, A_SHORT_YEAR, BOOK,
            "author title editor booktitle publisher address year", CHAPTER + " pages",
            "author school year"),
    "APS": (A_LONG, A_SHORT, "title author publisher address year", CHAPTER, CHAPTER + " pages",
            "author school year"),
    "IOP": (A_LONG, A_SHORT, "author year title address publisher",
            "author year title booktitle editor address publisher",
            "author year booktitle address editor pages", "author year school"),
    "NATURE": (A_LONG, A_SHORT, BOOK, "author year title booktitle editor address publisher",
               "author year booktitle address editor pages", "author year school"),
    "WILEY": (A_LONG_YEAR, A_SHORT_YEAR, BOOK, CHAPTER + " pages", CHAPTER,
              "author publisher address year"),
    "SPRINGER_C": ("author year title journal volume pages", "author year journal volume pages",
                   "author year title publisher address",
                   "author year title booktitle editor publisher address",
                   "author year title booktitle editor publisher address",
                   "author year title address"),
}
FORMATS = ("article_title", "article", "book", "incol", "inpro", "phd")
ALWAYS = ("author", "title", "journal", "year")
HEAD = re.compile(r"@[ \t]*(\w+)[ \t]*\{([^,\n]*)")
GAP = "\0"  # in a folded text: a LaTeX command that plain text may stand for


LONG = 8  # letters of a value


class Absent:
    """A tag that an entry does not have."""

    def __init__(self, name):
        self.name = self.low = name
        self.line, self.last, self.form = 0, -1, "absent"


@functools.lru_cache
def read_formats(program):
    """The formats of the style file beside the program, by key."""
    path = os.path.join(os.path.dirname(os.path.realpath(program)), "JournalStyles",
                        "Journal_styles_linux.tvl")
    with open(path, encoding="utf-8") as file:
        return dict(re.findall(r'^(\w+) = "(.*)"; // ', file.read(), re.MULTILINE))


class Format:
    """What a style prints of a kind of entry."""

    def __init__(self, formats, style, kind, latex, title):
        name = "article_title" if kind == "article" and title else kind
        text = formats.get(f"{style}_{name}{'_latex' if latex else ''}", "")
        order = ORDERS[style][FORMATS.index(name)].split()
        asked = re.findall(r"%(\.0)?s", text)[1:]  # the first is the label
        self.shown = [value for value, skip in zip(order, asked) if not skip]
        self.literals = fold(re.sub(r"%(\.0)?s", " ", text.replace("\\n", "\n")), True)


@functools.lru_cache(1 << 16)
def fold(text, latex):
    """The text in lower-case words with one blank between; in plain text a command is a gap."""
    text = people.decoded(text)
    gap = " " if latex else GAP
    text = re.sub(r"\\([&%#{}])", " ", text).replace("\\_", "").replace("\\$", " ")
    text = people.ACCENT.sub(r"\1", text)
    text = people.COMMAND.sub(lambda match: people.PLAIN_LETTERS.get(match.group(1), gap), text)
    text = re.sub(r"\\.?", gap, text)
    text = people.decomposed(text)
    text = re.sub(r"[{}$^_]", "", text.lower())
    return " ".join("".join(c if c.isalnum() or c == GAP else " " for c in text).split())


def find(piece, text, at, left=True, right=True):
    """Where the piece ends in the text from `at` on, at the borders of words; -1 when nowhere."""
    while (at := text.find(piece, at)) >= 0:
        end = at + len(piece)
        if (not left or at == 0 or not text[at - 1].isalnum()) and (
                not right or end == len(text) or not text[end].isalnum()):
            return end
        at += 1
    return -1


def find_value(value, text, at):
    """Where the folded value ends in the folded text from `at` on; -1 when it does not stand there.
    Some formats put nothing between two values, so longer ones may stand inside a word."""
    pieces = value.split(GAP)
    for number, piece in enumerate(pieces):
        piece = piece.strip()
        if not piece:
            continue
        end = find(piece, text, at, number == 0, number == len(pieces) - 1)
        if len(piece) > 1:
            glued = find(piece, text, at, False, False)
            # A longer one rarely stands in other words by chance: then the first place counts.
            if end < 0 or 0 <= glued < end and len(piece) >= LONG:
                end = glued
            if end < 0 and find(piece.replace(" ", ""), text.replace(" ", ""), 0, False, False) >= 0:
                end = at
        if end < 0:
            return -1
        at = end
    return at


class Printed:
    """The references of an output file."""

    def __init__(self, text, extract):
        self.blocks, self.unsupported = {}, set()
        label = re.compile(r"\\bibitem\{(.*)\}$" if extract else r"(?:\\bibitem\{(.*)\}|\[(.*)\])$")
        block = None
        for line in text.split("\n"):
            match = label.match(line)
            if match:
                block = []
                key = next(group for group in match.groups() if group is not None)
                self.blocks.setdefault(key.strip(), []).append(block)
            elif line == "Attention!":
                block = None
            elif block is not None:
                block.append(line)
            elif line.startswith("The entry type of the bibitem-key '"):
                self.unsupported.add(line[35:line.rfind("' is '@")].strip())

    def of(self, key):
        return ["\n".join(block) for block in self.blocks.get(key, ())]


class ReferenceJudge:
    def __init__(self, run, latex):
        self.run, self.latex = run, latex
        formats = read_formats(run.program)
        style = STYLES[run.options.get("style", "aps")]
        self.formats = {kind: Format(formats, style, kind, latex, run.options.get("title", True))
                        for kind in set(KINDS.values())}
        if run.operation == "extract" and style == "SPRINGER_C":
            self.formats["incol"] = self.formats["inpro"]
        self.range = run.options.get("pages") == "range"
        # The lines of entries that the program says to have printed nothing for.
        self.not_printed = {warning.line for warning in read_warnings(run.warnings)
                            if warning.kind == "nothing-printed" and warning.file == run.file}
        self.parents = {}
        for entry in run.library.entries:
            self.parents.setdefault(entry.key.lower(), entry)
        # What stands between an entry and the next one: the program may read tags there.
        starts = [entry.start for entry in run.library.entries[1:]] + [len(run.library.text)]
        self.following = {id(entry): run.library.text[entry.end:start].lower()
                       for entry, start in zip(run.library.entries, starts)}

    def judge(self, entries, printed):
        entries = list(entries)
        same = collections.defaultdict(list)
        for entry, label in self.labels({entry.start: entry for entry, _ in entries}):
            same[label].append(entry)
        blocks, shown = {}, {}
        for label, ones in same.items():
            for entry, block in self.pairs(ones, printed.of(label)):
                blocks[id(entry)], shown[id(entry)] = block, label
        for entry, lines in entries:
            if id(entry) in blocks:
                yield from self.reference(entry, blocks[id(entry)])
                if shown[id(entry)] != entry.key:
                    yield Loss(BROKEN, entry, None, "its reference has no key")
            elif entry.key not in printed.unsupported:
                yield Loss(ENTRY, entry, None, "no reference", lines)

    def labels(self, entries):
        """The heads of the library that may have a reference, with its label: what stands after the
        brace on the first line. Of a head that BibTeX cannot read the entry is None; Extract takes
        but one of a key."""
        given = {entry.key for entry in entries.values()} if self.run.operation == "text" else ()
        library = self.run.library
        for head in HEAD.finditer(library.text):
            entry = entries.get(head.start())
            label = head.group(2).strip()
            is_shown = (head.group(1).lower() in KINDS
                        and library.line(head.start()) not in self.not_printed)
            if is_shown and (entry or label in given):
                yield entry, entry.key if label and entry else label

    def pairs(self, entries, blocks):
        """Which reference is of which of the entries of one key, in their order: where there are
        more of the ones than of the others, the pairs with the fewest losses."""
        if len(entries) == len(blocks):
            return [pair for pair in zip(entries, blocks) if pair[0]]
        few, many = sorted((range(len(entries)), range(len(blocks))), key=len)
        is_swapped = len(entries) > len(blocks)
        # best[at] are the losses and the pairs of the first ones of `few`, all before `at`.
        best = [(0, ())] * (len(many) + 1)
        for one in few:
            better = [(math.inf, ())]
            for other in many:
                at, block = (other, one) if is_swapped else (one, other)
                cost = best[other][0]
                if cost < math.inf and entries[at]:
                    cost += len(list(self.reference(entries[at], blocks[block])))
                better.append(min(better[-1], (cost, best[other][1] + ((at, block),)),
                                  key=lambda made: made[0]))
            best = better
        return [(entries[at], blocks[block]) for at, block in best[-1][1] if entries[at]]

    def reference(self, entry, block):
        shown = self.formats[KINDS[entry.type]].shown if entry.type in KINDS else []
        folded, at, gaps = fold(block, True), 0, False
        missed = False
        for name in shown:
            tags = [tag for tag in entry.tags if tag.low == name and self.text(tag)]
            if not tags:
                yield from self.absent(entry, name)
                continue
            ends = [self.find(tag, folded, at) for tag in tags]
            gaps = gaps or any(GAP in fold(tag.text, self.latex) for tag in tags)
            for tag, end in zip(tags, ends):
                if end < 0 and not self.is_in_command(tag, block):
                    missed = True
                    yield Loss(GONE, entry, tag, f"not in '{block.strip()[:90]}'")
            at = max(ends + [at])
        if shown and not gaps:
            yield from self.foreign(entry, shown, folded, missed)
        yield from self.marks(entry, shown, block, missed)

    def text(self, tag):
        """What of the value is printed."""
        if tag.low == "pages" and not self.range:
            return tag.text.split("-")[0].strip()
        return tag.text

    def find(self, tag, folded, at):
        if tag.low not in ("author", "editor"):
            return find_value(fold(self.text(tag), self.latex), folded, at)
        for name in people.people(tag.text):
            end = find_value(fold(" ".join(name.last), self.latex), folded, at)
            if end < 0:
                return -1
            at = end
        return at

    def is_in_command(self, tag, block):
        """Whether the value stands right after a backslash that is left in the plain text: what
        people read is there, though it would be a LaTeX command."""
        shown = fold(block.replace("\\", " "), True)
        value = fold(self.text(tag), True)
        return not self.latex and len(value) >= LONG and find(value, shown, 0, False, False) >= 0

    def absent(self, entry, name):
        inherited = False
        for parent in entry.values("crossref"):
            other = self.parents.get(parent.lower())
            inherited = other is not None and bool(other.values(name))
        if not entry.whole or re.search(rf"\b{name}\s*=", self.following[id(entry)]):
            return  # BibTeX reads less of the entry than was meant
        if inherited or name in ALWAYS:
            yield Loss(MISSING, entry, Absent(name), "inherited" if inherited else "")

    def foreign(self, entry, shown, folded, missed):
        """Words that are of no value of the entry. Where one was `missed`, a piece of it may stand
        there."""
        own = collections.Counter(self.formats[KINDS[entry.type]].literals.split())
        if not entry.whole:
            # BibTeX reports an error in it; what stands after that was meant for the entry.
            following = self.run.library.following(entry).replace("}", "} ")
            if GAP in fold(following, self.latex):
                return  # a command stands there, for which anything may be printed
            own.update(fold(following, True).split())
        for tag in entry.tags:
            if tag.low in shown:
                own.update(fold(self.text(tag), True).split())
                if tag.low == "journal":  # one style prints it without its full stops
                    own.update(fold(tag.text.replace(".", ""), True).split())
                if tag.low in ("author", "editor"):
                    for name in people.people(tag.text):
                        own.update(["".join(name.initials()), "and"])
        more = collections.Counter(folded.split()) - own
        values = " ".join(fold(tag.text, True) for tag in entry.tags if tag.low in shown)
        values += " " + self.formats[KINDS[entry.type]].literals
        more = [word for word in more
                if not (missed and is_piece(word, values) or glued(word, own))]
        if more:
            yield Loss(FOREIGN, entry, None, "'" + " ".join(more)[:80] + "'")

    def marks(self, entry, shown, block, missed):
        if self.latex:
            if unbalanced(block):
                yield Loss(UNBALANCED, entry, None, block.strip()[:80])
            return
        left = re.search(r"\\(?:[A-Za-z]+|.)", block)
        if left:
            yield Loss(COMMAND, entry, None, left.group())
        if missed:
            return
        for tag in entry.tags:
            if tag.low in shown and (half := half_command(tag.text, block)):
                yield Loss(HALF, entry, tag, half)


def is_piece(word, values):
    """Whether the word stands in the values, or is two pieces of them."""
    return word in values or any(word[:at] in values and word[at:] in values
                                 for at in range(1, len(word)))


def glued(word, known):
    """Whether the word is two known ones: some formats put nothing between two values."""
    return any(word[:at] in known and word[at:] in known for at in range(1, len(word)))


def unbalanced(text):
    depth = 0
    for byte in re.sub(r"\\[{}]", "", text):
        depth += (byte == "{") - (byte == "}")
        if depth < 0:
            return True
    return depth != 0


def half_command(value, printed):
    """The end of a LaTeX command of the value that stands in the printed text, after what its
    beginning became."""
    printed = re.sub("[{}]", "", printed)
    for match in re.finditer(
            r"([A-Za-z0-9 ]{0,6})\\([A-Za-z]{3,})(?:\{\}|\s|\{\s*)?([A-Za-z0-9]{0,6})", value):
        before, name, following = match.groups()
        for start in range(1, len(name) - 1):
            text = re.escape(before) + "[^A-Za-z0-9 ]{0,4}" + name[start:] + re.escape(following)
            if (before or following) and re.search(text, printed) and not re.search(text, value):
                return f"\\{name} became '{name[start:]}'"
    return ""


def judge_extract(run):
    printed = Printed(run.outputs["_extract.tex"].decode("latin-1"), True)
    yield from ReferenceJudge(run, True).judge(run.cited(), printed)


def judge_text(run):
    latex = run.options.get("latex", False)
    printed = Printed(run.outputs["_text.txt"].decode("latin-1"), False)
    yield from ReferenceJudge(run, latex).judge(((entry, ()) for entry in run.library.entries), printed)
