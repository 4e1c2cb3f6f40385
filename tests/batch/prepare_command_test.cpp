// SPDX-License-Identifier: MIT
#include "batch/prepare_command.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tarvel {
namespace {

TEST(PrepareLine, TakesALibraryAndItsOptions) {
  const PrepareRequest request =
      ParsePrepareLine({"--keep-all", "lit.bib", "--quiet", "--warnings", "w.txt"});
  EXPECT_EQ(request.library, "lit.bib");
  EXPECT_TRUE(request.options.keep_all);
  EXPECT_TRUE(request.quiet);
  EXPECT_EQ(request.warnings_file, "w.txt");
  const PrepareRequest plain = ParsePrepareLine({"--", "-x.bib"});
  EXPECT_EQ(plain.library, "-x.bib");
  EXPECT_FALSE(plain.options.keep_all || plain.quiet);
}

TEST(PrepareLine, RefusesAWrongOneInOneLine) {
  const std::vector<std::vector<std::string>> lines{
      {}, {""}, {"a.bib", "b.bib"}, {"--style", "aps", "a.bib"}, {"--warnings", "", "a.bib"}};
  for (const std::vector<std::string>& words : lines) {
    const PrepareRequest request = ParsePrepareLine(words);
    EXPECT_TRUE(request.library.empty());
    EXPECT_EQ(request.exit_status, kWrongUsage);
    EXPECT_FALSE(request.text.empty());
    EXPECT_EQ(request.text.find('\n'), std::string::npos);
  }
}

TEST(PrepareLine, HelpIsNoWrongUsage) {
  const PrepareRequest request = ParsePrepareLine({"--help"});
  EXPECT_EQ(request.exit_status, 0);
  EXPECT_NE(request.text.find("--keep-all"), std::string::npos);
}

TEST(LibrariesOf, AreAllButTheDocumentAndTheJournalList) {
  for (const Operation& operation : kOperations) {
    BatchRequest request;
    request.operation = &operation;
    std::vector<std::size_t> wanted{0};
    if (operation.code == OperationCode::kExtract) wanted = {1};
    if (operation.code == OperationCode::kCompare) wanted = {0, 1};
    EXPECT_EQ(LibrariesOf(request), wanted) << operation.batch_name;
  }
}

}  // namespace
}  // namespace tarvel
