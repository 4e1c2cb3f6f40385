# SPDX-License-Identifier: MIT
"""Judges of the operations that write a library: each says what of the input does not stand in the
outputs as the operation promises, and is not named in the log either."""
import bisect
import dataclasses
import re

import people
from causes import TYPES
from bibtex import JOINED, PLAIN_BRACES, WHITE, Library, Loose, Tag
from judge import (BROKEN, CHANGED, DIFFERS, ENCODING, ENTRY, FOREIGN, GONE, PARENT, PERSON,
                   STRING, TEXT,
                   VERDICT, Entries, Loss, compare_tags, core, read_warnings)

BAD = re.compile(r"[^\x20-\x7e\t\n\r]")
OWN_HEADER = re.compile(r"#\n\nThis BibTeX file has been created by .*\n\n.*\n\n#\n")
OWN_HEADER_LINES = 7
ENCODING_NOTE = re.compile(r"^(?:\xef\xbb\xbf)?[ \t]*% Encoding: ", re.MULTILINE)
HEAD = re.compile(r"\s*@(?!comment|string|preamble)\w+\s*[{(]\s*([^,\s]+)", re.IGNORECASE)
HEADS = re.compile(r"@(?!comment|string|preamble)\w+\s*[{(]\s*([^,\s{}]*)\s*,", re.IGNORECASE)
# An entry, known to BibTeX or not, that Clean tags drops as empty.
EMPTY_ENTRY = re.compile(r"\s*@\w+\{.*\n.*owner.*\n.*timestamp")
# A line that begins as a tag does: its name and the rest.
TAG_LINE = re.compile(r"[%,\s]*([A-Za-z][\w:.+-]*)\s*=\s*(.*)")
# What makes two entries different works, whatever else they say.
IDENTITY = ("title", "author", "year", "doi", "eprint")
# What a verdict on two articles rests on besides.
COMPARED = ("journal", "volume", "pages")


def as_is(text):
    return text


def plain(text):
    """The text without letter case, braces, blanks, control bytes and what an encoding changes."""
    return re.sub(r"[{} ?]|[^\x20-\x7e]", "", text).lower()


def read_output(run, suffix):
    """A library that the run wrote. It knows the definitions of the input, whose own loss is judged
    by itself."""
    return Library(run.outputs[suffix], run.library.macros)


def log_of(run, suffix):
    return run.outputs[suffix].decode("latin-1")


def entry_gone(entry, output):
    """The loss of an entry that BibTeX does not see in the output."""
    # The head stands there all the same.
    head = re.compile(r"@\s*\w+\s*[{(]\s*" + re.escape(entry.key) + r"\s*[,\n]")
    return Loss(BROKEN if entry.key and head.search(output.text) else ENTRY, entry)


class Breaks:
    """Which entry stands before a broken one in the output and swallows it, as it does not end."""

    def __init__(self, run, output):
        self.library, self.output = run.library, output
        self.inputs = by_key(run.library.entries)
        self.whole = {entry.start for entry in output.entries if entry.whole}
        self.heads = list(HEADS.finditer(output.text))
        self.places = {}  # of the heads of a key
        for place, head in enumerate(self.heads):
            self.places.setdefault(head.group(1), []).append(place)

    def of(self, loss):
        """The loss with the first of the entries right before it that are not whole."""
        if loss.what not in (ENTRY, BROKEN):
            return loss
        broken = [place for place in self.places.get(loss.entry.key, ())
                  if not self.is_whole(place)]
        return dataclasses.replace(loss, after=self.culprit(broken[0])) if broken else loss

    def of_text(self, loss):
        """The same for a definition or a preamble, whose text stands in the output all the same."""
        wanted = self.library.text[loss.tag.start:loss.tag.end]
        start = self.output.text.lower().find(wanted.lower())
        if start < 0:
            return loss
        place = bisect.bisect_left(self.heads, start, key=lambda head: head.start())
        return dataclasses.replace(loss, after=self.culprit(place))

    def culprit(self, at):
        """The first of the entries right before a head that are not whole."""
        found = None
        while at > 0 and not self.is_whole(at - 1):
            at -= 1
            found = self.input_of(at) or found
        return found

    def is_whole(self, place):
        return self.heads[place].start() in self.whole

    def input_of(self, place):
        """The entry of the input: of several with one key the one of the same number."""
        key = self.heads[place].group(1)
        inputs = self.inputs.get(key, ())
        number = self.places[key].index(place)
        return inputs[min(number, len(inputs) - 1)] if inputs else None


