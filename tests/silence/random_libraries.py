# SPDX-License-Identifier: MIT
"""Makes random libraries such as people keep: entries of one or of several origins, works that stand
there twice, what hands and programs leave between entries, and now and then an accident.

Everything follows from the seed. A library comes with a second one that shares works with it, and
with a document that cites some of its keys.
"""
import copy
import random

import exports
import words

OWN_HEADER = ("#\n\nThis BibTeX file has been created by Tarvel v3.81\n\n      Veldo Marsk 2014\n\n"
              "#\n\n\n")
JABREF_BLOCK = ("@Comment{jabref-meta: databaseType:bibtex;}\n\n"
                "@Comment{jabref-meta: grouping:\n0 AllEntriesGroup:;\n"
                "1 StaticGroup:Reading list\\;0\\;1\\;\\;\\;\\;;\n}\n")
OLD_JABREF_BLOCK = "@comment{jabref-meta: selector_publisher:}\n\n@comment{jabref-meta: x:\n1 a:;\n}\n"


# What can befall an entry: a weight, and what is done to its draft.

def insert(line):
    def accident(rng, draft):
        draft.lines.insert(rng.randrange(1, len(draft.lines) + 1), line(rng))
    return accident


def change_key(change):
    def accident(rng, draft):
        draft.key = change(rng, draft.key)
    return accident


def change_type(types):
    def accident(rng, draft):
        draft.type = rng.choice(types)
    return accident


def change_text(old, new):
    """Writes another text into the head."""
    def accident(_, draft):
        draft.head = (draft.head or draft.shape.head).replace(old, new, 1)
    return accident


def set_end(end):
    def accident(rng, draft):
        draft.end = end
    return accident


def repeat_tag(rng, draft):
    line = rng.choice(draft.lines)
    draft.lines.append(line.replace("19", "18", 1))


def empty_value(rng, draft):
    at = rng.randrange(len(draft.lines))
    name = draft.lines[at].partition("=")[0]
    draft.lines[at] = name + "= {}"


def owner_first(rng, draft):
    draft.lines[:0] = ["  owner = {me}", "  timestamp = {2010.01.01}"]


def owner_alone(rng, draft):
    draft.lines[:] = ["  owner = {me}", "  timestamp = {2010.01.01}"]


def wrap_before_letter(rng, draft):
    """A value goes on in a line that begins with a letter beyond ASCII."""
    draft.lines.append("  annotation = {two lines\n" + rng.choice("ÉÖłß") + "tude}")
    at = rng.randrange(len(draft.lines))
    draft.lines[at] = draft.lines[at].replace(" and ", " and\n  Éric Doe and ", 1)


def change_value(change):
    def accident(rng, draft):
        at = rng.randrange(len(draft.lines))
        name, equals, value = draft.lines[at].partition("=")
        draft.lines[at] = name + equals + change(rng, value)
    return accident


def in_braces(text):
    """The text put at the end of a value."""
    return lambda rng, value: value.rstrip()[:-1] + text + value.rstrip()[-1:]


