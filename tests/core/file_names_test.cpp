// SPDX-License-Identifier: MIT
#include "core/file_names.h"

#include <gtest/gtest.h>

namespace tarvel {
namespace {

TEST(ChangeExtension, ReplacesEverythingFromTheLastDot) {
  EXPECT_EQ(ChangeExtension("/home/u/paper.tex", "_extract.bib"), "/home/u/paper_extract.bib");
  EXPECT_EQ(ChangeExtension("/home/u.v/paper", "_extract.bib"), "/home/u_extract.bib")
      << "a dot in a directory's name counts";
  EXPECT_EQ(ChangeExtension("my.refs.bib", "_author.bib"), "my.refs_author.bib");
  EXPECT_EQ(ChangeExtension("a.", "_x"), "a_x");
  EXPECT_EQ(ChangeExtension("..", "_x"), "._x");
  EXPECT_EQ(ChangeExtension(".bib", "_x"), std::nullopt) << "a dot in the first place does not";
  EXPECT_EQ(ChangeExtension("nodot", "_x"), std::nullopt);
  EXPECT_EQ(ChangeExtension("", "_x"), std::nullopt);
}

TEST(InDirectory, KeepsTheName) {
  EXPECT_EQ(InDirectory("a/b/lit.bib", "out"), "out/lit.bib");
  EXPECT_EQ(InDirectory("lit.bib", "/out/"), "/out/lit.bib");
  EXPECT_EQ(InDirectory("a/lit.bib", ""), "a/lit.bib");
  EXPECT_EQ(InDirectory("/lit.bib", "."), "./lit.bib");
}

TEST(InsertBeforeExtension, PutsTheSuffixBeforeTheLastDot) {
  EXPECT_EQ(InsertBeforeExtension("lit.bib", "_linux"), "lit_linux.bib");
  EXPECT_EQ(InsertBeforeExtension("a.b/my.refs.bib", "_linux"), "a.b/my.refs_linux.bib");
  EXPECT_EQ(InsertBeforeExtension(".bib", "_linux"), "_linux.bib");
  EXPECT_EQ(InsertBeforeExtension("a.b/refs", "_linux"), "a_linux.b/refs");
  EXPECT_EQ(InsertBeforeExtension("refs", "_linux"), std::nullopt);
  EXPECT_EQ(InsertBeforeExtension("", "_linux"), std::nullopt);
}

TEST(OutputSuffixes, NameTheSeventeenFiles) {
  const std::string_view expected[] = {
      "_text.txt",    "_journal.log", "_journal.bib",      "_extract.tex",    "_extract.bib",
      "_extract.txt", "_comp.log",    "_comp_missing.bib", "_comp_equal.bib", "_tag.log",
      "_tag.bib",     "_double.log",  "_double.bib",       "_char.log",       "_char.bib",
      "_author.log",  "_author.bib"};
  ASSERT_EQ(OutputSuffixes.size(), std::size(expected));
  for (std::size_t i = 0; i < std::size(expected); ++i) EXPECT_EQ(OutputSuffixes[i], expected[i]);
  EXPECT_EQ(SuffixOf(Output::kText), "_text.txt");
  EXPECT_EQ(SuffixOf(Output::kCompareEqual), "_comp_equal.bib");
  EXPECT_EQ(SuffixOf(Output::kAuthorLibrary), "_author.bib");
}

TEST(ModeOf, IsReadingTooForTheFilesThatAreReadBack) {
  for (std::size_t i = 0; i < OutputSuffixes.size(); ++i) {
    const std::string_view suffix = OutputSuffixes[i];
    const bool reads = suffix.starts_with("_char") || suffix.starts_with("_author") ||
                       suffix == "_tag.bib" || suffix == "_double.bib" || suffix == "_journal.bib";
    EXPECT_EQ(ModeOf(static_cast<Output>(i)) == CreateMode::kWriteRead, reads) << suffix;
  }
}

TEST(ConfigurationFiles, StandBelowTheProgramDirectory) {
  EXPECT_EQ(kStylesFile, "/JournalStyles/Journal_styles_linux.tvl");
  EXPECT_EQ(kLaTeXCommandsFile, "/LaTeXCommands/LaTeXCommands_linux.tvl");
  EXPECT_EQ(kJournalListFile, "/JournalStrings/JournalStrings.tvl");
}

}  // namespace
}  // namespace tarvel
