#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs the operations at their limits: tools/limits.py TARVEL-BATCH [CASE...]

    entry      an entry of 10 MB, by a long value, by many tags and by one line
    entries    1,000,000 entries
    gigabyte   a library of 1 GB

Prints time and memory of each run, and beside it the time that one pass over the same bytes takes
(tr). Without a case all are run, which takes some minutes, 8 GB of disk in the directory for
temporary files (TMPDIR) and the memory that it prints. Not one of the tests of every day. Ends
with 1 when an operation neither succeeds nor says why.
"""
import os
import shutil
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "../tests/trust"))
import trial  # noqa: E402

ENTRY_BYTES = 10_000_000


def entry(number, abstract=""):
    return (f"@article{{key{number},\n  author = {{Anna Berg and Carl D. H. Haan{number}}},\n"
            f"  title = {{On the {number}th thing of {number % 977}}},\n"
            f"  journal = {{Acta Acustica}},\n  year = {{{1900 + number % 120}}},\n"
            f"  volume = {{{number % 900}}},\n  pages = {{{number}--{number + 9}}},\n"
            f"  doi = {{10.1/{number}}},\n  owner = {{me}},\n{abstract}}}\n\n").encode()


def long_entries(file):
    file.write(entry(1))
    words = b"words of an abstract " * 4 + b"\n"
    file.write(b"@article{value,\n  title = {T},\n  abstract = {"
               + words * (ENTRY_BYTES // len(words)) + b"},\n  year = {2001}\n}\n\n")
    tag = b"  note = {a note of some length that comes again},\n"
    file.write(b"@book{tags,\n  author = {A. Berg},\n" + tag * (ENTRY_BYTES // len(tag)) + b"}\n\n")
    file.write(b"@misc{line,\n  note = {" + b"x" * ENTRY_BYTES + b"},\n  year = {2001}\n}\n\n")
    file.write(entry(2))


def many_entries(file):
    for number in range(1_000_000):
        file.write(entry(number))


def gigabyte(file):
    abstract = "  abstract = {" + "words of an abstract " * 200 + "},\n"
    size = number = 0
    while size < 2**30:
        size += file.write(entry(number, abstract))
        number += 1


CASES = {"entry": long_entries, "entries": many_entries, "gigabyte": gigabyte}


def measured(command, **options):
    start = time.monotonic()
    process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                               stderr=subprocess.STDOUT, **options)
    said = process.stdout.read()
    _, status, usage = os.wait4(process.pid, 0)
    return (os.waitstatus_to_exitcode(status), time.monotonic() - start,
            usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024, said)


def run_case(program, name, work):
    library = os.path.join(work, "lit.bib")
    document = os.path.join(work, "paper.tex")
    with open(library, "wb") as file:
        CASES[name](file)
    with open(document, "wb") as file:
        file.write(b"\\begin{document}\n\\cite{key1,value,tags,line}\n")
        for number in range(0, 1_000_000, 10):
            file.write(b"\\cite{key%d}\n" % number)
    size = os.path.getsize(library)
    with open(library, "rb") as source:
        start = os.times()
        subprocess.run(["tr", r"\200-\377", "?"], stdin=source, stdout=subprocess.DEVNULL,
                       env={"LC_ALL": "C"}, check=True)
        end = os.times()
    pass_time = (end.children_user + end.children_system
                 - start.children_user - start.children_system)
    print(f"{name}: {size / 1e6:.1f} MB; one pass takes {pass_time:.2f} s", flush=True)
    print(f"  {'operation':18}{'status':>7}{'s':>8}{'CPU s':>8}{'x pass':>8}{'MB':>8}{'out MB':>8}")
    clear = True
    for operation in trial.OPERATIONS:
        files = trial.arguments(operation, library, library, document)
        status, wall, cpu, memory, said = measured([program, operation, *files])
        paths = [path for path in trial.outputs(operation, library) if os.path.exists(path)]
        written = sum(os.path.getsize(path) for path in paths)
        print(f"  {operation:18}{status:7}{wall:8.2f}{cpu:8.2f}{cpu / max(pass_time, 0.01):8.1f}"
              f"{memory:8.0f}{written / 1e6:8.1f}", flush=True)
        if status != 0:
            print("   ", said[:300].decode(errors="replace").strip().replace("\n", "\n    "))
            clear = clear and status == 1 and said
        for path in paths:
            os.unlink(path)
    return clear


def main():
    program = os.path.abspath(sys.argv[1])
    clear = True
    for name in sys.argv[2:] or CASES:
        work = tempfile.mkdtemp(prefix="tarvel-limits-")
        try:
            clear = run_case(program, name, work) and clear
        finally:
            shutil.rmtree(work, ignore_errors=True)
    sys.exit(0 if clear else 1)


main()
