#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs that break off: broken_off.py TARVEL-BATCH [KILLS-PER-OPERATION]

Kills every operation with SIGKILL at many moments of a run, and lets the disk fill up at many bytes
(the size limit of a process stands for it). The inputs stay as they are, a full disk is never
called done, and the next run gives the right files.
"""
import os
import random
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import time

import trial

program = os.path.abspath(sys.argv[1])
kills = int(sys.argv[2]) if len(sys.argv) > 2 else 3
failures = trial.Failures()
work = tempfile.mkdtemp(prefix="tarvel-broken-").encode()
random.seed(7)


def world(operation, library):
    directory = os.path.join(work, operation.encode())
    shutil.rmtree(directory, ignore_errors=True)
    os.mkdir(directory)
    contents = {b"lit.bib": library, b"more.bib": library[library.index(b"@book"):],
                b"paper.tex": trial.DOCUMENT + b"\\cite{k1,k20,k300,k4000,k7999}\n"}
    for name, data in contents.items():
        with open(directory + b"/" + name, "wb") as file:
            file.write(data)
    paths = [directory + b"/" + name for name in (b"lit.bib", b"more.bib", b"paper.tex")]
    return paths[0], trial.arguments(operation, *paths)


def right_files(operation, library, files):
    start = time.monotonic()
    result = trial.run(program, operation, files)
    failures.check(result.returncode == 0, f"{operation} succeeds: {result.stderr!r}")
    paths = trial.outputs(operation, library)
    return {path: open(path, "rb").read() for path in paths}, time.monotonic() - start


def kill_runs(operation, library_bytes):
    library, files = world(operation, library_bytes)
    right, duration = right_files(operation, library, files)
    before = [trial.state(file) for file in files]
    killed = 0
    for number in range(kills):
        for path in right:
            os.unlink(path)
        process = subprocess.Popen([program, operation, *files], stdout=subprocess.DEVNULL,
                                   stderr=subprocess.DEVNULL)
        time.sleep(duration * (number + random.random()) / kills)
        process.kill()
        killed += process.wait() == -signal.SIGKILL
        failures.check([trial.state(file) for file in files] == before,
                       f"{operation}: a killed run leaves the inputs")
        again, _ = right_files(operation, library, files)
        failures.check(again == right, f"{operation}: the run after a killed one is right")
    return killed


def limit_size(size):
    def prepare():
        signal.signal(signal.SIGXFSZ, signal.SIG_IGN)  # so that write fails with EFBIG
        resource.setrlimit(resource.RLIMIT_FSIZE, (size, size))
    return prepare


def full_disks(operation, library_bytes, steps):
    library, files = world(operation, library_bytes)
    right, _ = right_files(operation, library, files)
    before = [trial.state(file) for file in files]
    largest = max(len(data) for data in right.values())
    sizes = sorted({largest - 1, 0, 1, *(largest * step // steps for step in range(steps))})
    for size in sizes:
        result = trial.run(program, operation, files, preexec_fn=limit_size(size))
        what = f"{operation} with room for {size} of {largest} bytes"
        failures.check(result.returncode == 1, f"{what} ended with {result.returncode}")
        failures.check(trial.DONE not in result.stderr, f"{what} is not done")
        failures.check(b"File too large" in result.stdout, f"{what} says why: {result.stdout!r}")
        failures.check([trial.state(file) for file in files] == before, f"{what} keeps its inputs")
    again, _ = right_files(operation, library, files)
    failures.check(again == right, f"{operation}: the run after a full disk is right")
    return len(sizes)


try:
    killed = full = 0
    large = trial.library_of(8000, "k")
    for name in trial.OPERATIONS:
        killed += kill_runs(name, large)
        full += full_disks(name, trial.LIBRARY, 10)
        full += full_disks(name, large, 2)
    failures.check(killed * 3 > kills * len(trial.OPERATIONS), "most kills met a running process")
finally:
    shutil.rmtree(work, ignore_errors=True)
failures.end(f"{killed} of {kills * len(trial.OPERATIONS)} runs killed, {full} disks full")
