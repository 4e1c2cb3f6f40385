#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The reader of bibtex.py takes any bytes, in a time that grows with their number alone."""
import random
import sys
import time

from bibtex import Library
from random_libraries import RandomLibrary

SIZE = 100_000
BOMB = b'@string{a0 = "xxxxxxxxxxxxxxxx"}\n' + b"".join(
    b"@string{a%d = a%d # a%d}\n" % (number + 1, number, number) for number in range(200))
REPEATED = (
    b"{", b"}", b"@", b'"', b"\n", b"\0", b"\xff", b"@a{", b"@a{b,c={", b'@a{b,c="', b"@a(b,c=d#",
    b"@a{b,c={}}", b"} \n", b"@comment{", b"@string{", b"@preamble{{", b"a = {b},\n", b"\r", b"#",
    b'@string{a = a # a}', b'@a{b,c={{}"', b"@@", b",", b" ")
MARKS = b'@{}",=#()\n\r\0\xc3 a'


def mutated(rng):
    """A library with some bytes changed, left out or put in."""
    data = bytearray(RandomLibrary(rng.random(), 5).text)
    for _ in range(rng.randrange(1, 30)):
        at = rng.randrange(len(data))
        data[at:at + rng.choice((0, 1, 1, 40))] = bytes(rng.choices(MARKS, k=rng.choice((0, 1, 3))))
    return bytes(data)


def read(data):
    library = Library(data)
    for loose in library.paragraphs():
        assert loose.line <= loose.last
    for tag in library.all_tags():
        assert 0 < tag.line <= tag.last


def main():
    rng = random.Random("bytes")
    inputs = [text * (SIZE // len(text)) for text in REPEATED] + [BOMB, b""]
    inputs += [bytes(rng.randrange(256) for _ in range(2_000)) for _ in range(50)]
    inputs += [mutated(rng) for _ in range(500)]
    for data in inputs:
        began = time.process_time()
        read(data)
        if (took := time.process_time() - began) > 10:
            sys.exit(f"{took:.1f} s for {len(data)} bytes that begin with {data[:40]!r}")
    print(f"{len(inputs)} inputs read")


if __name__ == "__main__":
    main()
