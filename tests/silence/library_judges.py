# SPDX-License-Identifier: MIT
"""Judges of the operations that write a library: each says what of the input does not stand in the
outputs as the operation promises, and is not named in the log either."""
import dataclasses
import re

import people
from bibtex import Library
from judge import (BROKEN, CHANGED, DIFFERS, ENCODING, ENTRY, GONE, PARENT, PERSON, STRING, TEXT,
                   VERDICT,                   Entries, Loss, compare_tags, core)

BAD = re.compile(r"[^\x20-\x7e\t\n\r]")
OWN_HEADER = re.compile(r"#\n\nThis BibTeX file has been created by .*\n\n.*\n\n#\n")
OWN_HEADER_LINES = 7
# What makes two entries different works, whatever else they say.
IDENTITY = ("title", "author", "year", "doi", "eprint")
# What a verdict on two articles rests on besides.
COMPARED = ("journal", "volume", "pages")


def as_is(text):
    return text


def plain(text):
    """The text without letter case, braces, blanks and what an encoding changes."""
    return re.sub(r"[{} \t\r\n?]|[^\x00-\x7f]", "", text).lower()


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


def definitions(run, output):
    """Definitions that do not stand in the output as they were."""
    found = [(tag.low, tag.text) for tag in output.strings]
    for tag in run.library.strings:
        pair = (tag.low, tag.text)
        if pair in found:
            found.remove(pair)
        else:
            yield Loss(STRING, tag, tag)
    texts = [tag.text for tag in output.preambles]
    for tag in run.library.preambles:
        if tag.text not in texts:
            yield Loss(TEXT, tag, tag, "a preamble")


def used_definitions(run, entries):
    """Definitions that are not copied although entries that use them are."""
    used = {macro for entry in entries for tag in entry.tags for macro in tag.macros}
    for tag in run.library.strings:
        if tag.low in used:
            yield Loss(STRING, tag, tag)


def texts(run, output=None):
    """Text outside entries that does not stand in the output. The header of an earlier run goes."""
    kept = output.text.lower() if output else ""
    headers = set()
    for match in OWN_HEADER.finditer(run.library.text.replace("\r\n", "\n")):
        first = match.string.count("\n", 0, match.start()) + 1
        headers.update(range(first, first + OWN_HEADER_LINES))
    for loose in run.library.paragraphs():
        text = loose.text.lower().replace("\r\n", "\n")
        if not {loose.line, loose.last} <= headers and text not in kept:
            yield Loss(TEXT, loose, None, repr(loose.text[:60]))


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
    entries = Entries(output, run.library)

    def cleaned(text):
        return BAD.sub("?", text)

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
        new = entries.take(entry, cleaned(entry.key), cleaned)
        if not new:
            yield entry_gone(entry, output)
            continue
        losses = list(compare_tags(entry, new, cleaned))
        yield from losses
        for tag in entry.tags:
            if tag not in [loss.tag for loss in losses] and not is_logged(tag):
                yield Loss(CHANGED, entry, tag, "bytes without a place in the log")
    for loss in definitions(run, output):
        text = run.library.text[loss.tag.value:loss.tag.end]
        if not BAD.search(text):
            yield loss


def removed_tags(run):
    """The names that the log of Clean tags gives, a set for each key."""
    named = {}
    for key, listed in re.findall(r"The following tags have been removed from the entry '(.*)':\n"
                                  r"(.*)\n\n", log_of(run, "_tag.log")):
        for name in listed.split(", "):
            named.setdefault(key.strip(), set()).add(name.lower())
    return named


def clean_tags(run):
    output = read_output(run, "_tag.bib")
    entries, removed = Entries(output, run.library), removed_tags(run)
    for entry in run.library.entries:
        new = entries.take(entry)
        if not new:
            if {tag.low for tag in entry.tags} > {"owner", "timestamp"} or not entry.whole:
                yield entry_gone(entry, output)
            continue
        named = removed.get(entry.key, ())
        for loss in compare_tags(entry, new):
            if loss.what != GONE or squeeze(loss.tag.name) not in named:
                yield loss
    gone = re.findall(r"@STRING has been removed:\n    (.*)", log_of(run, "_tag.log"))
    logged = " ".join(gone).lower()
    for loss in definitions(run, output):
        if not re.search(rf"[{{(]\s*{re.escape(loss.tag.low)}\s*=", logged):
            yield loss
    mentioned = "".join(name for names in removed.values() for name in names)
    for loss in texts(run):
        if squeeze(loss.entry.text.split("\n")[0]) not in mentioned:
            yield loss


def squeeze(text):
    """A name as the log gives it."""
    return re.sub("[ \t.:;]", "", text.lower())


