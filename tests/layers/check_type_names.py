#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Fails when two headers define types of one name.

check_type_names.py SOURCE-DIRECTORY

All of the program is in one namespace. A linker takes functions that templates make of two types of
one name for the same function, and says nothing of it.
"""
import pathlib
import re
import sys

PARTS = ("app", "batch", "core", "gui", "ops", "warnings")
TYPE = re.compile(r"^(?:struct|class|enum class|enum) (\w+)[^;]*\{", re.MULTILINE)


def main():
    root = pathlib.Path(sys.argv[1])
    headers = {}
    for part in PARTS:
        for path in sorted((root / part).rglob("*.h")):
            for name in TYPE.findall(path.read_text(encoding="utf-8")):
                headers.setdefault(name, []).append(path.relative_to(root))
    if len(headers) < 100:
        sys.exit("too few types were found")
    doubles = {name: paths for name, paths in headers.items() if len(paths) > 1}
    for name, paths in doubles.items():
        print(f"{name} is defined in {' and in '.join(map(str, paths))}")
    return 1 if doubles else 0


if __name__ == "__main__":
    sys.exit(main())
