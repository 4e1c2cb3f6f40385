#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Packs the inputs of a fuzz target: keep_corpus.py DIRECTORY ARCHIVE

The archive is the same for the same inputs. It holds at most 120 KiB, the smallest inputs first, so
that those of all targets together stay below 2 MiB.
"""
import hashlib
import pathlib
import sys
import zipfile
import zlib

MOST = 120 * 1024
ENTRY = 150  # what an input needs besides its bytes


def packed(inputs):
    """As many of the inputs as there is room for, the smallest first; each once."""
    chosen, size = {}, 0
    for data in sorted(inputs, key=lambda data: (len(data), data)):
        size += min(len(data), len(zlib.compress(data, 9))) + ENTRY
        if size > MOST:
            break
        chosen[hashlib.sha1(data).hexdigest()[:16]] = data
    return chosen


def main():
    directory, archive = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
    inputs = packed([file.read_bytes() for file in directory.iterdir()])
    archive.parent.mkdir(parents=True, exist_ok=True)
    with zipfile.ZipFile(archive, "w", zipfile.ZIP_DEFLATED, compresslevel=9) as file:
        for name in sorted(inputs):
            file.writestr(zipfile.ZipInfo(name), inputs[name], zipfile.ZIP_DEFLATED)
    print(f"{archive.stem}: {len(inputs)} inputs, {archive.stat().st_size} bytes")


main()
