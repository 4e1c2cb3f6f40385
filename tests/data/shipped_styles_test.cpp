// SPDX-License-Identifier: MIT
// The configuration files as they are shipped, through the code that reads them: titles and
// references were written out by hand.
#include <gtest/gtest.h>

#include <sstream>

#include "app/globals.h"
#include "app/texts.h"
#include "ops/operations.h"
#include "ops/references/latex_commands.h"
#include "tests/support/disk_files.h"
#include "tests/support/plain_text.h"
#include "tests/support/reference_worlds.h"

namespace tarvel::testing {
namespace {

const std::string kData = TARVEL_SOURCE_DIR "/data";
const std::string kTestData = TARVEL_SOURCE_DIR "/tests/data";
const std::string kUtf8Table = kData + "/LaTeXCommands/LaTeXCommands_linux.tvl";
const std::string kAsciiTable = kData + "/LaTeXCommands/LaTeXCommands_ascii.tvl";

/// The rows of a table with tabs between the columns; lines that begin with "#" are comments.
std::vector<std::vector<std::string>> ReadTable(const std::string& path, std::size_t columns) {
  std::vector<std::vector<std::string>> rows;
  std::istringstream lines(ReadDiskFile(path));
  for (std::string line; std::getline(lines, line);) {
    if (line.empty() || line.front() == '#') continue;
    std::vector<std::string> row{""};
    for (const char byte : line) {
      if (byte == '\t') {
        row.emplace_back();
      } else {
        row.back() += byte;
      }
    }
    EXPECT_EQ(row.size(), columns) << line;
    rows.push_back(row);
  }
  return rows;
}

LaTeXCommands ReadCommands(const std::string& path) {
  MemoryFiles files;
  files.files[std::string(kCommandsPath)] = ReadDiskFile(path);
  LaTeXCommands commands;
  EXPECT_EQ(CreateText_LaTeXArray(MemoryRun(files, ""), commands), 1);
  return commands;
}

TEST(ShippedLaTeXCommands, TurnTitlesAndNamesIntoText) {
  const auto rows = ReadTable(kTestData + "/latex_titles.tsv", 3);
  EXPECT_GT(rows.size(), 50U);
  const LaTeXCommands tables[] = {ReadCommands(kUtf8Table), ReadCommands(kAsciiTable)};
  for (const auto& row : rows) {
    for (std::size_t table = 0; table < 2; ++table) {
      std::string value = row[0];
      ApplyAll(value, tables[table]);
      EXPECT_EQ(value, row[table + 1]) << row[0];
    }
  }
}

TEST(ShippedLaTeXCommands, GiveWhatTryingEveryRowGives) {
  const auto titles = ReadTable(kTestData + "/latex_titles.tsv", 3);
  WorldMaker maker(20);
  for (const std::string& path : {kUtf8Table, kAsciiTable}) {
    const LaTeXCommands commands = ReadCommands(path);
    const PlainRows rows = PlainReadCommands(ReadDiskFile(path));
    EXPECT_GT(rows.size(), 1000U);
    for (int i = 0; i < 400; ++i) {
      std::string value;
      for (int n = maker.Number(4); n >= 0; --n) {
        const auto& title =
            titles[static_cast<std::size_t>(maker.Number(static_cast<int>(titles.size())))][0];
        value +=
            title.substr(static_cast<std::size_t>(maker.Number(static_cast<int>(title.size()))));
        value += rows[static_cast<std::size_t>(maker.Number(static_cast<int>(rows.size())))].first;
      }
      std::string expected = value;
      PlainApply(expected, rows);
      std::string got = value;
      ApplyAll(got, commands);
      ASSERT_EQ(got, expected) << value;
    }
  }
}

struct Kind {
  std::string_view name;
  std::string_view type;
  bool has_booktitle;
};

constexpr Kind kKinds[] = {
    {"article_title", "article", false},
    {"article", "article", false},
    {"book", "book", false},
    {"incol", "incollection", true},
    {"inpro", "inproceedings", true},
    {"phd", "phdthesis", false},
};

constexpr std::string_view kPrefixes[] = {"ACS", "APS", "IOP", "NATURE", "WILEY", "SPRINGER_C"};
constexpr Flag Settings::*kFlags[] = {&Settings::StyleACS,   &Settings::StyleAPS,
                                      &Settings::StyleIOP,   &Settings::StyleNature,
                                      &Settings::StyleWiley, &Settings::StyleSpringerCompSci};

/// The one entry that all references are of.
std::string Library(const Kind& kind) {
  std::string library = "@" + std::string(kind.type) + R"({doe2001,
  author = {Doe, J. and Roe, K. and Poe, L.},
  title = {Example title},
  journal = {J. Chem. Phys.},
  year = {2001},
  volume = {114},
  pages = {1234--1240},
  publisher = {Springer},
  address = {Berlin},
  editor = {Moe, A. and Zoe, B.},
  school = {University of Jena},
)";
  if (kind.has_booktitle) library += "  booktitle = {Example Book},\n";
  return library + "}\n";
}

/// What Extract, or Text with or without LaTeX code, prints for the entry.
std::string Printed(const Kind& kind, std::string_view style, bool extract, bool latex) {
  const PlainWorld world{"\\cite{doe2001}",
                         Library(kind),
                         ReadDiskFile(kData + std::string(kStylesFile)),
                         ReadDiskFile(kUtf8Table),
                         {}};
  MemoryFiles files = FilesOf(world);
  RunContext run =
      MemoryRun(files, extract ? kDocumentPath : kLibraryPath, extract ? kLibraryPath : "");
  for (std::size_t i = 0; i < 6; ++i) {
    if (kPrefixes[i] == style) Choose(run.settings, kStyleFlags, kFlags[i]);
  }
  run.settings.PrintTitle = kind.name == "article" ? 0 : 1;
  run.settings.PrintBibitem = 1;
  run.settings.UseLaTeXCode = latex ? 1 : 0;
  GlobalJournalStyles = {};
  PlainOutcome outcome = RunWorld(extract ? &RunExtract : &RunText, run, files);
  EXPECT_EQ(outcome.result, 1) << outcome.printed;
  const std::string file = outcome.files[extract ? "_extract.tex" : "_text.txt"];
  return file.substr((extract ? TexFileHeader : TextFileHeader).size() + 1);
}

TEST(ShippedStyles, PrintTheReferencesOfThePublishers) {
  const auto rows = ReadTable(kTestData + "/references.tsv", 4);
  EXPECT_EQ(rows.size(), 72U);
  for (const auto& row : rows) {
    std::string expected = row[3];
    for (std::size_t at; (at = expected.find("\\n")) != std::string::npos;) {
      expected.replace(at, 2, "\n");
    }
    const auto kind = std::find_if(std::begin(kKinds), std::end(kKinds),
                                   [&](const Kind& k) { return k.name == row[1]; });
    ASSERT_NE(kind, std::end(kKinds)) << row[1];
    const std::string says = row[0] + " " + row[1] + " " + row[2];
    const bool latex = row[2] == "latex";
    EXPECT_EQ(Printed(*kind, row[0], latex, latex), expected) << says;
    // In Springer's style the two operations differ in journals and in parts of books.
    if (latex && row[0] != "SPRINGER_C") {
      EXPECT_EQ(Printed(*kind, row[0], false, true), expected) << says << ", by Text";
    }
  }
}

}  // namespace
}  // namespace tarvel::testing
