# SPDX-License-Identifier: MIT
"""Lists of authors as BibTeX reads them, and whether two lists name the same people."""
import codecs
import re
import unicodedata

from bibtex import WHITE

AND = re.compile(r"\s+and(?=\s)", re.IGNORECASE | re.ASCII)
ET_AL = re.compile(r"\{?\\ldots\}?|\{\\it et al\}|(?:\band\s+)?\bet al\.?|\band Others\b")
ACCENT = re.compile(r"""\\(?:["'`^~=.]\s*|[vcHkurdbt](?:\s+|(?=\{)))\{?\\?([A-Za-z])\}?""")
COMMAND = re.compile(r"\\([A-Za-z]+)\s*")
PLAIN_LETTERS = {"o": "o", "O": "o", "l": "l", "L": "l", "ss": "ss", "ae": "ae", "AE": "ae",
                 "oe": "oe", "OE": "oe", "aa": "a", "AA": "a", "i": "i", "j": "j"}
OWN_LETTERS = str.maketrans({"ø": "o", "Ø": "o", "ł": "l", "Ł": "l", "ß": "ss", "æ": "ae",
                             "Æ": "ae", "œ": "oe", "Œ": "oe", "đ": "d", "Đ": "d", "ı": "i"})


def decomposed(text):
    """The text with plain letters in the place of accented ones."""
    text = unicodedata.normalize("NFKD", text.translate(OWN_LETTERS))
    return "".join(letter for letter in text if not unicodedata.combining(letter))


codecs.register_error("latin", lambda error: (
    error.object[error.start:error.end].decode("latin-1"), error.end))


def decoded(text):
    """The text of bytes as letters; bytes that are not UTF-8 are Latin-1."""
    return text if text.isascii() else text.encode("latin-1", "replace").decode("utf-8", "latin")


def unaccented(text):
    """The text in lower-case letters without accents, however they are written; braces go."""
    text = decoded(text)
    text = ACCENT.sub(r"\1", text)
    text = COMMAND.sub(lambda match: PLAIN_LETTERS.get(match.group(1), ""), text)
    return re.sub(r"[{}\\]", "", decomposed(text)).lower()


def split(text, separator):
    """The parts between the matches of `separator` that stand outside braces."""
    parts, start, depth, at = [], 0, 0, 0
    while at < len(text):
        depth += (text[at] == "{") - (text[at] == "}")
        match = separator.match(text, at) if depth == 0 else None
        if match and match.end() > at:
            parts.append(text[start:at])
            start = at = match.end()
        else:
            at += 1
    return parts + [text[start:]]


BLANKS = re.compile(r"[\s~]+", re.ASCII)
COMMA = re.compile(r"\s*,\s*", re.ASCII)
SUFFIXES = ("jr", "sr", "ii", "iii", "iv")


def words(text):
    return [word for word in split(text.strip(WHITE), BLANKS) if word]


def is_particle(word):
    if word.startswith("{"):
        return False
    word = decoded(word)
    letters = [letter for letter in ACCENT.sub(r"\1", word) if letter.isalpha()]
    return bool(letters) and letters[0].islower()


class Name:
    """A person's name in BibTeX's parts."""

    def __init__(self, text):
        parts = split(text.strip(WHITE), COMMA)
        self.suffix = ""
        if len(parts) == 1:
            all_words = words(text)
            end = len(all_words)
            if end > 2 and unaccented(all_words[-1]).rstrip(".") in SUFFIXES:
                end -= 1  # BibTeX would take it for the surname
            last = 0
            while last < end - 1 and not is_particle(all_words[last]):
                last += 1
            self.first, self.last = all_words[:last], all_words[last:]
        else:
            self.last = words(parts[0])
            self.suffix = parts[1] if len(parts) > 2 else ""
            self.first = words(parts[-1])

    def surname(self):
        """Particles and surname, the suffix included: its words without accents and case."""
        joined = [unaccented(word) for word in self.last]
        if self.suffix:
            joined.append(unaccented(self.suffix))
        return [word.rstrip(".") for text in joined for word in text.split()]

    def initials(self):
        parts = [part.lstrip("('\"`?") for word in self.first
                 for part in re.split(r"[-.~\s]+", unaccented(word))]
        return [part[0] for part in parts if part]

    def long_initials(self):
        """The same with words of capitals alone, such as JP, taken letter by letter."""
        found = []
        for word in self.first:
            for part in re.split(r"[-.~ ]+", word):
                found += list(part.lower()) if part.isupper() else [i[0] for i in [unaccented(part)] if i]
        return found


def people(text):
    return [Name(part) for part in split(text, AND) if part.strip(WHITE)]


def change(old, new):
    """What is wrong with a list that became another; empty when it names the same people."""
    if ET_AL.search(old):
        old, new = ET_AL.sub("", old), ET_AL.sub("", new)
    before, after = people(old), people(new)
    if len(before) != len(after):
        return "the number of names"
    for one, other in zip(before, after):
        if one.surname() != other.surname():
            return "a surname"
        if other.initials() not in (one.initials(), one.long_initials()):
            return "initials"
    return ""
