// SPDX-License-Identifier: MIT
#include "app/texts.h"

#include <gtest/gtest.h>

#include <string_view>

#include "app/operations.h"

namespace tarvel {
namespace {

TEST(Texts, NameTheVersionAndTheMaker) {
  EXPECT_EQ(VersionString, "Tarvel v3.81");
  EXPECT_EQ(TitleText, "Tarvel v3.81 - Veldo Marsk");
  EXPECT_EQ(DialogTitle, "Tarvel 3.81 - Veldo Marsk, 2014");
  EXPECT_TRUE(
      AboutText.starts_with("Tarvel v3.81 - Veldo Marsk\n\nMarch 2014, Build: 2014-02-15\n\n"));
}

TEST(Texts, HeadNewFiles) {
  EXPECT_EQ(
      LogFileHeader,
      "#\n\nThis log file has been created by Tarvel v3.81\n\n      Veldo Marsk 2014\n\n#\n\n");
  EXPECT_EQ(
      BibFileHeader,
      "#\n\nThis BibTeX file has been created by Tarvel v3.81\n\n      Veldo Marsk 2014\n\n#\n\n");
  EXPECT_EQ(
      TextFileHeader,
      "#\n\nThis text file has been created by Tarvel v3.81\n\n      Veldo Marsk 2014\n\n#\n\n");
  EXPECT_EQ(
      TexFileHeader,
      "#\n\nThis TeX file has been created by Tarvel v3.81\n\n      Veldo Marsk 2014\n\n#\n\n");
}

TEST(Texts, KeepTheirSlips) {
  EXPECT_EQ(ErrorHintText,
            "An error in the function occured! Analyse the error output in a terminal.");
  EXPECT_EQ(CompareNote, "Note that a comparsion of large BibTeX libraries may need some time!");
  EXPECT_EQ(DoublesNote, "Note that finding doubles in a large BibTeX library may need some time!");
  EXPECT_EQ(TextNote,
            "Note that the author lists need to be in the form:\n\nAuthor1, A. C. and Author2, A. "
            "B. and ... .\n\nYou can use first function 'Clean authors'.\n\nWell, I try now to "
            "produce an ASCII file ...");
  EXPECT_EQ(DoneText, "Done!");
  EXPECT_EQ(NoteTitle, "Note!");
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

}  // namespace
}  // namespace tarvel
