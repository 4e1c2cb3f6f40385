// SPDX-License-Identifier: MIT
#include "ops/prepare/guards.h"

#include <gtest/gtest.h>

#include <string_view>

#include <string>

#include <fstream>
#include <iterator>

#include "core/text_primitives.h"
#include "ops/references/latex_commands.h"
#include "tests/support/memory_files.h"
#include "tests/support/reference_worlds.h"

namespace tarvel {
namespace {

struct Case {
  std::string value;
  std::string result;
};

TEST(StripOuterBraces, TakesAwayPairsAroundAllOfAValue) {
  const Case cases[] = {{"{774-797}", "774-797"},
                        {"{{a}}", "a"},
                        {"{ {a} b }", "{a} b"},
                        {"{{a} {b}}", "{a} {b}"},
                        {"{a} and {b}", "{a} and {b}"},
                        {"{}", ""},
                        {"{{ }}", ""},
                        {"{{a}{b}}", "{a}{b}"},
                        {"{ { a } }", "a"},
                        {"a", "a"},
                        {"", ""},
                        {"{\\em a}", "{\\em a}"},
                        {"{{\\em a}}", "{\\em a}"},
                        {"{{\\'E}tude}", "{\\'E}tude"}};
  for (const Case& one : cases) EXPECT_EQ(StripOuterBraces(one.value, false), one.result);
}

TEST(StripOuterBraces, KeepsThePairThatMakesOneName) {
  const Case cases[] = {{"{World Health Organization}", "{World Health Organization}"},
                        {"{{Barnes and Noble}}", "{Barnes and Noble}"},
                        {"{Google, Inc.}", "{Google, Inc.}"},
                        {"{Doe, J. and Roe, K.}", "Doe, J. and Roe, K."},
                        {"{Doe, J. and others}", "{Doe, J. and others}"},
                        {"Doe, J.", "Doe, J."}};
  for (const Case& one : cases) EXPECT_EQ(StripOuterBraces(one.value, true), one.result);
}

std::string Ends(const std::string& value) {
  std::string guarded;
  GuardEnds(value, guarded);
  return guarded;
}

TEST(GuardEnds, LeavesNoBraceAtEitherEnd) {
  const Case cases[] = {{"Structure of {DNA}", "Structure of {DNA}\\/"},
                        {"{DNA} and {RNA}", "D{NA} and {RNA}\\/"},
                        {"{D} and {RNA} b", "D and {RNA} b"},
                        {"{3D} prints", "3{D} prints"},
                        {"{\xc3\x89tude} de", "\xc3\x89{tude} de"},
                        {"{\\'E}tude", "\\relax{{\\'E}}tude"},
                        {"{\\LaTeX} and more", "\\relax{{\\LaTeX}} and more"},
                        {"{$x$}-rays", "\\relax{{$x$}}-rays"},
                        {"{}  {} a", "a"},
                        {"{ a} b", "\\relax{{ a}} b"},
                        {"{Who} is {NP?}", "W{ho} is {NP}?"},
                        {"a {b {c.}}", "a {b {c}}."},
                        {"see \\url{http://x.}", "see \\url{http://x.}\\/"},
                        {"a {\\'e.}", "a {\\'e}."},
                        {"a {b\\.}", "a {b\\.}\\/"},
                        {"a {}", "a {}\\/"},
                        {"{}", ""}};
  for (const Case& one : cases) {
    EXPECT_TRUE(NeedsEnds(one.value));
    EXPECT_EQ(Ends(one.value), one.result);
    EXPECT_FALSE(NeedsEnds(one.result)) << "guarding once is enough";
    std::string stripped = one.result;
    StripBraces(stripped);
    EXPECT_EQ(stripped, one.result) << "Extract and Text take nothing away";
  }
  EXPECT_FALSE(NeedsEnds(""));
  EXPECT_FALSE(NeedsEnds("a {b} c"));
}

WordSet AllWords() { return (WordSet{1} << kWords.size()) - 1; }

std::string Words(const std::string& value) {
  std::string guarded;
  GuardWords(value, AllWords(), guarded);
  return guarded;
}

TEST(GuardWords, PutsGroupsIntoWords) {
  const Case cases[] = {
      {"The author of Years", "The auth{}or of Ye{}ars"},
      {"JOURNAL pages", "JOUR{}NAL pa{}ges"},
      {"du jour nalais", "du j{}our nalais"},
      {"booktitle", "book{}tit{}le"},
      {"authorauthor", "auth{}orauth{}or"},
      {"auth{}or", "auth{}or"},
      {"\\title{a year}", "\\title{a ye{}ar}"},
      {"\\year \\yearly year", "\\year \\yearly ye{}ar"},
      {"\\url{http://a/journal} journal", "\\url{http://a/journal} jour{}nal"},
      {"\\href{http://note}{note}", "\\href{http://note}{no{}te}"},
      {"\\cite[see note][note]{author} author", "\\cite[see note][note]{author} auth{}or"},
      {"\\parencite{author}", "\\parencite{author}"},
      {"\\verb|author| author", "\\verb|author| auth{}or"},
      {"\\verb|author", "\\verb|author"},
      {"\\url{author", "\\url{author"},
      {"\\cite[author", "\\cite[auth{}or"},
      {"\\", "\\"},
      {"mail a@b.c or {d}", "mail a@{}b.c or {d}"},
      {"mail a@b.c", "mail a@b.c"},
      {"@{}book {x}", "@{}book {x}"},
      {"{x} a@b.c", "{x} a@b.c"},
      {"a@b.c year", "a@{}b.c ye{}ar"},
      {"url={x}", "u{}rl={x}"},
      {"xdoi = {x}", "xd{}oi = {x}"},
      {"f i l e={x}", "f{} i l e={x}"},
      {"if x={y}", "if x={y}"}};
  for (const Case& one : cases) {
    EXPECT_EQ(Words(one.value), one.result);
    EXPECT_EQ(Words(one.result), one.result) << "guarding once is enough";
  }
}

TEST(GuardNames, DividesAnAndInBraces) {
  const Case cases[] = {{"{Tides and Winds}", "{Tides a{}nd Winds}"},
                        {"{A {b and} c} and {D and E}", "{A {b a{}nd} c} and {D a{}nd E}"},
                        {"Doe, J. and Roe, K.", "Doe, J. and Roe, K."},
                        {"{Tides a{}nd Winds}", "{Tides a{}nd Winds}"},
                        {"{Of android sand}", "{Of a{}ndroid sand}"},
                        {"} and {", "} and {"},
                        {"{A} and B", "{A} and B"},
                        {"", ""}};
  for (const Case& one : cases) {
    std::string guarded;
    GuardNames(one.value, guarded);
    EXPECT_EQ(guarded, one.result) << one.value;
  }
}

TEST(GuardNames, KnowsNamesThatAreCutInBraces) {
  for (const char* names : {"Paul {Harrow, Jr.}", "{Harrow, Jr.}, Paul", "Doe, J. and {Roe, K.}",
                            "{Tides, Winds and Ice}", "Doe, J. and {a, b}"}) {
    EXPECT_TRUE(HasCommaInBraces(names)) << names;
  }
  for (const char* names : {"Harrow, {P., Jr.}", "Doe, J. and Roe, {K, L}", "{Harrow Jr.}, Paul",
                            "{A} and {B}", "}, {", "", "\\'{E}douard, {a, b}"}) {
    EXPECT_FALSE(HasCommaInBraces(names)) << names;
  }
}

Harm HarmOf(std::string_view value, WordSet harmful) {
  return FindHarm(value, FactsOf(value), harmful);
}

TEST(FindHarm, ReportsWhatIsLeft) {
  EXPECT_FALSE(HarmOf("nothing here", AllWords()).Any());
  EXPECT_EQ(HarmOf("a year", AllWords()).words, WordBit(1));
  EXPECT_EQ(HarmOf("a year", AllWords() & ~WordBit(1)).words, 0U);
  EXPECT_EQ(HarmOf("jour nal", AllWords()).words, kJournalBit);
  EXPECT_TRUE(HarmOf("doi = {x}", 0).is_exempt);
  EXPECT_FALSE(HarmOf("doi = x", 0).is_exempt);
  EXPECT_TRUE(HarmOf("a@b {x}", 0).is_at);
  EXPECT_FALSE(HarmOf("a@b", 0).is_at);
  EXPECT_FALSE(HarmOf("@{} @{}b {x}", 0).is_at);
}

/// One of the tables that the program brings.
LaTeXCommands Table(const std::string& name) {
  std::ifstream file(std::string(TARVEL_SOURCE_DIR) + "/data/LaTeXCommands/" + name);
  testing::MemoryFiles files;
  files.files[std::string(testing::kCommandsPath)].assign(std::istreambuf_iterator<char>(file), {});
  LaTeXCommands commands;
  EXPECT_EQ(CreateText_LaTeXArray(testing::MemoryRun(files, ""), commands), 1);
  return commands;
}

TEST(Guards, PlainTextIsTheSame) {
  for (const std::string name : {"LaTeXCommands_linux.tvl", "LaTeXCommands_ascii.tvl"}) {
    const LaTeXCommands commands = Table(name);
    const auto plain = [&](std::string value) {
      testing::ApplyAll(value, commands);
      return value;
    };
    const std::string ends[] = {"Structure of {DNA}", "{DNA} and {RNA}", "{\\'E}tude",
                                "{\\LaTeX} and more", "{$x$}-rays",      "Who is {NP?}",
                                "caf{\\'e}",          "{\\O}stlund",     "a {\\o}"};
    for (const std::string& value : ends) EXPECT_EQ(plain(Ends(value)), plain(value)) << name;
    for (const std::string_view word : kWords) {
      const std::string text = "a " + std::string(word) + "s, {" + std::string(word) + "} {\\o}" +
                               std::string(word) + " x@y.z";
      EXPECT_NE(Words(text), text);
      EXPECT_EQ(plain(Words(text)), plain(text)) << name;
    }
  }
}

/// The value without braces, blanks and what guards add.
std::string Plain(std::string_view value) {
  std::string plain;
  for (std::size_t at = 0; at < value.size(); ++at) {
    if (value.substr(at).starts_with("\\relax")) {
      at += 5;
    } else if (value.substr(at).starts_with("\\/")) {
      ++at;
    } else if (std::string_view("{} ").find(value[at]) == std::string_view::npos) {
      plain += value[at];
    }
  }
  return plain;
}

TEST(Guards, KeepEveryShortValue) {
  const std::string_view tokens[] = {"{", "}", "\\", "v", "erb", "[",   "]",
                                     "?", " ", "a",  "@", "=",   "url", "\xc3\xa9"};
  constexpr std::size_t kMost = 5;
  std::size_t guarded_ends = 0;
  std::size_t guarded_words = 0;
  std::size_t kinds = 1;
  for (std::size_t size = 0; size <= kMost; ++size, kinds *= std::size(tokens)) {
    for (std::size_t kind = 0; kind < kinds; ++kind) {
      std::string value;
      int depth = 0;
      bool balanced = true;
      std::size_t rest = kind;
      for (std::size_t i = 0; i < size; ++i, rest /= std::size(tokens)) {
        const std::string_view token = tokens[rest % std::size(tokens)];
        depth += token == "{" ? 1 : token == "}" ? -1 : 0;
        balanced = balanced && depth >= 0;
        value += token;
      }
      if (!balanced || depth != 0) continue;  // no value of BibTeX is
      for (const bool is_names : {false, true}) {
        ASSERT_EQ(Plain(StripOuterBraces(value, is_names)), Plain(value)) << value;
      }
      std::string guarded;
      if (NeedsEnds(value)) {
        GuardEnds(value, guarded);
        ASSERT_EQ(Plain(guarded), Plain(value)) << value << " became " << guarded;
        ++guarded_ends;
      }
      const Harm harm = HarmOf(value, 0);
      if (!harm.Any()) continue;
      GuardWords(value, 0, guarded);
      ASSERT_EQ(Plain(guarded), Plain(value)) << value << " became " << guarded;
      guarded_words += guarded != value ? 1 : 0;
    }
  }
  EXPECT_GT(guarded_ends, 1000U);
  EXPECT_GT(guarded_words, 100U);
}

}  // namespace
}  // namespace tarvel
