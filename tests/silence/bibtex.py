# SPDX-License-Identifier: MIT
"""A reader of BibTeX libraries that follows BibTeX itself and knows nothing of Tarvel.

Commands are sought with "@" wherever it stands, an entry is delimited by braces or parentheses, a
value is made of pieces in braces, in quotes, numbers and macro names joined by "#", definitions of
@string are put in, and runs of white space are one blank. Where BibTeX reports an error it skips to
the next "@" and keeps what it has read of the entry; so does this reader. It takes any bytes, never
fails, and needs a time that grows with the length of the library alone.

Texts are strings with one character a byte (latin-1), whatever the encoding of the library.
"""
import bisect
import re

SPACE = re.compile(r"[ \t\r\n\f\v]*")
RUN = re.compile(r"[ \t\r\n\f\v]+")
UNTIDY = re.compile(r"[\t\r\n\f\v]|  |\A | \Z")
NAME = re.compile(r"""[^\x00-\x20\x7f"#%'(),={}0-9][^\x00-\x20\x7f"#%'(),={}]*""")
KEY = {"{": re.compile(r"[^,} \t\r\n\f\v]*"), "(": re.compile(r"[^, \t\r\n\f\v]*")}
CLOSE = {"{": "}", "(": ")"}
NUMBER = re.compile(r"[0-9]+")
# A tag of the most frequent form, with what must follow it; else the parts are read one by one.
PLAIN_TAG = re.compile(
    NAME.pattern.join(("(", ")")) + r"[ \t\r\n\f\v]*=[ \t\r\n\f\v]*"
    r"""((?:\{([^{}]*)\}|"([^{}"]*)"))(?=[ \t\r\n\f\v]*[,)}])""")
PLAIN_BRACES = re.compile(r"\{([^{}]*)\}")
PLAIN_QUOTES = re.compile(r'"([^{}"]*)"')
BRACE = re.compile(r"[{}]")
BRACE_OR_QUOTE = re.compile(r'[{}"]')
LONGEST = 10_000  # the most bytes of a joined value: macros of macros double with each definition
WHITE = " \t\r\n\f\v"

# How a value is written.
BRACED, QUOTED, NUMERIC, MACRO, JOINED = "braced", "quoted", "number", "macro", "joined"


class Tag:
    """A tag of an entry, or a definition of @string."""
    __slots__ = ("name", "low", "text", "form", "macros", "start", "value", "end", "line", "last")

    def __init__(self, name, text, form, macros, start, value, end):
        self.name = name      # as it is written
        self.low = name.lower()
        self.text = text      # macros put in; a name without a definition stands between \1 and \2
        self.form = form
        self.macros = macros  # the names that stand in the value, in lower case
        # Offsets: of the name (of a definition its "@"), of the value, and after that.
        self.start, self.value, self.end = start, value, end
        self.line = self.last = 0  # the lines of its first and its last byte, from 1


class Entry:
    __slots__ = ("type", "key", "tags", "whole", "start", "end", "line", "last")

    def __init__(self, type_, key, start):
        self.type, self.key, self.start = type_.lower(), key, start
        self.tags = []
        self.whole = False  # its closing delimiter was found and no error before it
        self.end = self.line = self.last = 0

    def values(self, name):
        """The texts of the tags of this name, letter case aside."""
        return [tag.text for tag in self.tags if tag.low == name]


class Loose:
    """Text that is of no command: BibTeX passes over it."""
    __slots__ = ("text", "line", "last", "begin", "key")

    def __init__(self, text, line, last, begin=0):
        self.text, self.line, self.last = text, line, last
        self.key = ""
        self.begin = begin or line  # the first line of the whole that it is a part of


