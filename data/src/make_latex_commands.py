# SPDX-License-Identifier: MIT
"""Writes the two LaTeX command tables of the Text operation.

    python3 data/src/make_latex_commands.py [--check] [--output-dir DIR]

Without --check both files are written: LaTeXCommands_linux.tvl (UTF-8 text)
and LaTeXCommands_ascii.tvl (ASCII text). With --check nothing is written; the
exit status is 1 when a committed file differs from what would be written.

The order of the rows matters, since every row works on what the rows before it
left. It is:

  1. everything with a name of its own, the longest command first, so that no
     row hides a longer one (\\in must not eat into \\infty), and guards for the
     commands that no row names (\\inept must stay \\inept);
  2. sub- and superscripts, digit by digit;
  3. ASCII table only: characters that stand in the library as UTF-8;
  4. "$", "{" and "}", which are dropped;
  5. stand-ins for characters that the rows before would have dropped or taken
     for markup: "\\$" becomes "\\dollar" in 1 and "$" here;
  6. what is left of a backslash: that of a command or an accent stays, that of
     "\\ " goes.

A guard gives a command that no row names, but whose beginning is a row, another
first byte in place of its backslash; the last row of all gives the backslash back.
Short names are guarded against every letter that may follow, the others against
the commands of latex_standard_commands.txt.

A replacement scan never starts a match at the byte after a replacement, so of
two adjacent equal commands a row turns only the first. Accents, Greek
and letters such as \\ss are therefore listed twice ("cr\\'e\\'ee", "$\\pi\\pi$").
"""

import argparse
import pathlib
import sys
import unicodedata

SOURCE = pathlib.Path(__file__).resolve().with_name("latex_commands.tsv")
STANDARD = SOURCE.with_name("latex_standard_commands.txt")
TARGET_DIR = SOURCE.parent.parent / "LaTeXCommands"
UTF8, ASCII = "LaTeXCommands_linux.tvl", "LaTeXCommands_ascii.tvl"
MAX_ROWS = 6000

# The byte of a guarded backslash: one that no text has.
GUARD = "\x1d"
GUARDED_LENGTH = 2  # letters of a name
GUARDED_LONGER = ("text", "emph", "tiny", "big", "cap", "chi", "cup", "dot", "eta", "hat",
                  "int", "ker", "log", "max", "mid", "min", "mod", "phi", "psi", "rho", "sum",
                  "tau", "top", "url", "vec")
CAPITALS_AFTER = ("S", "P", "Pi", "Xi", "Re", "Im", "TeX", "LaTeX", "MF", "MP", "PDF", "TUG",
                  "XML", "WEB", "AmS", "Xy")

NO_BREAK_SPACE = "\u00a0"

# LaTeX accent -> combining mark. The first are written with or without braces,
# the others only with: "\v c" holds a blank, which no row can, and "\vc" is not
# what LaTeX reads.
SYMBOL_ACCENTS = {
    "`": "\u0300", "'": "\u0301", "^": "\u0302", "~": "\u0303",
    '"': "\u0308", "=": "\u0304", ".": "\u0307",
}
LETTER_ACCENTS = {
    "u": "\u0306", "v": "\u030c", "H": "\u030b", "c": "\u0327",
    "k": "\u0328", "r": "\u030a", "d": "\u0323", "b": "\u0331",
}
BASE_LETTERS = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"

# Letters of their own: command, UTF-8, ASCII.
SHORT_LETTERS = [
    ("o", "ø", "oe"), ("O", "Ø", "Oe"), ("l", "ł", "l"), ("L", "Ł", "L"),
    ("i", "ı", "i"), ("j", "ȷ", "j"), ("dh", "ð", "d"), ("DH", "Ð", "D"),
    ("th", "þ", "th"), ("TH", "Þ", "Th"), ("dj", "đ", "d"), ("DJ", "Đ", "D"),
    ("ng", "ŋ", "ng"), ("NG", "Ŋ", "Ng"),
]
LONG_LETTERS = [
    ("ss", "ß", "ss"), ("SS", "ẞ", "SS"), ("ae", "æ", "ae"), ("AE", "Æ", "Ae"),
    ("oe", "œ", "oe"), ("OE", "Œ", "Oe"), ("aa", "å", "aa"), ("AA", "Å", "Aa"),
]

