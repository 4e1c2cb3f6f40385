# SPDX-License-Identifier: MIT
"""Runs an operation of tarvel-batch on a case and has it judged."""
import math
import os
import pathlib
import subprocess
import tempfile

import documents
import judge
import library_judges
import reference_judges
from bibtex import Library

# The box that says that a run failed, and not why.
HINT = b"An error in the function occured!"
# Clean characters counts the pieces of longer lines.
LONG_LINE = 49_999
SCRATCH = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None


def judge_extract(run):
    yield from library_judges.extract(run)
    yield from reference_judges.judge_extract(run)


OPERATIONS = {
    "clean-characters": library_judges.clean_characters,
    "clean-tags": library_judges.clean_tags,
    "clean-authors": library_judges.clean_authors,
    "journals": library_judges.journals,
    "clean-doubles": library_judges.clean_doubles,
    "compare": library_judges.compare,
    "extract": judge_extract,
    "text": reference_judges.judge_text,
}
FILES = {"extract": ("paper.tex", "lit.bib"), "compare": ("first.bib", "lit.bib")}
# What the names of the outputs begin with.
BASES = {"compare": ("first_linux_", "first_")}


class Case:
    """A library, and what else the operations want beside it."""

    def __init__(self, name, library, other=b"@book{x,\n}\n", document=b"", journals=b""):
        self.name, self.library, self.other, self.document = name, library, other, document
        self.journals = journals  # an own list; without one the program's list is used
        self.parsed, self.parsed_other = Library(library), Library(other)

    @classmethod
    def from_file(cls, path):
        """The library of a file. The document beside it, if there is one, cites it, else one that
        cites all entries; it is compared with the first half of itself; and a list of journals that
        stands beside it is used."""
        data = pathlib.Path(path).read_bytes()
        document, journals = (pathlib.Path(path).with_suffix(end) for end in (".tex", ".bs"))
        entries = Library(data).entries
        middle = entries[len(entries) // 2].start if entries else 0
        text = document.read_bytes() if document.exists() else cite_all(entries)
        return cls(path, data, data[:middle] + b"\n@book{end-of-the-half,\n}\n", text,
                   journals.read_bytes() if journals.exists() else b"")

    def with_library(self, library):
        return Case(self.name, library, self.other, self.document, self.journals)


def cite_all(entries):
    keys = [key for key in dict.fromkeys(entry.key for entry in entries)
            if key and not set(key) & set(" ,{}%\\")]
    cited = "".join(f"\\cite{{{key}}}\n" for key in keys)
    return f"\\begin{{document}}\n{cited}\\end{{document}}\n".encode("latin-1")


class Run:
    """One operation on one case: what it read and what it left."""

    def __init__(self, case, operation, options, program, files):
        self.operation, self.options, self.program = operation, options, program
        self.library, self.other = case.parsed, case.parsed_other
        self.citations = documents.citations(case.document)
        self.file = "lit_linux.bib" if "lit_linux.bib" in files else "lit.bib"
        self.warnings = files.get("warnings.tsv", b"")
        self.outputs = {}
        for name, data in files.items():
            for base in BASES.get(operation, ("lit_linux_", "lit_")):
                if name.startswith(base):
                    self.outputs[name[len(base) - 1:]] = data
                    break
        self.has_long_line = any(len(line) >= LONG_LINE for line in self.library.text.split("\n"))

    def cited(self):
        """The entries that the document cites, of each key the first, with the lines that do. Where
        BibTeX cannot read any tag of the first one, it has no other one either: it calls it repeated.
        """
        first, empty = {}, {}
        for head in library_judges.HEADS.finditer(self.library.text):
            empty.setdefault(head.group(1), head.start())
        for entry in self.library.entries:
            first.setdefault(entry.key, entry)
        return [(first[key], lines) for key, lines in self.citations.items()
                if key in first and empty.get(key, math.inf) >= first[key].start]


def random_options(operation, rng):
    """Options of the operation, as `words_of` writes them."""
    options = {}
    if operation in ("extract", "text"):
        options = {"style": rng.choice(("aps", "acs", "iop", "nature", "wiley", "springer")),
                   "pages": rng.choice(("first", "range")), "title": rng.random() < 0.8}
    if operation == "text":
        options["bibitem"] = True  # says whose reference it is
        options["latex"] = rng.random() < 0.3
    if operation == "journals":
        options["journal-names"] = rng.choice(("full", "abbreviated"))
    if operation == "clean-doubles" and rng.random() < 0.3:
        options["append-renamed"] = True
    if operation == "clean-tags":
        options = rng.choice(({}, {}, {"keep": "all"}, {"remove": "title,year"},
                              {"keep": "booktitle,editor,publisher,url,note,doi"}))
        options = options | {"keep-strings": rng.random() < 0.2,
                             "keep-empty-entries": rng.random() < 0.2}
    return options


def words_of(options):
    """The options as they stand on the command line."""
    made = []
    for name, value in options.items():
        if isinstance(value, str):
            made += ["--" + name, value]
        elif value or name == "title":
            made.append(("--" if value else "--no-") + name)
    return made


def read_files(directory):
    return {entry.name: pathlib.Path(entry.path).read_bytes() for entry in os.scandir(directory)}


def losses(program, case, operation, options):
    """The losses of a run, each with the kinds of the warnings that name it."""
    return outcome(program, case, operation, options)[1]


def outcome(program, case, operation, options):
    """The warnings of a run, and its losses, each with the kinds of the warnings that name it."""
    contents = {"lit.bib": case.library, "first.bib": case.other, "paper.tex": case.document,
                "own.bs": case.journals}
    names = FILES.get(operation, ("lit.bib",))
    if operation == "journals" and case.journals:
        names = ("lit.bib", "own.bs")
    with tempfile.TemporaryDirectory(prefix="tarvel-silence-", dir=SCRATCH) as directory:
        for name in names:
            pathlib.Path(directory, name).write_bytes(contents[name])
        ended = subprocess.run(
            [program, operation, *words_of(options), "--quiet", "--warnings", "warnings.tsv", *names],
            cwd=directory, stdin=subprocess.DEVNULL, capture_output=True, timeout=600, check=False)
        run = Run(case, operation, options, program, read_files(directory))
    found = OPERATIONS[operation](run) if ended.returncode == 0 else failure(ended, operation)
    warnings = judge.read_warnings(run.warnings)
    return warnings, list(judge.named(found, warnings, run.library, run.file))


def failure(ended, operation):
    """A run that failed must say why, in more than the box that says that it did."""
    said = ended.stderr if operation == "clean-authors" else ended.stdout + ended.stderr
    reasons = [line for line in said.split(b"\n")
               if line and HINT not in line and not line.startswith(b"[Note!]")]
    if ended.returncode != 1 or not reasons:
        return [judge.Loss(judge.FAILED, detail=f"status {ended.returncode}")]
    return []
