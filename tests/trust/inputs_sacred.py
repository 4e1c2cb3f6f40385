#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Inputs are sacred: inputs_sacred.py TARVEL-BATCH CASES-DIRECTORY

Runs every operation on the inputs of all cases, over links of every kind and under hostile names,
and holds that no run changes a byte, the permissions or the time of what was picked.
"""
import os
import shutil
import sys
import tempfile

import trial

program, cases = os.path.abspath(sys.argv[1]), sys.argv[2]
failures = trial.Failures()
work = tempfile.mkdtemp(prefix="tarvel-sacred-").encode()


def fresh(name):
    directory = os.path.join(work, os.fsencode(name))
    shutil.rmtree(directory, ignore_errors=True)
    os.mkdir(directory)
    return directory


def put(path, data, mode=0o640):
    if os.path.lexists(path):
        os.unlink(path)  # it may be read-only
    with open(path, "wb") as file:
        file.write(data)
    os.chmod(path, mode)
    os.utime(path, ns=(10**18, 10**18 + 123456789))
    return path


def hold(what, operation, files, directory=None):
    """Runs an operation and checks that its files stay; gives the run."""
    before = [trial.state(file) for file in files]
    result = trial.run(program, operation, files, cwd=directory)
    for file, state in zip(files, before):
        failures.check(trial.state(file) == state, f"{what}: {operation} changed {file!r}")
    return result


def every_operation_on_every_seed():
    """Each seed as every kind of file, read-only too."""
    directory = fresh("seeds")
    seeds = trial.case_libraries(cases) + [trial.LIBRARY, trial.DOCUMENT, b"", b"\0", b"@"]
    for number, seed in enumerate(seeds):
        library = put(directory + b"/lit.bib", seed, 0o444 if number % 2 else 0o640)
        other = put(directory + b"/more.v2.bib", seeds[number - 1])
        document = put(directory + b"/paper.tex", trial.DOCUMENT + seed)
        for operation in trial.OPERATIONS:
            files = trial.arguments(operation, library, other, document)
            result = hold(f"seed {number}", operation, files)
            failures.check(result.returncode in (0, 1),
                           f"seed {number}: {operation} ended with {result.returncode}")
            failures.check((trial.DONE in result.stderr) == (result.returncode == 0),
                           f"seed {number}: {operation} says how it ended")
    return len(seeds)


def outputs_over_inputs():
    """An output that is a picked file under another name is never written."""
    ways = {"a hard link": os.link, "a symbolic link": os.symlink}
    for operation in trial.OPERATIONS:
        for number, suffix in enumerate(trial.SUFFIXES[operation]):
            for way, link in ways.items():
                directory = fresh("links")
                library = put(directory + b"/lit.bib", trial.LIBRARY)
                other = put(directory + b"/more.bib", trial.LIBRARY)
                document = put(directory + b"/paper.tex", trial.DOCUMENT)
                files = trial.arguments(operation, library, other, document)
                for picked in files:
                    output = directory + b"/lit" + suffix
                    if os.path.lexists(output):
                        os.unlink(output)
                    link(picked, output)
                    what = f"{way} from {suffix!r} to {os.path.basename(picked)!r}"
                    result = hold(what, operation, files)
                    failures.check(result.returncode == 1, f"{what}: {operation} must fail")
                    failures.check(trial.DONE not in result.stderr, f"{what}: {operation} is done")


def same_file_twice():
    """Both pickers hold the same file, or two links to it."""
    directory = fresh("same")
    library = put(directory + b"/lit.bib", trial.LIBRARY)
    os.link(library, directory + b"/hard.bib")
    os.symlink(b"lit.bib", directory + b"/soft.bib")
    for other in (library, directory + b"/hard.bib", directory + b"/soft.bib"):
        result = hold("the same library twice", "compare", [library, other])
        failures.check(result.returncode == 0, f"compare with {other!r}")
    both = put(directory + b"/both.bib", trial.DOCUMENT + trial.LIBRARY)
    result = hold("one file as document and library", "extract", [both, both])
    failures.check(result.returncode == 0, "extract from a library that is its own document")


def links_to_inputs():
    """A picked link is followed, and stays a link."""
    for operation in trial.OPERATIONS:
        directory = fresh("picked")
        target = put(directory + b"/real.txt", trial.LIBRARY)
        os.symlink(b"real.txt", directory + b"/lit.bib")
        other = put(directory + b"/more.bib", trial.LIBRARY)
        document = put(directory + b"/paper.tex", trial.DOCUMENT)
        library = directory + b"/lit.bib"
        result = hold("a link", operation,
                      trial.arguments(operation, library, other, document) + [])
        failures.check(result.returncode == 0, f"{operation} through a link")
        failures.check(os.path.islink(library), f"{operation} keeps the link")
        failures.check(open(target, "rb").read() == trial.LIBRARY, f"{operation} keeps the target")
        for output in trial.outputs(operation, library):
            failures.check(os.path.isfile(output), f"{operation} writes beside the link: {output!r}")


def converted_files():
    """The copy with Linux line breaks is a new file, and never one that was picked."""
    windows = trial.LIBRARY.replace(b"\n", b"\r\n")
    for operation in trial.OPERATIONS:
        directory = fresh("converted")
        library = put(directory + b"/lit.bib", windows)
        other = put(directory + b"/more.bib", windows)
        document = put(directory + b"/paper.tex", trial.DOCUMENT.replace(b"\n", b"\r\n"))
        result = hold("line breaks of Windows", operation,
                      trial.arguments(operation, library, other, document))
        failures.check(result.returncode == 0, f"{operation} on a converted file")
        for output in trial.outputs(operation, directory + b"/lit_linux.bib"):
            failures.check(os.path.isfile(output), f"{operation} writes {output!r}")
    directory = fresh("taken")
    picked = put(directory + b"/lit_linux.bib", trial.LIBRARY)
    library = put(directory + b"/lit.bib", windows + b"@misc{more,\r\n}\r\n")
    hold("a copy that would replace the other picked file", "compare", [picked, library])
    directory = fresh("twice")
    library = put(directory + b"/lit.bib", windows)
    result = hold("a converted file, picked twice", "compare", [library, library])
    failures.check(result.returncode == 0, "compare of a converted file with itself")
    failures.check(result.stderr.count(b"[File conversion]") == 2, "each conversion is reported")


def unwritable_places():
    """Where no output can be created nothing is done. (Root may write to any directory, so that
    directories stand in the outputs' places.)"""
    for operation in trial.OPERATIONS:
        for blocked in trial.SUFFIXES[operation]:
            directory = fresh("blocked")
            library = put(directory + b"/lit.bib", trial.LIBRARY)
            other = put(directory + b"/more.bib", trial.LIBRARY)
            document = put(directory + b"/paper.tex", trial.DOCUMENT)
            os.mkdir(directory + b"/lit" + blocked)
            result = hold("a directory in an output's place", operation,
                          trial.arguments(operation, library, other, document))
            failures.check(result.returncode == 1, f"{operation} without {blocked!r} must fail")
            failures.check(trial.DONE not in result.stderr, f"{operation} without {blocked!r}")
        library = b"/proc/self/environ"
        result = trial.run(program, operation,
                           trial.arguments(operation, library, library, library))
        failures.check(result.returncode == 1, f"{operation} on a file in /proc must fail")


def hostile_names():
    names = [b"a b.bib", b" .bib", b"new\nline.bib", b"tab\tq'\"$(x)`.bib", b"l\xe4t\xff.bib",
             b"\xf0\x9f\x93\x9a.bib", b"%s%n%d.bib", b"-x.bib", b"..bib", b"a..bib", b"*?[].bib"]
    for name in names:
        directory = fresh("names")
        library = put(directory + b"/" + name, trial.LIBRARY)
        other = put(directory + b"/other " + name, trial.LIBRARY)
        document = put(directory + b"/paper " + name, trial.DOCUMENT)
        for operation in trial.OPERATIONS:
            result = hold(f"the name {name!r}", operation,
                          trial.arguments(operation, library, other, document))
            failures.check(result.returncode == 0,
                           f"the name {name!r}: {operation}: {result.stderr!r}")
            for output in trial.outputs(operation, library):
                failures.check(os.path.isfile(output), f"{operation} writes {output!r}")
    directory = fresh("names")
    put(directory + b"/lit.bib", trial.LIBRARY)
    result = trial.run(program, "clean-tags", [b"lit.bib"], cwd=directory)
    failures.check(result.returncode == 0, "a name without a directory")
    failures.check(os.path.isfile(directory + b"/lit_tag.bib"), "its output stands beside it")


def long_paths():
    """A path of 1,000 bytes is taken, one of 1,001 ends the process before anything is written."""
    directory = fresh("long")
    for size in (990, 1000, 1001, 2000):
        path = directory
        while len(path) + 2 < size - 255:
            path += b"/" + b"d" * 200
        os.makedirs(path, exist_ok=True)
        left = size - len(path) - 1
        while left > 250:
            path += b"/" + b"e" * 100
            left -= 101
        os.makedirs(path, exist_ok=True)
        library = put(path + b"/" + b"f" * (left - 4) + b".bib", trial.LIBRARY)
        assert len(library) == size
        listed = sorted(os.listdir(path))
        for operation in ("clean-tags", "text", "clean-doubles"):
            result = hold(f"a path of {size} bytes", operation, [library])
            if size <= 1000:
                failures.check(result.returncode == 0, f"{operation} on a path of {size} bytes")
                continue
            failures.check(result.returncode == 1, f"{size} bytes end the process")
            wanted = (f"tarvel: the path of the first file is {size} bytes long; "
                      "1000 are the most\n").encode()
            failures.check(result.stderr == wanted, f"{size} bytes: {result.stderr!r}")
            failures.check(sorted(os.listdir(path)) == listed, "and write nothing")


try:
    count = every_operation_on_every_seed()
    outputs_over_inputs()
    same_file_twice()
    links_to_inputs()
    converted_files()
    unwritable_places()
    hostile_names()
    long_paths()
finally:
    shutil.rmtree(work, ignore_errors=True)
failures.end(f"{count} seeds through {len(trial.OPERATIONS)} operations")
