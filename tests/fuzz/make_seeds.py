#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes the seeds of the fuzz targets: make_seeds.py SOURCE-DIRECTORY SEEDS-DIRECTORY

The seeds are the input files of the whole-operation cases and the examples, in the form that
fuzz_input.h describes, the configuration files cut to a size worth mutating, command lines, the
inputs in tests/fuzz/corpus/TARGET.zip, which ./fuzz has found to run something that no smaller one
does, and those in tests/fuzz/found/TARGET/, which once broke something.
"""
import hashlib
import pathlib
import re
import shutil
import sys
import zipfile

SEPARATOR = b"\xfe\xff\xfe\xff"
DEFAULTS = bytes(8)  # a head that leaves all settings as they are
MOST = 16384  # an input's bytes, as run_target.sh says

LIBRARY_OPERATIONS = ["text", "journals", "clean-doubles", "clean-authors", "clean-characters",
                      "clean-tags"]

OPTION_LINES = [
    "--list-operations", "--help", "--version", "clean-tags lit.bib", "compare a.bib b.bib",
    "extract a.tex b.bib --style acs --pages range --no-title", "text --bibitem --latex lit.bib",
    "journals --journal-names abbreviated lit.bib own.tvl", "--style wiley --title text lit.bib",
    "clean-tags --keep all --remove doi,url --keep-empty-entries --keep-strings lit.bib",
    "clean-tags --keep=note -- -x.bib", "--style=springer extract", "nothing", "--pages none text",
]


KEY_MAP = b"a\tb\nb\ta\r\none\tun\\xe9\nc d\tc\\td\nk\tk_a\n"
DOCUMENTS = [
    b"\\cite{a,b, one ,%a\n c d}\\citep[see][p. \\cite{k}]{a}\\cites(x)(y)[1]{a}[2]{b} \\cite*<b>{a}\n",
    b"\\volcite[a]{b}[2]{a}\\Volcites(x)(y){2}{a}{3}[k]{b}\\shortcites{a}{b}\\footcitetexts{a}{b}\n",
    b"\\verb|\\cite{a}| \\lstinline[x]{\\cite{a}} \\url{%}\\cite{a}\\mintinline{c}{\\cite{a}}\n"
    b"\\begin{verbatim}\\cite{a}\\end{verbatim}\\iffalse\\cite{a}\\ifx\\fi\\else\\cite{a}\\fi\n",
    b"\\input a \\include{b}\\cite\n{a}\\cite{a\n\n}\\cite\n\n{a}\\cite{#1,\\a}\\cite{a}\\end{document}\\cite{a}",
    b"\\cite{c  d,c\n d , c%x\n\td,c\r\n  %\n d}\\cite{c \td}",
    b"\\cite{a\\cite{a}\\cite{a}\\endinput\\cite{a}",
]


def repeated(count, byte):
    return b"\xfd" + bytes([count // 256, count % 256]) + byte


def long_lines():
    """Libraries whose lines meet the line limits."""
    for limit in (1000, 5000, 25000, 50000):
        for count in (limit - 12, limit - 2, limit - 1, limit):
            fill = repeated(count, b"x")
            yield b"@article{a,\n title = {" + fill + b"},\n year = {1}\n}\n"
            yield fill + b"@book{b,\n author = {A B},\n journal = {\n" + fill + b"\n y}\n}\n"


def write(directory, name, data):
    if len(data) > MOST:
        return
    directory.mkdir(parents=True, exist_ok=True)
    digest = hashlib.sha1(data).hexdigest()[:12]
    (directory / f"{name}-{digest}").write_bytes(data)


def head(*values):
    return bytes(values) + bytes(8 - len(values))


def case_files(case):
    """The input files that a case's command names, in its order."""
    words = re.findall(r"[^\s\"'<>|;&]+", (case / "command").read_text(errors="replace"))
    files = [case / "input" / word for word in words]
    chosen = []
    for file in files:
        if file.is_file() and file not in chosen:
            chosen.append(file)
    return [file.read_bytes() for file in chosen[:2]]


def write_cases(source, seeds):
    libraries = set()
    for command in sorted((source / "tests" / "cases").glob("*/*/command")):
        operation = command.parent.parent.name.replace("_", "-")
        files = case_files(command.parent)
        if not files:
            continue
        write(seeds / operation, "case", DEFAULTS + SEPARATOR.join(files))
        libraries.update(files)
    return libraries


def write_examples(source, seeds):
    examples = source / "examples"
    libraries = [file.read_bytes() for file in sorted(examples.glob("*.bib"))]
    for document in sorted(examples.glob("*.tex")):
        for library in libraries:
            write(seeds / "extract", "example",
                  DEFAULTS + document.read_bytes() + SEPARATOR + library)
    for library in libraries:
        write(seeds / "compare", "example", DEFAULTS + library + SEPARATOR + libraries[-1])
    return libraries


