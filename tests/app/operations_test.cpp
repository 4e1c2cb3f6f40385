// SPDX-License-Identifier: MIT
#include "app/operations.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

namespace tarvel {
namespace {

std::string ReadSource(const std::string& name) {
  std::ifstream file(TARVEL_SOURCE_DIR "/" + name, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << name;
  return {std::istreambuf_iterator<char>(file), {}};
}

TEST(Operations, AreTheEightRows) {
  struct Row {
    int code;
    std::string_view button, batch_name, description, caption;
    bool has_note, has_preferences;
  };
  const Row rows[] = {
      {9005, "Extract", "extract", "Extract bibitems", "Error in function 'Extract'!", false, true},
      {9004, "Compare", "compare", "Compare two libraries", "Error in function 'Compare'!", true,
       false},
      {9006, "Text", "text", "Create text file", "Error in function 'Text'!", true, true},
      {9007, "Journals", "journals", "Change journal names", "Error in function 'Journals'!", false,
       true},
      {9002, "Clean doubles", "clean-doubles", "Remove double entries",
       "Error in function 'Clean doubles'!", true, false},
      {9000, "Clean authors", "clean-authors", "Correct author names",
       "Error in function 'Clean authors'!", false, false},
      {9001, "Clean characters", "clean-characters", "Find bad characters",
       "Error in function 'Clean characters'!", false, false},
      {9003, "Clean tags", "clean-tags", "Remove tags", "Error in function 'Clean tags'!", false,
       true},
  };
  const auto& operations = kOperations;
  ASSERT_EQ(operations.size(), std::size(rows));
  for (std::size_t i = 0; i < std::size(rows); ++i) {
    const Row& row = rows[i];
    const Operation& operation = operations[i];
    EXPECT_EQ(static_cast<int>(operation.code), row.code);
    EXPECT_EQ(operation.button, row.button);
    EXPECT_EQ(operation.batch_name, row.batch_name);
    EXPECT_EQ(operation.description, row.description);
    EXPECT_EQ(operation.error_caption, row.caption);
    EXPECT_EQ(!operation.note.empty(), row.has_note) << row.button;
    EXPECT_EQ(operation.has_preferences, row.has_preferences) << row.button;
    EXPECT_EQ(FindOperation(row.code), &operation);
  }
  EXPECT_EQ(FindOperation(8999), nullptr);
  EXPECT_EQ(FindOperation(9008), nullptr);
}

TEST(Operations, AreToldApart) {
  std::set<OperationCode> codes;
  std::set<std::string_view> words, buttons;
  std::set<int (*)()> functions;
  std::set<Output> outputs;
  for (const Operation& row : kOperations) {
    EXPECT_TRUE(codes.insert(row.code).second) << row.button;
    EXPECT_TRUE(words.insert(row.batch_name).second) << row.button;
    EXPECT_TRUE(buttons.insert(row.button).second) << row.button;
    EXPECT_TRUE(functions.insert(row.run).second) << row.button;
    for (const Output output : row.outputs) {
      EXPECT_TRUE(outputs.insert(output).second) << row.button << " " << SuffixOf(output);
    }
    EXPECT_EQ(row.error_caption, "Error in function '" + std::string(row.button) + "'!");
  }
}

TEST(Operations, NameTheirFilesInTheirHelp) {
  for (const Operation& row : kOperations) {
    for (const Output output : row.outputs) {
      EXPECT_NE(row.help.find(SuffixOf(output)), std::string_view::npos) << row.button;
    }
  }
}

/// What cannot be held at compile time: the pages that name an operation.
TEST(Operations, AreInTheManualTheReadmeAndTheManPages) {
  const std::string readme = ReadSource("README.md");
  const std::string contents = ReadSource("docs/manual/README.md");
  const std::string batch_page = ReadSource("packaging/man/tarvel-batch.1");
  const std::string files_page = ReadSource("packaging/man/tarvel-files.5");
  for (const Operation& row : kOperations) {
    const std::string word(row.batch_name);
    const std::string page = ReadSource("docs/manual/" + word + ".md");
    EXPECT_TRUE(page.starts_with("# " + std::string(row.button) + "\n")) << word;
    EXPECT_NE(page.find("tarvel-batch " + word), std::string::npos) << word;
    EXPECT_NE(readme.find("docs/manual/" + word + ".md"), std::string::npos) << word;
    EXPECT_NE(contents.find("(" + word + ".md)"), std::string::npos) << word;
    EXPECT_NE(batch_page.find("\n.BI " + word + " "), std::string::npos) << word;
    for (const Output output : row.outputs) {
      const std::string suffix(SuffixOf(output));
      EXPECT_NE(page.find(suffix), std::string::npos) << word << " " << suffix;
    }
  }
}

}  // namespace
}  // namespace tarvel
