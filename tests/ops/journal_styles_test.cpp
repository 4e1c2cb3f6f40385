// SPDX-License-Identifier: MIT
#include "ops/journal_styles.h"

#include <gtest/gtest.h>

#include "tests/support/memory_files.h"
#include "tests/support/recording_reporter.h"
#include "tests/support/reference_worlds.h"

namespace tarvel {
namespace {

using namespace std::string_literals;
using enum JournalStyle;
using testing::DefinitionNames;
using testing::MemoryFiles;
using testing::MemoryRun;
using testing::Printed;
using testing::RecordingReporter;
using testing::StylesFile;

struct Reading {
  int result = 0;
  std::string printed;
};

Reading Read(const std::string& bytes, JournalStyles& styles) {
  MemoryFiles files;
  files.files[std::string(testing::kStylesPath)] = bytes;
  files.read_only.insert(std::string(testing::kStylesPath));  // reading must do
  RecordingReporter reporter;
  const int result = ReadJournalStyles(MemoryRun(files, ""), styles);
  EXPECT_TRUE(reporter.boxes.empty());
  return {result, reporter.printed};
}

std::string OwnName(const std::string& name) { return "[" + name + "]"; }

/// A valid file whose first definition is `line`.
std::string WithFirst(const std::string& line) {
  const std::string file = StylesFile(OwnName);
  const std::size_t begin = file.find("ACS_article_title ");
  return file.substr(0, begin) + line + "\n" + file.substr(file.find('\n', begin) + 1);
}

std::string FirstFormat(const std::string& line) {
  JournalStyles styles;
  EXPECT_EQ(Read(WithFirst(line), styles).result, 1) << line;
  return styles.Format(kACS, StyleKey::kArticleTitle);
}

std::string CountText(int count) {
  return Printed(
      "ReadJournalStyles()_4 => We need 60 entries in the config file "
      "'Journal_styles_....tvl', but we have " +
      std::to_string(count) + " entries\n");
}

constexpr std::string_view kKeys[] = {
    "article_title", "article", "article_title_latex", "article_latex", "book_latex",  "book",
    "inpro_latex",   "inpro",   "phd_latex",           "phd",           "incol_latex", "incol"};
constexpr std::string_view kPrefixes[] = {"ACS_",    "APS_",   "IOP_",
                                          "NATURE_", "WILEY_", "SPRINGER_C_"};

TEST(ReadJournalStyles, FillsEachFormatByItsKey) {
  JournalStyles styles;
  ASSERT_EQ(Read(StylesFile(OwnName), styles).result, 1);
  for (std::size_t s = 0; s < 6; ++s) {
    for (std::size_t k = 0; k < 12; ++k) {
      const std::string name = std::string(kPrefixes[s]).append(kKeys[k]);
      const bool never = name == "ACS_phd" || name == "SPRINGER_C_phd";
      EXPECT_EQ(styles.Format(static_cast<JournalStyle>(s), static_cast<StyleKey>(k)),
                never ? "" : OwnName(name));
    }
  }
}

TEST(ReadJournalStyles, AcceptsExactly71DefinitionsAndAnyComments) {
  JournalStyles styles;
  EXPECT_EQ(DefinitionNames().size(), 71U);
  std::string file = StylesFile(OwnName);
  EXPECT_EQ(Read("# x = \"y\"; // z\n/ x = \"y\"; // z\n\nx = y\n; //\n" + file, styles).result, 1);

  const std::string extra = "APS_book = \"again\"; // once more\n";
  EXPECT_EQ(Read(file + extra, styles).printed, CountText(73)) << "the count is given plus one";
  EXPECT_EQ(Read(file + extra, styles).result, 0);
  EXPECT_EQ(styles.Format(kAPS, StyleKey::kBook), "again") << "a later line overwrites";

  file.resize(file.rfind('\n', file.size() - 2) + 1);
  EXPECT_EQ(Read(file, styles).printed, CountText(71)) << "70 are too few";
  EXPECT_EQ(Read(file + "ACS_phd = \"never seen\"; // counts\n", styles).result, 1);
  EXPECT_EQ(styles.Format(kACS, StyleKey::kPhd), "");
  EXPECT_EQ(Read(file + "unknown = \"x\"; // counts too\n", styles).result, 1);
  EXPECT_EQ(Read("", styles).printed, CountText(1));
}

struct FormatCase {
  const char* line;
  const char* format;
  const char* says;
};

TEST(ReadJournalStyles, TakesTheTextBetweenTheQuotesByCountingBytes) {
  constexpr FormatCase cases[] = {
      {R"(ACS_article_title = "%s"; // comment)", "%s", "the usual form"},
      {R"(ACS_article_title = ""; // comment)", "", "an empty format"},
      {R"(ACS_article_title = "ab; // c"; // d)", "a", "the first comment mark counts"},
      {R"(ACS_article_title  = "a"; // b)", "a", "two blanks before the sign"},
      {R"(ACS_article_title =  "a"; // b)", "\"a", "two blanks after it move the start"},
      {R"(ACS_article_title = "a" ; // b)", "a\"", "a blank before the mark moves the end"},
      {R"(ACS_article_title x= "a"; // b)", "a", "the key ends at the first blank"},
      {R"(ACS_article_title = "a = b"; // c)", "a = b", "the first sign counts"},
      {R"(ACS_article_title ; // = x)", "", "start after the end: empty, but a definition"},
      {R"(ACS_article_title "abc"; // = x)", "", "the sign only in the comment"},
      {R"(ACS_article_title =; // )", "", "start and end cross"},
      {R"(ACS_article_title = "%s\n"; // x)", "%s\n", "backslash and n are a line break"},
      {R"(ACS_article_title = "\n\n"; // x)", "\n\n", "two in a row"},
      {R"(ACS_article_title = "\n\n\n\n\n"; // x)", "\n\n\n\n\n", "five in a row"},
      {R"(ACS_article_title = "\newblock"; // x)", "\newblock", "wherever they stand"},
      {R"(ACS_article_title = "\\n"; // x)", "\\\\n", "one inside a partial match is missed"},
      {R"(ACS_article_title = "\t\\%n%99999s"; // x)", "\\t\\\\%n%99999s", "all else stands"},
  };
  for (const FormatCase& c : cases) EXPECT_EQ(FirstFormat(c.line), c.format) << c.says;
}

TEST(ReadJournalStyles, FillsEveryFormatWhoseNameContainsTheKey) {
  JournalStyles styles;
  const std::string file = StylesFile(OwnName);
  const auto replaced = [&](const std::string& key) {
    return file.substr(0, file.rfind('\n', file.size() - 2) + 1) + key + " = \"many\"; // x\n";
  };
  ASSERT_EQ(Read(replaced("book"), styles).result, 1);
  for (const JournalStyle style : {kACS, kAPS, kIOP, kNature, kWiley, kSpringerCompSci}) {
    EXPECT_EQ(styles.Format(style, StyleKey::kBook), "many");
    EXPECT_NE(styles.Format(style, StyleKey::kBookLaTeX), "many");
  }
  ASSERT_EQ(Read(replaced("_latex"), styles).result, 1);
  EXPECT_EQ(styles.Format(kIOP, StyleKey::kArticleTitleLaTeX), "many");
  EXPECT_NE(styles.Format(kIOP, StyleKey::kArticleTitle), "many");
  ASSERT_EQ(Read(replaced(""), styles).result, 1);  // the key is the blank alone
  EXPECT_EQ(styles.Format(kWiley, StyleKey::kPhd), "many");
  EXPECT_EQ(styles.Format(kACS, StyleKey::kPhd), "") << "its name has no blank";
}

TEST(ReadJournalStyles, KeepsWhatAnEarlierReadingLeft) {
  JournalStyles styles;
  const std::string file = StylesFile(OwnName);
  ASSERT_EQ(Read(file, styles).result, 1);
  const std::string once = "APS_inpro = \"[APS_inpro]\"; // of a test\n";
  ASSERT_NE(file.find(once), std::string::npos);
  std::string other = StylesFile([](const std::string&) { return "new"; });
  const std::string line = "APS_inpro = \"new\"; // of a test\n";
  other.replace(other.find(line), line.size(), "nothing = \"new\"; // of a test\n");
  ASSERT_EQ(Read(other, styles).result, 1);
  EXPECT_EQ(styles.Format(kAPS, StyleKey::kInpro), "[APS_inpro]");
  EXPECT_EQ(styles.Format(kAPS, StyleKey::kIncol), "new");
  EXPECT_EQ(Read("APS_incol = \"newer\"; // and no more\n", styles).result, 0);
  EXPECT_EQ(styles.Format(kAPS, StyleKey::kIncol), "newer") << "a failed reading leaves its values";
}

TEST(ReadJournalStyles, ReportsWhatIsWrong) {
  JournalStyles styles;
  const std::string file = StylesFile(OwnName);
  EXPECT_EQ(Read("APS_book \"x\"; // no sign\n" + file, styles).printed,
            Printed("ReadJournalStyles()_3 => the config file 'Journal_styles_....tvl' seems to be "
                    "corrupt. No '; // ' and '='?"));
  EXPECT_EQ(Read("APS_book \"x\"; // no sign\n" + file, styles).result, 0);
  MemoryFiles files;
  RecordingReporter reporter;
  EXPECT_EQ(ReadJournalStyles(MemoryRun(files, ""), styles), 0);
  EXPECT_EQ(reporter.printed, Printed("ReadJournalStyles()_1 => Could not open the text file "
                                      "'Journal_styles_....tvl'"));
}

TEST(ReadJournalStyles, ReadsLongLinesInPieces) {
  JournalStyles styles;
  const std::string file = StylesFile(OwnName);
  EXPECT_EQ(Read(std::string(10'000'000, 'x') + "\n" + file, styles).result, 1)
      << "no mark, no harm";
  // Each piece of 999 bytes that holds a mark is a definition.
  std::string marks;
  while (marks.size() < 999) marks += "x = \"y\"; // ";
  marks.resize(999);
  EXPECT_EQ(Read(marks + marks + "\n" + file, styles).printed, CountText(74));
  std::string binary = file;
  for (int i = 0; i < 4000; ++i) binary += static_cast<char>(i * 7);
  EXPECT_EQ(Read(binary, styles).result, 1) << "bytes without a mark are nothing";
  const std::string zero = "ACS_article_title = \"\0%s\"; // x"s;
  EXPECT_EQ(FirstFormat(zero), "\0%s"s);
}

TEST(SelectedStyle, IsTheOneWhoseFlagIsSet) {
  constexpr std::pair<Flag Settings::*, JournalStyle> rows[] = {
      {&Settings::StyleACS, kACS},     {&Settings::StyleAPS, kAPS},
      {&Settings::StyleIOP, kIOP},     {&Settings::StyleNature, kNature},
      {&Settings::StyleWiley, kWiley}, {&Settings::StyleSpringerCompSci, kSpringerCompSci},
  };
  Settings settings;
  EXPECT_EQ(SelectedStyle(settings), kAPS) << "at start";
  for (const auto& [flag, style] : rows) {
    Choose(settings, kStyleFlags, flag);
    EXPECT_EQ(SelectedStyle(settings), style);
  }
  settings.StyleSpringerCompSci = 0;
  EXPECT_EQ(SelectedStyle(settings), std::nullopt);
}

}  // namespace
}  // namespace tarvel
