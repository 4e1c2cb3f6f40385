#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Compare what the shipped styles print with the publishers' own references.

Usage: check_publisher_references.py PROGRAM

The references stand in publisher_references.tsv, which says how they are marked.
"""

import re
import subprocess
import sys
import tempfile
from pathlib import Path

TABLE = Path(__file__).resolve().with_name("publisher_references.tsv")
ENTRIES = {
    "article": """@article{k,
  author = {Doe, J. A. and Roe, K. and Poe, L.-M.},
  title = {On waves},
  journal = {J. Chem. Phys.},
  year = {2001},
  volume = {114},
  pages = {1234--1240},
}
""",
    "book": """@book{k,
  author = {Doe, J. A. and Roe, K.},
  title = {Waves},
  publisher = {Springer},
  address = {Berlin},
  year = {2004},
}
""",
    "incollection": """@incollection{k,
  author = {Doe, J. A. and Roe, K.},
  title = {Chapter one},
  booktitle = {The Book of Waves},
  editor = {Moe, A. and Zoe, B.},
  publisher = {Springer},
  address = {Berlin},
  year = {2005},
  pages = {12--30},
}
""",
    "inproceedings": """@inproceedings{k,
  author = {Doe, J. A. and Roe, K.},
  title = {Paper one},
  booktitle = {Proc. Conf. Waves},
  editor = {Moe, A. and Zoe, B.},
  publisher = {IEEE},
  address = {Paris},
  year = {2006},
  pages = {101--110},
}
""",
    "phdthesis": """@phdthesis{k,
  author = {Doe, J. A.},
  title = {My Thesis},
  school = {University of Jena},
  year = {2007},
}
""",
}


def ours(reference):
    """Return a publisher's reference with its marked parts as our styles give them."""
    return re.sub(r"\[-(.*?)-\]", lambda m: m[1].partition("=>")[2], reference)


def printed(program, style, kind):
    """Return the reference that the program prints for an entry, without the blank lines."""
    with tempfile.TemporaryDirectory() as directory:
        library = Path(directory) / "lib.bib"
        library.write_text(ENTRIES[kind])
        subprocess.run([program, "text", "--latex", "--style", style, library],
                       check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        text = library.with_name("lib_text.txt").read_text()
    return text.split("#\n\n\n", 1)[1].strip("\n")


def main():
    rows = [line.split("\t") for line in TABLE.read_text().splitlines() if line[:1] != "#"]
    problems = []
    for number, (style, kind, reference) in enumerate(rows, 1):
        wanted, got = ours(reference).strip(), printed(sys.argv[1], style, kind).strip()
        if got != wanted:
            problems.append(f"row {number}, {style} {kind}:\n  wanted {wanted}\n  got    {got}")
    print("\n".join(problems) or f"{len(rows)} references")
    return 1 if problems or len(rows) < 12 else 0


if __name__ == "__main__":
    sys.exit(main())
