#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Old or new, never half: whole_outputs.py TARVEL-BATCH [FACTOR]

Good outputs of an earlier run are in place, and then runs are killed, meet a full disk, little
memory, another run on the same library, inputs that change, closed streams. Afterwards every output
is byte for byte the old one or the new one, the inputs are as they were, and a run that did not
write its files says so. FACTOR multiplies the number of random trials; 25 makes 1,000 kills and 200
pairs of runs.
"""
import fcntl
import os
import random
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time

import trial

program = os.path.abspath(sys.argv[1])
factor = int(sys.argv[2]) if len(sys.argv) > 2 else 1
failures = trial.Failures()
work = os.fsencode(tempfile.mkdtemp(prefix="tarvel-whole-"))
random.seed(11)
ENDS = (signal.SIGTERM, signal.SIGINT, signal.SIGHUP)


class World:
    """A directory with the inputs of an operation, and what runs on them give."""

    def __init__(self, operation, entries, name=None):
        self.operation = operation
        self.directory = os.path.join(work, os.fsencode(name or operation))
        shutil.rmtree(self.directory, ignore_errors=True)
        os.mkdir(self.directory)
        self.library = self.put(b"lit.bib", trial.library_of(entries, "old"))
        self.put(b"more.bib", trial.library_of(entries // 2, "old"))
        self.put(b"paper.tex", trial.DOCUMENT + b"\\cite{new1,old1,new20,old20,old7,new7}\n")
        paths = [self.directory + b"/" + n for n in (b"lit.bib", b"more.bib", b"paper.tex")]
        self.files = trial.arguments(operation, *paths)
        self.outputs = trial.outputs(operation, self.library)

    def put(self, name, data):
        path = self.directory + b"/" + name
        with open(path, "wb") as file:
            file.write(data)
        return path

    def run(self, *options, **more):
        return subprocess.run([program, *options, self.operation, *self.files],
                              stdin=subprocess.DEVNULL, capture_output=True, timeout=300, **more)

    def start(self, *options, **more):
        return subprocess.Popen([program, *options, self.operation, *self.files],
                                stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                stderr=subprocess.DEVNULL, **more)

    def good(self, *options):
        """The outputs of a run that nothing disturbs, and how long it took."""
        start = time.monotonic()
        result = self.run(*options)
        failures.check(result.returncode == 0, f"{self.operation} succeeds: {result.stderr!r}")
        return self.read(), time.monotonic() - start

    def read(self):
        found = {}
        for path in self.outputs:
            try:
                with open(path, "rb") as file:
                    found[path] = file.read()
            except FileNotFoundError:
                found[path] = None
        return found

    def restore(self, outputs):
        for path, data in outputs.items():
            with open(path, "wb") as file:
                file.write(data)

    def states(self):
        return [trial.state(file) for file in self.files]

    def debris(self):
        return [name for name in os.listdir(self.directory) if b".tarvel-" in name]

    def old_and_new(self, entries):
        """The good outputs of an older library, in place, and those that the next run will give."""
        old, _ = self.good()
        self.put(b"lit.bib", trial.library_of(entries, "new"))
        new, duration = self.good()
        self.restore(old)
        return old, new, duration

    def check_each(self, what, old, new):
        for path, data in self.read().items():
            failures.check(data in (old[path], new[path]),
                           f"{self.operation}: {what}: {os.path.basename(path)!r} is half")


def quietly(preparation):
    """A run of such a process; what it does must not be in this one."""
    return {"preexec_fn": preparation}


def kills(operation, count):
    world = World(operation, 1000)
    old, new, duration = world.old_and_new(1000)
    before, met = world.states(), 0
    for number in range(count):
        process = world.start()
        time.sleep(duration * 1.05 * (number + random.random()) / count)
        process.kill()
        met += process.wait() == -signal.SIGKILL
        world.check_each("after a kill", old, new)
        log = [path for path in world.outputs if path.endswith(b".log")]
        if log and old[log[0]] != new[log[0]] and world.read()[log[0]] == new[log[0]]:
            failures.check(world.read() == new, f"{operation}: a new log beside an old library")
        world.restore(old)
    failures.check(world.states() == before, f"{operation}: a killed run changed an input")
    again, _ = world.good()
    failures.check(again == new and not world.debris(), f"{operation}: the run after the kills")
    return met


def pairs(operation, count):
    world = World(operation, 500)
    one, _ = world.good()
    option = {"clean-tags": ("--keep", "all"), "text": ("--style", "acs")}[operation]
    other, _ = world.good(*option)
    failures.check(one != other, f"{operation}: the two runs differ")
    for _ in range(count):
        running = [world.start(), world.start(*option)]
        ends = [process.wait() for process in running]
        failures.check(ends == [0, 0], f"{operation}: two runs at once end with {ends}")
        failures.check(world.read() in (one, other), f"{operation}: two runs at once are mixed")
        failures.check(not world.debris(), f"{operation}: two runs at once leave {world.debris()}")


def limited(size):
    return quietly(lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (size, size)))


def full_disks(operation):
    """The limit of a file's size stands for the disk; the program is not told to ignore its signal."""
    world = World(operation, 20)
    old, new, _ = world.old_and_new(20)
    largest = max(len(data) for data in new.values())
    for size in [*range(0, largest, 2048), largest - 1]:
        result = world.run(**limited(size))
        what = f"{operation} with room for {size} bytes"
        failures.check(result.returncode == 1, f"{what} ended with {result.returncode}")
        failures.check(b"File too large" in result.stdout, f"{what}: {result.stdout!r}")
        failures.check(world.read() == old, f"{what}: an output is not the old one")
        failures.check(not world.debris(), f"{what} leaves {world.debris()}")
    failures.check(world.run(**limited(largest)).returncode == 0 and world.read() == new,
                   f"{operation} with just enough room")


