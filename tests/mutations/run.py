#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Breaks the program on purpose and looks whether a test notices.

    tests/mutations/run.py [--list FILE] [--only TEXT] [--keep DIRECTORY] [--jobs N]
    tests/mutations/run.py --check    only look whether every edit applies

Copies the sources to a directory of their own, builds them, and then makes the edits of
tests/mutations/edits.txt one at a time: an edit is made, tarvel-tests and tarvel-batch are built,
the tests of the labels unit and case run up to the first that fails, and the edit is taken back.
Reports for every edit which test noticed it. An edit that no test notices survives: a test is missing.
An edit that does not compile does not count as noticed either: it needs another text.

Ends with 1 when an edit survived, does not apply or does not compile. Takes some minutes per ten
edits; --only takes the edits whose file or comment holds a text.

edits.txt holds blocks, an empty line between two:

    # what breaks
    @ path of the source
    - the text as it stands (it must stand there exactly once); several lines are joined by breaks
    + the text in its place
"""
import argparse
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import time

# The randomized tests are cut short, and those of all short files left out: an edit that only they
# notice deserves a row of its own.
os.environ["TARVEL_RANDOM_RUNS"] = "300"
ROOT = pathlib.Path(__file__).resolve().parents[2]
COPIED = ["CMakeLists.txt", "CMakePresets.json", "app", "batch", "cmake", "core", "data",
          "docs", "examples", "gui", "LICENSE", "ops", "packaging", "README.md", "tests",
          "tools", "warnings"]


class Edit:
    def __init__(self, block):
        lines = block.split("\n")
        self.what = " ".join(line[2:] for line in lines if line.startswith("# "))
        self.path = next(line[2:] for line in lines if line.startswith("@ "))
        self.old = "\n".join(line[2:] for line in lines if line.startswith("- "))
        self.new = "\n".join(line[2:] for line in lines if line.startswith("+ "))

    def apply(self, text):
        if text.count(self.old) != 1 or self.old == self.new:
            return None
        return text.replace(self.old, self.new)


def read_edits(path, only):
    blocks = path.read_text().strip().split("\n\n")
    edits = [Edit(block) for block in blocks if "\n@ " in block]
    # An edit of a header builds nearly everything anew: those come last.
    edits.sort(key=lambda edit: edit.path.endswith(".h"))
    return [edit for edit in edits if only in edit.path or only in edit.what]


def run(command, **options):
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          errors="replace", **options)


def build(work, jobs):
    return run(["cmake", "--build", "build/dev", "-j", str(jobs), "--target", "tarvel-tests",
                "tarvel-batch"], cwd=work)


def configure(work, jobs):
    # Without debugging information: most of the time goes into building.
    command = ["cmake", "--preset", "dev", "-DTARVEL_GUI=OFF", "-DCMAKE_CXX_FLAGS_DEBUG="]
    if shutil.which("ccache"):
        command.append("-DCMAKE_CXX_COMPILER_LAUNCHER=ccache")
    for step in (run(command, cwd=work), build(work, jobs)):
        if step.returncode != 0:
            sys.exit(step.stdout[-3000:] + "\nthe unbroken program does not build")


def first_failure(work, jobs):
    """The name of a test that fails, or nothing."""
    # The unit tests in one process: starting one for each of them would take most of the time.
    tests = run(["tests/without_privileges.sh", "build/dev/bin/tarvel-tests",
                 "--gtest_fail_fast", "--gtest_brief=1",
                 "--gtest_filter=-AllShort*"], cwd=work, timeout=900)
    if tests.returncode != 0:
        failed = [line for line in tests.stdout.split("\n") if line.startswith("[  FAILED  ]")]
        return failed[0][13:].split(",")[0] if failed else f"exit status {tests.returncode}"
    cases = run(["ctest", "--preset", "dev", "-L", "case", "-j", str(jobs), "--stop-on-failure"],
                cwd=work, timeout=900)
    if cases.returncode == 0:
        return None
    failed = [line for line in cases.stdout.split("\n") if "***" in line]
    return failed[0].split()[3] if failed else "ctest"


def try_edit(work, edit, jobs):
    source = work / edit.path
    original = source.read_text()
    broken = edit.apply(original)
    if broken is None:
        return "does not apply"
    source.write_text(broken)
    try:
        built = build(work, jobs)
        if built.returncode != 0:
            errors = [line for line in built.stdout.split("\n") if "error" in line]
            return "does not compile: " + (errors[0] if errors else "")
        failure = first_failure(work, jobs)
        return f"noticed by {failure}" if failure else "SURVIVED"
    except subprocess.TimeoutExpired:
        return "noticed by a run that does not end"
    finally:
        source.write_text(original)


def check(edits):
    """Names the edits that do not apply; returns the exit status."""
    stale = [edit for edit in edits if edit.apply((ROOT / edit.path).read_text()) is None]
    for edit in stale:
        print(f"{edit.path}: {edit.what}: does not apply")
    print(f"{len(edits)} edits, {len(stale)} do not apply")
    return 1 if stale else 0


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--list", default=ROOT / "tests/mutations/edits.txt", type=pathlib.Path)
    parser.add_argument("--only", default="")
    parser.add_argument("--keep", type=pathlib.Path)
    parser.add_argument("--check", action="store_true")
    parser.add_argument("--jobs", default=os.cpu_count(), type=int)
    options = parser.parse_args()

    edits = read_edits(options.list, options.only)
    if options.check:
        sys.exit(check(edits))
    work = options.keep or pathlib.Path(tempfile.mkdtemp(prefix="tarvel-mutations-"))
    work.mkdir(parents=True, exist_ok=True)
    for name in COPIED:
        if (ROOT / name).is_dir():
            shutil.copytree(ROOT / name, work / name, dirs_exist_ok=True)
        elif (ROOT / name).exists():
            shutil.copy2(ROOT / name, work / name)
    configure(work, options.jobs)
    failure = first_failure(work, options.jobs)
    if failure:
        sys.exit(f"the unbroken program fails {failure}")

    bad = 0
    for number, edit in enumerate(edits, 1):
        start = time.monotonic()
        outcome = try_edit(work, edit, options.jobs)
        bad += not outcome.startswith("noticed")
        print(f"{number:3} {time.monotonic() - start:4.0f} s  {edit.path}: {edit.what}: {outcome}",
              flush=True)
    print(f"{len(edits)} edits, {len(edits) - bad} noticed, {bad} not")
    if not options.keep:
        shutil.rmtree(work, ignore_errors=True)
    sys.exit(1 if bad else 0)


main()
