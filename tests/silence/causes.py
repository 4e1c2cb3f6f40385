# SPDX-License-Identifier: MIT
"""Says for people what is odd about a value that was lost. No judgement rests on it."""
import re

TYPES = ("article book phdthesis incollection inproceedings misc other proceedings electronic booklet "
         "inbook masterthesis conference manual techreport unpublished standard periodical patent "
         "meetingabstract proceedingspaper letter review editorialmaterial").split()
NAMES = ("author booktitle title volume pages year journal month abstract note owner timestamp url "
         "comment number eid keywords crossref review doi file editor publisher address edition school "
         "series citeseerurl type chapter nationality yearfiled organization institution").split()


def of_tag(library, entry, tag):
    name = tag.low
    if tag.form != "braced":
        yield tag.form
    held = [known for known in NAMES if known in name and known != name]
    if held:
        yield f"a name that holds '{held[0]}'"
    elif name not in NAMES:
        yield "an unknown name"
    head = library.text.find("{", entry.start) if hasattr(entry, "tags") else -1
    if head >= 0 and library.line(head) == tag.line:
        yield "on the head's line"
    others = [other for other in getattr(entry, "tags", ()) if other is not tag]
    if any(other.line <= tag.last and tag.line <= other.last for other in others):
        yield "shares a line"
    if getattr(entry, "last", 0) == tag.last and getattr(entry, "whole", False):
        yield "with the entry's closing brace"
    if library.line(tag.value) != tag.line:
        yield "begins on the next line"
    written = library.text[tag.value:tag.end]
    lines = written.split("\n")
    if len(lines) > 1:
        yield "several lines"
    if any(line.lstrip()[:1] > "\x7f" for line in lines[1:]):
        yield "goes on with a letter beyond ASCII"
    if any(line.startswith("}") for line in lines[1:]):
        yield "a line that begins with '}'"
    if "@" in written:
        yield "an '@'"
    if any(len(line) > 990 for line in library.lines(tag.line, tag.last).split("\n")):
        yield "a long line"
    if re.search(r"[^\x20-\x7e\t\r\n\x80-\xff]", written):
        yield "control bytes"


def of_entry(library, entry):
    if not hasattr(entry, "tags"):
        return
    if entry.type not in TYPES:
        yield "an unknown type" + (" that begins like a known one" if any(
            entry.type.startswith(known) for known in TYPES) else "")
    head = library.lines(entry.line, entry.line)
    if "@" in entry.key:
        yield "an '@' in the key"
    elif not entry.key:
        yield "no key"
    elif any(name in entry.key.lower() for name in NAMES):
        yield "a key that holds a tag's name"
    if entry.key and entry.key not in head:
        yield "a head of two lines"
    elif re.match(r"\s*@\w+\s+[{(]", head):
        yield "a blank after the type"
    elif re.match(r"\s*@\w+\(", head):
        yield "parentheses"
    elif not head.endswith(",\n") and not head.endswith(",\r\n"):
        yield "more after the head's comma"
    elif re.search(r"[{(]\s", head):
        yield "a blank before the key"
    if library.text[library.line_start(entry.start):entry.start].strip():
        yield "text before the head"
    last = library.lines(entry.last, entry.last)
    if not entry.whole:
        yield "not whole"
    elif not last.startswith("}"):
        yield "no line that begins with '}' ends it"
    elif last.strip() not in "}," and last.strip():
        yield "text after it"


def of(library, loss):
    """The oddities, in a line."""
    if loss.entry is None:
        return ""
    if loss.tag is not None and loss.tag.form != "absent":
        return ", ".join(of_tag(library, loss.entry, loss.tag)) or "braces"
    if loss.tag is not None:
        return f"no {loss.tag.name}"
    return ", ".join(of_entry(library, loss.entry))
