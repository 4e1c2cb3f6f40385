// SPDX-License-Identifier: MIT
#include "app/texts.h"

#include <gtest/gtest.h>

#include <string_view>

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

}  // namespace
}  // namespace tarvel
