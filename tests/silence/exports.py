# SPDX-License-Identifier: MIT
"""Makes random works and writes each in the form of one of the programs and sites that people get
their entries from.

`Work` is a publication. A `Shape` is a form: how an entry is laid out, and which tags it has in which
order. `SHAPES` is the table of the forms.
"""
import dataclasses
import re
import unicodedata

import words

MONTHS = ("jan", "feb", "mar", "apr", "may", "jun", "jul", "aug", "sep", "oct", "nov", "dec")
LETTERS = {"ø": "{\\o}", "Ø": "{\\O}", "ß": "{\\ss}", "Ł": "{\\L}", "ł": "{\\l}", "Å": "{\\AA}",
           "ı": "{\\i}", "’": "'", "–": "--", "\u2026": "\\ldots{}"}
ACCENTS = {"\u0300": "`", "\u0301": "'", "\u0302": "^", "\u0303": "~", "\u0308": '"',
           "\u030a": "r", "\u030c": "v", "\u0326": "c", "\u0327": "c", "\u0306": "u"}


def latex(text):
    """The text with its accented letters written as LaTeX commands."""
    out = []
    for letter in text:
        base = unicodedata.normalize("NFD", letter)
        if letter in LETTERS:
            out.append(LETTERS[letter])
        elif len(base) == 2 and base[1] in ACCENTS:
            accent = ACCENTS[base[1]]
            blank = " " if accent.isalpha() else ""
            out.append("{\\" + accent + blank + base[0] + "}")
        else:
            out.append(letter)
    return "".join(out)


@dataclasses.dataclass
class Person:
    first: str
    last: str
    particle: str = ""
    suffix: str = ""

    def full(self):
        return " ".join(part for part in (self.first, self.particle, self.last, self.suffix)
                        if part)

    def comma(self):
        surname = f"{self.particle} {self.last}".strip()
        return ", ".join(part for part in (surname, self.suffix, self.first) if part)

    def initials(self):
        return ". ".join(name[0] for name in self.first.replace("-", " ").split()) + "."

    def short(self):
        return f"{self.particle} {self.last}, {self.initials()}".strip()


def person(rng):
    made = Person(rng.choice(words.FIRST_NAMES), rng.choice(words.SURNAMES))
    if rng.random() < 0.3:
        made.first += " " + rng.choice("ABCDEFGHRST") + "."
    if rng.random() < 0.1:
        made.particle = rng.choice(words.PARTICLES)
    if rng.random() < 0.03:
        made.suffix = rng.choice(words.SUFFIXES)
    return made


def phrase(rng):
    return f"{rng.choice(words.ADJECTIVES)} {rng.choice(words.NOUNS)}"


def title(rng):
    parts = [phrase(rng)]
    if rng.random() < 0.5:
        parts.append(rng.choice(("of", "in", "and", "for")) + " " + rng.choice(words.NOUNS))
    if rng.random() < 0.12:
        parts.insert(0, rng.choice(words.TAG_WORDS))
    if rng.random() < 0.25:
        parts.insert(rng.randrange(len(parts) + 1), rng.choice(words.MARKED_WORDS))
    if rng.random() < 0.04:
        parts.append(rng.choice(words.ODD_WORDS))
    if rng.random() < 0.1:
        parts.append(rng.choice(words.ENDINGS))
    if rng.random() < 0.05:
        parts.insert(0, rng.choice(words.BEGINNINGS))
    return " ".join(parts)


def abstract(rng):
    made = []
    for _ in range(rng.choice((1, 2, 3, 5, 8))):
        made.append(rng.choice(words.SENTENCES).replace("{n}", rng.choice(words.NOUNS))
                    .replace("{m}", rng.choice(words.NOUNS)))
    if rng.random() < 0.05:
        made.append(rng.choice(words.ODD_WORDS))
    return " ".join(made)