class Library:
    """A library, read from its bytes; `macros` are definitions from elsewhere, which its own ones do
    not replace."""

    def __init__(self, data, macros=()):
        self.text = data.decode("latin-1")
        self.given, self.macros = macros, dict(macros)
        self.entries = []
        self.strings = []
        self.preambles = []
        self.skipped = []  # (start, end) of what BibTeX passes over
        self._starts = [0] + [match.end() for match in re.finditer("\n", self.text)]
        _Reader(self).run()
        for entry in self.entries:
            entry.line, entry.last = self.line(entry.start), self.line(max(entry.end - 1, 0))
        for tag in self.all_tags():
            tag.line, tag.last = self.line(tag.start), self.line(tag.end - 1)

    def all_tags(self):
        for entry in self.entries:
            yield from entry.tags
        yield from self.strings
        yield from self.preambles

    def line(self, offset):
        """The number of the line, from 1, that holds the byte at `offset`."""
        return bisect.bisect_right(self._starts, offset)

    def line_start(self, offset):
        return self._starts[self.line(offset) - 1]

    def line_end(self, offset):
        number = self.line(offset)
        return self._starts[number] if number < len(self._starts) else len(self.text)

    def lines(self, first, last):
        """The text of the lines from `first` to `last`, numbered from 1."""
        end = self._starts[last] if last < len(self._starts) else len(self.text)
        return self.text[self._starts[first - 1]:end]

    def following(self, entry):
        """The text between the entry's end and the next one that begins a line."""
        at = bisect.bisect_right(self.entries, entry.start, key=lambda other: other.start)
        while at < len(self.entries) and self.text[
                self.line_start(self.entries[at].start):self.entries[at].start].strip(WHITE):
            at += 1
        end = self.entries[at].start if at < len(self.entries) else len(self.text)
        return self.text[entry.end:end]

    def paragraphs(self):
        """What BibTeX passes over, a piece for each run of lines that are not blank. A comma or brace
        alone is no text."""
        for start, end in self.skipped:
            lines, at = [], start
            for line in self.text[start:end].split("\n") + [""]:
                if line.strip(WHITE + ",)}\xef\xbb\xbf"):
                    lines.append(line)
                elif lines:
                    begin = at - sum(len(one) + 1 for one in lines)
                    text = "\n".join(lines)
                    begin += len(text) - len(text.lstrip(WHITE))
                    text = text.strip(WHITE)
                    yield Loose(text, self.line(begin), self.line(begin + len(text) - 1))
                    lines = []
                at += len(line) + 1


class _Fault(Exception):
    """An error of BibTeX's, noticed at `at`; what it has read up to `used` counts all the same."""

    def __init__(self, at, used=0):
        super().__init__()
        self.at, self.used = at, used