def clean_authors(run):
    output = read_output(run, "_author.bib")
    entries = Entries(output, run.library)
    for entry in run.library.entries:
        new = entries.take(entry)
        if not new:
            yield entry_gone(entry, output)
            continue
        for loss in compare_tags(entry, new, as_is):
            if loss.what != CHANGED or loss.tag.low != "author":
                yield loss
                continue
            lists = next((text for text in new.values("author") if text != loss.tag.text), "")
            if not lists and loss.tag.text:
                yield loss
            elif change := people.change(loss.tag.text, lists):
                yield Loss(PERSON, entry, loss.tag, f"{change}: '{loss.tag.text[:70]}' is now "
                                                    f"'{lists[:70]}'")
    yield from definitions(run, output)
    yield from texts(run, output)


RENAMED_JOURNAL = re.compile(
    r"Entry '(.*)':\nThe name of the Journal '.*', which is named '(.*)' in the BibTeX library,\n"
    r"has been renamed to: '(.*)'\n")


def written(run, tag):
    return core(run.library.text[tag.value:tag.end].strip())


def journals(run):
    output = read_output(run, "_journal.bib")
    entries = Entries(output, run.library)
    renamed = {}
    for key, old, new in RENAMED_JOURNAL.findall(log_of(run, "_journal.log")):
        renamed.setdefault(key.strip(), set()).add((core(old.strip()), core(new)))
    pure = run.library.text.isascii()
    for entry in run.library.entries:
        new = entries.take(entry)
        if not new:
            yield entry_gone(entry, output)
            continue
        for loss in compare_tags(entry, new, as_is):
            names = [core(tag.text) for tag in new.tags
                     if loss.tag and tag.low == loss.tag.low]
            logged = [name for name in names if loss.what == CHANGED
                      and renamed.get(entry.key, set()) & {(core(loss.tag.text), name),
                                                           (written(run, loss.tag), name)}]
            if not logged:
                yield loss
            elif pure and not logged[0].isascii():
                yield Loss(ENCODING, entry, loss.tag, f"is now '{logged[0]}'")
    yield from definitions(run, output)
    yield from texts(run, output)


def copied(run, entry, entries, key=None):
    """Whether an equal entry stands among the output's; if so it is taken."""
    for other in entries.by_key.get(entry.key if key is None else key, ()):
        if other.type == entry.type and not list(compare_tags(entry, other, as_is)):
            entries.by_key[other.key].remove(other)
            return True
    return False


def differences(entry, kept):
    """What a dropped entry says of its identity, or of what was compared, that the kept one does not.
    """
    compared = COMPARED if entry.type == kept.type == "article" else ()
    for tag in entry.tags:
        if tag.low in IDENTITY + compared and plain(tag.text):
            values = kept.values(tag.low)
            same = plain(tag.text) in [plain(text) for text in values]
            what = DIFFERS if tag.low in IDENTITY else VERDICT
            if not same and (what == DIFFERS or values):
                yield Loss(what, entry, tag, f"'{kept.key}' stays with '{' | '.join(values)[:60]}'")


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
    kept = {}
    for entry in run.library.entries + output.entries:
        kept.setdefault(entry.key, []).append(entry)
    later = []
    for entry in run.library.entries:
        if copied(run, entry, entries) or any(copied(run, entry, entries, key)
                                              for key in renames.get(entry.key, ())):
            continue
        stays = [other for key in same.get(entry.key, ()) for other in kept.get(key, ())
                 if other is not entry]
        if stays:
            losses = [list(differences(entry, other)) for other in stays]
            yield from min(losses, key=len)
        else:
            later.append(entry)
    for entry in later:
        new = entries.take(entry)
        if new:
            yield from compare_tags(entry, new, as_is)
        else:
            yield entry_gone(entry, output)
    yield from used_definitions(run, output.entries)
    yield from orphans(run, output.entries)
    yield from texts(run, output)


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
    for entry in run.other.entries:
        kept.setdefault(entry.key.upper(), []).append(entry)
    later = []
    for entry in run.library.entries:
        if copied(run, entry, missing):
            continue
        stays = [other for key in found.get(entry.key.upper(), ()) for other in kept.get(key, ())]
        if stays:
            yield from min((list(differences(entry, other)) for other in stays), key=len)
        else:
            later.append(entry)
    for entry in later:
        new = missing.take(entry)
        if new:
            yield from compare_tags(entry, new, as_is)
        else:
            yield entry_gone(entry, output)


def extract(run):
    """The library of the cited entries; the references are judged in references.py."""
    output = read_output(run, "_extract.bib")
    entries = Entries(output, run.library)
    for entry, lines in run.cited():
        new = entries.take(entry)
        if new:
            yield from compare_tags(entry, new, as_is)
        else:
            yield dataclasses.replace(entry_gone(entry, output), lines=lines)
    yield from used_definitions(run, output.entries)
    yield from orphans(run, output.entries)
