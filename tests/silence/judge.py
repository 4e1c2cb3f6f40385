# SPDX-License-Identifier: MIT
"""What the judges of the eight operations share: losses, warnings, and when a warning names a loss.

A `Loss` is a value of the input that does not stand in an output as the operation promises, or one
that stands there in the wrong place. It is silent when neither the log (each judge looks there
itself) nor a warning names it. `KINDS` says of every kind of warning how near it must be to a loss
to name it, and which losses it can name at all.
"""
import bisect
import collections
import dataclasses
import re

from bibtex import WHITE

# What can happen to a value.
GONE = "gone"                # the tag is not in the entry any more
CHANGED = "changed"          # it has another value
RENAMED = "renamed"          # its value stands under another name
TWICE = "twice"              # the entry has a tag more often than it had
FOREIGN = "foreign"          # the entry, or its reference, has a value that is not its own
ENTRY = "entry gone"         # a whole entry, with no word in the log
BROKEN = "entry broken"      # the entry is there, but BibTeX cannot read it
DIFFERS = "double differs"   # a dropped double had another title, author, year, doi or eprint
VERDICT = "weak verdict"     # it had other values of what was compared
STRING = "string gone"       # a definition of @string
PARENT = "parent gone"       # the entry that a crossref names
TEXT = "text gone"           # text that is of no entry
PERSON = "person changed"    # a name that is another name now, not only another form of it
MISSING = "nothing to show"  # the reference lacks its author, title, journal or year
UNBALANCED = "unbalanced"    # the reference's braces do not match, the entry's did
COMMAND = "command left"     # a LaTeX command stands in the plain text
HALF = "half a command"      # the end of one does
ENCODING = "encoding"        # a library of plain ASCII is one no more
FAILED = "failed"            # the run failed and gave no reason
# What befalls the lines after a break, which are all one loss.
FOLLOWING = (ENTRY, BROKEN, STRING, TEXT)
DAMAGE = {GONE, CHANGED, RENAMED, TWICE, FOREIGN, ENTRY, BROKEN}
DOCUMENT = "paper.tex"

# How near a warning must be to a loss.
TAG = "tag"          # it is of the entry and names the tag
LINE = "line"        # it is of a line of the tag, or names the tag in the entry
AFTER = "after"      # it is of a line of the entry that stands before the tag, or on its line
OF_ENTRY = "entry"   # it is of the entry
ITSELF = "itself"    # it stands at a line of the entry; another one of its key does not count
NEAR = "near"        # it is of the entry, the one before or the one after
NAME = "name"        # it names the tag, in whatever entry
LIBRARY = "library"  # it is about the library
CITED = "cited"      # it is of a line of the document that cites the entry



def near(scope, *whats):
    return dict.fromkeys(whats, scope)


