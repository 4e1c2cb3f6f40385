// SPDX-License-Identifier: MIT
#include "ops/references/latex_commands.h"

#include <gtest/gtest.h>

#include <cstdint>

#include "tests/support/memory_files.h"
#include "tests/support/plain_text.h"
#include "tests/support/recording_reporter.h"
#include "tests/support/reference_worlds.h"

namespace tarvel {
namespace {

using namespace std::string_literals;
using testing::MemoryFiles;
using testing::MemoryRun;
using testing::PlainRows;
using testing::RecordingReporter;

LaTeXCommands Read(const std::string& bytes) {
  MemoryFiles files;
  files.files[std::string(testing::kCommandsPath)] = bytes;
  LaTeXCommands commands;
  EXPECT_EQ(CreateText_LaTeXArray(MemoryRun(files, ""), commands), 1);
  return commands;
}

PlainRows RowsOf(const LaTeXCommands& commands) {
  PlainRows rows;
  for (const auto& row : commands.Rows()) rows.emplace_back(row.command, row.replacement);
  return rows;
}

std::string Applied(std::string value, const std::string& table) {
  testing::ApplyAll(value, Read("START\n" + table));
  return value;
}

struct FileCase {
  std::string file;
  PlainRows rows;
  const char* says;
};

TEST(CreateTextLaTeXArray, ReadsCommandsAndReplacements) {
  const FileCase cases[] = {
      {"", {}, "an empty file"},
      {"\\a b\n", {}, "without START there are no rows"},
      {"\\a b\nhere it will START:\n\\c d\n", {{"\\c", "d"}}, "rows begin after that line"},
      {"START\nSTART x\n", {{"START", "x"}}, "a second START is a row"},
      {"start\n\\a b\n", {}, "the word is in capitals"},
      {"START\n\\a\tb\n", {{"\\a", "b"}}, "a tab ends the command"},
      {"START\n\\a  \t \tb\n", {{"\\a", "b"}}, "blanks and tabs stand between"},
      {"START\n\\a b c\n", {{"\\a", "b"}}, "a blank ends the replacement"},
      {"START\n\\a b\tc\n", {{"\\a", "b\tc"}}, "a tab does not"},
      {"START\n\\a\n", {{"\\a", ""}}, "no replacement"},
      {"START\n\\a \n", {{"\\a", ""}}, "only a blank"},
      {"START\n\n", {{"", ""}}, "an empty line is a row"},
      {"START\n a\n", {{"", "a"}}, "a blank at the start: no command"},
      {"START\n\ta\n", {{"", "a"}}, "a tab at the start: no command"},
      {"START\n#\\alpha a\n", {{"#\\alpha", "a"}}, "rows that are switched off are rows"},
      {"START\n\\a bc", {{"\\a", "b"}}, "the last byte is cut, newline or not"},
      {"START\n\\a b\r\n", {{"\\a", "b\r"}}, "a carriage return belongs to the replacement"},
      {"START\n\\\0 \xC3\xA9\n"s, {{"\\\0"s, "\xC3\xA9"}}, "any bytes"},
      {"START\n" + std::string(1000, 'x') + " y\n",
       {{std::string(998, 'x'), ""}, {"x", "y"}},
       "longer lines come in pieces, each of which loses its last byte"},
  };
  for (const FileCase& c : cases) EXPECT_EQ(RowsOf(Read(c.file)), c.rows) << c.says;
}

TEST(CreateTextLaTeXArray, TakesMoreRowsThanAnyoneWrites) {
  std::string file = "START\n";
  for (int i = 0; i < 5000; ++i) file += "\\c" + std::to_string(i) + "; x\n";
  EXPECT_EQ(Read(file).Rows().size(), 5000U);
  EXPECT_EQ(Read("START\n" + std::string(10'000'000, '\\')).Rows().size(), 10011U);
}

TEST(CreateTextLaTeXArray, ReportsWhenTheFileCannotBeOpened) {
  MemoryFiles files;
  LaTeXCommands commands;
  RecordingReporter reporter;
  EXPECT_EQ(CreateText_LaTeXArray(MemoryRun(files, ""), commands), 0);
  EXPECT_EQ(reporter.printed,
            "Attention, an error occured!\nError: Function CreateText_LaTeXArray()_1: Could not "
            "open the 'LaTeXCommands.tvl' file !\n\n\n");
  EXPECT_TRUE(reporter.boxes.empty());
}

TEST(CreateTextLaTeXArray, OnlyReadsTheFile) {
  MemoryFiles files;
  files.files[std::string(testing::kCommandsPath)] = "START\n";
  files.read_only.insert(std::string(testing::kCommandsPath));
  LaTeXCommands commands;
  EXPECT_EQ(CreateText_LaTeXArray(MemoryRun(files, ""), commands), 1);
}

struct Case {
  std::string value;
  std::string table;
  std::string result;
  const char* says;
};

TEST(ApplyLaTeXCommands, AppliesRowAfterRow) {
  const Case cases[] = {
      {"A \\& B", "\\& &\n", "A & B", "a command becomes its replacement"},
      {"A \\& B", "", "A \\& B", "without rows nothing happens"},
      {"", "\\& &\n", "", "an empty value stays"},
      {"\\alpha", "#\\alpha a\n", "\\alpha", "rows that begin with # are not applied"},
      {"#a", "#a b\n", "#a", "not even to such a text"},
      {"a", "a b\nb c\n", "c", "a row sees what those before it left"},
      {"a", "b c\na b\n", "b", "not what those after it left"},
      {"ab", "a x\nab y\nxb z\n", "z", "a short command eats into a long one after it"},
      {"abab", "ab x\n", "xab", "the byte after a replacement begins no match"},
      {"abab", "ab x\nab x\n", "xx", "so a row that stands twice replaces both"},
      {"aab", "ab x\n", "aab", "a match inside a partial one is missed"},
      {"{A}", "{\n}\n", "A", "rows without a replacement drop the command"},
      {"a", "a aa\n", "aa", "a replacement may hold the command"},
      {"a b", " b\n", "a b", "a row without a command is not applied"},
      {"\xC3\xA9", "\xC3\xA9 e\n", "e", "bytes above 127 are found"},
      {"x\0y"s, "\0 z\n"s, "xzy", "zero bytes too"},
      {"ab", "a\nb\n", "", "a value may come out empty"},
      {"abc", "abcd x\nbc y\n", "ay", "a command longer than the rest of the value"},
  };
  for (const Case& c : cases) EXPECT_EQ(Applied(c.value, c.table), c.result) << c.says;
}

TEST(ApplyLaTeXCommands, GivesWhatTryingEveryRowGives) {
  testing::WorldMaker maker(11);
  const std::vector<std::string> letters{"a", "b", "ab", "\\", "{", "}", "c", "aa", "\xFF", "\\'"};
  for (int i = 0; i < 4000; ++i) {
    std::string file = "START\n";
    for (int rows = maker.Number(25); rows > 0; --rows) {
      file += maker.Pieces(letters, 3) + " " + maker.Pieces(letters, 2) + "\n";
    }
    const LaTeXCommands commands = Read(file);
    for (int n = 0; n < 5; ++n) {
      std::string value = maker.Pieces(letters, 12);
      std::string expected = value;
      testing::PlainApply(expected, testing::PlainReadCommands(file));
      testing::ApplyAll(value, commands);
      ASSERT_EQ(value, expected) << file;
    }
  }
}

TEST(ApplyLaTeXCommands, StopsBeforeAValueGrowsWithoutBound) {
  std::string rows = "START\n";
  for (char letter = 'a'; letter < 'g'; ++letter) {
    rows.append(1, letter).append(" ");
    for (int i = 0; i < 450; ++i) rows.append(1, static_cast<char>(letter + 1)).append(".");
    rows.append("\n");
  }
  std::string value = "{abc}";
  EXPECT_EQ(testing::ApplyAll(value, Read(rows)), Treatment::kTooLong);
  EXPECT_LE(value.size(), kLongestTreated);
  EXPECT_GT(value.size(), 1000U) << "what is short enough is done";

  std::string most(kLongestTreated - 1, 'x');
  most += "a";
  EXPECT_EQ(testing::ApplyAll(most, Read("START\na b\n")), Treatment::kDone)
      << "what does not grow goes on";
  EXPECT_EQ(testing::ApplyAll(most, Read("START\nb cc\n")), Treatment::kTooLong);
  most.pop_back();
  most.back() = 'b';
  EXPECT_EQ(testing::ApplyAll(most, Read("START\nb cc\n")), Treatment::kDone)
      << "up to the last byte";
  EXPECT_EQ(most.size(), kLongestTreated);
}

TEST(ApplyLaTeXCommands, StopsWhenTheRowsHaveLookedAtTooMuch) {
  // Every row applies to what the one before it left.
  std::string rows = "START\n";
  for (int i = 0; i < 1000; ++i) rows += "a b\nb a\n";
  const LaTeXCommands commands = Read(rows);
  std::string value = "xxxxa";
  EXPECT_EQ(testing::ApplyAll(value, commands), Treatment::kDone);

  // Each row looks at five bytes, and for one of them at a command of a thousand rows.
  constexpr std::uint64_t kEach = 64 + 5 + 8 + 8 * 10;
  RowBudget enough(2001 * kEach + 1);
  EXPECT_EQ(ApplyLaTeXCommands(value, commands, enough), Treatment::kDone);
  RowBudget scant(2001 * kEach);
  EXPECT_EQ(ApplyLaTeXCommands(value, commands, scant), Treatment::kTooOften);
  RowBudget small(20 * kEach);
  EXPECT_EQ(ApplyLaTeXCommands(value, commands, small), Treatment::kTooOften);
  EXPECT_TRUE(small.IsSpent());
  std::string other = "none of them";
  EXPECT_EQ(ApplyLaTeXCommands(other, commands, small), Treatment::kTooOften)
      << "nothing more is done";
}

TEST(FindCut, GivesACommandOfWhichOnlyTheBeginningHasARow) {
  RowBudget budget(10'000);
  const LaTeXCommands commands = Read("START\n\\a x\n\\alpha y\n");
  for (const std::string whole : {"\\a", "\\alpha", "\\b", "\\ba", "alphabet", "\\"}) {
    EXPECT_EQ(commands.FindCut(whole, budget), "") << whole;
  }
  EXPECT_EQ(commands.FindCut("\\ab", budget), "\\ab") << "two letters";
  EXPECT_EQ(commands.FindCut("a \\alpha \\b and \\alphabet soup", budget), "\\alphabet");
  const LaTeXCommands guarded = Read(
      "START\n\\fo \x1D"
      "fo\n\\f x\n\x1D \\\n");
  EXPECT_EQ(guarded.FindCut("\\foo", budget), "") << "the last row gives back what the first took";
  EXPECT_EQ(guarded.FindCut("\\foo \\fan", budget), "\\fan");
  RowBudget none(0);
  EXPECT_EQ(guarded.FindCut("\\foo", none), "") << "not looked for any more";
}

TEST(FindRow, GivesTheFirstRowThatOccurs) {
  RowBudget budget(10'000);
  const LaTeXCommands commands = Read("START\nb x\n#a x\na x\nab x\nb x\n\nabc x\n");
  EXPECT_EQ(commands.FindRow("abc", 0, budget), 0U);
  EXPECT_EQ(commands.FindRow("abc", 1, budget), 2U);
  EXPECT_EQ(commands.FindRow("abc", 3, budget), 3U);
  EXPECT_EQ(commands.FindRow("abc", 4, budget), 4U);
  EXPECT_EQ(commands.FindRow("abc", 5, budget), 6U);
  EXPECT_EQ(commands.FindRow("ab", 5, budget), 7U) << "none";
  EXPECT_EQ(commands.FindRow("", 0, budget), 7U) << "nothing occurs in an empty text";
}

}  // namespace
}  // namespace tarvel