def small_disks(operation):
    """The same on a disk of few blocks, where this user may make one."""
    world = World(operation, 20)
    size, blocks = 0, 0
    while blocks < 1000:
        for name in os.listdir(world.directory):
            os.unlink(world.directory + b"/" + name)
        mounted = subprocess.run(["mount", "-t", "tmpfs", "-o", f"size={2000 * 4096}", "none",
                                  world.directory], stderr=subprocess.DEVNULL)
        if mounted.returncode != 0:
            return 0
        try:
            inner = World.__new__(World)
            inner.__dict__.update(world.__dict__)
            inner.put(b"lit.bib", trial.library_of(20, "old"))
            inner.put(b"more.bib", trial.library_of(10, "old"))
            inner.put(b"paper.tex", trial.DOCUMENT + b"\\cite{new1,old1,new20,old7,new7}\n")
            old, new, _ = inner.old_and_new(20)
            room = os.statvfs(inner.directory).f_bfree - blocks
            inner.put(b"filler", b"x" * (room * 4096))
            result = inner.run()
            what = f"{operation} with {blocks} free blocks"
            if result.returncode == 0:
                failures.check(inner.read() == new, f"{what}: not the new files")
                size = blocks
            else:
                failures.check(result.returncode == 1, f"{what} ended with {result.returncode}")
                failures.check(b"No space left" in result.stdout, f"{what}: {result.stdout!r}")
                failures.check(inner.read() == old, f"{what}: not the old files")
            failures.check(not inner.debris(), f"{what} leaves {inner.debris()}")
        finally:
            subprocess.run(["umount", world.directory], check=True)
        if size:
            return blocks
        blocks += 1 if blocks < 20 else 20
    failures.check(False, f"{operation}: never enough room")
    return blocks


def little_memory(operation):
    world = World(operation, 1500)
    old, new, _ = world.old_and_new(1500)
    short = 0
    for size in range(4, 28, 4):
        limit = size << 20
        result = world.run(**quietly(
            lambda limit=limit: resource.setrlimit(resource.RLIMIT_AS, (limit, limit))))
        # Too little for the program itself: the loader says so, or the C++ library ends the process
        # before its first line, as it has no room even for an exception.
        if (result.returncode == 127 or b"error while loading" in result.stderr
                or b"terminate called without an active exception" in result.stderr):
            failures.check(world.read() == old, f"{operation}: not the old files")
            continue
        what = f"{operation} with {size} MiB"
        if result.returncode == 0:
            failures.check(world.read() == new, f"{what}: not the new files")
            world.restore(old)
            continue
        short += 1
        failures.check(result.returncode == 1, f"{what} ended with {result.returncode}")
        failures.check(b"emory" in result.stdout + result.stderr, f"{what}: {result.stderr!r}")
        failures.check(world.read() == old, f"{what}: not the old files")
    return short