def by_key(entries):
    made = {}
    for entry in entries:
        made.setdefault(entry.key, []).append(entry)
    return made


def definitions(run, output, breaks):
    """Definitions that do not stand in the output as they were."""
    found = [(tag.low, tag.text) for tag in output.strings]
    for tag in run.library.strings:
        pair = (tag.low, tag.text)
        if pair in found:
            found.remove(pair)
        else:
            yield breaks.of_text(Loss(STRING, tag, tag))
    texts = [tag.text for tag in output.preambles]
    for tag in run.library.preambles:
        if tag.text not in texts:
            yield breaks.of_text(Loss(TEXT, tag, tag, "a preamble"))


def used_definitions(run, entries):
    """Definitions that are not copied although entries that use them are."""
    used = {macro for entry in entries for tag in entry.tags for macro in tag.macros}
    for tag in run.library.strings:
        if tag.low in used:
            yield Loss(STRING, tag, tag)


def header_lines(text):
    """The lines of the header of an earlier run, and of JabRef's note on the encoding: both are
    made anew by whoever writes the library."""
    headers = set()
    for match in OWN_HEADER.finditer(text.replace("\r\n", "\n")):
        first = match.string.count("\n", 0, match.start()) + 1
        headers.update(range(first, first + OWN_HEADER_LINES))
    notes = ENCODING_NOTE.finditer(text)
    return headers | {text.count("\n", 0, match.end()) + 1 for match in notes}


def essence(text):
    """The letters and digits alone."""
    return re.sub(r"[^0-9a-z\x80-\xff]", "", text.lower())


def texts(run, output, named="", is_named=lambda tag: False):
    """Lines outside entries that do not stand in the output; `named` is what a log says of them. A
    line that reads as a tag may stand there in another form: it was meant for one, and BibTeX passes
    over it for an error before it. `is_named`: whether a log names such a tag."""
    kept = output.text.lower()
    forms = None
    headers = header_lines(run.library.text)
    for loose in run.library.paragraphs():
        if loose.text.lower().replace("\r\n", "\n") in kept:
            continue
        forms = essence(kept) + "\n" + essence(named) if forms is None else forms
        lost = []
        if head := HEAD.match(loose.text):
            loose.key = head.group(1)  # an entry whose head BibTeX cannot read
        begin = begin_of_text(run.library, loose)
        for number, last, line in pieces(loose):
            if number in headers or not line.strip(WHITE + ",)}") or line.strip(WHITE).lower() in kept:
                continue
            tag = TAG_LINE.match(line)
            if not tag:
                lost.append((number, line))
            elif essence(line) not in forms and not is_named(tag):
                yield Loss(GONE, loose, stray(tag, number, last))
        for number, line in lost[:1]:
            piece = Loose(line, number, lost[-1][0], begin)
            piece.key = loose.key
            yield Loss(TEXT, piece, None, repr(line[:60]))


def begin_of_text(library, loose):
    """The first line of a text: that of the entry before it if BibTeX stops reading the entry there,
    so that both are one text for who copies neither."""
    at = bisect.bisect_right(library.entries, loose.line, key=lambda entry: entry.line) - 1
    if at < 0 or library.entries[at].whole or library.entries[at].last < loose.line - 1:
        return loose.line
    return library.entries[at].line


def pieces(loose):
    """The lines of a text; one that opens a brace goes on to where it closes. Each with the numbers
    of the first and the last one."""
    piece, first, depth = "", 0, 0
    for number, line in enumerate(loose.text.split("\n"), loose.line):
        first = number if depth <= 0 else first
        piece = line if depth <= 0 else piece + " " + line.strip(WHITE)
        if depth > 0 or TAG_LINE.match(line):
            depth = max(depth, 0) + line.count("{") - line.count("}")
        if depth <= 0:
            yield first, number, piece
    if depth > 0:
        yield first, number, piece