# ASCII spellings as passports have them; every other accent is just dropped.
ASCII_LETTERS = {
    "ä": "ae", "ö": "oe", "ü": "ue", "Ä": "Ae", "Ö": "Oe", "Ü": "Ue",
    "å": "aa", "Å": "Aa",
}

GREEK = {
    "alpha": "α", "beta": "β", "gamma": "γ", "delta": "δ", "epsilon": "ε",
    "zeta": "ζ", "eta": "η", "theta": "θ", "iota": "ι", "kappa": "κ",
    "lambda": "λ", "mu": "μ", "nu": "ν", "xi": "ξ", "omicron": "ο", "pi": "π",
    "rho": "ρ", "sigma": "σ", "tau": "τ", "upsilon": "υ", "phi": "φ",
    "chi": "χ", "psi": "ψ", "omega": "ω",
    "Gamma": "Γ", "Delta": "Δ", "Theta": "Θ", "Lambda": "Λ", "Xi": "Ξ",
    "Pi": "Π", "Sigma": "Σ", "Upsilon": "Υ", "Phi": "Φ", "Psi": "Ψ",
    "Omega": "Ω",
    "varepsilon": "ε", "vartheta": "ϑ", "varkappa": "ϰ", "varpi": "ϖ",
    "varrho": "ϱ", "varsigma": "ς", "varphi": "φ", "digamma": "ϝ",
    "upmu": "μ",
}
GREEK_ASCII = {"upmu": "mu"}

# Antiparticles, averages, mirrored names: what stands under \bar in titles.
BARRED = "bcdefnpqstuxyzBDHKNXZ"
BARRED_GREEK = ["nu", "Lambda", "Sigma", "Xi", "Omega", "psi", "theta", "chi"]

SUPERSCRIPTS = dict(zip("0123456789+-", "⁰¹²³⁴⁵⁶⁷⁸⁹⁺⁻"))
SUBSCRIPTS = dict(zip("0123456789+-", "₀₁₂₃₄₅₆₇₈₉₊₋"))
SCRIPT_LETTERS = {"^": {"n": "ⁿ"}, "_": {"n": "ₙ", "x": "ₓ"}}
SCRIPT_LENGTH = 4  # digits and signs of one script that become small ones

# Nuclei whose mass number stands before the symbol: in ASCII "13C", not "^13C".
NUCLEI = [
    "1H", "2H", "3H", "3He", "4He", "7Li", "11B", "13C", "14C", "15N",
    "17O", "18O", "19F", "23Na", "27Al", "29Si", "31P", "35Cl", "51V",
    "57Fe", "60Co", "87Rb", "87Sr", "89Y", "113Cd", "119Sn",
    "129Xe", "131I", "137Cs", "195Pt", "199Hg", "207Pb", "235U", "238U", "239Pu",
]
MICRO_UNITS = ["m", "s", "g", "l", "L", "M", "A", "W", "V", "J", "eV"]

# Stand-ins and what they are in the end: UTF-8, ASCII.
STAND_INS = [
    (r"\lbrace", "{", "{"), (r"\rbrace", "}", "}"), (r"\dollar", "$", "$"),
    (r"\underscore", "_", "_"), (r"\asciicircum", "^", "^"),
    (r"\asciitilde", "~", "~"), (r"\mdash", "—", "--"),
]

HEADER = """\
# SPDX-License-Identifier: CC0-1.0
# LaTeX commands and what the Text operation writes for them: {name}.
# Written by data/src/make_latex_commands.py.
#
# Lines up to the one below that begins the table are comment. After it:
#
#   - every line is one row: the command, blanks or tabs, the replacement.
#     A row without a replacement drops the command;
#   - a row that begins with # is kept but not applied. Switch rows off this way;
#   - do not leave lines empty: they would be rows without a command;
#   - a command cannot hold a blank or a tab, a replacement cannot hold a blank.
#     So "\\v c" and "S\\o ren" cannot be turned; write "\\v{{c}}" and "S{{\\o}}ren";
#   - a row is shorter than 999 bytes, and it ends in a line break, the last too;
#   - a replacement must not hold its own command.
#
# The rows are applied from the first to the last, each to what those before it
# left. So the longest command comes first: a short one would eat into it. Where
# a row has replaced something, the byte that follows is not looked at again by
# the same row. So what can stand twice side by side ("\\'e\\'e") is listed twice.
# "$", "{{" and "}}" go last. What must survive them has a stand-in until then:
# "\\$" is turned into "\\dollar" and that into "$" by one of the last rows.
# A command that no row names, but whose beginning is one, gets the byte 1D
# (hexadecimal) for its backslash until the last row, so that it stays whole.
#
# {note}
#
# The table:
START
"""
NOTES = {
    UTF8: "The text is UTF-8. The same table for plain ASCII is in " + ASCII + ":\n"
          "# to use it, copy it over this file.",
    ASCII: "The text is plain ASCII. Accents go, except where passports spell the\n"
           "# letter out (ae, oe, ue, aa). To use it, copy it over " + UTF8 + ".",
}