class Work:
    """A publication: what can be known of it, whatever the form of its entry."""

    def __init__(self, rng):
        self.rng = rng
        self.type = rng.choices(
            ("article", "book", "inproceedings", "incollection", "phdthesis", "mastersthesis",
             "techreport", "misc"), (60, 6, 14, 5, 3, 2, 3, 7))[0]
        count = rng.choices((1, 2, 3, 5, 30), (25, 35, 25, 14, 1))[0]
        self.authors = [person(rng) for _ in range(count)]
        self.editors = [person(rng) for _ in range(rng.choice((1, 2, 3)))]
        self.body = rng.choice(words.BODIES) if rng.random() < 0.03 else ""
        self.title = title(rng)
        self.journal = rng.choice(words.JOURNALS)
        self.year = rng.randrange(1950, 2024)
        self.month = rng.randrange(12)
        self.volume = rng.randrange(1, 400)
        self.number = rng.randrange(1, 13)
        first = rng.randrange(1, 90000)
        self.first_page, self.last_page = first, first + rng.randrange(1, 30)
        self.doi = f"10.{rng.randrange(1000, 1200)}/{rng.choice('abcxyz')}.{rng.randrange(10**6)}"
        self.publisher, self.city = rng.choice(words.PUBLISHERS), rng.choice(words.CITIES)
        self.school, self.conference = rng.choice(words.SCHOOLS), rng.choice(words.CONFERENCES)

    def names(self, form):
        if self.body:
            return self.body
        people = [getattr(one, form)() for one in self.authors]
        if len(people) > 2 and self.rng.random() < 0.05:
            people[2:] = ["others"]
        return " and ".join(people)

    def surname(self):
        name = unicodedata.normalize("NFKD", self.authors[0].last)
        return "".join(c for c in name if c.isascii() and c.isalnum())

    def first_word(self):
        return next(word for word in self.title.split() if word.isalpha() and len(word) > 3).lower()


# What stands in a tag, by the name that the table gives it. A value written "tag:maker" in the table
# has the maker's value under its own name.
MAKERS = {
    "author": lambda w: w.names("comma"),
    "author-full": lambda w: w.names("full"),
    "author-short": lambda w: w.names("short"),
    "author-braced": lambda w: " and ".join(
        f"{{{p.last}}}, " + p.initials().replace(". ", ".~") for p in w.authors),
    "title": lambda w: w.title,
    "title-braced": lambda w: f"{{{w.title}}}",
    "journal": lambda w: w.journal[0],
    "journal-short": lambda w: w.journal[1],
    "journal-macro": lambda w: f"\\{w.journal[2]}",
    "journal-bare": lambda w: w.journal[2],
    "journal-capitals": lambda w: f"{{{w.journal[0].upper()}}}",
    "year": lambda w: str(w.year),
    "date": lambda w: f"{w.year}-{w.month + 1:02}-01",
    "month": lambda w: MONTHS[w.month],
    "month-name": lambda w: MONTHS[w.month].capitalize(),
    "volume": lambda w: str(w.volume),
    "number": lambda w: str(w.number),
    "pages": lambda w: f"{w.first_page}--{w.last_page}",
    "pages-hyphen": lambda w: f"{w.first_page}-{w.last_page}",
    "pages-dash": lambda w: f"{w.first_page}\u2013{w.last_page}",
    "page": lambda w: str(w.first_page),
    "numpages": lambda w: str(w.last_page - w.first_page),
    "doi": lambda w: w.doi,
    "doi-url": lambda w: f"https://doi.org/{w.doi}",
    "url": lambda w: f"https://www.example.org/journal/article/{w.doi}",
    "pdf": lambda w: f"https://pdf.example.org/{w.volume}/{w.number}/{w.first_page}.pdf",
    "abstract": lambda w: abstract(w.rng),
    "title-quoted": lambda w: f'"{{{w.title}}}"',
    "abstract-quoted": lambda w: f'"{{{abstract(w.rng)}}}"',
    "year-braced": lambda w: f"{{{w.year}}}",
    "abstract-braced": lambda w: f"{{{abstract(w.rng)}}}",
    "keywords": lambda w: "; ".join(w.rng.choice(words.NOUNS) for _ in range(3)),
    "issn": lambda w: f"{w.volume:04}-{w.number:04}",
    "isbn": lambda w: f"978-3-{w.first_page:05}-{w.volume:03}-0",
    "publisher": lambda w: w.publisher,
    "address": lambda w: w.city,
    "school": lambda w: w.school,
    "booktitle": lambda w: w.conference,
    "editor": lambda w: " and ".join(one.comma() for one in w.editors),
    "series": lambda w: "Lecture Notes in Foam",
    "note": lambda w: w.rng.choice(("in press", "[Online; accessed 1-May-2020]", phrase(w.rng),
                                    "Accepted author manuscript, in press")),
    "cited": lambda w: f"cited By {w.number}",
    "eprint": lambda w: f"{w.number:02}{w.month + 1:02}.{w.first_page:05}",
    "arxiv": lambda w: "arXiv",
    "class": lambda w: "cond-mat.soft",
    "file": lambda w: f":home/me/{w.surname()}{w.year}.pdf:PDF",
    "owner": lambda w: "me",
    "timestamp": lambda w: f"{w.year}.{w.month + 1:02}.01",
    "stamp": lambda w: f"Mon, 01 Jan {w.year} 00:00:00 +0100",
    "language": lambda w: "english",
    "affiliation": lambda w: f"{w.school}, {w.city}",
    "group": lambda w: "Reading list",
    "type": lambda w: "Journal Article",
    "short": lambda w: w.title.split(" ")[0],
    "short-names": lambda w: w.authors[0].last,
    "one": lambda w: "1",
    "adsnote": lambda w: "Provided by the SAO/NASA Astrophysics Data System",
    "bibsource": lambda w: "dblp computer science bibliography, https://dblp.org",
    "mrclass": lambda w: "11A05 (11B39)",
    "institution": lambda w: w.school,
    "report": lambda w: f"TR-{w.number}/{w.year}",
}