def stray(match, number, last):
    """The tag that stands in such a line."""
    tag = Tag(match.group(1), match.group(2), "stray", (), 0, 0, 0)
    tag.line, tag.last = number, last
    return tag


def orphans(run, copied):
    """Copied entries whose parent is not copied."""
    keys = {entry.key.lower() for entry in copied}
    parents = {entry.key.lower() for entry in run.library.entries}
    for entry in copied:
        for tag in entry.tags:
            if tag.low == "crossref" and tag.text.lower() in parents - keys:
                yield Loss(PARENT, entry, tag)


def clean_characters(run):
    output = read_output(run, "_char.bib")
    found = re.findall(r"in line (\d+) and row (\d+)\n", log_of(run, "_char.log"))
    logged = {(int(line), int(column)) for line, column in found}

    def cleaned(text):
        return BAD.sub("?", text)

    entries = Entries(output, run.library, lambda entry: cleaned(entry.key))
    breaks = Breaks(run, output)

    def rest_of_line(tag):
        return run.library.text[tag.end:run.library.line_end(tag.end)]

    def is_logged(tag):
        if run.has_long_line:
            return True  # the log counts the pieces of such a line
        for match in BAD.finditer(run.library.text[tag.value:tag.end]):
            at = tag.value + match.start()
            place = (run.library.line(at), at - run.library.line_start(at) + 1)
            if place not in logged:
                return False
        return True

    for entry in run.library.entries:
        new = entries.take(entry, cleaned)
        if not new:
            yield breaks.of(entry_gone(entry, output))
            continue
        losses = list(own_tags(run, entry, new, cleaned))
        for loss in losses:
            # A macro's name with bad bytes ends before them, for BibTeX, and is longer now.
            if loss.what != CHANGED or not BAD.search(rest_of_line(loss.tag)):
                yield loss
        for tag in entry.tags:
            if tag not in [loss.tag for loss in losses] and not is_logged(tag):
                yield Loss(CHANGED, entry, tag, "bytes without a place in the log")
    for loss in definitions(run, output, breaks):
        text = run.library.text[loss.tag.value:loss.tag.end]
        if not BAD.search(text):
            yield loss


def removed_tags(run):
    """The names that the log of Clean tags gives, a set for each key."""
    named = {}
    for key, listed in re.findall(r"The following tags have been removed from the entry '(.*)':\n"
                                  r"(.*)\n\n", log_of(run, "_tag.log")):
        for name in listed.split(", "):
            named.setdefault(key.strip(), set()).add(name.lower().strip(","))
    return named


def clean_tags(run):
    output = read_output(run, "_tag.bib")
    breaks = Breaks(run, output)

    def key_of(entry):
        """A head without its comma loses the last letter of the key."""
        head = run.library.lines(entry.line, entry.line).rstrip("\r\n")
        return entry.key[:-1] if head.endswith(entry.key) else entry.key

    entries, removed = Entries(output, run.library, key_of), removed_tags(run)
    for entry in run.library.entries:
        new = entries.take(entry)
        if not new:
            if {tag.low for tag in entry.tags} > {"owner", "timestamp"} or not entry.whole:
                yield breaks.of(entry_gone(entry, output))
            continue
        # A head without its comma loses the key's last letter.
        named = removed.get(entry.key, set()) | removed.get(entry.key[:-1], set())
        for loss in own_tags(run, entry, new):
            if loss.what != GONE or squeeze(loss.tag.name) not in named:
                yield loss
    gone = re.findall(r"@STRING has been removed:\n    (.*)", log_of(run, "_tag.log"))
    logged = " ".join(gone).lower()
    for loss in definitions(run, output, breaks):
        if not re.search(rf"[{{(]\s*{re.escape(loss.tag.low)}\s*=", logged):
            yield loss
    mentioned = {squeeze(name).lstrip("},") for names in removed.values() for name in names}
    for loss in texts(run, output, is_named=lambda tag: squeeze(tag.group(1)) in mentioned):
        # A comment may be taken for a tag: the log names it by what stands before its first "=".
        text = squeeze(loss.entry.text.partition("\n")[0]).lstrip("},")
        is_empty = EMPTY_ENTRY.match(run.library.lines(loss.entry.line, loss.entry.line + 2))
        if not is_empty and not any(name and (text.startswith(name) or name.startswith(text)) for name in mentioned):
            yield loss


