// SPDX-License-Identifier: MIT
#include "warnings/entry_reader.h"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/hostile_library.h"
#include "tests/support/recording_warnings.h"
#include "warnings/line_tags.h"

namespace tarvel {
namespace {

using namespace tarvel::testing;

/// The lines of an entry after its first one, with all that can go wrong in them.
std::string RandomLines(std::mt19937& random) {
  constexpr std::array<std::string_view, 24> kPieces{"title = {A {B} C}",
                                                     "year = 19",
                                                     "year = {1}",
                                                     "note = \"n\"",
                                                     "}",
                                                     "{",
                                                     "\n",
                                                     "\n",
                                                     "\n",
                                                     ",",
                                                     "=",
                                                     "\"",
                                                     "#",
                                                     " # {b\nc}",
                                                     "title =\n {T}",
                                                     "title = ab",
                                                     " \t",
                                                     "month",
                                                     "a b =",
                                                     "\r",
                                                     "\n}",
                                                     "{x = y},",
                                                     "xtitle={u}",
                                                     "# \"\n\""};
  std::string lines;
  for (std::size_t count = random() % 20; count > 0; --count) {
    lines += kPieces[random() % kPieces.size()];
    if (random() % 3 == 0) lines += ",\n";
  }
  return lines;
}

/// What is reported of an entry whose lines are read at once, or one after the other.
std::vector<std::string> Read(std::string_view lines, const ScanRules& rules, bool at_once) {
  RecordingWarnings to;
  FileWarnings warnings(&to, "l", lines);
  EntryReader entry(lines, true, rules, warnings);
  entry.Open("k", 0);
  for (std::size_t at = 0; at < lines.size() && entry.IsOpen();) {
    const std::size_t end = at_once ? lines.size() : LineEnd(lines, at);
    entry.BeginLine(at);
    entry.Read(at, end);
    at = end;
  }
  const bool is_open = entry.IsOpen();
  entry.Close(lines.size());
  to.lines.push_back(std::string(is_open ? "open " : "ended ") + std::string(entry.Tag()) + " " +
                     std::to_string(entry.Counts().values) + " " +
                     std::to_string(entry.Counts().unbraced));
  return to.lines;
}

TEST(EntryReader, ReadsManyLinesAtOnceAsItReadsThemOneByOne) {
  const std::array<std::string_view, 2> names{"title", "year"};
  const NameMatcher tags(names);
  std::mt19937 random(7);
  std::size_t reported = 0;
  for (int run = RandomRuns(20000); run > 0; --run) {
    const std::string lines = RandomLines(random);
    ScanRules rules{.line_limit = 1000, .read_tags = &tags};
    rules.one_value_a_line = random() % 2 == 0;
    rules.needs_closing_line = random() % 2 == 0;
    rules.takes_all_tags = random() % 2 == 0;
    const std::vector<std::string> one_by_one = Read(lines, rules, false);
    ASSERT_EQ(Read(lines, rules, true), one_by_one) << lines;
    reported += one_by_one.size() - 1;
  }
  EXPECT_GT(reported, 0U);
}

TEST(EntryReader, EndsAValueThatIsMissingAtItsComma) {
  EXPECT_EQ(Read(" year = , title = {x}\n}\n", {.line_limit = 1000}, true),
            std::vector<std::string>{"ended title 2 1"});
}

}  // namespace
}  // namespace tarvel