# The kinds of warnings: which losses each can name, and how near it must be. One that can name none
# is a note. A kind that is not here fails the test: it wants a row.
KINDS = {
    "unbraced-value": near(TAG, GONE, CHANGED, RENAMED, TWICE, MISSING, PERSON, VERDICT, DIFFERS)
                      | near(LINE, TEXT) | near(OF_ENTRY, FOREIGN),
    "unknown-type": near(NEAR, DIFFERS, VERDICT, PERSON, MISSING, *DAMAGE),
    "blank-in-type": near(NEAR, DIFFERS, VERDICT, PERSON, MISSING, *DAMAGE),
    "runs-on": near(NEAR, MISSING, DIFFERS, VERDICT, *DAMAGE),
    "open-value": near(NEAR, *DAMAGE) | near(LIBRARY, ENTRY, BROKEN),
    "shared-line": near(LINE, *DAMAGE) | near(TAG, DIFFERS, VERDICT),
    "other-tag": near(TAG, GONE, CHANGED, MISSING, DIFFERS) | near(OF_ENTRY, FOREIGN),
    "stray-tag": near(NEAR, GONE, CHANGED, TWICE, FOREIGN, MISSING) | near(LINE, TEXT),
    "key-as-tag": near(OF_ENTRY, *DAMAGE),
    "at-in-key": near(NEAR, DIFFERS, VERDICT, PERSON, MISSING, *DAMAGE),
    "upper-cased": near(LINE, CHANGED, GONE, FOREIGN, STRING, TEXT, ENTRY, BROKEN),
    "long-line": near(LINE, *DAMAGE),
    "bad-bytes": {},
    "key-twice": {},
    "missing-parent": near(TAG, PARENT),
    "missing-citation": near(CITED, ENTRY),
    "other-citation": near(CITED, ENTRY),
    "key-with-blank": near(CITED, ENTRY),
    "carried-over": near(OF_ENTRY, FOREIGN, MISSING),
    "value-missing": near(TAG, GONE, MISSING),
    "detail-missing": near(TAG, GONE, MISSING),
    "unbalanced": near(OF_ENTRY, UNBALANCED) | near(TAG, GONE),
    "nothing-printed": near(OF_ENTRY, ENTRY),
    "raw-editors": {},
    "command-cut": near(OF_ENTRY, HALF),
    "command-left": near(OF_ENTRY, COMMAND) | near(TAG, GONE),
    "no-group": {},
    "weak-verdict": near(OF_ENTRY, VERDICT),
    "dropped-differs": near(TAG, DIFFERS) | near(OF_ENTRY, VERDICT, ENTRY, BROKEN),
    "cut-entry": near(OF_ENTRY, GONE, CHANGED) | near(NEAR, ENTRY, BROKEN),
    "overwritten": near(OF_ENTRY, ENTRY, BROKEN, GONE, CHANGED, TEXT, DIFFERS, VERDICT),
    "ended-early": near(LIBRARY, FAILED) | near(OF_ENTRY, ENTRY),
    "authors-as-they-were": {},
    "doubtful-name": near(OF_ENTRY, PERSON),
    "text-lost": near(LINE, GONE, CHANGED, PERSON, TEXT) | near(NEAR, BROKEN, ENTRY)
                 | near(OF_ENTRY, FOREIGN),
    "unknown-journal": {},
    "line-cut": near(LINE, STRING, TEXT) | near(AFTER, *DAMAGE),
    "braced-journal": near(LINE, CHANGED, RENAMED, TWICE, GONE, TEXT),
    "non-ascii-name": near(OF_ENTRY, ENCODING),
    "character": {},
    "line-left-out": near(NAME, GONE),
    "torn-value": near(OF_ENTRY, GONE, CHANGED) | near(NEAR, *FOLLOWING),
    "renamed-tag": near(LINE, RENAMED, TEXT, GONE) | near(OF_ENTRY, FOREIGN),
    "tag-twice": near(TAG, TWICE, GONE),
    "broken-head": near(OF_ENTRY, MISSING, *DAMAGE),
    "unknown-tag": near(NAME, GONE),
    # What befalls a dropped entry is one loss; another one of its key may stand in its place.
    "entry-dropped": near(OF_ENTRY, ENTRY, GONE, BROKEN) | near(LINE, TEXT)
                     | near(ITSELF, DIFFERS, VERDICT, FOREIGN, CHANGED),
    "large-output": {},
    "misread-key": {},
    "text-not-copied": near(LINE, TEXT, GONE, STRING, ENTRY),
    "bad-key": {},
    "line-breaks": {},
}


@dataclasses.dataclass
class Warning:
    kind: str
    file: str
    line: int
    key: str
    text: str


@dataclasses.dataclass
class Loss:
    what: str
    entry: object = None  # of the input: an entry, a definition or a text
    tag: object = None
    detail: str = ""
    lines: tuple = ()     # of the document: those that cite the entry
    after: object = None  # the entry that stands before it in the output and swallows it
    keys: tuple = ()      # further keys under which the log names the entry


OF_LINE = re.compile(r"was written over the kept entry '' of line (\d+)$")
ESCAPES = {"n": "\n", "t": "\t", "r": "\r", "\\": "\\"}


def unescape(field):
    return re.sub(r"\\(x[0-9a-f]{2}|.)", lambda match: ESCAPES.get(match.group(1)) or
                  chr(int(match.group(1)[1:], 16)), field)


def read_warnings(data):
    made = []
    for row in data.decode("latin-1").split("\n")[:-1]:
        kind, file, line, key, text = (unescape(field) for field in row.split("\t"))
        made.append(Warning(kind, file.rsplit("/", 1)[-1], int(line or 0), key, text))
    return made