def squeeze(text):
    """A name as the log gives it."""
    return re.sub("[ \t\r.:;]", "", text.lower())


def new_list(old, new, tag):
    """What became of the list of authors; an entry may have more than one."""
    lists = new.values("author")
    tags = [other for other in old.tags if other.low == "author"]
    if len(lists) == len(tags):
        return lists[next(at for at, other in enumerate(tags) if other is tag)]
    return next((text for text in lists if text != tag.text), "")


def clean_authors(run):
    output = read_output(run, "_author.bib")
    entries, breaks = Entries(output, run.library), Breaks(run, output)
    for entry in run.library.entries:
        new = entries.take(entry)
        if not new:
            yield breaks.of(entry_gone(entry, output))
            continue
        for loss in own_tags(run, entry, new, as_is):
            if loss.what != CHANGED or loss.tag.low != "author":
                yield loss
                continue
            lists = new_list(entry, new, loss.tag)
            if not lists and loss.tag.text:
                yield loss
            elif change := people.change(loss.tag.text, lists):
                yield Loss(PERSON, entry, loss.tag, f"{change}: '{loss.tag.text[:70]}' is now "
                                                    f"'{lists[:70]}'")
    yield from definitions(run, output, breaks)
    log = log_of(run, "_author.log")
    lists = essence(log)
    yield from texts(run, output, log, lambda tag: essence(tag.group(2)) in lists)


RENAMED_JOURNAL = re.compile(
    r"Entry '(.*)':\nThe name of the Journal '.*', which is named '(.*)' in the BibTeX library,\n"
    r"has been renamed to: '(.*)'\n")


def written(run, tag):
    return core(run.library.text[tag.value:tag.end].strip())


def is_logged(renamed, run, tag, name):
    """Whether the log says that the journal got this name; of joined pieces the first did."""
    texts = core(tag.text), written(run, tag)
    return any(name in (new, new + text.removeprefix(old)) and text.startswith(old)
               for old, new in renamed for text in texts if text == old or tag.form == JOINED)


def journals(run):
    output = read_output(run, "_journal.bib")
    entries, breaks = Entries(output, run.library), Breaks(run, output)
    renamed = {}
    for key, old, new in RENAMED_JOURNAL.findall(log_of(run, "_journal.log")):
        renamed.setdefault(key.strip(), set()).add((core(old.strip()), core(new)))
    pure = run.library.text.isascii()
    for entry in run.library.entries:
        new = entries.take(entry)
        if not new:
            yield breaks.of(entry_gone(entry, output))
            continue
        for loss in own_tags(run, entry, new, as_is):
            names = [core(tag.text) for tag in new.tags
                     if loss.tag and tag.low == loss.tag.low]
            logged = [name for name in names if loss.what == CHANGED
                      and is_logged(renamed.get(entry.key, set()), run, loss.tag, name)]
            if not logged:
                yield loss
            elif pure and not logged[0].isascii():
                yield Loss(ENCODING, entry, loss.tag, f"is now '{logged[0]}'")
    yield from definitions(run, output, breaks)
    log = log_of(run, "_journal.log")
    names = essence(log)
    # Of a line of several tags the log names the journal alone.
    yield from texts(run, output, log, lambda tag: essence(first_value(tag.group(2))) in names)


def first_value(text):
    """The first value in braces of a text that begins with one, else all of it."""
    match = PLAIN_BRACES.match(text)
    return match.group(1) if match else text


def own_tags(run, old, new, same=core):
    """What happened to the tags of an entry, but for those that it has more because BibTeX read less
    of it before: it reports an error, or the entry ends early and goes on after a comma."""
    following = run.library.following(old)
    for loss in compare_tags(old, new, same):
        meant = loss.what == FOREIGN and (not old.whole or following.lstrip(WHITE).startswith(","))
        if not meant or essence(loss.detail.partition(": '")[2]) not in essence(following):
            yield loss