KEYS = {
    "name": lambda w: f"{w.surname()}{w.year}",
    "lower": lambda w: f"{w.surname().lower()}{w.year}{w.first_word()}",
    "under": lambda w: f"{w.surname().lower()}_{w.first_word()}_{w.year}",
    "camel": lambda w: f"{w.surname().lower()}{w.first_word().capitalize()}{w.year}",
    "capital": lambda w: f"{w.surname().upper()}{w.year}{w.first_page}",
    "doi": lambda w: w.doi,
    "doi-url": lambda w: f"https://doi.org/{w.doi}",
    "aps": lambda w: f"PhysRevB.{w.volume}.{w.first_page}",
    "number": lambda w: str(w.first_page * 97),
    "pmid": lambda w: f"pmid{w.first_page * 97}",
    "wos": lambda w: f" WOS:{w.first_page:09}",
    "dblp": lambda w: f"DBLP:journals/foam/{w.surname()}{w.year % 100:02}",
    "ads": lambda w: f"{w.year}ApJ...{w.volume:03}..{w.first_page:03}{w.surname()[0]}",
    "inspire": lambda w: f"{w.surname()}:{w.year}{w.doi[-2:]}",
    "mr": lambda w: f"MR{w.first_page * 31}",
    "endnote": lambda w: f"RN{w.first_page}",
    "colon": lambda w: f"{w.surname()}:{w.year}{w.first_word()[:3]}",
}


@dataclasses.dataclass
class Shape:
    """How entries of one origin look."""
    name: str
    key: str              # a row of KEYS
    article: str          # the tags of an article, "name:maker" where the two differ
    head: str = "@{type}{{{key},\n"
    type: str = "lower"   # the letter case of the type
    line: str = "  {name} = {value}"
    between: str = ",\n"
    end: str = "\n}\n"
    quotes: bool = False  # around values, instead of braces
    bare: str = ""        # the tags without anything around them
    case: str = "lower"   # of the names
    align: int = 0        # names are filled up to this many bytes; right-aligned when negative
    wrap: int = 0         # longer values are broken, and continue with `hang`
    hang: str = " "
    accents: str = "utf8"
    preface: str = ""     # what such a file begins with
    only: str = ""        # the types that come in this form; all when empty
    renamed: dict = dataclasses.field(default_factory=dict)  # types by another name


# The tags that a type has besides, or in place of, those of an article.
OTHER_TYPES = {
    "book": "author title publisher address year isbn",
    "inproceedings": "author title booktitle editor pages year publisher address series doi",
    "incollection": "author title booktitle editor publisher address year pages",
    "phdthesis": "author title school year",
    "mastersthesis": "author title school year",
    "techreport": "author title institution number:report year",
    "misc": "author title year note url",
}
PLAIN = "author title journal year volume number pages"
BIBLATEX = {"phdthesis": "thesis", "mastersthesis": "thesis", "techreport": "report",
            "misc": "online"}

