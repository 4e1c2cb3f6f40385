#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""All operations read a prepared library right: prepared.py TARVEL-BATCH [OPTION]... [LIBRARY]...

Prepares libraries, made-up ones too, and asks:
  - Does preparing the new library change nothing?
  - Does no operation find fault with the form of the new library? Entries that the preparation
    warned of are left out.
  - Does each reference of Extract and Text, in all six styles, hold each value that the style shows?
    What an entry lacks may be that of an earlier one; a single letter may stand beside another.

    --random N     so many made-up libraries (default 0)
    --installed N  so many of the libraries of installed TeX packages, small ones first (default 0)
"""
import argparse
import collections
import os
import pathlib
import subprocess
import sys
import tempfile

import judge
import prove
import trial_runs
from random_libraries import RandomLibrary
from reference_judges import STYLES
from trial_runs import Case

# The warnings of a library whose form an operation does not read right.
FORM = set("""unbraced-value unknown-type blank-in-type runs-on open-value shared-line other-tag
    stray-tag key-as-tag at-in-key upper-cased long-line""".split())
# What a preparation leaves out by design: the rest must be read right all the same.
DELIBERATE = {"left-out", "text-not-copied"}
# Of LaTeX's commands the plain text replaces those of its table only.
COMMANDS = {"command-left", "command-cut"}
WRITERS = ("clean-characters", "clean-tags", "clean-authors", "journals", "clean-doubles", "compare")
SIZE = 40  # entries of a made-up library


def runs():
    """Each operation with its options."""
    for operation in WRITERS:
        yield operation, {}
    for style in STYLES:
        for pages in ("first", "range"):
            options = {"style": style, "pages": pages, "title": True}
            yield "extract", options
            yield "text", options | {"bibitem": True, "latex": pages == "first"}


def key_of(text):
    return text.strip().lower()


def prepare(program, directory, name):
    """Prepares a library; gives the new one, none where there is no entry, and the keys of entries
    that cannot be cured."""
    ended = subprocess.run([program, "prepare", "--quiet", "--warnings", "warnings.tsv", name],
                           cwd=directory, capture_output=True, check=False)
    if ended.returncode != 0:
        return None, set()
    prepared = pathlib.Path(directory, name.replace(".bib", "_prepared.bib")).read_bytes()
    warnings = judge.read_warnings(pathlib.Path(directory, "warnings.tsv").read_bytes())
    return prepared, {key_of(warning.key) for warning in warnings
                      if warning.kind not in DELIBERATE}


def faults(program, path, data):
    """What is wrong with a prepared library."""
    with tempfile.TemporaryDirectory(prefix="tarvel-prepared-", dir=trial_runs.SCRATCH) as directory:
        pathlib.Path(directory, "lit.bib").write_bytes(data)
        prepared, incurable = prepare(program, directory, "lit.bib")
        if prepared is None:
            return
        if prepare(program, directory, "lit_prepared.bib")[0] != prepared:
            yield "preparing it again changes it"
    case = Case(path, prepared, prepared)
    case.document = trial_runs.cite_all(case.parsed.entries)
    for operation, options in runs():
        warnings, losses = trial_runs.outcome(program, case, operation, options)
        where = " ".join([operation, *trial_runs.words_of(options)])
        for warning in warnings:
            if warning.kind in FORM and key_of(warning.key) not in incurable:
                yield f"{where}: {warning.kind}: '{warning.key}': {warning.text}"
        if operation not in WRITERS:
            for loss, kinds in losses:
                is_left = kinds and kinds <= COMMANDS or key_of(loss.entry.key) in incurable
                if loss.what == judge.GONE and not is_left and len(loss.tag.text) > 1:
                    yield f"{where}: {prove.describe(case, loss)}"


def libraries(arguments):
    paths = list(arguments.libraries)
    if arguments.installed:
        paths += sorted(prove.installed(), key=os.path.getsize)[:arguments.installed]
    for path in paths:
        yield path, pathlib.Path(path).read_bytes()
    for number in range(arguments.random):
        yield f"random-{number}", RandomLibrary(f"prepared-{number}", SIZE).text


def main():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument("program")
    parser.add_argument("libraries", nargs="*")
    parser.add_argument("--random", type=int, default=0)
    parser.add_argument("--installed", type=int, default=0)
    arguments = parser.parse_intermixed_args()
    program, count = os.path.abspath(arguments.program), 0
    sorts = collections.Counter()
    for path, data in libraries(arguments):
        count += 1
        for fault in faults(program, path, data):
            sorts[path] += 1
            if sorts[path] <= 3:
                print(f"{path}: {fault}")
    print(f"{count} libraries, {sum(sorts.values())} faults in {len(sorts)} of them")
    sys.exit(0 if count and not sorts else 1)


if __name__ == "__main__":
    main()