def to_ascii_letter(letter):
    """The ASCII spelling of a letter with an accent."""
    plain = unicodedata.normalize("NFD", letter)[0]
    return ASCII_LETTERS.get(letter, {"ı": "i", "ȷ": "j"}.get(plain, plain))


def accented(base, mark):
    """The one composed character for a letter with a mark, or None."""
    composed = unicodedata.normalize("NFC", base + mark)
    return composed if len(composed) == 1 else None


def accent_rows():
    """(command, UTF-8, ASCII) for every letter that Unicode has with an accent."""
    rows = []
    for accent, mark in {**SYMBOL_ACCENTS, **LETTER_ACCENTS}.items():
        bases = [(base, base) for base in BASE_LETTERS] + [("i", r"\i"), ("j", r"\j")]
        for base, written in bases:
            letter = accented(base, mark)
            if letter is None and not (accent == "." and written in (r"\i", r"\j")):
                continue
            text = letter or base
            rows.append((f"\\{accent}{{{written}}}", text, to_ascii_letter(text)))
            if accent in SYMBOL_ACCENTS:
                rows.append((f"\\{accent}{written}", text, to_ascii_letter(text)))
    return rows


def stacked_accent_rows():
    """Vietnamese letters with a second accent: "\\'{\\^e}" and "\\'{\\^{e}}"."""
    rows = []
    for accent in "`'~d":
        mark = {**SYMBOL_ACCENTS, **LETTER_ACCENTS}[accent]
        for base in "aeoAEO":
            letter = accented(accented(base, SYMBOL_ACCENTS["^"]), mark)
            rows += [(f"\\{accent}{{\\^{inner}}}", letter, base) for inner in (base, f"{{{base}}}")]
    return rows


def short_letter_rows():
    """Letters of their own whose command is too short to stand alone.

    They are taken only together with what ends their name: alone they would eat
    into the names of others. The opening brace of "{\\o}" is left to the last
    rows, since a scan for "{\\o}" misses it in "{{\\o}...".
    """
    return [(f"\\{name}{end}", text + end, plain + end)
            for name, text, plain in SHORT_LETTERS for end in "}{-"]


def letter_before_command_rows():
    """The same before another command ("\\L\\'od\\'z"): to be applied before it."""
    return [(f"\\{name}\\", text + "\\", plain + "\\")
            for name, text, plain in SHORT_LETTERS if name not in "ij"]


def long_letter_rows():
    return [("\\" + name, text, plain) for name, text, plain in LONG_LETTERS]


def greek_rows():
    return [("\\" + name, text, GREEK_ASCII.get(name, name.removeprefix("var")))
            for name, text in GREEK.items()]


def bar_rows():
    rows = []
    for name in BARRED:
        text = unicodedata.normalize("NFC", name + "\u0304")
        for command in (r"\bar", r"\overline"):
            rows.append((f"{command}{{{name}}}", text, name + "bar"))
    for name in BARRED_GREEK:
        text = GREEK[name] + "\u0304"
        for command in (r"\bar", r"\overline"):
            rows.append((f"{command}{{\\{name}}}", text, name + "bar"))
        rows.append((f"\\bar\\{name}", text, name + "bar"))
    return rows


