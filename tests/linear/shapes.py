#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs operations on libraries of hostile shapes, at one size and at four times that size, and fails
when the time grows by more than a factor of five.

shapes.py TARVEL-BATCH FRACTION [SHAPE...]

The sizes below are for an optimised program; FRACTION of them is used, such as 0.25 for another.
"""
import os
import resource
import subprocess
import sys
import tempfile

GROWTH = 5
LONGEST = 30
TRIES = 3  # a machine that does something else may be slow once
NOISE = 0.08  # seconds of CPU below which nothing is said

OPERATIONS = {
    "compare": ["compare", "lit.bib", "lit.bib"],
    "clean-doubles": ["clean-doubles", "lit.bib"],
    "clean-tags": ["clean-tags", "lit.bib"],
    "clean-authors": ["clean-authors", "lit.bib"],
    "clean-characters": ["clean-characters", "lit.bib"],
    "journals": ["journals", "lit.bib"],
    "text": ["text", "lit.bib"],
    "extract": ["extract", "paper.tex", "lit.bib"],
    "prepare": ["prepare", "lit.bib"],
    "check": ["check", "lit.bib"],
}
ALL = tuple(OPERATIONS)
OPERATIONS["extract --follow"] = ["extract", "--follow", "paper.tex", "lit.bib"]


def values_on_a_line(n):
    return "@misc{k,\n" + "a=1," * n + "\n}\n"


def equals_signs_on_a_line(n):
    return "@misc{k,\n" + "x=" * n + "\n}\n"


def braced_values_on_a_line(n):
    return "@misc{k,\n" + "a = {1}, year = {2}, " * n + "\n}\n"


def entries_on_a_line(n):
    return "@misc{k, note = {1}} " * n + "\n"


def at_signs_on_a_line(n):
    return "@misc{k,\nnote = {" + "@" * n + "}\n}\n"


def authors_on_a_line(n):
    return "@misc{k,\n  author = {" + "John Smith and " * n + "Bob Jones},\n}\n"


def authors_in_nested_braces(n):
    names = "Jan " + "{" * n + " and Bob " + "}" * n + " Kim"
    return f"@misc{{k,\n  author = {{{names}}},\n}}\n" * 10


def words_on_a_line(n):
    return "@article{k,\n  journal = {" + "J. of " * n + "},\n title = {" + "a {B} " * n + "},\n}\n"


def keys_of_two_letters(n):
    keys = ("".join("^~"[i >> bit & 1] for bit in range(20)) for i in range(n))
    return "".join(f"@misc{{{key},\n note = {{{i}}}\n}}\n" for i, key in enumerate(keys))


def long_values_of_other_middles(n):
    ends = "a" * 2500
    return "".join(f"@misc{{k{i},\n note = {{{ends}{i:08}{ends}}}\n}}\n" for i in range(n))


def values_that_close_late(n):
    heads = "".join(f"@book{{k{i},\nabstract={{\n" for i in range(n))
    return heads + "}\n" * (2 * n) + "@book{last,\n title={x}\n}\n"


def values_that_close_after_a_blank_line(n):
    """A line of more blanks than are read at once, and not from its beginning."""
    return values_that_close_late(n).replace("\n}\n", "\n" + " " * 30000 + "\n}\n", 1)


def values_before_their_equals_sign(n):
    heads = "".join(f"@book{{k{i},\n{{ abstract = {{{{\n" for i in range(n))
    return heads + "}\n" * (4 * n) + "@book{last,\n title={x}\n}\n"


def tags_after_values_that_close_late(n):
    return values_that_close_late(n).replace("@book{last", " title = {x}\n@book{last")


def many_tags_after_values_that_close_late(n):
    """Clean tags writes them with each entry; a check need not walk so."""
    return values_that_close_late(n).replace("@book{last", " title = {x}\n" * n + "@book{last")


def values_with_an_at_sign_that_close_late(n):
    """Words after an "@" that is no head are put in capitals."""
    heads = "".join(f"@book{{k{i},\nabstract = {{a@b {{\n" for i in range(n))
    return heads + "}\n" * (3 * n) + "@book{last,\n title={x}\n}\n"


def heads_side_by_side_of_values_that_close_late(n):
    heads = "".join(f"@book{{k{i}\njournal@misc{{k{i},\nx{{ abstract = {{\n" for i in range(n))
    return heads + "}\n" * (4 * n) + "@book{last,\n title={x}\n}\n"


def readings_that_take_turns(n):
    """Each entry's value ends on the head after the next, so that an entry shares lines with every
    second one."""
    return ("}}@article{k, author$ year = {1999},\nvon\n" * n + "x\n" * (4 * n)
            + "}\n")


def dropped_entries_in_turns(n):
    return "".join(f"x @misc{{,\nnote={{{{\ny @misc{{k{i},\n note = {{x}},\n" for i in range(n))


def entries_in_the_last_value(n):
    entries = "".join(f"@misc{{k{i},\n note = {{x}},\n}}\n" for i in range(n))
    return "@book{b,\n title = {\n" + entries


def pieces_after_a_long_name(n):
    return "@misc{k,\n" + "x" * (4 * n) + " = {a}\n" + "# {b}\n" * n + "}\n"


def lines_after_a_long_name(n):
    return "@misc{k,\n" + "x" * (4 * n) + " = {\n" + "\u00e9\n" * n + "}\n}\n"


def values_that_never_close(n):
    return "".join(f"@book{{k{i},\n title={{t{i}\n author={{\n" for i in range(n))


def entries_that_never_close(n):
    return "".join(f"@misc{{k{i},\n note = {{n{i}}}}} title\n" for i in range(n))


def entries_within_lines_of_open_values(n):
    return "".join(f"x @misc{{k{i}, note = {{{{{i}}},\n}}\n" for i in range(n))


def doubles_of_a_long_entry(n):
    double = "@misc{%s,\n note = {n},\n title = {%d},\n}\n"
    tags = "".join(f" title = {{{i}}},\n" for i in range(n))
    return f"@misc{{k,\n note = {{n}},\n{tags}}}\n" + "".join(double % ("k", i) for i in range(n))


def doubles_in_pieces_of_one_line(n):
    """Entries that begin and end where a long line is cut into pieces of 4,999 bytes."""
    pieces = (piece.ljust(4999) for i in range(n)
              for piece in (f"@misc{{k{i // 2},", f"note = {{{i // 2}}}, doi = {{{i}}}", "}"))
    return "".join(pieces) + "\n"


def children_of_a_long_parent(n):
    children = "".join(f"@misc{{c{i},\n crossref = {{p}},\n}}\n" for i in range(n))
    return children + "@misc{p,\n" + "".join(f" tag{i} = {{x}},\n" for i in range(n)) + "}\n"


def tags_of_entries_that_do_not_close(n):
    """Two kinds of them: one has no brace to look for, the other does not have it. A child asks for
    both."""
    tags = "".join(f"t{i} = {{v}},\n" for i in range(n))
    return ("@misc{c,\n  crossref = {k}\n}\n@book(k,\n" + tags + "title = {T})\n"
            "@book{l,\n" + tags)


def children_of_a_parent_with_one_tag_many_times(n):
    return ("".join(f"@book{{k{i}, crossref = {{p}}}}\n" for i in range(n))
            + "@book{p,\n" + "  a = 1,\n" * n + "  title = {T}\n}\n")


def parents_on_one_line_after_an_open_value(n):
    return ("@book{x, title = {\n" + "".join(f"@book{{p{i}, note = {{N}}}} " for i in range(n))
            + "".join(f"@book{{c{i}, crossref = {{p{(7 * i) % n}}}}} " for i in range(n)) + "\n")


def one_key_after_a_long_line(n):
    return ("@article{k, note = {" + "A " * (100 * n) + "}\n" + "@article{k,\n}\n" * n)


def braces(n):
    return "@misc{k,\n note = " + "{" * n + "\n" + "}\n" * n


def same_key(n):
    return "".join(f"@misc{{k,\n note = {{{'x' * (i % 7)}}}\n}}\n" for i in range(n))


def same_key_without_tags_to_compare(n):
    return "".join(f"@other{{k,\n title = {{a {i}}}\n}}\n" for i in range(n))


def conflicts_that_open_values(n, last="", between=""):
    fillers = "".join(f"@misc{{f{i},\n note = {{filler {i}}},\n}}\n" for i in range(n))
    pairs = "".join("@misc{k,\n note = {{{{{{{" f"c{i}" "\n}\n}}}}}},\n}\n"
                    + between.replace("#", str(i))
                    + "@misc{k,\n note = {" f"d{i}" "},\n}\n" for i in range(n))
    return "@misc{k,\n note = {first},\n}\n" + fillers + last + pairs


def conflicts_whose_values_close_late(n):
    return conflicts_that_open_values(n, last="@misc{z,\n note = {}}}}}}}}},\n}\n")


def conflicts_whose_values_close_later(n):
    """Each value is closed by an entry that is written after it was opened."""
    return conflicts_that_open_values(n, between="@misc{z#,\n note = {#}}}}}}}}},\n}\n")


def conflicts_that_switch_between_two_readings(n):
    """Each filler ends a value that was opened two fillers before, and opens another, so that every
    second one is an entry. Which of them are depends on the copy of a conflict before them."""
    fillers = "".join(f"@misc{{p{i:05},\n }}}}}}}} note = {{{{{{{{\n}}\n" for i in range(n))
    pairs = "".join(f"@misc{{k,\n note = {{{{{{{{c{i:05}{'x' * 36}\n}}\n}}}}}}}},\n}}\n"
                    f"@misc{{k,\n note = {{d{i:05}}},\n}}\n" for i in range(n))
    return "@misc{k,\n note = {first},\n}\n" + fillers + pairs


def conflicts_with_pages_that_close_late(n):
    library = conflicts_whose_values_close_late(n).replace(
        "@misc{k,\n note", "@article{k,\n journal = {j},\n volume = {1},\n year = {2},\n pages")
    return library.replace("@misc{z,\n note", "@article{z,\n pages")


def two_tags_again_and_again(n):
    lines = "".join(f" {tag} = {{{i}}},\n" for tag in ("author", "title") for i in range(n))
    return "@article{k,\n" + lines + "}\n"


def unknown_tags(n):
    return "@misc{k,\n" + "".join(f" tag{i} = {{x}},\n" for i in range(n)) + "}\n"


def unknown_journals(n):
    return "".join(f"@article{{k{i},\n journal = {{Journal {i}}},\n}}\n" for i in range(n))


def strings(n):
    return "".join(f"@STRING{{s{i} = {{x}}}}\n" for i in range(n)) + "@misc{k,\n note = {x}\n}\n"


# name, maker, size, the operations
SHAPES = (
    (values_on_a_line, 50000, ALL),
    (equals_signs_on_a_line, 50000, ALL),
    (braced_values_on_a_line, 20000, ALL),
    (entries_on_a_line, 20000, ALL),
    (at_signs_on_a_line, 200000, ALL),
    (authors_on_a_line, 20000, ALL),
    (authors_in_nested_braces, 5000, ("clean-authors", "extract", "text")),
    (words_on_a_line, 20000, ALL),
    (keys_of_two_letters, 20000, ALL),
    (long_values_of_other_middles, 500, ALL),
    (values_that_close_late, 5000, ALL),
    (values_that_close_after_a_blank_line, 5000, ALL),
    (values_before_their_equals_sign, 5000, ALL),
    (tags_after_values_that_close_late, 5000, ALL),
    (many_tags_after_values_that_close_late, 2000, ("check",)),
    (values_with_an_at_sign_that_close_late, 5000, ALL),
    (heads_side_by_side_of_values_that_close_late, 2000, ALL),
    (readings_that_take_turns, 5000, ALL),
    (dropped_entries_in_turns, 3000, ALL),
    (entries_in_the_last_value, 5000, ALL),
    (values_that_never_close, 5000, ALL),
    (pieces_after_a_long_name, 10000, ALL),
    (lines_after_a_long_name, 10000, ALL),
    (entries_that_never_close, 10000, ALL),
    (entries_within_lines_of_open_values, 5000, ALL),
    (doubles_of_a_long_entry, 4000, ("clean-doubles", "clean-tags", "text")),
    (doubles_in_pieces_of_one_line, 400, ALL),
    (children_of_a_long_parent, 20000, ("prepare", "extract")),  # more names than it remembers
    (tags_of_entries_that_do_not_close, 5000, ("prepare",)),
    (children_of_a_parent_with_one_tag_many_times, 4000, ("prepare",)),
    (parents_on_one_line_after_an_open_value, 3000, ("prepare",)),
    (one_key_after_a_long_line, 5000, ("check",)),
    (braces, 20000, ALL),
    (same_key, 5000, ("compare", "clean-tags", "text", "extract", "journals", "check")),
    (same_key_without_tags_to_compare, 10000, ("check",)),
    (conflicts_that_open_values, 2000, ("clean-doubles", "clean-tags", "text")),
    (conflicts_whose_values_close_late, 1500, ("clean-doubles",)),
    (conflicts_whose_values_close_later, 1500, ("clean-doubles",)),
    (conflicts_that_switch_between_two_readings, 2000, ("clean-doubles",)),
    (conflicts_with_pages_that_close_late, 1500, ("clean-doubles",)),
    (two_tags_again_and_again, 10000, ALL),
    (unknown_tags, 20000, ALL),
    (unknown_journals, 10000, ALL),
    (strings, 20000, ALL),
    (keys_of_two_letters, 1500, ("extract --follow",)),
)


def document(library):
    """Cites every key of the library."""
    keys = [part.split(",", 1)[0] for part in library.split("{")[1:] if "," in part[:40]]
    cites = "".join(f"\\cite{{{key}}}\n" for key in keys[:100000])
    return "\\begin{document}\n" + cites + "\\end{document}\n"


def chapters(library, directory):
    """A document of the same citations, each in a file of its own."""
    cites = document(library).splitlines()
    for number, cite in enumerate(cites):
        with open(os.path.join(directory, f"{number}.tex"), "w", encoding="ascii") as file:
            file.write(cite)
    inputs = "".join(f"\\input{{{number}}}\n" for number in range(len(cites)))
    return "\\begin{document}\n" + inputs + "\\end{document}\n"


def cpu(program, arguments, directory):
    """Seconds of CPU of the faster of two runs."""
    best = float("inf")
    for _ in range(2):
        before = resource.getrusage(resource.RUSAGE_CHILDREN)
        try:
            subprocess.run([program, *arguments], cwd=directory, check=False, timeout=LONGEST,
                           stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        except subprocess.TimeoutExpired:
            return LONGEST
        after = resource.getrusage(resource.RUSAGE_CHILDREN)
        best = min(best, after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime)
        if best > 1:
            break
    return best


def measure(program, make, size, operation):
    times = []
    for factor in (1, 4):
        with tempfile.TemporaryDirectory() as directory:
            library = make(size * factor)
            with open(os.path.join(directory, "lit.bib"), "w", encoding="utf-8") as file:
                file.write(library)
            with open(os.path.join(directory, "paper.tex"), "w", encoding="ascii") as file:
                follows = operation == "extract --follow"
                file.write(chapters(library, directory) if follows else document(library))
            times.append(cpu(program, OPERATIONS[operation], directory))
    return times


def main():
    program = os.path.abspath(sys.argv[1])
    fraction = float(sys.argv[2])
    wanted = sys.argv[3:]
    slow = 0
    for make, size, operations in SHAPES:
        if wanted and make.__name__ not in wanted:
            continue
        for operation in operations:
            for _ in range(TRIES):
                one, four = measure(program, make, int(size * fraction), operation)
                grows = four > GROWTH * max(one, NOISE)
                if not grows:
                    break
            slow += grows
            if grows or wanted:
                print(f"{make.__name__}, {operation}: {one:.3f} s, four times the size {four:.3f} s"
                      f"{' TOO SLOW' if grows else ''}", flush=True)
    print(f"{slow} shapes take more than {GROWTH} times the time for 4 times the size")
    return 1 if slow else 0


if __name__ == "__main__":
    sys.exit(main())
