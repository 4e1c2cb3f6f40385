// SPDX-License-Identifier: MIT
#include "app/entry_points.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "app/globals.h"
#include "app/operations.h"
#include "tests/support/disk_files.h"
#include "tests/support/recording_reporter.h"
#include "tests/support/recording_warnings.h"

namespace tarvel {
namespace {

class EntryPoints : public ::testing::Test {
 protected:
  ~EntryPoints() override {
    FirstFilePath.Set("");
    SecondFilePath.Set("");
    GlobalSettings = Settings();
    GlobalWarnings = nullptr;
  }

  testing::RecordingReporter reporter_;
  testing::TemporaryDirectory directory_;
};

TEST_F(EntryPoints, RunOnWhatIsGlobal) {
  testing::RecordingWarnings warnings;
  FirstFilePath.Set("first");
  SecondFilePath.Set("second");
  GlobalSettings.PrintTitle = 0;
  GlobalWarnings = &warnings;
  const RunContext run = GlobalRun();
  EXPECT_EQ(run.first_path, "first");
  EXPECT_EQ(run.second_path, "second");
  EXPECT_EQ(run.settings.PrintTitle, 0);
  EXPECT_EQ(&run.files, &RealFileSystem());
  EXPECT_EQ(&run.reporter, &reporter_);
  EXPECT_EQ(&run.styles, &GlobalJournalStyles);
  EXPECT_EQ(run.warnings, &warnings);
  const std::string executable = std::filesystem::read_symlink("/proc/self/exe");
  EXPECT_EQ(run.program_directory(), executable.substr(0, executable.rfind('/')));
}

/// Each row's function is that of its operation: it writes the files of its row, and no others.
TEST_F(EntryPoints, WriteTheFilesOfTheirRows) {
  testing::WriteDiskFile(directory_ / "lit.bib",
                         "@article{a,\n  author = {Doe, J.},\n  title = {T},\n"
                         "  journal = {J. Phys.},\n  year = {2001},\n  volume = {1},\n"
                         "  pages = {2}\n}\n");
  testing::WriteDiskFile(directory_ / "paper.tex", "\\begin{document}\n\\cite{a}\n");
  testing::WriteDiskFile(directory_ / "own.tvl", "START\n");
  for (const Operation& row : kOperations) {
    const bool document = row.needs == Needs::kDocumentAndLibrary;
    const bool list = row.needs == Needs::kLibraryAndJournalList;
    FirstFilePath.Set(directory_ / (document ? "paper.tex" : "lit.bib"));
    SecondFilePath.Set(directory_ / (list ? "own.tvl" : "lit.bib"));
    GlobalSettings.UseOwnJournalFile = list ? 1 : 0;
    EXPECT_EQ(row.run(), 1) << row.button << reporter_.printed;
    for (const Output output : row.outputs) {
      const std::string path = directory_ / ("lit" + std::string(SuffixOf(output)));
      EXPECT_TRUE(std::filesystem::remove(path)) << row.button << " " << path;
    }
  }
  std::size_t left = 0;
  for ([[maybe_unused]] const auto& file : std::filesystem::directory_iterator(directory_ / ".")) {
    ++left;
  }
  EXPECT_EQ(left, 3U) << "no file is written that is none of the rows'";
}

}  // namespace
}  // namespace tarvel
