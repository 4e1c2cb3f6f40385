// SPDX-License-Identifier: MIT
#include "app/texts.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string_view>

#include "app/operations.h"

namespace tarvel {
namespace {

/// FNV-1a, of 64 bits.
std::uint64_t Fingerprint(std::string_view text) {
  std::uint64_t hash = 0xcbf29ce484222325;
  for (const char byte : text) {
    hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001b3;
  }
  return hash;
}

/// Users know these texts word for word. To change one, change its fingerprint, too.
TEST(Texts, OfTheHelpButtonsHaveNotChanged) {
  struct Known {
    std::string_view button;
    std::uint64_t fingerprint;
  };
  constexpr Known kKnown[] = {
      {"Extract", 0x7f5d8ceb89fa3b06},
      {"Compare", 0x1a10e58f0d16d05a},
      {"Text", 0x8dfcc926195ddeeb},
      {"Journals", 0xfe120a66dea21e52},
      {"Clean doubles", 0xd27c9ee4be1e905a},
      {"Clean authors", 0x8fb048481ee68144},
      {"Clean characters", 0x441d0039d1d15b92},
      {"Clean tags", 0xf9b910306253e749},
  };
  ASSERT_EQ(std::size(kKnown), kOperations.size());
  for (std::size_t i = 0; i < kOperations.size(); ++i) {
    EXPECT_EQ(kOperations[i].button, kKnown[i].button);
    EXPECT_EQ(Fingerprint(kOperations[i].help), kKnown[i].fingerprint) << kOperations[i].help;
  }
  EXPECT_EQ(Fingerprint(JournalFileNote), 0xbd24ba848c1f4174) << JournalFileNote;
}

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
