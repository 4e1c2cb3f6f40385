# SPDX-License-Identifier: MIT
"""Checks the journal style file and the LaTeX command tables.

    python3 data/src/check_styles.py [--styles FILE ...] [--commands FILE ...]

Without arguments the shipped files are checked. Prints one line for every
problem, with file and line; the exit status is 1 when there is one.
"""

import argparse
import pathlib
import re
import sys

DATA = pathlib.Path(__file__).resolve().parent.parent
STYLES = DATA / "JournalStyles" / "Journal_styles_linux.tvl"
COMMANDS = [DATA / "LaTeXCommands" / name
            for name in ("LaTeXCommands_linux.tvl", "LaTeXCommands_ascii.tvl")]

MAX_LINE = 998  # bytes, line break included; the program reads 999 at a time
DEFINITIONS = 71
MAX_ROWS = 6000
COMMENT_MARK = b"; // "

# How many values a reference gets, by style and kind.
VALUES = {
    "ACS_": {"article_title": 7, "article": 6, "book": 6, "incol": 8, "inpro": 8, "phd": 4},
    "APS_": {"article_title": 7, "article": 6, "book": 6, "incol": 7, "inpro": 8, "phd": 4},
    "IOP_": {"article_title": 7, "article": 6, "book": 6, "incol": 8, "inpro": 7, "phd": 4},
    "NATURE_": {"article_title": 7, "article": 6, "book": 6, "incol": 8, "inpro": 7, "phd": 4},
    "WILEY_": {"article_title": 7, "article": 6, "book": 6, "incol": 8, "inpro": 7, "phd": 5},
    "SPRINGER_C_": {"article_title": 7, "article": 6, "book": 6, "incol": 8, "inpro": 8, "phd": 5},
}
# The places (the label is 0) of values that a kind of entry never reads: a format
# must not print what is left there from another entry.
LEFTOVERS = {
    "ACS_inpro": {4}, "APS_inpro": {4}, "WILEY_inpro": {4}, "SPRINGER_C_inpro": {6},
    "WILEY_phd": {2, 3}, "SPRINGER_C_phd": {4},
}
# The program cannot fill this key; a line for it would be the 72nd.
FORBIDDEN_KEY = "SPRINGER_C_phd"

PLACEHOLDER = re.compile(r"%(?:%|s|\.0s)")


def style_keys():
    """Every key that the style file may define, with its number of values."""
    keys = {}
    for prefix, kinds in VALUES.items():
        for kind, count in kinds.items():
            keys[prefix + kind] = keys[prefix + kind + "_latex"] = count
    del keys[FORBIDDEN_KEY]
    return keys


def read_lines(path, report):
    """The lines of a file without their line breaks; reports what no file may have."""
    content = path.read_bytes()
    if b"\r" in content or b"\0" in content:
        report(0, "holds a carriage return or a NUL byte")
    if content.startswith(b"\xef\xbb\xbf"):
        report(1, "begins with a byte order mark")
    if not content.endswith(b"\n"):
        report(0, "does not end in a line break")
    lines = content.split(b"\n")[:-1] if content.endswith(b"\n") else content.split(b"\n")
    for number, line in enumerate(lines, 1):
        if len(line) + 1 > MAX_LINE:
            report(number, f"{len(line) + 1} bytes, at most {MAX_LINE} are read as one line")
    try:
        content.decode("utf-8")
    except UnicodeDecodeError as error:
        report(content[:error.start].count(b"\n") + 1, "is not UTF-8")
    return lines


def check_format(key, text, values, report):
    """One format: its placeholders, its line breaks, its LaTeX commands."""
    rest = PLACEHOLDER.sub("", text)
    if "%" in rest:
        report("a percent sign that is none of %s, %.0s and %%")
    used = [match for match in PLACEHOLDER.findall(text) if match != "%%"]
    if len(used) > values:
        report(f"{len(used)} placeholders for {values} values")
    for place in sorted(LEFTOVERS.get(key.removesuffix("_latex"), ())):
        if place < len(used) and used[place] != "%.0s":
            report(f"prints value {place + 1}, which this kind of entry never reads")
    if not text.startswith(r"%s\n"):
        report("does not begin with the label on a line of its own")
    ending = r"\n\n" if key.endswith("_latex") else r"\n"
    if not text.endswith(ending) or text.endswith(ending + r"\n"):
        report(f"does not end in {ending}")
    check_commands_in_format(key, text, report)
    if text.count("(") != text.count(")") or text.count("{") != text.count("}"):
        report("brackets do not match")