class _Reader:
    def __init__(self, library):
        self.library, self.text, self.macros = library, library.text, library.macros

    def run(self):
        at, following = 0, 0
        while (start := self.text.find("@", at)) >= 0:
            used, at = 0, start + 1
            try:
                used = at = self.command(start)
            except _Fault as fault:
                used, at = fault.used, max(at, fault.at)
            if used:
                self.skip(following, start)
                following = used
        self.skip(following, len(self.text))

    def skip(self, start, end):
        if start < end:
            self.library.skipped.append((start, end))

    def space(self, at):
        return SPACE.match(self.text, at).end()

    def expect(self, at, characters):
        """Where the next byte that is not white stands; it must be one of `characters`."""
        at = self.space(at)
        if at == len(self.text) or self.text[at] not in characters:
            raise _Fault(at)
        return at

    def command(self, at):
        """Reads the command at "@"; gives its end."""
        name = self.name(at + 1)
        if name.group().lower() == "comment":
            raise _Fault(name.end())
        opening = self.expect(name.end(), "{(")
        read = {"string": self.string, "preamble": self.preamble}.get(name.group().lower())
        return read(at, opening) if read else self.entry(at, name.group(), opening)

    def string(self, start, at):
        name = self.name(at + 1)
        tag = self.tag(name)
        tag.start = start
        self.library.strings.append(tag)
        if tag.low not in self.library.given:
            self.macros[tag.low] = tag.text
        return self.expect(tag.end, CLOSE[self.text[at]]) + 1

    def preamble(self, start, at):
        value = self.space(at + 1)
        text, form, macros, end = self.value(value)
        closing = self.expect(end, CLOSE[self.text[at]])
        self.library.preambles.append(Tag("preamble", text, form, macros, start, value, end))
        return closing + 1

    def entry(self, start, type_, opening):
        close = CLOSE[self.text[opening]]
        key = KEY[self.text[opening]].match(self.text, self.space(opening + 1))
        entry = Entry(type_, key.group(), start)
        entry.end = key.end()
        try:
            self.tags(entry, key.end(), close)
        except _Fault as fault:
            if entry.tags:  # else nobody meant it to be an entry
                self.library.entries.append(entry)
                fault.used = entry.end
            raise
        self.library.entries.append(entry)
        return entry.end

    def tags(self, entry, at, close):
        while True:
            at = self.expect(at, "," + close)
            if self.text[at] == ",":
                at = self.space(at + 1)
                entry.end = at
            if self.text[at:at + 1] == close:
                entry.end, entry.whole = at + 1, True
                return
            tag = self.plain_tag(at) or self.tag(self.name(at))
            entry.tags.append(tag)
            at = entry.end = tag.end

    def name(self, at):
        name = NAME.match(self.text, self.space(at))
        if not name:
            raise _Fault(at)
        return name

    def plain_tag(self, at):
        match = PLAIN_TAG.match(self.text, at)
        if not match:
            return None
        text = match.group(3) if match.group(3) is not None else match.group(4)
        form = QUOTED if match.group(3) is None else BRACED
        if UNTIDY.search(text):
            text = RUN.sub(" ", text).strip(WHITE)
        return Tag(match.group(1), text, form, (), match.start(), match.start(2), match.end(2))

    def tag(self, name):
        value = self.space(self.expect(name.end(), "=") + 1)
        text, form, macros, end = self.value(value)
        return Tag(name.group(), text, form, macros, name.start(), value, end)

    def value(self, at):
        """Reads pieces joined by "#": text, form, macros and where they end."""
        text, form, macros, end = self.piece(at)
        following = self.space(end)
        while self.text[following:following + 1] == "#":
            more, _, names, end = self.piece(self.space(following + 1))
            text, form, macros = (text + more)[:LONGEST], JOINED, macros + names
            following = self.space(end)
        if form != NUMERIC and UNTIDY.search(text):
            text = RUN.sub(" ", text).strip(WHITE)
        return text, form, macros, end

    def piece(self, at):
        plain = PLAIN_BRACES.match(self.text, at) or PLAIN_QUOTES.match(self.text, at)
        if plain:
            return plain.group(1), QUOTED if self.text[at] == '"' else BRACED, (), plain.end()
        first = self.text[at:at + 1]
        if first == "{":
            end = self.closing(at + 1, BRACE, "}")
            return self.text[at + 1:end], BRACED, (), end + 1
        if first == '"':
            end = self.closing(at + 1, BRACE_OR_QUOTE, '"')
            return self.text[at + 1:end], QUOTED, (), end + 1
        number = NUMBER.match(self.text, at)
        if number:
            return number.group(), NUMERIC, (), number.end()
        name = NAME.match(self.text, at)
        if not name:
            raise _Fault(at)
        macro = name.group().lower()
        return self.macros.get(macro, f"\1{macro}\2"), MACRO, (macro,), name.end()

    def closing(self, at, marks, wanted):
        depth = 0
        for match in marks.finditer(self.text, at):
            mark = match.group()
            if depth == 0 and mark == wanted:
                return match.start()
            if mark == "{":
                depth += 1
            elif mark == "}":
                if depth == 0:
                    raise _Fault(match.start())
                depth -= 1
        raise _Fault(len(self.text))