def table_rows():
    """Rows of latex_commands.tsv, its abbreviations written out."""
    utf8 = {"-": "", "SP": NO_BREAK_SPACE, "U+202F": "\u202f", "GUARD": GUARD}
    plain = {"-": "", "SP": "~", "HYPHEN": "-", "GUARD": GUARD}
    rows = []
    lines = SOURCE.read_text(encoding="utf-8").splitlines()
    for number, line in enumerate(lines, 1):
        if not line or line.startswith("#"):
            continue
        fields = line.split("\t")
        if len(fields) != 3:
            sys.exit(f"{SOURCE.name}:{number}: three columns expected")
        command, text, ascii_text = fields
        if ascii_text == "=":
            ascii_text = text
        rows.append((command, utf8.get(text, text), plain.get(ascii_text, ascii_text)))
    return rows


def ascii_only_rows():
    rows = []
    for nucleus in NUCLEI:
        symbol = nucleus.lstrip("0123456789")
        mass = nucleus[:len(nucleus) - len(symbol)]
        for between in ("$", ""):
            rows.append((f"^{{{mass}}}{between}{symbol}", mass + symbol))
    rows += [(f"$\\mu${unit}", "u" + unit) for unit in MICRO_UNITS]
    return rows


def utf8_script_rows():
    """Sub- and superscripts: "^{13}" goes to "¹^{3}", "¹³^{}" and "¹³"."""
    rows = []
    for mark, digits in (("^", SUPERSCRIPTS), ("_", SUBSCRIPTS)):
        inner = {**digits, ".": ".", ",": ","}
        for _ in range(SCRIPT_LENGTH):
            rows += [(f"{mark}{{{c}", f"{small}{mark}{{") for c, small in inner.items()]
        rows.append((mark + "{}", ""))
        rows += [(f"{mark}{{{c}}}", small) for c, small in SCRIPT_LETTERS[mark].items()]
        # The rest of a script that is small only in part stands as it is.
        rows += [(f"{small}{mark}{{", small) for small in inner.values()]
        single = {**digits, **SCRIPT_LETTERS[mark]}
        rows += [(mark + c, small) for c, small in single.items()]
    return rows


def ascii_script_rows():
    """Subscripts lose their mark; superscripts keep it unless they are charges."""
    signs = [(f"^{{{count}{sign}}}", count + sign)
             for count in ["", *"123456"] for sign in "+-"]
    rows = signs + [("^+", "+"), ("^-", "-")]
    single = "0123456789+-nx"
    rows += [(f"_{{{c}", c) for c in single if c not in "nx"]
    rows += [(f"_{{{c}}}", c) for c in "nx"]
    rows += [("_" + c, c) for c in single]
    return rows


def raw_character_rows(named):
    """ASCII for characters that stand in a library as UTF-8."""
    known = {}
    for _, text, plain in named:
        if len(text) == 1 and ord(text) >= 128 and plain:
            known.setdefault(text, plain)
    for name, text, plain in SHORT_LETTERS:
        known.setdefault(text, plain)
    known["\u202f"] = known[NO_BREAK_SPACE] = "~"
    known["µ"] = "u"
    known["\u2010"] = known["\u2011"] = known["–"] = known["−"] = "-"
    known["—"] = "--"
    known.update({small: c for c, small in SUBSCRIPTS.items()})
    known.update({small: "^" + c for c, small in SUPERSCRIPTS.items()})
    common = [c for c in known
              if ord(c) < 0x250 or not c.isalpha() or "\u0370" <= c < "\u0400" or c in "ℏℓÅ"]
    return [(c, known[c]) for c in sorted(common)]


def longest_first(rows):
    """Longest command first; equal rows stay side by side, the first one holds."""
    chosen = {}
    for command, text in rows:
        chosen.setdefault(command, text)
    return sorted(chosen.items(), key=lambda row: (-len(row[0].encode()), row[0]))


def can_repeat(command):
    """Whether a command stands next to itself in real words.

    The ASCII table needs its rows for characters, so accents over consonants
    are listed once there.
    """
    accent = command[1] in SYMBOL_ACCENTS or command[1:3] in [a + "{" for a in LETTER_ACCENTS]
    return not accent or command.rstrip("}")[-1] in "aeiouyAEIOUY"


def standard_commands():
    """The names of LaTeX's own commands, without the backslash."""
    lines = STANDARD.read_text(encoding="utf-8").splitlines()
    return sorted({word for line in lines if not line.startswith("#") for word in line.split()})


def longest_prefix(name, names):
    """The longest of the names that `name` goes on from, or None."""
    return next((name[:n] for n in range(len(name) - 1, 0, -1) if name[:n] in names), None)