SHAPES = (
    Shape("aps", "aps", "title author journal:journal-short volume issue:number pages:page numpages "
          "year month:month-name publisher doi url", only="article"),
    Shape("aip", "doi", "author title:title-quoted journal volume number pages:page year "
          "month abstract:abstract-quoted issn doi url eprint:pdf",
          line="    {name} = {value}", end=",\n}\n", only="article"),
    Shape("ieee", "number", "author journal title year volume number pages:pages-hyphen keywords doi",
          type="upper", line="  {name}={value}", between=",\n", end="}\n"),
    Shape("elsevier", "capital", "title journal volume pages year issn doi:doi-url url "
          "author:author-full keywords abstract", line="{name} = {value}"),
    Shape("springer", "name", "author title journal year month:month-name volume number pages "
          "abstract issn doi url", type="title", quotes=True,
          line="{name}={value}", wrap=79, hang=""),
    Shape("wiley", "doi-url", "author title journal volume number pages keywords doi:doi-url "
          "url eprint:pdf abstract year", line="{name} = {value}"),
    Shape("acm", "doi", "author title year issue_date:date publisher address volume number issn url "
          "doi abstract journal:journal-short month articleno:number numpages keywords",
          line="{name} = {value}", bare="month"),
    Shape("acm-pages", "doi", "author title year isbn publisher address url doi booktitle "
          "pages:pages-dash numpages keywords location:address series", line="{name} = {value}",
          only="inproceedings"),
    Shape("pubmed", "pmid", "Author:author-short Title:title-braced Journal:journal-short Year:year "
          "Volume:volume Number:number Pages:pages Month:month-name", type="title", quotes=True,
          line="   {name}={value}", case="", only="article"),
    Shape("web-of-science", "wos", "Author:author Title:title-braced Journal:journal-capitals "
          "Year:year-braced Volume:volume Number:number Pages:pages-hyphen "
          "Month:month-name Abstract:abstract-braced DOI:doi Article-Number:page ISSN:issn Unique-ID:number "
          "Journal-ISO:journal-short Number-of-Cited-References:volume Times-Cited:number",
          line="{name} = {value}", end=",\n}\n", case="", wrap=75, hang="   "),
    Shape("scopus", "lower", "author:author-short title journal year volume number "
          "pages:pages-hyphen doi note:cited art_number:page url affiliation abstract "
          "author_keywords:keywords document_type:type source:language", type="upper",
          line="{name}={value}", end=",\n}\n",
          preface="Scopus\nEXPORT DATE: 01 May 2020\n\n"),
    Shape("scholar", "lower", "title author journal volume number pages year publisher",
          line="  {name}={value}"),
    Shape("zotero", "under", "title volume copyright:language shorttitle:short issn url doi abstract "
          "language number urldate:date journal author month year note keywords pages file",
          line="\t{name} = {value}", bare="month", end=",\n}\n"),
    Shape("zotero-biblatex", "camel", "title author date journaltitle:journal "
          "shortjournal:journal-short volume number pages issn doi url urldate:date abstract "
          "langid:language keywords file annotation:note", end=",\n}\n", renamed=BIBLATEX),
    Shape("biblatex", "name", "author shortauthor:short-names title subtitle:short date "
          "journaltitle:journal volume number pages urldate:date eprint eprinttype:arxiv",
          renamed=BIBLATEX),
    Shape("mendeley", "name", "abstract author doi file issn journal keywords mendeley-groups:group "
          "month number pages title:title-braced url volume year", line="{name} = {value}",
          accents="latex", preface="Automatically generated by Mendeley Desktop 1.19.4\n"
          "Any changes to this file will be lost if it is regenerated by Mendeley.\n\n"),
    Shape("jabref", "name", "author title journal year volume number pages month doi file keywords "
          "abstract", type="title", line="  {name} = {value}", align=9, bare="month",
          end=",\n}\n"),
    Shape("jabref-2", "name", "author title journal year volume pages number abstract doi file "
          "owner timestamp url", type="upper", wrap=70, hang="\t", accents="latex"),
    Shape("endnote", "endnote", "author title journal volume number pages:pages-hyphen abstract "
          "keywords ISSN:issn DOI:doi url year type", line="   {name} = {value}", case=""),
    Shape("dblp", "dblp", "author:author-full title journal:journal-short volume number pages year "
          "url doi timestamp:stamp biburl:url bibsource", align=12, accents="latex", wrap=70,
          hang=" " * 18),
    Shape("arxiv", "lower", "title author:author-full year eprint archivePrefix:arxiv "
          "primaryClass:class url", line="      {name}={value}", between=", \n", end=", \n}\n",
          only="misc", case=""),
    Shape("ads", "ads", "author:author-braced title:title-braced journal:journal-macro keywords year "
          "month volume number eid:page pages:pages-hyphen doi archivePrefix:arxiv eprint "
          "primaryClass:class adsurl:url adsnote", type="upper", align=-13,
          line="{name} = {value}", bare="year month", case="", accents="latex"),
    Shape("inspire", "inspire", "author collaboration:group title:title-braced eprint "
          "archivePrefix:arxiv primaryClass:class reportNumber:report doi journal:journal-short "
          "volume pages:page year", line="    {name} = {value}", quotes=True, case="",
          accents="latex"),
    Shape("mathscinet", "mr", "author title journal:journal-short fjournal:journal volume year number "
          "pages issn mrclass mrnumber:number mrreviewer:author doi url", case="upper", align=-10,
          head="@{type} {{{key},\n", line="{name} = {value}", end=",\n}\n", accents="latex"),
    Shape("emacs", "name", "author title journal:journal-bare year volume number pages month note",
          type="title", line="  {name} =\t {value}", bare="year volume number month journal",
          end="}\n", wrap=70, hang="\t\t  ", accents="latex"),
    Shape("bibdesk", "colon", "Author:author Date-Added:stamp Date-Modified:stamp Doi:doi "
          "Journal:journal Pages:pages Title:title Volume:volume Year:year Bdsk-Url-1:url",
          line="\t{name} = {value}", end="}\n", case="", accents="latex"),
    Shape("by-hand", "name", PLAIN, accents="latex"),
    Shape("quotes", "name", PLAIN + " month note", quotes=True, bare="year volume number month",
          accents="latex"),
    Shape("macros", "name", "author title journal:journal-bare year volume pages month",
          quotes=True, bare="journal year month volume", end=",\n}\n", accents="latex"),
    Shape("one-line", "name", PLAIN, head="@{type}{{{key}, ", line="{name} = {value}", between=", ",
          end="}\n"),
    Shape("two-a-line", "name", PLAIN, between=", "),
    Shape("values-below", "name", PLAIN, line="  {name} =\n    {value}"),
    Shape("comma-first", "name", PLAIN, head="@{type}{{{key}\n", line="  , {name} = {value}",
          between="\n"),
    Shape("parentheses", "name", PLAIN, head="@{type}({key},\n", end="\n)\n"),
)

