# SPDX-License-Identifier: MIT
"""Abbreviates journal titles by the rules of ISO 4, with the words of journal_words.tsv.

Articles, prepositions and conjunctions go; every other word is looked up; a title of one
word stays as it is. What a row of words says:

    word    abbreviation    "-" for a word that is not abbreviated

A row may name several words with blanks between them ("new york"): they count as one.
"""

import re
from pathlib import Path

WORD_FILE = Path(__file__).resolve().with_name("journal_words.tsv")
WORD_HEADER = "word\tabbreviation"
NOT_ABBREVIATED = "-"
# Words that an abbreviated title leaves out.
SILENT_WORDS = frozenset(
    "& a al am an and ao at aus com d'e da de degli dei del della delle dem den der des di die"
    " do dos du e ed ee ego ein el en et for från från för from für i ihre il im in into its la"
    " las le les los na nach no of og on och over per sur the their to und v van von voor with y"
    " zu zum zur à à é".split()
)
# Words that name a part of a journal: they may be left out before its letter or number.
SECTION_WORDS = frozenset(["part", "section", "series", "teil"])


def title_words(title):
    """Return the words of a title without punctuation and elided articles."""
    title = re.sub(r"(: | - )A ", r"\1a ", title)  # an article there, not a section's letter
    words = (word.strip(",:;()[]'") for word in title.split())
    words = (re.sub(r"^[dlDL]['’]", "", word) for word in words)
    return [word for word in words if word.strip(".-–/")]


def is_silent(word):
    """Return whether an abbreviation leaves a word out; the A of "Physica A" stays."""
    return word.casefold() in SILENT_WORDS and not (len(word) == 1 and word.isupper())


def like(short, word):
    """Return an abbreviation with the capitals of the word it stands for, part by part."""
    shorts, parts = re.split("([-/])", short), re.split("([-/])", word)
    parts += parts[-1:] * (len(shorts) - len(parts))
    return "".join(s[:1].upper() + s[1:] if p[:1].isupper() else s
                   for s, p in zip(shorts, parts))


class Words:
    """The abbreviations of title words."""

    def __init__(self, rows):
        self.short = dict(rows)
        self.used = set()

    def find(self, words):
        """Return how many of the words the first row takes that fits, and its text."""
        for count in (3, 2, 1):
            key = " ".join(words[:count]).casefold()
            if len(words) >= count and key in self.short:
                self.used.add(key)
                short = self.short[key]
                if short == NOT_ABBREVIATED:
                    return count, " ".join(words[:count])
                return count, like(short, words[0])
        return 1, self.compound(words[0])

    def compound(self, word):
        """Return a word with hyphens that no row names, its parts abbreviated, or None."""
        parts = re.split("([-/])", word)
        if len(parts) < 3 or not all(p in "-/" or p.casefold() in self.short for p in parts):
            return None
        return "".join(p if p in "-/" else self.find([p])[1] for p in parts)

    def abbreviate(self, title):
        """Return a title's abbreviation in words, and the words that no row names."""
        words = title_words(title)
        sounding = [word for word in words if not is_silent(word)]
        if len(sounding) < 2:
            return sounding, []
        shorts, unknown = [], []
        while words:
            count, short = self.find(words)
            if short is None and not is_silent(words[0]):
                unknown.append(words[0])
                short = words[0]
            if short is not None and not (count == 1 and is_silent(words[0])):
                shorts += short.split(" ")
            words = words[count:]
        return shorts, unknown


def read_words(rows):
    """Return the words of the rows (place, cells) of a word table, and its problems."""
    words, problems, last = {}, [], ""
    for place, (word, short) in rows:
        if word != word.casefold() or not short:
            problems.append(f"{place}: '{word}' is not in lower case or has no abbreviation")
        if word in words:
            problems.append(f"{place}: '{word}' stands twice")
        if word < last:
            problems.append(f"{place}: '{word}' stands after '{last}'")
        words[word] = short
        last = word
    return Words(words), problems