def guard_rows(rows):
    """Rows that keep whole what a row would take the beginning of."""
    names = {row[0][1:] for row in rows if row[0][:1] == "\\" and row[0][1:].isalpha()}
    for stand_in, _, _ in STAND_INS:
        if longest_prefix(stand_in[1:], names):
            sys.exit(f"the beginning of the stand-in {stand_in} is a row")
    lower = BASE_LETTERS[26:]
    short = {name for name in names if len(name) <= GUARDED_LENGTH}
    guarded = {name + letter for name in short | set(GUARDED_LONGER) for letter in lower}
    guarded |= {name + letter for name in CAPITALS_AFTER for letter in BASE_LETTERS}
    for command in standard_commands():
        prefix = longest_prefix(command, names)
        if command not in names and prefix:
            guarded.add(command[:len(prefix) + 1])
    taken = {row[0] for row in rows}
    return [("\\" + name, GUARD + name) for name in sorted(guarded) if "\\" + name not in taken]


def before_command_rows(rows):
    """Rows for a guarded name before another command, to be applied before all others.

    What that command is replaced by may begin with a letter: "\\pi\\sin" must not become
    "\\pisin", which would count as a command of its own. A name that has rows together
    with the next command ("\\bar\\nu") is left to them.
    """
    guarded = {row[0][:end] for row in guard_rows(rows) for end in range(2, len(row[0]))}
    guarded -= {command.rpartition("\\")[0] for command, _ in rows}
    return [(command + "\\", text + "\\") for command, text in dict(reversed(rows)).items()
            if command in guarded and command[1:].isalpha() for _ in range(2)]


def named_rows(name):
    """Block 1 of a table."""
    column = {UTF8: 1, ASCII: 2}[name]
    accents = accent_rows()
    doubled = accents + long_letter_rows() + greek_rows()
    twice = {row[0] for row in doubled if name == UTF8 or can_repeat(row[0])}
    twice.update("\\" + c for c in "&%$_#{}")
    others = stacked_accent_rows() + short_letter_rows() + bar_rows() + table_rows()
    rows = [(row[0], row[column]) for row in doubled + others]
    if name == ASCII:
        rows += ascii_only_rows()
    rows = [row for row in rows if row[0] != row[1]]
    first = before_command_rows(rows)
    rows += guard_rows(rows)
    repeated = [row for row in longest_first(rows) for _ in range(2 if row[0] in twice else 1)]
    return [(row[0], row[column]) for row in letter_before_command_rows()] + first + repeated


def all_rows(name):
    """The whole table, block after block."""
    column = {UTF8: 1, ASCII: 2}[name]
    rows = named_rows(name)
    if name == UTF8:
        rows += utf8_script_rows()
    else:
        rows += ascii_script_rows()
        rows += raw_character_rows(accent_rows() + long_letter_rows() + greek_rows() + table_rows())
    rows += [(c, "") for c in "${}" for _ in range(3)]
    rows += [(row[0], row[column]) for row in STAND_INS for _ in range(2)]
    rows += [("\\" + sign, GUARD + sign) for sign in [*BASE_LETTERS, *SYMBOL_ACCENTS]]
    return rows + [("\\", ""), (GUARD, "\\")]


def render(name):
    rows = all_rows(name)
    if len(rows) > MAX_ROWS:
        sys.exit(f"{name}: {len(rows)} rows, at most {MAX_ROWS} are wanted")
    header = HEADER.format(name=name, note=NOTES[name])
    lines = [f"{command}\t{text}" if text else command for command, text in rows]
    return (header + "\n".join(lines) + "\n").encode("utf-8")


def main():
    parser = argparse.ArgumentParser(description="Write the LaTeX command tables.")
    parser.add_argument("--check", action="store_true", help="compare, write nothing")
    parser.add_argument("--output-dir", type=pathlib.Path, default=TARGET_DIR)
    options = parser.parse_args()
    stale = 0
    for name in (UTF8, ASCII):
        target = options.output_dir / name
        content = render(name)
        if not options.check:
            target.write_bytes(content)
        elif not target.is_file() or target.read_bytes() != content:
            print(f"{target}: differs from what make_latex_commands.py writes")
            stale = 1
    return stale


if __name__ == "__main__":
    sys.exit(main())
