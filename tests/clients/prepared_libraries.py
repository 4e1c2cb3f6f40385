#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Let bibtex judge what "tarvel-batch prepare" makes of libraries.

Usage: prepared_libraries.py TARVEL-BATCH [--keep-all] LIBRARY...

For each library a style is made that writes type, key and every field of every entry, as bibtex
reads them. The library and its prepared form must give the same, once

  - the renamed types and tags of TYPES and TAGS, those of the manual, are renamed in the first;
  - what guards words and titles is taken out of the second, and braces around whole values of both;
  - fields that are empty in the second, or are left out of it, stand in the log with their value.

Preparing the prepared library must change nothing. A library that bibtex does not accept is only
prepared. Prints a line for each library that breaks a promise and a summary; exit status 1 when one
does, 77 when bibtex is not installed. Of strings that are not defined bibtex reads nothing, of
nested cross-references one step: there the manual says more.
"""

import os
import re
import shutil
import subprocess
import sys
import tempfile

NAME = rb'[^\x00-\x20"#%\'(),={}]+'
MONTHS = ("January February March April May June July August September October November "
          "December").encode().split()
KNOWN = set(b"""article book phdthesis incollection inproceedings misc other proceedings electronic
    booklet inbook masterthesis conference manual techreport unpublished standard periodical patent
    meetingabstract proceedingspaper letter review editorialmaterial""".split())
TYPES = {b"masterthesis": b"""mastersthesis mathesis mscthesis bachelorthesis bachelorsthesis
             bathesis bscthesis diplomathesis diplomthesis diplomarbeit""",
         b"phdthesis": b"dissertation doctoralthesis doctorthesis habilthesis candthesis",
         b"techreport": b"report technicalreport techrep workingpaper",
         b"electronic": b"online www web webpage website internet url",
         b"book": b"collection mvbook mvcollection reference mvreference",
         b"proceedings": b"mvproceedings proceeding",
         b"incollection": b"inreference suppcollection",
         b"inbook": b"bookinbook suppbook",
         b"article": b"suppperiodical",
         b"inproceedings": b"inproceeding conferencepaper",
         b"unpublished": b"preprint submitted"}
TYPE_OF = {old: new for new, olds in TYPES.items() for old in olds.split()}
MASTERS = re.compile(rb"(?i)master|mathesis|diplom|magister|bachelor|m\.sc|msc|bathesis")
# In this order; "+" is put at the end of the other where there is one.
TAGS = [line.split() for line in b"""authors author
    editors editor
    notes note
    comments comment
    subtitle title +
    booksubtitle booktitle +
    journaltitle journal
    shortjournal journal
    journalsubtitle journal +
    eventtitle booktitle
    date year
    location address
    institution school
    annote annotation
    urldate lastchecked
    eprinttype archiveprefix""".splitlines()]


def names_of(library):
    """All that may be names of fields and of types in a library: too many do no harm."""
    fields = {name.lower() for name in re.findall(rb"(" + NAME + rb")\s*=", library)}
    types = {name.lower() for name in re.findall(rb"@\s*(" + NAME + rb")\s*[({]", library)}
    digit = re.compile(rb"\d")
    fields = {name for name in fields if not digit.match(name)} - {b"crossref"}
    return fields | {b"zz"}, {name for name in types if not digit.match(name)} - fields


def style_for(library, strings):
    """A style that writes "E|type|key|", "F|field|" and the value in pieces, "V|piece|"."""
    fields, types = names_of(library)
    lines = [b"ENTRY {", *sorted(fields), b"} {} {}", b"INTEGERS { zz.i }",
             b'FUNCTION {zz.not} { { #0 } { #1 } if$ }',
             b'FUNCTION {zz.piece} { "V|" swap$ * "|" * write$ newline$ }',
             b'FUNCTION {zz.head} { "E|" type$ * "|" * cite$ * "|" * write$ newline$ }']
    calls = [b"zz.head"]
    for number, field in enumerate([b"crossref", *sorted(fields)]):
        call = b"zz.f." + bytes(ord("a") + int(digit) for digit in str(number))
        lines.append(b"FUNCTION {" + call + b".x} { \"F|" + field + b"|\" write$ newline$ "
                     b"#1 'zz.i := { " + field + b' zz.i #60 substring$ "" = zz.not } { '
                     + field + b" zz.i #60 substring$ zz.piece zz.i #60 + 'zz.i := } while$ }")
        lines.append(b"FUNCTION {" + call + b"} { " + field + b" missing$ 'skip$ '" + call
                     + b".x if$ }")
        calls.append(call)
    lines.append(b"FUNCTION {zz.all} {\n" + b"\n".join(calls) + b" }")
    lines.append(b"FUNCTION {default.type} { zz.all }")
    for kind in sorted(types - {b"comment", b"preamble", b"string"}):
        lines.append(b"FUNCTION {" + kind + b"} { zz.all }")
    for name, text in strings.items():
        lines.append(b"MACRO {" + name + b'} {"' + text + b'"}')
    return b"\n".join([*lines, b"READ", b"ITERATE {call.type$}", b""])


def run_bibtex(directory, library, strings, others=b""):
    """The entries that bibtex reads, as (type, key, {field: value}), and what it reports."""
    # It does not read what follows another entry on the last line.
    write(directory, "lib.bib", library + b"\n\n")
    write(directory, "dump.bst", style_for(library + b"\n" + others, strings))
    write(directory, "lib.aux", b"\\bibstyle{dump}\n\\bibdata{lib}\n\\citation{*}\n")
    subprocess.run(["bibtex", "lib"], cwd=directory, stdout=subprocess.DEVNULL, check=False)
    entries = []
    for line in read(directory, "lib.bbl").split(b"\n"):
        if line.startswith(b"E|"):
            kind, key = line[2:-1].split(b"|", 1)
            entries.append((kind, key, {}))
        elif line.startswith(b"F|"):
            field = line[2:-1]
            entries[-1][2][field] = b""
        elif line.startswith(b"V|"):
            entries[-1][2][field] += line[2:-1]
    return entries, read(directory, "lib.blg")


def write(directory, name, content):
    with open(os.path.join(directory, name), "wb") as file:
        file.write(content)


def read(directory, name):
    path = os.path.join(directory, name)
    if not os.path.exists(path):
        return b""
    with open(path, "rb") as file:
        return file.read()


def strip_outer(value):
    """Without the pairs of braces around all of it, but for one around a command."""
    value = value.strip(b" ")
    while value.startswith(b"{") and not value[1:].lstrip(b" ").startswith(b"\\"):
        depth = 0
        for place, byte in enumerate(value):
            depth += (byte == ord("{")) - (byte == ord("}"))
            if depth == 0:
                break
        if place < len(value) - 1:
            break
        value = value[1:-1].strip(b" ")
    return value


LETTER = rb"([A-Za-z0-9]|[\xc0-\xff][\x80-\xbf]*)"


def bare(name, value):
    """A value without guards, the same for a value and for what is written of it."""
    value = strip_outer(value.replace(b"{}", b""))
    if name not in (b"title", b"booktitle"):
        return value
    match = re.match(rb"\\relax\{(\{.*)$", value, re.S)
    if match:  # the second pair is the guard's
        rest, depth = match.group(1), 1
        for place, byte in enumerate(rest):
            depth += (byte == ord("{")) - (byte == ord("}"))
            if depth == 0:
                value = rest[:place] + rest[place + 1:]
                break
    value = re.sub(rb"^\{" + LETTER + rb"\}", rb"\1", value)
    value = re.sub(rb"^" + LETTER + rb"\{", rb"{\1", value)
    value = re.sub(rb"\\/$", b"", value)
    value = re.sub(rb"([.?!])(\}+)$", rb"\2\1", value)
    return strip_outer(value.replace(b"{}", b""))


def date_parts(date):
    date = strip_outer(date)
    first, _, rest = date.partition(b"/")
    match = re.match(rb"(\d{4})(?:-(\d\d))?(?:$|-)", first)
    if not match or (rest and not rest.startswith(match.group(1))):
        return date, None
    month = int(match.group(2) or 0)
    return match.group(1), MONTHS[month - 1] if 1 <= month <= 12 else None


def rename(kind, fields, inherited):
    """Type and fields of an entry as they are to be written; `inherited` are its parent's."""
    fields, inherited = dict(fields), set(inherited)
    new_kind = kind if kind in KNOWN else TYPE_OF.get(kind, b"misc")
    if kind == b"thesis":
        new_kind = b"masterthesis" if MASTERS.search(fields.get(b"type", b"")) else b"phdthesis"
    for old, new, *how in TAGS:
        is_thesis = new_kind in (b"phdthesis", b"masterthesis") and b"crossref" not in fields
        if old not in fields or (old == b"institution" and not is_thesis):
            continue
        if how and new in fields:
            value = strip_outer(fields.pop(old))
            if old in inherited and new not in inherited:
                continue  # of the parent's title
            whole = strip_outer(fields[new])
            seam = b"" if not whole or not value else b" " if whole[-1:] in b":?!." else b": "
            fields[new] = whole + seam + value
        elif new not in fields:
            value = fields.pop(old)
            if old == b"date":
                value, month = date_parts(value)
                if month and b"month" not in fields:
                    fields[b"month"] = month
            fields[new] = value
            if old in inherited:
                inherited.add(new)
    return new_kind, fields