def names(text, word):
    """Whether the text holds the word, letter case aside, with no letter or digit around it."""
    at = (text := text.lower()).find(word := word.lower())
    while at >= 0:
        around = text[at - 1:at] + text[at + len(word):at + len(word) + 1]
        if not any(letter.isalnum() for letter in around):
            return True
        at = text.find(word, at + 1)
    return False


class Neighbours:
    """The warnings of a run, to be found by line, by key and by kind."""

    def __init__(self, warnings, library, file):
        self.entries, self.library = library.entries, library
        self.starts = [entry.line for entry in library.entries]
        self.lines = library.line(len(library.text))
        self.places = {id(entry): number for number, entry in enumerate(library.entries)}
        self.places_by_key = {}
        for number, entry in enumerate(library.entries):
            self.places_by_key.setdefault(entry.key, []).append(number)
        self.by_line, self.by_key, self.wide = {}, {}, []
        for warning in warnings:
            if warning.kind not in KINDS:
                raise KeyError(f"judge.py: no row for the warnings of kind '{warning.kind}'")
            if {NAME, LIBRARY, CITED} & set(KINDS[warning.kind].values()):
                self.wide.append(warning)
            if warning.file == file:
                self.by_line.setdefault(warning.line, []).append(warning)
            if of_line := OF_LINE.search(warning.text):  # of an entry without a key
                self.by_line.setdefault(int(of_line.group(1)), []).append(warning)
            if warning.key:
                self.by_key.setdefault(warning.key.strip(), []).append(warning)

    def on(self, first, last):
        for line in range(first, last + 1):
            yield from self.by_line.get(line, ())

    def around(self, loss):
        """The warnings that may be of the loss's entry or of one beside it, with whether they are of
        the entry itself."""
        entry = loss.entry
        first = entry.line
        if getattr(loss.tag, "form", "") == "stray":  # it was meant for the entry before
            at = bisect.bisect_left(self.starts, entry.line) - 1
            first = self.starts[at] if at >= 0 else first
        for warning in self.on(first, entry.last):
            yield warning, True
        for key in (getattr(entry, "key", None) or "\0",) + loss.keys:
            for warning in self.by_key.get(key, ()):
                yield warning, True
        if not getattr(entry, "key", "") and id(entry) in self.places:
            # No key says whose the lines after it are: up to the next entry they are its own.
            for warning in self.on(entry.last + 1, self.next_line(entry) - 1):
                yield warning, True
        if id(entry) not in self.places:  # a text goes with the entry before it
            at = bisect.bisect_left(self.starts, entry.line) - 1
            key = self.entries[at].key if at >= 0 else ""
            for warning in self.by_key.get(key or "\0", ()):
                yield warning, True
        for entry in (loss.entry, loss.after) if loss.after else (loss.entry,):
            for first, last in self.ranges_of(loss, entry):
                for warning in self.on(first, last):
                    yield warning, False

    def begins_line(self, entry):
        start = self.library.line_start(entry.start)
        return not self.library.text[start:entry.start].strip(WHITE + "}\xef\xbb\xbf")

    def next_line(self, entry):
        """The line of the next entry; of the last one the line after the library."""
        at = self.places[id(entry)] + 1
        return self.starts[at] if at < len(self.starts) else self.lines + 1

    def ranges_of(self, loss, entry):
        """The lines of the entry and of those beside it; of entries of one key nobody knows which
        one is gone."""
        if id(entry) not in self.places:
            at = bisect.bisect_left(self.starts, entry.line)  # a text, before the entry `at`
            yield self.range(at - 1, at)
        elif loss.what in (ENTRY, BROKEN):
            for place in self.places_by_key[entry.key]:
                yield self.range(place - 1, place + 1)
        else:
            place = self.places[id(entry)]
            yield self.range(place - 1, place + 1)

    def range(self, before, after):
        """The lines from one entry to another; without one, from the first or to the last line. What
        BibTeX takes for an entry within a line, as a piece of a broken one, is passed over."""
        while 0 <= before and not self.begins_line(self.entries[before]):
            before -= 1
        while after < len(self.entries) and not self.begins_line(self.entries[after]):
            after += 1
        return (self.entries[before].line if before >= 0 else 1,
                self.entries[after].last if after < len(self.entries) else self.lines)


