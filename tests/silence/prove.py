#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Nothing is lost in silence: prove.py TARVEL-BATCH [OPTION]...

Runs the eight operations on random libraries in the forms of many programs and sites, and on
libraries given by name, and asks of every tag of every entry, as BibTeX reads it (bibtex.py, which
shares nothing with the program): does its value stand in an output as the operation promises, or is
it named in the log, or in a warning? What is not is printed: the operation, what happened, what is odd
about the value, how often, and an example. Ends with 1 if there was any.

    --entries N         so many entries in random libraries (default 5000)
    --size N            the most entries of a random library (default 60)
    --seed TEXT         other random libraries
    --files FILE...     libraries; with --entries 0 these only
    --installed         the libraries of the TeX packages that are installed
    --operations A,B    these operations only
    --without KIND,...  as if the program had no warnings of these kinds
    --shrink DIRECTORY  writes for each kind of loss the smallest library found that shows it
    --shown N           examples of each (default 1)
    --jobs N            processes (default 1)

How it hangs together: exports.py and random_libraries.py make libraries; bibtex.py and people.py read
them; library_judges.py and reference_judges.py say what of the input a run did not keep; judge.py
holds the table of the kinds of warnings and says which losses no warning names.
"""
import argparse
import collections
import multiprocessing
import os
import pathlib
import random
import sys

import causes
import trial_runs
from random_libraries import RandomLibrary
from trial_runs import Case


def installed():
    """The libraries of installed TeX packages."""
    roots = ("/usr/share/texlive", "/usr/share/texmf", "/usr/share/doc/texlive-doc",
             "/usr/share/doc")
    found = {path for root in roots for path in pathlib.Path(root).rglob("*.bib")}
    return sorted(str(path) for path in found if path.is_file())


def cases(arguments):
    """Names of the cases: a path, or a seed and a size."""
    for path in arguments.files + (installed() if arguments.installed else []):
        yield path, 0
    left, number = arguments.entries, 0
    while left > 0:
        name = f"{arguments.seed}-{number}"
        size = min(left, random.Random(name).choice((1, 3, arguments.size // 3, arguments.size)))
        yield name, max(size, 1)
        left -= max(size, 1)
        number += 1


def case_of(name, size):
    if size == 0:
        return Case.from_file(name)
    made = RandomLibrary(name, size)
    return Case(name, made.text, made.other, made.document, made.keys)


class Prover:
    """What a process needs to judge cases."""

    def __init__(self, arguments):
        self.program = os.path.abspath(arguments.program)
        self.operations = arguments.operations.split(",")
        self.without = set(arguments.without.split(","))

    def __call__(self, item):
        """The losses of a case: operation, what, cause, example; and its entries and tags."""
        name, size = item
        case = case_of(name, size)
        found = []
        for operation in self.operations:
            options = trial_runs.random_options(operation, random.Random(f"{name} {operation}"))
            for loss in self.losses(case, operation, options):
                example = (name, size, operation, options, describe(case, loss))
                found.append(((operation, loss.what, causes.of(case.parsed, loss)), example))
        tags = sum(len(entry.tags) for entry in case.parsed.entries)
        return found, len(case.parsed.entries), tags

    def losses(self, case, operation, options):
        return trial_runs.silent_losses(self.program, case, operation, options, self.without)


def describe(case, loss):
    where = loss.tag if loss.tag is not None and loss.tag.line else loss.entry
    tag = f" '{loss.tag.name}'" if loss.tag is not None else ""
    key = getattr(loss.entry, "key", "")
    line = where.line if where is not None else 0
    return f"{case.name}:{line}: entry '{key}'{tag} {loss.detail}"


def shrink(prover, wanted, example):
    """The smallest library that still shows the loss, lines left out one by one."""
    name, size, operation, options, _ = example
    case = case_of(name, size)

    def shows(lines):
        smaller = case.with_library(b"".join(lines))
        return any((operation, loss.what, causes.of(smaller.parsed, loss)) == wanted
                   for loss in prover.losses(smaller, operation, options))

    lines = case.library.splitlines(keepends=True)
    step = max(len(lines) // 2, 1)
    while step:
        at = 0
        while at < len(lines):
            fewer = lines[:at] + lines[at + step:]
            if fewer and shows(fewer):
                lines = fewer
            else:
                at += step
        step //= 2
    return b"".join(lines)


def report(found, shown):
    for (operation, what, cause), examples in sorted(found.items()):
        print(f"{operation}: {what}: {cause or '-'}: {len(examples)}")
        for example in examples[:shown]:
            options = " ".join(trial_runs.words_of(example[3]))
            print(f"    {example[4]}{'  [' + options + ']' if options else ''}")


def write_smallest(prover, found, directory):
    os.makedirs(directory, exist_ok=True)
    for number, (wanted, examples) in enumerate(sorted(found.items())):
        example = min(examples, key=lambda one: one[1] or 10**6)
        text = shrink(prover, wanted, example)
        base = os.path.join(directory, f"{number:03}-{wanted[0]}-{wanted[1].replace(' ', '-')}")
        pathlib.Path(base + ".bib").write_bytes(text)
        pathlib.Path(base + ".txt").write_text(
            f"{': '.join(wanted)}\n{len(examples)} times\n{example[4]}\n"
            f"options: {' '.join(trial_runs.words_of(example[3]))}\n", encoding="utf-8")


def read_arguments():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument("program")
    parser.add_argument("--entries", type=int, default=5000)
    parser.add_argument("--size", type=int, default=60)
    parser.add_argument("--seed", default="one")
    parser.add_argument("--files", nargs="+", default=[])
    parser.add_argument("--installed", action="store_true")
    parser.add_argument("--operations", default=",".join(trial_runs.OPERATIONS))
    parser.add_argument("--without", default="")
    parser.add_argument("--shrink")
    parser.add_argument("--shown", type=int, default=1)
    parser.add_argument("--jobs", type=int, default=1)
    return parser.parse_args()


def main():
    arguments = read_arguments()
    prover = Prover(arguments)
    found = collections.defaultdict(list)
    entries = tags = 0
    with multiprocessing.Pool(arguments.jobs) as pool:
        for losses, more, more_tags in pool.imap_unordered(prover, cases(arguments), 4):
            entries, tags = entries + more, tags + more_tags
            for what, example in losses:
                found[what].append(example)
    for examples in found.values():
        examples.sort(key=lambda example: (example[1], example[0]))
    report(found, arguments.shown)
    if arguments.shrink:
        write_smallest(prover, found, arguments.shrink)
    silent = sum(len(examples) for examples in found.values())
    print(f"{entries} entries with {tags} tags, {len(prover.operations)} operations: {silent} silent "
          f"losses of {len(found)} sorts")
    sys.exit(1 if found else 0)


if __name__ == "__main__":
    main()