def changes(path, size):
    """Ways to change a file of this size while it is read: cut within its last page, by pages,
    written over in place, replaced."""
    def cut_little():
        os.truncate(path, size - 5)

    def cut_much():
        os.truncate(path, size // 3)

    def overwrite():
        with open(path, "r+b") as file:
            file.seek(size // 2)
            file.write(b"X" * (size // 4))

    def replace():
        with open(path + b".other", "wb") as file:
            file.write(trial.library_of(10, "other"))
        os.rename(path + b".other", path)
    return cut_little, cut_much, overwrite, replace


def changed_inputs(operation, count):
    world = World(operation, 3000)
    old, new, duration = world.old_and_new(3000)
    data = trial.library_of(3000, "new")
    refused = 0
    for number in range(count):
        for change in changes(world.library, len(data)):
            world.put(b"lit.bib", data)
            world.restore(old)
            time.sleep(0.02)  # times of files are a few milliseconds coarse
            process = subprocess.Popen([program, "--quiet", operation, *world.files],
                                       stdout=subprocess.PIPE, stderr=subprocess.PIPE)
            time.sleep(duration * random.random() * 0.8)
            early = process.poll() is None
            change()
            printed, boxes = process.communicate()
            what = f"{operation}, {change.__name__}"
            if process.returncode == 0:
                # The change came before the first look or after the last one.
                now = world.read()
                if now != new:
                    world.restore(old)
                    failures.check(world.good("--quiet")[0] == now,
                                   f"{what}: done, but neither the old nor the new library")
                continue
            refused += early
            failures.check(process.returncode == 1, f"{what} ended with {process.returncode}")
            failures.check(trial.DONE not in boxes, f"{what} is done")
            failures.check(b"lit.bib' was changed" in printed or world.read() == old,
                           f"{what}: {printed!r}")
            failures.check(world.read() == old, f"{what}: not the old files")
    return refused


def closed_streams(operation, entries):
    world = World(operation, entries)
    right, _ = world.good()
    before = world.states()
    for closed in ((0,), (1,), (2,), (0, 1, 2)):
        for path in world.outputs:
            os.unlink(path)
        shell = " ".join(f"{n}{'<' if n == 0 else '>'}&-" for n in closed)
        result = subprocess.run(["sh", "-c", f'exec "$@" {shell}', "sh", program, operation,
                                 *world.files], capture_output=True, timeout=300)
        what = f"{operation} on {entries} entries with {shell}"
        failures.check(result.returncode == 0, f"{what} ended with {result.returncode}")
        failures.check(world.read() == right, f"{what} gives other files")
        failures.check(world.states() == before, f"{what} changed an input")


def ended_by_signal(operation):
    world = World(operation, 1500)
    old, new, duration = world.old_and_new(1500)
    for end in ENDS:
        process = world.start()
        time.sleep(duration / 2)
        process.send_signal(end)
        status = process.wait()
        failures.check(status in (-end, 0), f"{operation}: {end!r} gives {status}")
        failures.check(not world.debris(), f"{operation}: {end!r} leaves {world.debris()}")
        world.check_each("after a signal", old, new)
        world.restore(old)
    process = world.start(preexec_fn=lambda: signal.signal(signal.SIGINT, signal.SIG_IGN))
    time.sleep(duration / 4)
    process.send_signal(signal.SIGINT)
    failures.check(process.wait() == 0, f"{operation}: a SIGINT that was ignored stays so")


def reader_leaves(operation):
    world = World(operation, 50)
    right, _ = world.good()
    for path in world.outputs:
        os.unlink(path)
    read, write = os.pipe()
    os.close(read)
    result = subprocess.run([program, operation, *world.files], stdout=write, stderr=write,
                            preexec_fn=lambda: signal.signal(signal.SIGPIPE, signal.SIG_DFL))
    os.close(write)
    # An operation that prints something cannot; that is a failure, but none of its files'.
    failures.check(result.returncode in (0, 1), f"{operation} | true ended with {result.returncode}")
    failures.check(world.read() == right, f"{operation} | true gives other files")


def special_files(operation):
    world = World(operation, 5)
    pipe = world.directory + b"/pipe.bib"
    os.mkfifo(pipe)
    os.symlink(b"/dev/zero", world.directory + b"/link.bib")
    picked = [pipe, world.directory + b"/link.bib", world.directory]
    for special in picked:
        for position in range(len(world.files)):
            files = [*world.files]
            files[position] = special
            start = time.monotonic()
            result = trial.run(program, operation, files)
            what = f"{operation} on {special!r}"
            failures.check(time.monotonic() - start < 5, f"{what} takes long")
            failures.check(result.returncode == 1, f"{what} ended with {result.returncode}")
            failures.check(result.stderr.count(b"Could not open the") == 2,
                           f"{what}: {result.stderr!r}")


def places():
    """Where a rename would change more than the bytes, the file is written in its place."""
    world = World("clean-tags", 5)
    right, _ = world.good()
    library, log = sorted(world.outputs)
    os.chmod(library, 0o640)
    world.good()
    failures.check(os.stat(library).st_mode & 0o7777 == 0o640, "the mode of a file stays")

    other = world.put(b"other", b"x")
    os.unlink(library)
    os.symlink(b"other", library)
    world.good()
    failures.check(os.path.islink(library) and world.read() == right, "a link stays a link")
    os.unlink(library)
    os.link(other, library)
    inode = os.stat(other).st_ino
    world.good()
    failures.check(os.stat(library).st_ino == inode and world.read() == right, "links stay linked")
    os.unlink(library)

    os.mkfifo(library)
    drunk = []
    reader = threading.Thread(target=lambda: drunk.append(open(library, "rb").read()))
    reader.start()
    world.run()
    reader.join()
    failures.check(drunk == [right[library]], "a pipe is written into")
    os.unlink(library)

    for link, target in ((library, log), (log, library)):
        for way in (os.symlink, os.link):
            for path in world.outputs:
                if os.path.lexists(path):
                    os.unlink(path)
            if way is os.link:
                world.put(os.path.basename(target), b"x")
            way(target, link)
            result = world.run()
            failures.check(result.returncode == 1 and b"Could not create the log file" in
                           result.stdout, f"two outputs in one file: {result.stdout!r}")


def stale_files():
    """What a dead run has left goes with the next run, what a living one has stays."""
    world = World("clean-tags", 5)
    right, _ = world.good()
    names = [b".lit_tag.bib.tarvel-0", b".lit_tag.bib.tarvel-1", b".lit_tag.log.tarvel-0"]
    for name in names:
        world.put(name, b"x")
    failures.check(world.good()[0] == right and not world.debris(), "the next run cleans up")
    held = open(world.put(names[0], b"x"), "rb")
    fcntl.flock(held, fcntl.LOCK_EX)
    failures.check(world.good()[0] == right, "a name that is taken does not stop a run")
    failures.check(world.debris() == [names[0]], "nor does the run remove it")
    held.close()


try:
    counts = {"kills": 0, "refused": 0, "blocks": 0, "short of memory": 0}
    for name in trial.OPERATIONS:
        counts["kills"] += kills(name, 5 * factor)
        full_disks(name)
        counts["short of memory"] += little_memory(name)
        for entries in (5, 1500):
            closed_streams(name, entries)
        reader_leaves(name)
        special_files(name)
    for name in ("clean-tags", "text"):
        pairs(name, 4 * factor)
    for name in ("clean-tags", "clean-doubles", "extract"):
        counts["refused"] += changed_inputs(name, factor)
        ended_by_signal(name)
    for name in trial.OPERATIONS if factor > 1 else ("clean-tags", "extract"):
        counts["blocks"] += small_disks(name)
    places()
    stale_files()
    failures.check(counts["kills"] * 2 > 40 * factor, "most kills met a running process")
    failures.check(counts["refused"] > 0, "some changes met a running process")
finally:
    shutil.rmtree(work, ignore_errors=True)
failures.end(", ".join(f"{name}: {count}" for name, count in counts.items()))