def explains(warning, loss, own):
    """Whether the warning names the loss; `own` says that it is of the loss's entry, None that it is
    of the run."""
    scope = KINDS[warning.kind].get(loss.what)
    if scope == CITED:
        if warning.key and warning.key.strip() != loss.entry.key:
            return False
        if warning.kind == "missing-citation" and warning.key != loss.entry.key:
            return False  # another key is missing: this one with blanks
        return warning.line in loss.lines and warning.file == DOCUMENT
    if warning.kind == "text-not-copied" and getattr(loss.tag, "form", "") == "stray":
        scope = AFTER  # of a text of several lines only the first is named
    if own is not None and loss.what == TEXT and warning.kind == "text-not-copied":
        # Of several lines it names the first.
        begin = loss.entry.begin if hasattr(loss.entry, "begin") else loss.entry.line
        return begin <= warning.line <= loss.entry.last
    if scope in (LIBRARY, NAME):
        return scope == LIBRARY or loss.tag is not None and names(warning.text, loss.tag.name)
    if own is None or scope is None:
        return False
    if loss.what == GONE and warning.kind == "tag-twice" and "the last" not in warning.text:
        return False  # both values stand in the output
    if warning.kind == "dropped-differs" and loss.what in (ENTRY, BROKEN, DIFFERS):
        if "BibTeX reads" in warning.text:  # it has nothing, or less, of the one that stays
            return bool(own)
        if loss.what != DIFFERS:
            return False  # the entry itself should stand in the output
    if scope == ITSELF:
        return loss.entry.line <= warning.line <= loss.entry.last
    if loss.what == FOREIGN and warning.kind == "unbraced-value":
        return own and "from the first brace on" in warning.text  # else no piece of it is printed
    if scope == NEAR or not own or scope == OF_ENTRY:
        return scope == NEAR or own
    if loss.what == RENAMED and warning.kind == "renamed-tag":
        return own and loss.detail.partition("'")[2] in warning.text
    if loss.tag is None:
        return scope in (LINE, AFTER) and loss.entry.line <= warning.line <= last_line(loss)
    on_line = loss.tag.line <= warning.line <= loss.tag.last
    if scope == AFTER and loss.entry.line <= warning.line <= loss.tag.last:
        return True
    return scope == LINE and on_line or any(names(warning.text, name) for name in names_of(loss))


def names_of(loss):
    """The name of the tag, and of those of equal value, for which nobody knows which one went."""
    yield loss.tag.name
    for tag in getattr(loss.entry, "tags", ()):
        if tag is not loss.tag and tag.text == getattr(loss.tag, "text", None):
            yield tag.name


def last_line(loss):
    """The last line of what was lost: of an entry its head, as its tags are judged one by one."""
    whole = loss.what in (BROKEN, FOREIGN) or not hasattr(loss.entry, "tags")
    return loss.entry.last if whole else loss.entry.line


def named(losses, warnings, library, file):
    """Each loss with the kinds of the warnings that name it."""
    near = Neighbours(warnings, library, file)
    for loss in losses:
        if loss.what in (ENTRY, BROKEN) and not loss.entry.tags:
            continue  # it held nothing
        kinds = {warning.kind for warning in near.wide if explains(warning, loss, None)}
        if loss.entry is not None:
            # What swallows the entry in the output is named when its own break is.
            for one in (loss, Loss(BROKEN, loss.after)) if loss.after else (loss,):
                kinds |= {warning.kind for warning, own in near.around(one)
                          if one.what in KINDS[warning.kind] and explains(warning, one, own)}
        yield loss, kinds


def core(text):
    """The value without the pairs of braces that stand around all of it, and without blanks there."""
    while text.startswith("{") and text.endswith("}"):
        depth = 0
        for at, byte in enumerate(text):
            depth += (byte == "{") - (byte == "}")
            if depth == 0:
                break
        if at < len(text) - 1:
            break
        text = text[1:-1].strip(WHITE)
    return text