def check_commands_in_format(key, text, report):
    """Backslashes: line breaks only at the label and the end, no \\n... command."""
    inner = text.removeprefix(r"%s\n")
    while inner.endswith(r"\n"):
        inner = inner[:-2]
    if r"\n" in inner:
        report("a line break, or a LaTeX command that begins with n, in the middle")
    if "\\" in inner and not key.endswith("_latex"):
        report("a LaTeX command in a plain format")
    for command in re.findall(r"\\([A-Za-z]*)", inner):
        if command not in ("textit", "textbf", "emph"):
            report(f"LaTeX command \\{command} is not one of \\textit, \\textbf, \\emph")


def check_definition(line, keys, seen, report):
    """One definition line; `seen` collects the keys."""
    if not re.fullmatch(rb'[A-Za-z_]+ = ".*"; // [^ ].*', line):
        report('is not of the form: key = "format"; // comment')
        return
    if line.count(COMMENT_MARK) != 1:
        report("holds the mark of a comment more than once")
        return
    key = line[:line.index(b" ")].decode()
    text = line[line.index(b"=") + 3:line.index(COMMENT_MARK) - 1].decode("utf-8", "replace")
    if key == FORBIDDEN_KEY:
        report(f"{key} must not be defined")
    elif key not in keys:
        report(f"unknown key {key}")
    elif key in seen:
        report(f"{key} is defined twice")
    else:
        check_format(key, text, keys[key], lambda what: report(f"{key}: {what}"))
    seen.add(key)


def check_styles(path, report):
    """A journal style file."""
    keys = style_keys()
    seen = set()
    count = 0
    for number, line in enumerate(read_lines(path, report), 1):
        if not line or line[:1] in (b"#", b"/"):
            continue
        count += COMMENT_MARK in line
        check_definition(line, keys, seen, lambda what, n=number: report(n, what))
    if count != DEFINITIONS:
        report(0, f"{count} definitions, {DEFINITIONS} are needed")
    for key in sorted(set(keys) - seen):
        report(0, f"{key} is missing")


def check_row(line, report):
    """One row of a command table; returns its command."""
    command, _, replacement = line.partition(b"\t")
    if not command.strip():
        report("a row without a command")
    elif b" " in command:
        report("a blank in the command")
    elif command in replacement:
        report("the replacement holds its own command")
    if b" " in replacement or b"\t" in replacement:
        report("a blank or a tab in the replacement, which would end there")
    if line != line.rstrip(b" \t"):
        report("blanks or tabs at the end")
    return command


def check_order(commands, report):
    """No row may come before a longer one that it would eat into."""
    last = {command: place for place, command in enumerate(commands)}
    names = [c for c in last if re.fullmatch(rb"\\[A-Za-z]+", c)]
    first = {command: commands.index(command) for command in names}
    for long_name, place in last.items():
        for end in range(2, len(long_name)):
            if first.get(long_name[:end], place) < place:
                report(f"{long_name[:end].decode()} stands before {long_name.decode()}")


def check_commands(path, report):
    """A LaTeX command table."""
    lines = read_lines(path, report)
    starts = [number for number, line in enumerate(lines) if b"START" in line]
    if not starts:
        report(0, "no START line, so no row is read")
        return
    if lines[starts[0]] != b"START":
        report(starts[0] + 1, "the comment holds the word START, the table would begin here")
    rows = lines[starts[0] + 1:]
    commands = [check_row(line, lambda what, n=number: report(n, what))
                for number, line in enumerate(rows, starts[0] + 2)]
    if len(rows) > MAX_ROWS:
        report(0, f"{len(rows)} rows, at most {MAX_ROWS} are wanted")
    if rb"\&" not in commands:
        report(0, r"no row for \&, which Nature's author lists bring in")
    check_order(commands, lambda what: report(0, what))
    if path.name.endswith("_ascii.tvl"):
        for number, line in enumerate(rows, starts[0] + 2):
            if not line.partition(b"\t")[2].isascii():
                report(number, "the replacement is not ASCII")


def main():
    parser = argparse.ArgumentParser(description="Check style and command files.")
    parser.add_argument("--styles", nargs="*", type=pathlib.Path, default=[STYLES])
    parser.add_argument("--commands", nargs="*", type=pathlib.Path, default=COMMANDS)
    options = parser.parse_args()
    problems = []
    jobs = [(path, check_styles) for path in options.styles]
    jobs += [(path, check_commands) for path in options.commands]
    for path, check in jobs:
        def report(number, what, path=path):
            problems.append(f"{path}:{number}: {what}" if number else f"{path}: {what}")
        if path.is_file():
            check(path, report)
        else:
            report(0, "is missing")
    print("\n".join(problems), end="\n" if problems else "")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
