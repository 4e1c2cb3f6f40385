// SPDX-License-Identifier: MIT
#include "batch/prepare_command.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "batch/options.h"
#include "batch/verbs.h"

namespace tarvel {
namespace {

TEST(PrepareLine, TakesALibraryAndItsOptions) {
  const BatchRequest request =
      ParseCommandLine({"prepare", "--keep-all", "lit.bib", "--quiet", "--warnings", "w.txt"});
  ASSERT_TRUE(request.verb);
  EXPECT_EQ(request.verb->verb, Verb::kPrepare);
  EXPECT_EQ(request.files, std::vector<std::string>{"lit.bib"});
  EXPECT_TRUE(request.keep_all);
  EXPECT_TRUE(request.quiet);
  EXPECT_EQ(request.warnings_file, "w.txt");
  const BatchRequest plain = ParseCommandLine({"prepare", "--", "-x.bib"});
  EXPECT_EQ(plain.files, std::vector<std::string>{"-x.bib"});
  EXPECT_FALSE(plain.keep_all || plain.quiet);
}

TEST(PrepareLine, RefusesAWrongOneInOneLine) {
  const std::vector<std::vector<std::string>> lines{{"prepare"},
                                                    {"prepare", ""},
                                                    {"prepare", "a.bib", "b.bib"},
                                                    {"prepare", "--style", "aps", "a.bib"},
                                                    {"prepare", "--prepare", "a.bib"},
                                                    {"prepare", "--warnings", "", "a.bib"},
                                                    {"text", "--keep-all", "a.bib"}};
  for (const std::vector<std::string>& words : lines) {
    const BatchRequest request = ParseCommandLine(words);
    EXPECT_EQ(request.exit_status, kWrongUsage);
    EXPECT_FALSE(request.text.empty());
    EXPECT_EQ(request.text.find('\n'), std::string::npos);
  }
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