class Entries:
    """The entries of an output, each to be taken once. `library` is the input: of several entries of
    one key each gets the one that is most like it. `key_of` gives the key that an entry has in the
    output."""

    def __init__(self, output, library=None, key_of=lambda entry: entry.key):
        self.by_key, self.inputs, self.pairs, self.key_of = {}, {}, {}, key_of
        self.text = output.text
        for entry in output.entries:
            self.by_key.setdefault(entry.key, []).append(entry)
        self.expect(library.entries if library else ())

    def expect(self, entries):
        """These are the entries of the input that may stand there."""
        for entry in entries:
            self.inputs.setdefault(self.key_of(entry), []).append(entry)

    def take(self, entry, same=core):
        """The entry that is most like the given one, or none."""
        key = self.key_of(entry)
        found = self.by_key.get(key)
        inputs = self.inputs.get(key, (entry,))
        if not found:
            return None
        if len(inputs) == 1:
            best = max(found, key=lambda other: (common(entry, other, same), -len(other.tags)))
            found.remove(best)
            return best
        if key not in self.pairs:
            heads = len(re.findall(r"@\w+[ \t]*[{(]\s*" + re.escape(key) + r"\s*[,\n]", self.text))
            self.pairs[key] = pairs(inputs, found, heads, same)
        return self.pairs[key].get(id(entry))


def common(one, other, same):
    """How many tags two entries have in common."""
    wanted = collections.Counter((tag.low, same(tag.text)) for tag in one.tags)
    return (wanted & collections.Counter((tag.low, same(tag.text)) for tag in other.tags)).total()


def pairs(inputs, found, heads, same):
    """The entries of the output, each under the id of that of the input that is most like it, equal
    ones in their order. Where some are missing, as there are fewer than inputs or than `heads` in
    the output's text, one that has less than half in common is another one."""
    likeness = sorted((-common(one, other, same), len(one.tags), at, place)
                      for at, one in enumerate(inputs) for place, other in enumerate(found))
    made, taken = {}, set()
    some_missing = len(found) < max(len(inputs), heads)
    for count, _, at, place in likeness:
        is_other = some_missing and -2 * count < len(inputs[at].tags)
        if id(inputs[at]) not in made and place not in taken and not is_other:
            made[id(inputs[at])] = found[place]
            taken.add(place)
    return made


def compare_tags(old, new, same=core):
    """What happened to the tags of an entry on its way from `old` to `new`. An empty value is none;
    but one that hides a value of the same name is reported."""
    left = [(tag.low, same(tag.text)) for tag in new.tags]
    pairs = [(tag.low, same(tag.text)) for tag in old.tags]
    if left == pairs and new.whole:
        return
    missed = []
    for tag, pair in zip(old.tags, pairs):
        if pair in left:
            left.remove(pair)
        else:
            missed.append((tag, pair))
    gone = []
    # A tag whose own name holds the new one comes first; values may be equal.
    missed.sort(key=lambda one: not any(
        pair[0] in one[1][0] and pair[1] == one[1][1] for pair in left))
    for tag, (name, text) in missed:
        # A value of the tag of that name that is another one now may equal it by chance.
        elsewhere = [pair for pair in left if text and pair[1] == text
                     and (pair[0] in name or not any(tag.low == pair[0] for tag, _ in missed))]
        elsewhere.sort(key=lambda pair: pair[0] not in name)
        here = [pair for pair in left if pair[0] == name]
        if elsewhere:
            left.remove(elsewhere[0])
            yield Loss(RENAMED, old, tag, f"is now a '{elsewhere[0][0]}'")
        elif here:
            left.remove(here[0])
            yield Loss(CHANGED, old, tag, f"is now '{here[0][1][:80]}'")
        else:
            gone.append(tag)
    if old.whole and not new.whole:
        # BibTeX reports an error in the new entry; what it does not read after it is one loss.
        lost = {id(tag) for tag in gone}
        kept = max((tag.start for tag in old.tags if id(tag) not in lost), default=-1)
        following = [tag for tag in gone if tag.start > kept]
        gone = [tag for tag in gone if tag.start < kept]
        yield Loss(BROKEN, old, None, "without " + ", ".join(tag.name for tag in following))
    for tag in gone:
        if tag.text:
            yield Loss(GONE, old, tag)
    had = {tag.low: tag for tag in old.tags}
    for name, text in left:
        what = TWICE if name in had else FOREIGN
        if text or what == TWICE:
            yield Loss(what, old, had.get(name), f"has a '{name}' more: '{text[:80]}'")