def compare_entry(old, new, own, log, tolerates, fold):
    """What differs between an entry that bibtex reads and the same of the prepared library."""
    kind, key, fields = old
    kind, fields = rename(kind, fields, set(fields) - own - {b"crossref"})
    if new[0] and old[0] and kind != new[0]:
        yield f"type {kind} became {new[0]}"
    for name in sorted(set(fields) | set(new[2])):
        before, after = fold(fields.get(name)), fold(new[2].get(name))
        if before is None:
            if after and not tolerates(key, name):
                yield f"{name} was added: {after}"
            continue
        is_logged = any(re.search(rb"was left out[^\n{]*: \{" + re.escape(text) + rb"\}", log)
                        for text in (before, strip_outer(before)))
        if not after and is_logged:
            continue
        is_crossref = name == b"crossref"  # bibtex shows the key in the letters of its entry
        one, other = bare(name, before), bare(name, after or b"")
        if after is None and not (is_crossref or tolerates(key, name)):
            yield f"{name} was lost: {before}"
        elif after is not None and one != other and not (
                is_crossref and one.lower() == other.lower()):
            yield f"{name} was {before} and is {after}"


def judge(program, options, path, directory):
    """Whether bibtex accepts a library, the number of its entries, and what is broken."""
    with open(path, "rb") as file:
        library = file.read()
    strings = {month[:3].lower(): month for month in MONTHS}
    entries, report = run_bibtex(directory, library, strings)
    undefined = re.findall(rb'string name "([^"]*)" is\s+undefined', report)
    if undefined:
        strings.update({name: name for name in undefined})
        entries, report = run_bibtex(directory, library, strings)
    errors = [line for line in report.split(b"\n") if b"---line" in line
              and not line.startswith(b"Repeated entry")]
    own_of = {}
    if b"crossref" in library.lower():
        without = re.sub(rb"(?i)crossref", b"xrossref", library)
        own_of = {key: set(fields) for _, key, fields in run_bibtex(directory, without, strings)[0]}
    nested = set(re.findall(rb'nested cross references--entry "([^"]*)"', report))

    write(directory, "it.bib", library)
    result = prepare(program, options, directory, "it.bib")
    if result.returncode != 0:
        broken = [] if not entries else [f"is refused: {result.stdout}"]
        return not errors, len(entries), broken
    prepared, log = read(directory, "it_prepared.bib"), read(directory, "it_prepared.log")
    prepare(program, options, directory, "it_prepared.bib")
    broken = []
    if read(directory, "it_prepared_prepared.bib") != prepared:
        broken.append("preparing twice changes the library")
    new_entries, new_report = run_bibtex(directory, prepared, strings, library)
    broken += [f"bibtex on the prepared library: {line}" for line in new_report.split(b"\n")
               if (b"---line" in line and not line.startswith(b"Repeated entry"))
               or b"undefined" in line or b"I'm ignoring" in line]
    if errors:
        return False, len(entries), broken

    new_of = {key: (kind, key, fields) for kind, key, fields in new_entries}

    def fold(value):  # bibtex knows the names of undefined strings in lower case only
        return value.lower() if undefined and value else value
    log = fold(log)
    for entry in entries:
        key = entry[1]
        if key not in new_of:
            broken.append(f"entry {key} was lost")
            continue
        new = new_of[key]
        own = own_of.get(key, set(entry[2]))

        def tolerates(entry_key, name, own=own):
            return entry_key in nested or (name not in own and own_of)
        broken += [f"entry {key}: {text}"
                   for text in compare_entry(entry, new, own, log, tolerates, fold)]
    return True, len(entries), broken


def prepare(program, options, directory, name):
    return subprocess.run([program, "prepare", *options, name], cwd=directory,
                          stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=False)


def main():
    if not shutil.which("bibtex"):
        return 77
    program = os.path.abspath(sys.argv[1])
    options = [word for word in sys.argv[2:] if word.startswith("--")]
    paths = [word for word in sys.argv[2:] if not word.startswith("--")]
    accepted = entries = failures = 0
    for path in paths:
        with tempfile.TemporaryDirectory() as directory:
            is_accepted, count, broken = judge(program, options, path, directory)
        accepted += is_accepted
        entries += count if is_accepted else 0
        failures += bool(broken)
        for text in broken[:5]:
            print(f"{path}: {text}")
    print(f"{len(paths)} libraries, {accepted} accepted by bibtex with {entries} entries, "
          f"{failures} broken")
    return 1 if failures or not accepted else 0


if __name__ == "__main__":
    sys.exit(main())
