#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Run the examples of a manual page and compare what they give with what the page shows.

Usage: check_examples.py PROGRAM PAGE [--accept]

A page is run from top to bottom in one fresh directory, which holds a copy of examples/. The info
string of a fenced block says what it is:

  ```bibtex in=lit.bib     a file that is written before the next command
  ```console               lines that begin with "$ " are commands, the others what they print
                           (both streams); tarvel-batch is PROGRAM
  ```text out=lit_tag.log  what the file holds by now, without the header that every new file has
  ```text whole=lit.log    the same, header included
  ```text part=lit.log     lines that stand in the file, in this order, one below the other

Other blocks are not looked at. A page without an example fails. --accept writes what the program
gives into the page: read it before you commit it.
"""

import os
import re
import subprocess
import sys
import tempfile
from pathlib import Path
from shutil import copytree

EXAMPLES = Path(__file__).resolve().parent.parent.parent / "examples"
HEADER = re.compile(r"#\n\nThis \w+ file has been created by [^\n]*\n\n[^\n]*\n\n#\n\n\n")
FENCE = re.compile(r"^(```+)(\w*) *(.*)$")


def as_text(content):
    """The text of a file as a block can show it: bytes that are not UTF-8 as U+FFFD."""
    text = content.decode("utf-8", "replace")
    return text if not text or text.endswith("\n") else text + "\n"


def read_file(name):
    path = Path(name)
    if not path.is_file():
        raise AssertionError(f"there is no file {name}")
    return as_text(path.read_bytes())


def without_header(text):
    return HEADER.sub("", text, count=1)


def run_command(command):
    result = subprocess.run(
        ["sh", "-c", command], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
        stderr=subprocess.STDOUT, check=False)
    return as_text(result.stdout)


def run_console(block):
    commands = [line[2:] for line in block.splitlines() if line.startswith("$ ")]
    if not commands:
        raise AssertionError("a console block without a command")
    return "".join(f"$ {command}\n{run_command(command)}" for command in commands)


def show_part(block, name):
    if not block.strip() or f"\n{block}" not in f"\n{read_file(name)}":
        raise AssertionError(f"{name} does not hold these lines")
    return block


def replay(language, argument, block):
    """What the block should hold, or None when it is no example."""
    kind, _, name = argument.partition("=")
    if language == "console":
        return run_console(block)
    if kind == "in":
        Path(name).write_text(block, encoding="utf-8")
        return block
    if kind == "out":
        return without_header(read_file(name))
    if kind == "whole":
        return read_file(name)
    if kind == "part":
        return show_part(block, name)
    return None


def replay_page(lines, report):
    """The page as it should be, and how many examples it holds.

    Calls report(line number, wanted, got) for each block that differs; got is None when there is
    nothing to put in its place, and wanted is then the reason.
    """
    page = []
    count = 0
    position = 0
    while position < len(lines):
        fence = FENCE.match(lines[position])
        page.append(lines[position])
        position += 1
        if not fence:
            continue
        start = position
        while position < len(lines) and lines[position].rstrip() != fence[1]:
            position += 1
        block = "".join(line + "\n" for line in lines[start:position])
        try:
            result = replay(fence[2], fence[3], block)
        except AssertionError as problem:
            report(start, str(problem), None)
            result = block
        if result is not None:
            count += 1
            if result != block:
                report(start, block, result)
        page += (block if result is None else result).splitlines()
        page += lines[position:position + 1]
        position += 1
    return page, count


def main(arguments):
    accept = "--accept" in arguments
    program, page_name = [word for word in arguments if word != "--accept"]
    page_path = Path(page_name).resolve()
    os.environ["PATH"] = f"{Path(program).resolve().parent}{os.pathsep}{os.environ['PATH']}"
    os.environ["LC_ALL"] = "C.UTF-8"
    lines = page_path.read_text(encoding="utf-8").split("\n")
    failures = []

    def report(line, wanted, got):
        if got is None:
            failures.append(line)
            print(f"FAILED: {page_path.name}:{line}: {wanted}")
        elif not accept:
            failures.append(line)
            print(f"FAILED: {page_path.name}:{line}")
            print(f"--- the page\n{wanted}--- the program\n{got}---")

    with tempfile.TemporaryDirectory() as directory:
        os.chdir(directory)
        copytree(EXAMPLES, "examples")
        page, count = replay_page(lines, report)
        os.chdir("/")
    if accept:
        page_path.write_text("\n".join(page), encoding="utf-8")
    if count == 0:
        print(f"FAILED: {page_path.name} holds no example")
    return 1 if failures or count == 0 else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