CASES = {"lower": str.lower, "upper": str.upper, "title": str.title, "": str}
# Tags that only articles have, whatever their form calls them.
OF_ARTICLES = ("journal", "journaltitle", "fjournal", "shortjournal", "journal-iso", "volume",
               "number", "issue", "pages", "numpages", "articleno", "article-number", "art_number")


def tags_of(work, shape):
    """The names and values of an entry's tags."""
    listed = [tag.partition(":")[::2] for tag in shape.article.split()]
    if work.type != "article" and shape.only != work.type:
        own = {name.lower(): (name, maker) for name, maker in listed}
        if "date" in own:
            own["year"] = own["date"]
        wanted = [tag.partition(":")[::2] for tag in OTHER_TYPES[work.type].split()]
        listed = [own.pop(name, (name, maker)) for name, maker in wanted]
        listed += [tag for name, tag in own.items() if name not in OF_ARTICLES + ("date",)]
    for name, maker in listed:
        yield name, MAKERS[maker or name.lower()](work)


def wrapped(text, width, hang):
    lines = [""]
    for word in text.split(" "):
        if lines[-1] and len(lines[-1]) + len(word) > width:
            lines.append(hang)
        lines[-1] += ("" if lines[-1] in ("", hang) else " ") + word
    return "\n".join(lines)


def delimited(text, quotes):
    """The value in braces or quotes. A quotation mark outside braces would end it."""
    if text.startswith('"'):
        return text
    return f'"{text}"' if quotes and '"' not in re.sub(r"\{[^{}]*\}", "", text) else f"{{{text}}}"


def tag_line(shape, name, value):
    if shape.accents == "latex":
        value = latex(value)
    if name.lower() not in shape.bare.split():
        value = delimited(value, shape.quotes)
    if shape.wrap:
        value = wrapped(value, shape.wrap, shape.hang)
    name = CASES[shape.case](name)
    name = name.ljust(shape.align) if shape.align > 0 else name.rjust(-shape.align)
    return shape.line.format(name=name, value=value)


@dataclasses.dataclass
class Draft:
    """An entry before it is written: its parts can still be disturbed."""
    shape: Shape
    type: str
    key: str
    lines: list
    macro: tuple       # name and text of the macro that it may use
    head: str = ""
    end: str = ""

    def copy(self):
        return dataclasses.replace(self, lines=list(self.lines))

    def text(self):
        head = (self.head or self.shape.head).format(type=self.type, key=self.key)
        return head + self.shape.between.join(self.lines) + (self.end or self.shape.end)


def draft(work, shape):
    """The work as an entry of this form."""
    if shape.only:
        work.type = shape.only
    type_ = CASES[shape.type](shape.renamed.get(work.type, work.type))
    lines = [tag_line(shape, name, value) for name, value in tags_of(work, shape)]
    macro = (work.journal[2], latex(work.journal[0]))
    return Draft(shape, type_, KEYS[shape.key](work), lines, macro)