def long_value(rng):
    size = rng.choice((1_100, 5_500, 26_000, 51_000))
    line = rng.choice((" ", "\n  ")) if size < 26_000 else " "
    return "  abstract = {" + line.join(["word of an abstract"] * (size // 20)) + "}"


ACCIDENTS = (
    (6, change_type(("online", "Online", "thesis", "report", "software", "dataset", "mvbook",
                     "collection", "www-page", "article ", "booklet", "manual", "conference",
                     "electronic", "other", "patent", "standard", "letter", "review", "unpublished",
                     "masterthesis", "proceedings", "inbook"))),
    (2, change_key(lambda rng, key: rng.choice(("journals/", "author:", "url:", "year", "title"))
                   + key)),
    (1, change_key(lambda rng, key: key + "@home")),
    (1, change_key(lambda rng, key: rng.choice("ÄØß") + key)),
    (1, change_key(lambda rng, key: "")),
    (2, change_text("\n", " \n")),
    (1, change_text("{{{key}", "{{\n{key}")),
    (1, change_text("@", "  @")),
    (1, change_text("\n", " % my entry\n")),
    (2, repeat_tag),
    (2, empty_value),
    (2, owner_first),
    (1, owner_alone),
    (2, wrap_before_letter),
    (2, set_end("}\n")),
    (2, set_end("\n  }\n")),
    (1, set_end("\n} % end\n")),
    (1, set_end("\n}")),
    (1, set_end(",\n\n}\n")),
    (1, change_value(in_braces("\n}"))),
    (2, change_value(in_braces(" {@} {Moe}"))),
    (2, change_value(in_braces(" a@b.org {x}"))),
    (1, change_value(lambda rng, value: value + " # { and more}")),
    (1, change_value(lambda rng, value: "\n   " + value)),
    (1, change_value(in_braces("\x07"))),
    (1, change_value(in_braces("\0"))),
    (2, insert(lambda rng: "  note = {See \\url{http://x.org/%\n}}")),
    (2, insert(lambda rng: "  note = {Mail to " + rng.choice(words.ODD_WORDS) + "}")),
    (2, insert(lambda rng: "  OPTnote = {}")),
    (2, insert(lambda rng: "  author+an = {1=highlight}")),
    (2, insert(lambda rng: f"  crossref = {{{rng.choice(words.SURNAMES[:12])}2001}}")),
    (2, insert(lambda rng: "  editor = {Moe, A. and Zoe, B.}, series = {S}, month = may")),
    (1, insert(lambda rng: '  title = "The {A} and {B}"')),
    (1, insert(lambda rng: "  url2 = {http://x.org/journal}")),
    (1, insert(lambda rng: "  number-of-pages = {12}")),
    (2, insert(long_value)),
)
# Rarer, as BibTeX itself reads no further in the entry, or in the library.
FAULTS = (
    insert(lambda rng: "%  note = {left out}"),
    insert(lambda rng: "  note = {no comma}\n  isbn = {1}"),
    insert(lambda rng: "  note = {open"),
    insert(lambda rng: "  note = {closed}}"),
    set_end("\n"),
)
BETWEEN = (
    "\n", "\n", "\n", "\n\n", "", "% ---- comments by hand ----\n", "A line of text\nand a second\n",
    "%% number #1\n", "@comment{a comment}\n", "@Comment{x = {y}}\n",
    "@comment{article{old,\n  author = {Old, A.},\n}\n}\n", "@preamble{\"\\newcommand{\\x}{y}\"}\n")
FRONT = ("", "", "", "", "% Encoding: UTF-8\n\n", "%% my library #1\n", "\ufeff", OWN_HEADER,
         "# a library\n# of mine\n", "This is my library.\n\n")
CITATIONS = ("\\citep{{{}}}", "\\citet[see][p.~1]{{{}}}", "\\autocite{{{}}}", "\\cite[p.~2]{{{}}}",
             "\\Textcite*{{{}}}", "% \\cite{{{}}}", "\\cite{{{},\n  last}}", "\\nocite{{{}}}")


def strings(rng, macros):
    """Definitions of macros, in one of the forms that people write."""
    form = rng.choice(('@string{{{0} = "{1}"}}\n', "@STRING{{{0} = {{{1}}}}}\n",
                       '@String{{{0}="{1}"}}\n', '@string({0} = "{1}")\n',
                       '@string{{\n  {0} =\n    "{1}"\n}}\n', "@STRING{{ {0} = {{{1}}} }}\n"))
    return "".join(form.format(name, text) if '"' not in text else
                   f"@string{{{name} = {{{text}}}}}\n" for name, text in sorted(macros.items()))


def again(rng, work):
    """The same work once more, as another source has it, or a similar one."""
    other = copy.copy(work)
    other.rng = rng
    for change in rng.sample(SIMILAR, rng.choice((0, 0, 1, 1, 2))):
        change(rng, other)
    return other


SIMILAR = (
    lambda rng, work: setattr(work, "title", exports.title(rng)),
    lambda rng, work: setattr(work, "year", work.year + 1),
    lambda rng, work: setattr(work, "authors", [exports.person(rng)]),
    lambda rng, work: setattr(work, "doi", work.doi + "1"),
    lambda rng, work: setattr(work, "first_page", work.first_page + 1),
    lambda rng, work: setattr(work, "conference", rng.choice(words.CONFERENCES)),
)


class RandomLibrary:
    """`calm`: without accidents, as programs write libraries."""

    def __init__(self, seed, size, calm=None):
        self.rng = rng = random.Random(seed)
        self.calm = rng.random() < 0.3 if calm is None else calm
        self.shapes = rng.sample(exports.SHAPES, rng.choice((1, 1, 2, 3, 5)))
        self.works, self.drafts = [], []
        for _ in range(size):
            self.add()
        self.front = rng.choice(FRONT)
        self.text = self.write(self.drafts)
        self.other = self.write(self.other_drafts())
        self.keys = self.cited()
        self.document = self.cite()

    def add(self):
        rng = self.rng
        if self.drafts and rng.random() < 0.08:
            draft = rng.choice(self.drafts).copy()
            if rng.random() < 0.5:
                draft.key += rng.choice(("a", ":2", "_copy"))
        else:
            known = self.works and rng.random() < 0.1
            work = again(rng, rng.choice(self.works)) if known else exports.Work(rng)
            self.works.append(work)
            draft = exports.draft(work, rng.choice(self.shapes))
        if not self.calm and rng.random() < 0.12:
            weights = [weight for weight, _ in ACCIDENTS]
            rng.choices(ACCIDENTS, weights)[0][1](rng, draft)
            if rng.random() < 0.01:
                rng.choice(FAULTS)(rng, draft)
        self.drafts.append(draft)

    def other_drafts(self):
        rng = self.rng
        drafts = [exports.draft(again(rng, work), rng.choice(self.shapes))
                  for work in self.works if rng.random() < 0.4]
        drafts += [draft.copy() for draft in self.drafts if rng.random() < 0.3]
        rng.shuffle(drafts)
        return drafts

    def write(self, drafts):
        """The bytes of a library."""
        rng = self.rng
        macros = {draft.macro[0]: draft.macro[1] for draft in drafts
                  if "journal" in draft.shape.bare.split()}
        if rng.random() < 0.2:
            macros.pop(next(iter(macros), None), None)
        parts = [shape.preface for shape in self.shapes[:1]] + [self.front]
        if rng.random() < 0.9:
            parts.append(strings(rng, macros))
        for draft in drafts:
            parts.append(draft.text())
            parts.append(rng.choice(BETWEEN) if not self.calm and rng.random() < 0.3 else "\n")
        if rng.random() < 0.1:
            parts.append(rng.choice((JABREF_BLOCK, OLD_JABREF_BLOCK)))
        if rng.random() < 0.05:
            parts.append(strings(rng, {"late": "Late Journal"}))
        text = "".join(parts)
        if rng.random() < 0.1:
            text = text.rstrip("\n")
        if rng.random() < 0.08:
            text = text.replace("\n", "\r\n")
        return text.encode("latin-1" if rng.random() < 0.05 else "utf-8", "replace")

    def cited(self):
        keys = [draft.key for draft in self.drafts]
        chosen = [key for key in keys if self.rng.random() < 0.7 and key
                  and not set(key) & set(" ,{}%\\")]
        return list(dict.fromkeys(chosen + (["missing2001"] if self.rng.random() < 0.2 else [])))

    def cite(self):
        lines, keys = [], list(self.keys)
        while keys:
            count = self.rng.choice((1, 1, 2, 3))
            form = self.rng.choice(CITATIONS) if self.rng.random() < 0.1 else "\\cite{{{}}}"
            comma = ", " if self.rng.random() < 0.03 else ","
            lines.append(f"Text {form.format(comma.join(keys[:count]))} goes on.\n")
            del keys[:count]
        text = "\\documentclass{article}\n\\begin{document}\n" + "".join(lines)
        return (text + "\\end{document}\n").encode()
