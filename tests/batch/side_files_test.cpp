// SPDX-License-Identifier: MIT
#include "batch/side_files.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "app/entry_points.h"
#include "tests/support/disk_files.h"
#include "tests/support/operation_runs.h"

namespace tarvel {
namespace {

namespace fs = std::filesystem;

class SideFiles : public ::testing::TestWithParam<Operation> {
 protected:
  SideFiles() {
    for (const char* name : {"lit.bib", "more.bib", "paper.tex"}) {
      testing::WriteDiskFile(directory_ / name, name);
    }
  }

  BatchRequest Request(const std::string& warnings, const std::string& key_map = {}) const {
    BatchRequest request;
    request.operation = &GetParam();
    switch (GetParam().needs) {
      case Needs::kDocumentAndLibrary:
        request.files = {directory_ / "paper.tex", directory_ / "lit.bib"};
        break;
      case Needs::kTwoLibraries:
        request.files = {directory_ / "lit.bib", directory_ / "more.bib"};
        break;
      default:
        request.files = {directory_ / "lit.bib"};
    }
    request.warnings_file = warnings;
    request.key_map_file = key_map;
    return request;
  }
  std::string Reason(std::string_view option, std::string_view does, const std::string& path) {
    return std::string("'").append(option) + "' names a file that '" +
           std::string(GetParam().batch_name) + "' " + std::string(does) + ": '" + path + "'";
  }
  /// Expects that the file is refused as one of --warnings and as one of --key-map.
  void ExpectRefused(const std::string& path, std::string_view does) {
    EXPECT_EQ(WhyRefused(Request(path)), Reason("--warnings", does, path));
    EXPECT_EQ(WhyRefused(Request("", path)), Reason("--key-map", does, path));
  }

  testing::TemporaryDirectory directory_;
};

TEST_P(SideFiles, AreNoneThatTheOperationWrites) {
  for (const Output output : GetParam().outputs) {
    const std::string suffix(SuffixOf(output));
    ExpectRefused(directory_ / ("lit" + suffix), "writes");
    ExpectRefused(directory_ / ("lit_linux" + suffix), "writes");
    EXPECT_EQ(WhyRefused(Request(directory_ / ("more" + suffix))), "") << "the other library's";
    EXPECT_EQ(WhyRefused(Request(directory_ / ("paper" + suffix))), "") << "nor the document's";
  }
}

TEST_P(SideFiles, MayBeThoseOfARunWithoutPreparation) {
  BatchRequest request = Request("");
  request.prepare = true;
  for (const Output output : GetParam().outputs) {
    const std::string suffix(SuffixOf(output));
    request.warnings_file = directory_ / ("lit" + suffix);
    EXPECT_EQ(WhyRefused(request), "");
    request.warnings_file = directory_ / ("lit_prepared" + suffix);
    EXPECT_EQ(WhyRefused(request), Reason("--warnings", "writes", request.warnings_file));
  }
  request.warnings_file = directory_ / "lit_linux.bib";
  EXPECT_EQ(WhyRefused(request), "") << "no such copy is made";
}

TEST_P(SideFiles, MayBeThoseOfOtherOperations) {
  for (const Operation& other : kOperations) {
    if (other.code == GetParam().code) continue;
    for (const Output output : other.outputs) {
      const std::string path = directory_ / ("lit" + std::string(SuffixOf(output)));
      EXPECT_EQ(WhyRefused(Request(path)), "") << path;
    }
  }
}

TEST_P(SideFiles, AreNoneThatTheOperationReads) {
  for (const std::string& file : Request("").files) ExpectRefused(file, "reads");
  ExpectRefused(GlobalRun().program_directory() + std::string(kJournalListFile), "reads");
  ExpectRefused(GlobalRun().program_directory() + std::string(kStylesFile), "reads");
  ExpectRefused(GlobalRun().program_directory() + std::string(kLaTeXCommandsFile), "reads");
  ExpectRefused(directory_ / "lit_linux.bib", "reads");
}

TEST_P(SideFiles, AreKnownByWhateverNameTheyHave) {
  fs::create_symlink("lit.bib", directory_ / "link");
  fs::create_hard_link(directory_ / "lit.bib", directory_ / "hard");
  fs::create_symlink(".", directory_ / "here");
  ExpectRefused(directory_ / "link", "reads");
  ExpectRefused(directory_ / "hard", "reads");
  ExpectRefused(directory_ / "here/lit.bib", "reads");
  const std::string output = "lit" + std::string(SuffixOf(GetParam().outputs.front()));
  fs::create_symlink(output, directory_ / "future");
  ExpectRefused(directory_ / "future", "writes");
  ExpectRefused(directory_ / ("here/./here/" + output), "writes");
  fs::create_symlink("nowhere", directory_ / "astray");
  EXPECT_EQ(WhyRefused(Request(directory_ / "astray")), "");
}

TEST_P(SideFiles, AreTwoFiles) {
  const std::string path = directory_ / "w";
  EXPECT_EQ(WhyRefused(Request(path, directory_ / "k")), "");
  EXPECT_EQ(WhyRefused(Request(path, path)),
            "'--warnings' and '--key-map' name the same file: '" + path + "'");
  EXPECT_EQ(WhyRefused(Request("/dev/null", "/dev/null")), "") << "devices lose nothing";
  EXPECT_EQ(WhyRefused(Request("", "")), "");
}

INSTANTIATE_TEST_SUITE_P(All, SideFiles,
                         ::testing::ValuesIn(kOperations.begin(), kOperations.end()),
                         [](const auto& row) { return testing::TestName(row.param.batch_name); });

}  // namespace
}  // namespace tarvel
