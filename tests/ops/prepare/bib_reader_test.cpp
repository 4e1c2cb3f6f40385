// SPDX-License-Identifier: MIT
#include "ops/prepare/bib_reader.h"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace tarvel {
namespace {

using namespace std::string_literals;
using Lines = std::vector<std::string>;

/// All commands, a line each: "type key: tag={value} ...", with "! reason at PLACE" of a fault.
Lines Read(const std::string& library) {
  BibStrings strings;
  BibReader reader(library, strings);
  Lines lines;
  for (BibItem item; reader.Next(item);) {
    std::string line = std::string(item.type) + " " + std::string(item.key) + ":";
    for (const BibTag& tag : item.tags) {
      line.append(" ").append(tag.name).append("={").append(tag.value).append("}");
    }
    for (const std::string_view name : item.undefined) line.append(" ?").append(name);
    if (!item.fault.empty()) {
      line.append(" ! ").append(item.fault).append(" at ");
      line.append(library.substr(item.fault_offset, 5));
    }
    lines.push_back(line);
  }
  return lines;
}

struct ReadCase {
  std::string library;
  Lines read;
  const char* says;
};

TEST(BibReader, ReadsWhatBibTeXReads) {
  const ReadCase cases[] = {
      {"@misc{k, t={a}}", {"misc k: t={a}"}, "braces"},
      {"@misc{k, t=\"a\"}", {"misc k: t={a}"}, "quotes"},
      {"@misc{k, t=12}", {"misc k: t={12}"}, "a number"},
      {"@misc{k, t=\"a\" # 12 # {b}}", {"misc k: t={a12b}"}, "pieces"},
      {"@misc(k, t={a})", {"misc k: t={a}"}, "parentheses"},
      {"@misc(k)x, t={)}, u=\")\")", {"misc k)x: t={)} u={)}"}, "which keys and values may hold"},
      {"@ misc\n{ k\n ,\n t\n =\n {a}\n ,\n}", {"misc k: t={a}"}, "white space anywhere"},
      {"@misc{k}@misc{l,}@misc{,t={a}}", {"misc k:", "misc l:", "misc : t={a}"}, "no tags, no key"},
      {"@Misc{K, Ti-tle={a}}", {"Misc K: Ti-tle={a}"}, "names as they stand"},
      {"text @misc{k, t={a}} text @ x @y @misc{l}", {"misc k: t={a}", "misc l:"}, "text outside"},
      {"@comment{ @misc{k, t={a}} }", {"misc k: t={a}"}, "only the word is a comment"},
      {"@misc{k, t=\"a {\"} b\", u={a \" b}}",
       {"misc k: t={a {\"} b} u={a \" b}"},
       "quotes in braces"},
      {"@misc{k, t={a @ b}, u={@misc{l}}}", {"misc k: t={a @ b} u={@misc{l}}"}, "an @ in values"},
      {"@misc{k, t={a}}}", {"misc k: t={a}"}, "a brace too many is text"},
      {"@misc{k, t={{a}}}", {"misc k: t={{a}}"}, "inner braces stay"},
      {"@misc{k, t={a}, t={b}}", {"misc k: t={a} t={b}"}, "a tag again"},
      {"@misc{k, {a}={b}}", {"misc k: ! the name of a tag was expected at {a}={"}, "no name"},
      {"\xef\xbb\xbf@misc{k}", {"misc k:"}, "a byte order mark is text"},
      {"@misc{k\0l, t={a\0b}}"s, {"misc k\0l: t={a\0b}"s}, "zero bytes are bytes"},
      {"@misc{\xc3\xa9, \xc3\xbc={\xc3\xa4}}", {"misc \xc3\xa9: \xc3\xbc={\xc3\xa4}"}, "UTF-8"},
      {"@foo@misc{k}", {"foo@misc k:"}, "an @ in a type"},
      {"@misc{{k, t={a}}", {"misc {k: t={a}"}, "a brace in a key"},
      {"@", {}, "nothing"},
      {"", {}, "an empty file"},
  };
  for (const ReadCase& one : cases) EXPECT_EQ(Read(one.library), one.read) << one.says;
}

TEST(BibReader, DrawsWhiteSpaceTogether) {
  const ReadCase cases[] = {
      {"@misc{k, t={  a  b\n\tc  }}", {"misc k: t={a b c}"}, "blanks, tabs and breaks"},
      {"@misc{k, t={a\r\nb\rc\r\n}}", {"misc k: t={a b c}"}, "of all systems"},
      {"@misc{k, t=\"a \" # \" b\"}", {"misc k: t={a b}"}, "over a seam"},
      {"@misc{k, t=\"a \" # \"\" # \" b\"}", {"misc k: t={a b}"}, "over an empty piece"},
      {"@misc{k, t=\"\" # \" a\"}", {"misc k: t={a}"}, "none at the start"},
      {"@misc{k, t={ } # { }}", {"misc k: t={}"}, "nothing but blanks"},
      {"@misc{k, t={{ a }}}", {"misc k: t={{ a }}"}, "within braces it stays"},
      {"@misc{k, t={a\f \f}}", {"misc k: t={a\f \f}"}, "a form feed is none"},
  };
  for (const ReadCase& one : cases) EXPECT_EQ(Read(one.library), one.read) << one.says;
}

TEST(BibReader, PutsStringsIn) {
  const ReadCase cases[] = {
      {"@string{a=\"x\"}@misc{k, t=A}", {"string : a={x}", "misc k: t={x}"}, "any letter case"},
      {"@STRING(a={x} # 1)@misc{k, t=a # a}", {"STRING : a={x1}", "misc k: t={x1x1}"}, "pieces"},
      {"@string{a=\" x \"}@misc{k, t={b} # a # {c}}",
       {"string : a={ x }", "misc k: t={b x c}"},
       "keep their blanks"},
      {"@misc{k, month=mar # \"~1\"}", {"misc k: month={March~1}"}, "months"},
      {"@string{mar=\"3\"}@misc{k, t=mar}", {"string : mar={3}", "misc k: t={3}"}, "defined anew"},
      {"@string{a=1}@misc{k, t=a}@string{a=2}@misc{l, t=a}",
       {"string : a={1}", "misc k: t={1}", "string : a={2}", "misc l: t={2}"},
       "from there on"},
      {"@misc{k, t=Nope}", {"misc k: t={Nope} ?Nope"}, "an undefined one is its name"},
      {"@string{a=a # \"x\"}@misc{k, t=a}",
       {"string : a={x} ?a", "misc k: t={x}"},
       "not in itself"},
      {"@misc{k, t=a}@string{a=1}", {"misc k: t={a} ?a", "string : a={1}"}, "not before"},
  };
  for (const ReadCase& one : cases) EXPECT_EQ(Read(one.library), one.read) << one.says;
}

TEST(BibReader, ReadsPreambles) {
  EXPECT_EQ(Read("@string{a={b}}@preamble{\" x  y \" # a}"),
            (Lines{"string : a={b}", "preamble : ={ x y b}"}));
  EXPECT_EQ(Read("@preamble({x})@misc{k}"), (Lines{"preamble : ={x}", "misc k:"}));
}

TEST(BibReader, ReportsWhatBreaksTheGrammarAndGoesOn) {
  const std::string next = "\n@misc{l, t={b}}\n";
  const ReadCase cases[] = {
      {"@misc{k, t={a} u={b}}",
       {"misc k: t={a} ! a comma, or the end of the entry, is missing after the value of 't' at "
        "u={b}"},
       "a missing comma"},
      {"@misc{k t={a}}",
       {"misc k: ! a comma, or the end of the entry, is missing after the key at t={a}"},
       "after the key"},
      {"@misc{k, t}", {"misc k: ! there is no \"=\" after 't' at }\n@mi"}, "no value"},
      {"@misc{k, t=}", {"misc k: ! there is no value after 't' at }\n@mi"}, "no text"},
      {"@misc{k, t={a},, u={b}}",
       {"misc k: t={a} ! the name of a tag was expected at , u={"},
       "two commas"},
      {"@misc{k, % x\n t={a}}",
       {"misc k: ! the name of a tag was expected at % x\n "},
       "a comment in an entry"},
      {"@misc{k, 3d={a}}",
       {"misc k: ! the name of a tag was expected at 3d={a"},
       "a name begins with a digit"},
      {"@misc{k, t=a(b}",
       {"misc k: ! there is no value after 't' at (b}\n@"},
       "a wrong name of a string"},
      {"@misc{k, t=\"a}\"}",
       {"misc k: ! there is a \"}\" too many in the value of 't' at }\"}\n@"},
       "a brace in quotes"},
      {"@misc{k, u={a}, t={b",
       {"misc k: u={a} ! nothing closes the value of 't' at {b\n@m"},
       "a value that never closes"},
      {"@misc{k, t=\"b", {"misc k: ! nothing closes the value of 't' at \"b\n@m"}, "nor quotes"},
      {"@misc{k, t=\"b\n}",
       {"misc k: ! there is a \"}\" too many in the value of 't' at }\n@mi"},
       "one quote"},
      {"@string{a}",
       {"string : ! a string's name and \"=\" were expected at }\n@mi"},
       "a string without text"},
      {"@string{a={x} b}",
       {"string : a={x} ! the string 'a' is not closed after its text at b}\n@m"},
       "or with more"},
      {"@preamble{{x} y}",
       {"preamble : ={x} ! the preamble is not closed after its text at y}\n@m"},
       "a preamble"},
  };
  for (const ReadCase& one : cases) {
    Lines read = one.read;
    read.emplace_back("misc l: t={b}");
    EXPECT_EQ(Read(one.library + next), read) << one.says;
  }
  EXPECT_EQ(Read("@misc{k, t={a}"), Lines{"misc k: t={a} ! the library ends within the entry at "});
}

TEST(BibReader, OnceAValueSwallowedEntriesNoneGoesPastALineThatBeginsLikeOne) {
  // The first value closes nowhere: reading goes on at the next line that begins like a command.
  // From then on the second one ends there, too, although a brace would close it later.
  const std::string library =
      "@misc{a, t={x\n@misc{b, t={y\n  @misc{c, u={z}}\n}}\n@misc{d, t={e\n @ mail}}\n";
  EXPECT_EQ(Read(library), (Lines{"misc a: ! nothing closes the value of 't' at {x\n@m",
                                  "misc b: ! nothing closes the value of 't' at {y\n  ",
                                  "misc c: u={z}", "misc d: t={e @ mail}"}));
  EXPECT_EQ(Read("@misc{a, t={x\n@misc{b}\n}}"), Lines{"misc a: t={x @misc{b}}"})
      << "a value that closes may hold such a line";
}

TEST(BibReader, StringsOfStringsDoNotGrowWithoutMeasure) {
  std::string library = "@string{a0=\"0123456789\"}";
  for (int i = 1; i < 60; ++i) {
    const std::string before = "a" + std::to_string(i - 1);
    library += "@string{a" + std::to_string(i) + "=" + before;
    for (int times = 0; times < 9; ++times) library += "#" + before;
    library += "}";
  }
  library += "@misc{k, t=a59}";
  std::size_t size = 0;
  for (const std::string& line : Read(library)) size += line.size();
  EXPECT_LT(size, std::size_t{3} << 20);
}

TEST(EndOfFrontTexts, IsTheLastPreambleOrKeyWithAnAt) {
  EXPECT_EQ(EndOfFrontTexts("@misc{k, note={n}} @string{a={b}}"), 0U);
  EXPECT_EQ(EndOfFrontTexts(" @ Preamble (\"x\") @misc{k}"), 1U);
  EXPECT_EQ(EndOfFrontTexts("@misc{k} @misc { b@c,}"), 9U);
  EXPECT_EQ(EndOfFrontTexts("@x@misc{b@c,}"), 2U) << "after the beginning of its type";
  EXPECT_EQ(EndOfFrontTexts("@misc{k, note={a@b}}"), 0U);
  EXPECT_EQ(EndOfFrontTexts("@"), 0U);
  EXPECT_EQ(EndOfFrontTexts(""), 0U);
}

TEST(EndOfFrontTexts, TakesLinearTime) {
  for (const std::string part : {"@", "@x", "@ ", "@a{", "@a{b "}) {
    std::string text;
    while (text.size() < 4'000'000) text += part;
    EXPECT_LE(EndOfFrontTexts(text), text.size());  // else the test takes hours
  }
}

/// What is needed of the entries to find parents: where each begins, its key, and whether it
/// counts.
std::string KeysOf(const std::string& library, bool keeps_tags) {
  BibStrings strings;
  BibReader reader(library, strings);
  reader.KeepTags(keeps_tags);
  std::string keys;
  for (BibItem item; reader.Next(item);) {
    if (!item.IsWritten()) continue;
    keys.append(std::to_string(item.begin)).append(" ").append(item.key).append("\n");
  }
  return keys;
}

TEST(BibReader, FindsTheSameKeysWithoutTags) {
  for (const std::string library :
       {"@misc{x,\n title={A},\n note={B}\n@book{p,\n year={1}\n}\n}\n",
        "@misc{x, title={A}, note={see @book{p, year={1}} }\n}\n@book{p,\n year={2}\n}\n",
        "@misc(x, title={A}, note={B} } )\n@book{p, year={1}}\n",
        "@misc{x, title={A}, note=\"b } @book{p, year={1}} \"}\n@book{q, year={1}}\n"}) {
    EXPECT_EQ(KeysOf(library, false), KeysOf(library, true)) << library;
  }
  constexpr std::array<std::string_view, 16> kParts{
      "@misc{a,", "@book(b,", "@misc{c", " t={x},", " t={x}", " t=\"x\",", " u=1,", " v={x{y}z}",
      "{",        "}",        ")",       "\"",      "@",      ",",         "=",     "\n"};
  std::mt19937 random(4);
  for (int i = 0; i < 20'000; ++i) {
    std::string library;
    for (auto parts = random() % 24; parts > 0; --parts)
      library += kParts[random() % kParts.size()];
    ASSERT_EQ(KeysOf(library, false), KeysOf(library, true)) << library;
  }
}

}  // namespace
}  // namespace tarvel
