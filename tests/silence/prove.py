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
    --rounds N          runs an operation with so many random options on each library (default 1)
    --without KIND,...  as if the program had no warnings of these kinds
    --each-kind         prints for each kind of warning how many losses would be silent without it,
                        and ends with 1 if the loss of a kind would go unnoticed
    --shrink DIRECTORY  writes for each kind of loss the smallest library found that shows it
    --shown N           examples of each (default 1)
    --jobs N            processes (default 1)

How it hangs together: exports.py and random_libraries.py make libraries; bibtex.py and people.py read
them; library_judges.py and reference_judges.py say what of the input a run did not keep; judge.py
holds the table of the kinds of warnings and says which of them name a loss.
"""
import argparse
import collections
import dataclasses
import multiprocessing
import os
import pathlib
import random
import sys

import causes
import judge
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
    return Case(name, made.text, made.other, made.document)


@dataclasses.dataclass
class Tally:
    """What came of cases. The examples of `silent` stand under operation, what, cause."""
    entries: int = 0
    tags: int = 0
    silent: dict = dataclasses.field(default_factory=dict)
    named: collections.Counter = dataclasses.field(default_factory=collections.Counter)
    alone: collections.Counter = dataclasses.field(default_factory=collections.Counter)

    def add(self, other):
        self.entries += other.entries
        self.tags += other.tags
        for what, examples in other.silent.items():
            kept = self.silent.setdefault(what, [0, []])
            kept[0] += examples[0]
            kept[1] = sorted(kept[1] + examples[1], key=lambda one: (one[1] or 10**6, one[0]))[:5]
        self.named += other.named
        self.alone += other.alone


class Prover:
    """What a process needs to judge cases."""

    def __init__(self, arguments):
        self.program = os.path.abspath(arguments.program)
        self.operations = arguments.operations.split(",")
        self.without = set(arguments.without.split(","))
        self.rounds = arguments.rounds

    def __call__(self, item):
        name, size = item
        case = case_of(name, size)
        tally = Tally(len(case.parsed.entries), sum(len(one.tags) for one in case.parsed.entries))
        for operation in self.operations:
            for turn in range(self.rounds):
                seed = f"{os.path.basename(name)} {operation} {turn or ''}"
                options = trial_runs.random_options(operation, random.Random(seed))
                self.judge(tally, case, size, operation, options)
        return tally

    def judge(self, tally, case, size, operation, options):
        for loss, kinds in self.losses(case, operation, options):
            tally.named.update(kinds)
            if len(kinds) == 1:
                tally.alone.update(kinds)
            if not kinds:
                example = (case.name, size, operation, options, describe(case, loss))
                what = (operation, loss.what, causes.of(case.parsed, loss))
                tally.add(Tally(silent={what: [1, [example]]}))

    def losses(self, case, operation, options):
        for loss, kinds in trial_runs.losses(self.program, case, operation, options):
            yield loss, kinds - self.without


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
                   for loss, kinds in prover.losses(smaller, operation, options) if not kinds)

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


def report(tally, shown):
    for (operation, what, cause), (count, examples) in sorted(tally.silent.items()):
        print(f"{operation}: {what}: {cause or '-'}: {count}")
        for example in examples[:shown]:
            options = " ".join(trial_runs.words_of(example[3]))
            print(f"    {example[4]}{'  [' + options + ']' if options else ''}")


def report_kinds(tally):
    """Prints what each kind names; gives whether each is needed."""
    needed = True
    print(f"{'kind':24}{'losses named':>14}{'silent without':>16}")
    for kind in judge.KINDS:
        if judge.KINDS[kind]:
            remark = "" if tally.alone[kind] else "NOT NOTICED"
            print(f"{kind:24}{tally.named[kind]:14}{tally.alone[kind]:16}  {remark}".rstrip())
            needed = needed and not remark
    return needed


def write_smallest(prover, found, directory):
    os.makedirs(directory, exist_ok=True)
    for number, (wanted, (count, examples)) in enumerate(sorted(found.items())):
        example = examples[0]
        text = shrink(prover, wanted, example)
        base = os.path.join(directory, f"{number:03}-{wanted[0]}-{wanted[1].replace(' ', '-')}")
        pathlib.Path(base + ".bib").write_bytes(text)
        pathlib.Path(base + ".txt").write_text(
            f"{': '.join(wanted)}\n{count} times\n{example[4]}\n"
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
    parser.add_argument("--rounds", type=int, default=1)
    parser.add_argument("--without", default="")
    parser.add_argument("--each-kind", action="store_true")
    parser.add_argument("--shrink")
    parser.add_argument("--shown", type=int, default=1)
    parser.add_argument("--jobs", type=int, default=1)
    return parser.parse_args()


def main():
    arguments = read_arguments()
    prover = Prover(arguments)
    tally = Tally()
    with multiprocessing.Pool(arguments.jobs) as pool:
        for more in pool.imap_unordered(prover, cases(arguments), 4):
            tally.add(more)
    report(tally, arguments.shown)
    needed = report_kinds(tally) if arguments.each_kind else True
    if arguments.shrink:
        write_smallest(prover, tally.silent, arguments.shrink)
    silent = sum(count for count, _ in tally.silent.values())
    print(f"{tally.entries} entries with {tally.tags} tags, {len(prover.operations)} operations: "
          f"{silent} silent losses of {len(tally.silent)} sorts")
    sys.exit(0 if needed and not silent else 1)


if __name__ == "__main__":
    main()