def copied(run, entry, entries, key=None):
    """Whether an equal entry stands among the output's; if so it is taken."""
    own = [(tag.low, tag.text) for tag in entry.tags]
    for other in entries.by_key.get(entry.key if key is None else key, ()):
        tags = [(tag.low, tag.text) for tag in other.tags]
        if other.type == entry.type and tags == own and other.whole >= entry.whole:
            entries.by_key[other.key].remove(other)
            return True
    return False


def compared_text(name, text):
    """What of a value is compared: of pages the first one."""
    return plain(text.partition("-")[0] if name == "pages" else text)


def is_cut(entry, entries):
    """Whether the first of its tags, but not all, are copied: it is no double then."""
    own = [(tag.low, tag.text) for tag in entry.tags]
    return any(0 < len(other.tags) < len(own)
               and own[:len(other.tags)] == [(tag.low, tag.text) for tag in other.tags]
               for other in entries.by_key.get(entry.key, ()))


def differences(entry, kept):
    """What a dropped entry says of its identity, or of what was compared, that the kept one does not.
    """
    compared = COMPARED if entry.type == kept.type == "article" else ()
    for tag in entry.tags:
        if tag.low in IDENTITY + compared and plain(tag.text):
            values = kept.values(tag.low)
            same = compared_text(tag.low, tag.text) in [compared_text(tag.low, text)
                                                        for text in values]
            what = DIFFERS if tag.low in IDENTITY else VERDICT
            if not same and (values or what == DIFFERS):
                yield Loss(what, entry, tag, f"'{kept.key}' stays with '{' | '.join(values)[:60]}'")


def closest(entry, stays):
    """The differences from that of the kept entries that is most like the dropped one. Of several
    nobody knows with which one it was compared."""
    losses = min((list(differences(entry, other)) for other in stays), key=len)
    for loss in losses:
        yield dataclasses.replace(loss, what=VERDICT) if len(stays) > 1 else loss


def named_entries(*libraries):
    """The entries under the keys by which a log names them: an entry of which the key does not stand
    on its first line has none there."""
    named = {}
    for library in libraries:
        for entry in library.entries:
            named.setdefault(entry.key, []).append(entry)
            if entry.key and not library.lines(entry.line, entry.line).count(entry.key):
                named.setdefault("", []).append(entry)
    return named


def stands(entry, run, output, taken):
    """Whether the entry's text stands in the output where BibTeX, for what is before it, does not
    see it; each place counts once."""
    text = run.library.text[entry.start:entry.end].replace("\r\n", "\n")
    starts = {other.start for other in output.entries} | taken
    at = output.text.find(text)
    while at in starts:
        at = output.text.find(text, at + 1)
    if at >= 0:
        taken.add(at)
    return at >= 0


def verdicts(log, starts):
    """Pairs of keys that the log calls the same: of the first the list of the second ones."""
    found = {}
    for start in starts:
        for rest in re.findall(start + r"(.*)", log):
            rest = rest[:-1] if rest.endswith(")") else rest
            for separator in (" and ", " "):
                for match in re.finditer(separator, rest):
                    first, second = rest[:match.start()], rest[match.end():]
                    found.setdefault(first.strip(), []).append(second.strip())
    return found