def write_settings(seeds, library):
    """The same library under every style, and under every flag's other value."""
    document = b"\\begin{document}\\cite{one,two}\n"
    for style in range(6):
        for flags in (0, 1, 2, 8, 10):
            write(seeds / "text", "style", head(style, flags) + library)
            write(seeds / "extract", "style",
                  head(style, flags) + document + SEPARATOR + library)
    for operation in LIBRARY_OPERATIONS:
        for bit in range(8):
            write(seeds / operation, "flag", head(0, 1 << bit) + library)
        write(seeds / operation, "twice", head(0, 0, 0, 0, 0, 0, 2, 3) + library)
    write(seeds / "clean-tags", "kept", head(0, 0, 255, 255, 255, 255) + library)


def write_configuration(source, seeds):
    styles = (source / "data/JournalStyles/Journal_styles_linux.tvl").read_bytes()
    commands = (source / "data/LaTeXCommands/LaTeXCommands_linux.tvl").read_bytes()
    journals = (source / "data/JournalStrings/JournalStrings.tvl").read_bytes()
    write(seeds / "style-file", "shipped", DEFAULTS + styles)
    formats = re.findall(rb' = "(.*)"; // ', styles)
    for style in range(6):  # the lines of these are the formats of a whole file
        own = head(style, 0, 0, 0, 0, 0, 1)
        write(seeds / "style-file", "formats", own + b"\n".join(formats[style * 12:][:12]))
        write(seeds / "style-file", "formats", own + b"%s|%5s|%-4s|%.2s|%%|%d\\n\\n%s %s %s %s")
    start = commands.find(b"\nSTART\n")
    for size in (1000, 8000):
        write(seeds / "command-file", "shipped", DEFAULTS + commands[start:start + size])
    for place in (19, 20):  # the last variation that is looked at, and the first that is not
        names = [b"v%d" % i for i in range(23)]
        names[place] = b"J. Phys."
        write(seeds / "journal-file", "variations", DEFAULTS + b"START\n"
              b"******* Journal-start *******\nPhysics\nPh.\n******* Variations    *******\n"
              + b"\n".join(names) + b"\n******* Journal-end   *******\n")
    start = journals.find(b"\nSTART\n")
    for size in (300, 4000):
        text = journals[start:start + size]
        write(seeds / "journal-file", "shipped", DEFAULTS + text)
        write(seeds / "journals", "shipped",
              DEFAULTS + b"@article{a,\n journal = {Acta Acustica},\n}\n" + SEPARATOR + text)


def main():
    source, seeds = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
    shutil.rmtree(seeds, ignore_errors=True)
    libraries = sorted(write_cases(source, seeds)) + write_examples(source, seeds)
    for library in list(libraries) + list(long_lines()):
        for operation in LIBRARY_OPERATIONS:
            write(seeds / operation, "library", DEFAULTS + library)
        write(seeds / "compare", "pair", DEFAULTS + library + SEPARATOR + library)
        write(seeds / "extract", "cited", DEFAULTS + b"\\cite{a,b,one,k}\n" + SEPARATOR + library)
        write(seeds / "line-endings", "library", DEFAULTS + library)
        write(seeds / "line-endings", "windows", DEFAULTS + library.replace(b"\n", b"\r\n"))
        write(seeds / "line-endings", "mac", head(0, 0, 0, 0, 0, 0, 0, 1)
              + library.replace(b"\n", b"\r"))
    clients = sorted((source / "tests/clients/libraries").glob("*.bib"))
    for library in libraries + list(long_lines()) + [file.read_bytes() for file in clients]:
        write(seeds / "prepare", "library", DEFAULTS + library)
        write(seeds / "check", "library", DEFAULTS + library)
    write_settings(seeds, b"@article{one,\n author = {A. Berg and Carl Dee},\n title = {T},\n"
                   b" journal = {J. Phys.},\n year = {2001},\n volume = {2},\n pages = {3--4}\n}\n"
                   b"@phdthesis{two,\n author = {E. Fir},\n school = {S},\n note = {n}\n}\n")
    write_configuration(source, seeds)
    for document in DOCUMENTS + [file.read_bytes() for file in
                                 sorted((source / "tests").glob("*/**/*.tex"))]:
        write(seeds / "rekey", "document", DEFAULTS + KEY_MAP + SEPARATOR + document)
    for line in OPTION_LINES:
        write(seeds / "options", "line", line.replace(" ", "\0").encode())
    for archive in sorted((source / "tests/fuzz/corpus").glob("*.zip")):
        with zipfile.ZipFile(archive) as kept:
            for name in kept.namelist():
                write(seeds / archive.stem, "corpus", kept.read(name))
    for found in sorted((source / "tests/fuzz/found").glob("*/*")):
        write(seeds / found.parent.name, found.name, found.read_bytes())
    (seeds / "done").touch()


main()
