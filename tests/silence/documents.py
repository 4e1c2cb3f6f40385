# SPDX-License-Identifier: MIT
"""The citations of a LaTeX document: of every command that ends in "cite" or begins with it, outside
comments."""
import re

COMMENT = re.compile(r"(?<!\\)((?:\\\\)*)%[^\n]*")
CITATION = re.compile(r"\\(?:[A-Za-z]*cite|[Cc]ite[A-Za-z]*)\*?\s*(?:\[[^\]]*\]\s*)*\{([^{}]*)\}")


def citations(document):
    """The cited keys in their order, each with the numbers of the lines that cite it."""
    text = COMMENT.sub(r"\1", document.decode("latin-1"))
    found = {}
    for match in CITATION.finditer(text):
        for key in re.finditer(r"[^,]+", match.group(1)):
            first = text.count("\n", 0, match.start()) + 1
            last = text.count("\n", 0, match.start(1) + key.end()) + 1
            lines = found.setdefault(key.group().strip(), set())
            lines.update(range(first, last + 1))
    return found