def clean_doubles(run):
    output = read_output(run, "_double.bib")
    entries, log = Entries(output), log_of(run, "_double.log")
    same = verdicts(log, (r"Exactly the same : ", r"Probably the same : ", r"Probably the same: "))
    renames = verdicts(log.replace(" to ", " and "), (r"New name for bibitem No\.1: from ",))
    kept = named_entries(run.library, output)
    later, dropped = [], []
    for entry in run.library.entries:
        if copied(run, entry, entries) or any(copied(run, entry, entries, key)
                                              for key in renames.get(entry.key, ())):
            continue
        stays = [other for key in same.get(entry.key, ()) for other in kept.get(key, ())
                 if other is not entry]
        if stays and not is_cut(entry, entries):
            yield from closest(entry, stays)
            following = run.library.following(entry).count("\n")
            dropped.append((entry, range(entry.line, entry.last + following + 1)))
        else:
            later.append(entry)
    breaks = Breaks(run, output)
    entries.expect(later)
    for entry in later:
        new = entries.take(entry)
        if new:
            yield from compare_tags(entry, new, as_is)
        else:
            # The one that it was dropped for, or it under its new key, may have been overwritten.
            loss = breaks.of(entry_gone(entry, output))
            keys = same.get(entry.key, []) + renames.get(entry.key, [])
            yield dataclasses.replace(loss, keys=tuple(keys))
    yield from used_definitions(run, output.entries)
    yield from orphans(run, output.entries)
    for loss in texts(run, output):
        # What BibTeX does not read of a dropped entry went with it, and so did an entry of which it
        # cannot read the head: the log says so, or names its new key.
        if getattr(loss.entry, "key", "") in same | renames:
            continue
        if not any(loss.tag.line in lines if loss.tag else is_inside(loss.entry, entry, run.library)
                   for entry, lines in dropped):
            keys = {entry.key: renames.get(entry.key, []) for entry in before(loss.entry, run.library)}
            yield dataclasses.replace(loss, keys=tuple(keys) + tuple(sum(keys.values(), [])))


def is_inside(text, entry, library):
    """Whether the text stands in an entry of which BibTeX reads a part: before the line that ends it.
    """
    if entry.whole or text.line < entry.line:
        return False
    end = library.text.find("\n}", entry.end - 1)
    return text.line <= library.line(end if end >= 0 else len(library.text))


def before(text, library):
    """The entry before a text, if there is one, and of those of unknown types, which are read as
    parts of it, the one before them."""
    at = end = bisect.bisect_right(library.entries, text.line, key=lambda entry: entry.line)
    while at > 0 and library.entries[at - 1].type not in TYPES:
        at -= 1
    return library.entries[max(at - 1, 0):end]


def compare(run):
    """The second library is the one that is looked for in the first."""
    output = read_output(run, "_comp_missing.bib")
    missing = Entries(output)
    log = log_of(run, "_comp.log")
    same = verdicts(log, (r" - Exactly the same : ", r" - Probably the same : ",
                          r" - One of the two entries \("))
    found = {}
    for first, seconds in same.items():
        for second in seconds:
            found.setdefault(second, []).append(first)
    kept = {}
    for key, known in named_entries(run.other).items():
        kept.setdefault(key.upper(), []).extend(known)
    later, taken = [], set()
    for entry in run.library.entries:
        if copied(run, entry, missing):
            continue
        stays = [other for key in found.get(entry.key.upper(), ()) for other in kept.get(key, ())]
        if is_cut(entry, missing) or stands(entry, run, output, taken):
            later.append(entry)
        elif stays:
            yield from closest(entry, stays)
        elif entry.key.upper() in found:
            yield Loss(ENTRY, entry, None, "BibTeX cannot read the one that stays")
        else:
            later.append(entry)
    breaks = Breaks(run, output)
    missing.expect(later)
    for entry in later:
        new = missing.take(entry)
        if new:
            yield from compare_tags(entry, new, as_is)
        else:
            yield breaks.of(entry_gone(entry, output))


def extract(run):
    """The library of the cited entries; the references are judged in references.py."""
    output = read_output(run, "_extract.bib")
    entries, breaks = Entries(output), Breaks(run, output)
    missing = {warning.key for warning in read_warnings(run.warnings)
               if warning.kind == "missing-citation"}
    keys = set(run.outputs["_extract.txt"].decode("latin-1").split("\n")) - missing
    for entry, lines in run.cited():
        # Where the key is not read, or said to have no entry, what stands there is a part of another.
        new = entries.take(entry) if entry.key in keys else None
        if new:
            yield from compare_tags(entry, new, as_is)
        else:
            yield breaks.of(dataclasses.replace(entry_gone(entry, output), lines=lines))
    yield from used_definitions(run, output.entries)
    yield from orphans(run, output.entries)
