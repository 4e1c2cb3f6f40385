// SPDX-License-Identifier: MIT
#include "ops/references/reference_walk.h"

#include <gtest/gtest.h>

#include "tests/support/memory_files.h"
#include "tests/support/recording_reporter.h"
#include "tests/support/recording_warnings.h"

namespace tarvel::testing {
namespace {

using enum ReferenceValue;

/// Rules whose references are the values that were read: "name|author|title|...\n".
WalkRules PlainRules(OutputFile& out) {
  return {.line_limit = limits::kShortLine,
          .strips_titles = false,
          .collapses_dashes = false,
          .is_plain_text = false,
          .advice = "ADVICE",
          .name_reference = [](std::string_view key) { return std::string(key); },
          .print =
              [&out](const EntryKind&, EntryValues& values) {
                for (std::size_t i = 0; i < kValueCount; ++i) {
                  out.Write({values[static_cast<ReferenceValue>(i)], "|"});
                }
                out.Write("\n");
                return std::vector<ReferenceValue>{kBibitem};
              }};
}

struct Walked {
  std::string output;
  bool whole = false;
  int unsupported = 0;
};

Walked Walk(
    std::string_view library, int entries, const Settings& settings = {},
    const std::function<void(WalkRules&)>& change = [](WalkRules&) {}) {
  MemoryFiles files;
  OutputFile out(files.CreateSink("out", CreateMode::kWrite), "out");
  LineStream lines(library);
  FileWarnings warnings(nullptr, "l", library);
  WalkRules rules = PlainRules(out);
  change(rules);
  ReferenceWalk walk(lines, out, settings, rules, warnings);
  Walked walked;
  walked.whole = walk.Run(entries);
  walked.unsupported = walk.Unsupported();
  EXPECT_TRUE(out.Close());
  walked.output = files.files["out"];
  return walked;
}

TEST(ReferenceWalk, ReadsTheTagsOfEachKind) {
  const std::string tags =
      "  author = {A},\n  title = {T},\n  journal = {J},\n  year = {Y},\n  volume = {V},\n"
      "  pages = {1-2},\n  publisher = {P},\n  address = {D},\n  editor = {E},\n"
      "  booktitle = {B},\n  school = {S},\n}\n";
  struct Case {
    std::string type, values;
  };
  for (const Case& c :
       {Case{"article", "k|A|B|J|Y|V|1||||||"}, Case{"book", "k|A|B||Y|||P|D||||"},
        Case{"incollection", "k|A|T||Y||1|P|D|E|B||"},
        Case{"inproceedings", "k|A|T||Y||1||D|E|B||"}, Case{"phdthesis", "k|A|B||Y||||||S|"},
        Case{"masterthesis", "k|A|B||Y||||||S|"}}) {
    const std::string expected =
        c.type.ends_with("thesis") ? "k|A|B||Y|||||||S|\n" : c.values + "\n";
    EXPECT_EQ(Walk("@" + c.type + "{k,\n" + tags, 1).output, expected) << c.type;
  }
}

TEST(ReferenceWalk, KeepsTheValuesOfEarlierEntries) {
  const Walked walked =
      Walk("@book{a,\n  author = {A},\n}\n@book{b,\n  title = {T},\n}\n@book{c,\n}\n", 3);
  EXPECT_EQ(walked.output, "a|A|||||||||||\nb|A|T||||||||||\nc|A|T||||||||||\n");
  EXPECT_TRUE(walked.whole);
}

TEST(ReferenceWalk, EndsWithALibraryThatIsTooShort) {
  EXPECT_FALSE(Walk("@book{a,\n}\n", 2).whole);
  EXPECT_FALSE(Walk("", 1).whole);
  EXPECT_TRUE(Walk("", 0).whole);
  const Walked head_last = Walk("@book{a,\n}\n@book{b,\n", 3);
  EXPECT_TRUE(head_last.whole) << "a head on the last line ends the walk";
  EXPECT_EQ(head_last.output, "a||||||||||||\n");
}

TEST(ReferenceWalk, NotesEntriesOfUnsupportedTypes) {
  const Walked walked =
      Walk("@misc{m,\n  author = {M},\n}\n@BOOK{a,\n}\n@booklet{b,\n}\n@book{c,\n}\n", 4);
  EXPECT_EQ(
      walked.output,
      "\n\nAttention!\n==========\nThe entry type of the bibitem-key 'm' is '@MISC', which is "
      "not supported, so far.\nADVICE\n\n\n\na||||||||||||\nc||||||||||||\n")
      << "a booklet is neither printed nor noted";
  EXPECT_EQ(walked.unsupported, 1);
}

TEST(ReferenceWalk, TakesAnUnsupportedHeadOnTheLastLineForAllThatAreLeft) {
  const auto note = [](const std::string& type, const std::string& key) {
    return "\n\nAttention!\n==========\nThe entry type of the bibitem-key '" + key + "' is '@" +
           type + "', which is not supported, so far.\nADVICE\n\n\n\n";
  };
  const Walked last = Walk("@book{a,\n}\n@misc{m,\n", 4);
  EXPECT_EQ(last.output,
            "a||||||||||||\n" + note("MISC", "m") + note("MISC", "M") + note("MISC", "M"))
      << "in capitals from the second time on";
  EXPECT_EQ(last.unsupported, 3);
  EXPECT_TRUE(last.whole);
  EXPECT_EQ(Walk("@misc{m,\n", 1).output, note("MISC", "m"));
  const Walked in_value = Walk("@book{a,\n  title = {t\n  @misc{m,\n}\n", 3);
  EXPECT_EQ(in_value.output,
            "a||t @misc{m, }||||||||||\n" + note("MISC", "t  @MISC{m") + note("MISC", "T  @MISC{M"))
      << "a value that runs into the end of the file is a part of the last line";
}

TEST(ReferenceWalk, TreatsValuesAsItsRulesAndSettingsSay) {
  const std::string library = "@article{a,\n  title = {{T}},\n  pages = {1--2--3},\n}\n";
  Settings range;
  range.PagesRange = 1;
  EXPECT_EQ(Walk(library, 1).output, "a||{T}||||1||||||\n");
  EXPECT_EQ(Walk(library, 1, range).output, "a||{T}||||1--2--3||||||\n");
  const auto treats = [](WalkRules& rules) {
    rules.strips_titles = true;
    rules.collapses_dashes = true;
  };
  EXPECT_EQ(Walk(library, 1, range, treats).output, "a||T||||1-2--3||||||\n");
}

TEST(ReferenceWalk, LooksForAllTagsOfALine) {
  EXPECT_EQ(Walk("@book{a,\n  title = {T}, year = {2001},\n}\n", 1).output, "a||T||T||||||||\n")
      << "each takes the first value of the line";
  EXPECT_EQ(Walk("@article{a,\n  title = {T\n   pages},\n}\n", 1).output,
            "a||T pages||||T   pages||||||\n")
      << "a value over several lines makes the line longer";
}

TEST(ReferenceWalk, ReadsLinesInPiecesOfItsLimit) {
  const std::string line = "  x = {" + std::string(990, 'x') + "}, title = {T},\n";
  const auto wide = [](WalkRules& rules) { rules.line_limit = limits::kLongLine; };
  EXPECT_EQ(Walk("@book{a,\n" + line + "}\n", 1).output, "a||T||||||||||\n");
  EXPECT_EQ(Walk("@book{a,\n" + line + "}\n", 1, {}, wide).output,
            "a||" + std::string(990, 'x') + "||||||||||\n");
}

TEST(FindEntryKind, TakesTypeWordsToTheLetter) {
  EXPECT_NE(FindEntryKind("ARTICLE"), nullptr);
  for (const std::string_view word : {"article", "ARTICLE ", "ARTICLES", "MISC", ""}) {
    EXPECT_EQ(FindEntryKind(word), nullptr) << word;
  }
}

TEST(PrintReference, ReturnsTheValuesThatAreShown) {
  MemoryFiles files;
  OutputFile out(files.CreateSink("out", CreateMode::kWrite), "out");
  EntryValues values;
  values[kAuthor] = "A";
  values[kYear] = "2001";
  const std::array order{kAuthor, kTitle, kYear};
  using Values = std::vector<ReferenceValue>;
  EXPECT_EQ(PrintReference(out, "%s, %.0s%s\n", order, values), (Values{kAuthor, kYear}));
  EXPECT_EQ(PrintReference(out, "", order, values), Values());
  EXPECT_TRUE(out.Close());
  EXPECT_EQ(files.files["out"], "A, 2001\n");
}

TEST(ReportUnsupported, ShowsABoxForOneOrSeveral) {
  RecordingReporter reporter;
  ReportUnsupported(reporter, 0, "f");
  EXPECT_TRUE(reporter.boxes.empty());
  ReportUnsupported(reporter, 1, "f");
  ReportUnsupported(reporter, 2, "f");
  ASSERT_EQ(reporter.boxes.size(), 2U);
  EXPECT_EQ(reporter.boxes[0].caption, "No support !");
  EXPECT_TRUE(reporter.boxes[0].message.starts_with(
      "One entry is not saved in the 'f' file, because it is not an ARTICLE,"));
  EXPECT_TRUE(reporter.boxes[1].message.starts_with(
      "2 entries are not saved in the 'f' file, because they are not an ARTICLE,"));
}

}  // namespace
}  // namespace tarvel::testing
