# SPDX-License-Identifier: MIT
"""What the scripts of this directory share: running tarvel-batch, and checking whether files stayed
as they were."""
import hashlib
import os
import pathlib
import subprocess
import sys

OPERATIONS = ["extract", "compare", "text", "journals", "clean-doubles", "clean-authors",
              "clean-characters", "clean-tags"]
TWO_FILES = ["extract", "compare"]
DONE = b"[Done!] Done!\n"

SUFFIXES = {
    "extract": [b"_extract.txt", b"_extract.bib", b"_extract.tex"],
    "compare": [b"_comp.log", b"_comp_missing.bib", b"_comp_equal.bib"],
    "text": [b"_text.txt"],
    "journals": [b"_journal.log", b"_journal.bib"],
    "clean-doubles": [b"_double.log", b"_double.bib"],
    "clean-authors": [b"_author.log", b"_author.bib"],
    "clean-characters": [b"_char.log", b"_char.bib"],
    "clean-tags": [b"_tag.log", b"_tag.bib"],
}

LIBRARY = """@article{one,
  author = {Anna Berg and Carl De Haan},
  title = {{On {Alpha} and
   beta}},
  journal = {Acta Acustica},
  year = {2001},
  volume = {12},
  pages = {34--56},
  doi = {10.1/2},
  note = {caf\xe9}
}

@article{one,
  author = {Anna Berg and Carl De Haan},
  title = {{On {Alpha} and beta}},
  journal = {Acta Acustica},
  year = {2001},
  volume = {12},
  pages = {34--56}
}

@book{two,
  author = {D. Elm},
  title = {A Book},
  publisher = {P},
  year = {1999}
}
""".encode("latin-1")
DOCUMENT = b"\\begin{document}\n\\cite{one,two,three}\n\\end{document}\n"


def library_of(entries, word):
    """LIBRARY and so many more entries, whose keys and titles hold the word."""
    parts = [LIBRARY]
    for n in range(entries):
        parts.append((f"@article{{{word}{n},\n  author = {{Anna Berg and C{n} Haan}},\n"
                      f"  title = {{On {n} {word}}},\n  journal = {{Acta Acustica}},\n"
                      f"  year = {{{1900 + n % 120}}},\n  volume = {{{n}}},\n"
                      f"  pages = {{{n}--{n + 9}}},\n  doi = {{10.1/{n}}},\n"
                      f"  month = {{may}},\n"
                      f"  abstract = {{caf\xe9 {'words ' * 20}}}\n}}\n\n").encode("latin-1"))
    return b"".join(parts)


class Failures:
    def __init__(self):
        self.count = 0

    def check(self, kept, what):
        if not kept:
            self.count += 1
            print("FAILED:", what)
        return kept

    def end(self, done):
        print(done)
        sys.exit(1 if self.count else 0)


def state(path):
    """All of a file that a run must leave alone."""
    status = os.stat(path)
    with open(path, "rb") as file:
        digest = hashlib.sha256(file.read()).hexdigest()
    return (digest, status.st_mode, status.st_mtime_ns, status.st_ino, status.st_nlink,
            status.st_uid, status.st_gid)


def run(program, operation, files, **options):
    return subprocess.run([program, operation, *files], stdout=subprocess.PIPE,
                          stderr=subprocess.PIPE, stdin=subprocess.DEVNULL, timeout=120, **options)


def arguments(operation, library, other, document):
    if operation == "extract":
        return [document, library]
    return [library, other] if operation == "compare" else [library]


def outputs(operation, library):
    base = os.fsencode(library)
    base = base[:base.rindex(b".")]
    return [base + suffix for suffix in SUFFIXES[operation]]


def case_libraries(cases):
    """The input files of the whole-operation cases, each content once."""
    seen = {}
    for file in sorted(pathlib.Path(cases).glob("*/*/input/*")):
        if file.is_file():
            seen.setdefault(file.read_bytes(), file.name)
    return list(seen)
