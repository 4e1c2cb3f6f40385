#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Parses every Python and shell script of the tree without running it: many of them run seldom, and one that does
not parse would be noticed late.

Exits with 1, after a line for each script that does not parse.
"""
import ast
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[1]
NOT_OURS = {".git", "build"}


def reason(path):
    """Why the script does not parse; empty when it does."""
    text = path.read_text()
    first = text.split("\n", 1)[0]
    if "python" in first or path.suffix == ".py":
        try:
            ast.parse(text)
        except SyntaxError as error:
            return f"line {error.lineno}: {error.msg}"
        return ""
    if "make" in first:
        return ""
    shell = "bash" if "bash" in first else "sh"
    return subprocess.run([shell, "-n", path], stderr=subprocess.PIPE, text=True).stderr.strip()


def is_script(path):
    if path.suffix in (".py", ".sh"):
        return True
    with path.open("rb") as file:
        return file.read(2) == b"#!"


files = [path for path in ROOT.rglob("*")
         if path.is_file() and not NOT_OURS & set(path.relative_to(ROOT).parts)]
scripts = [path for path in files if is_script(path)]
if len(scripts) < 10:
    sys.exit("no scripts found")
broken = [f"{path.relative_to(ROOT)}: {why}" for path in scripts if (why := reason(path))]
sys.exit("\n".join(broken) or 0)
