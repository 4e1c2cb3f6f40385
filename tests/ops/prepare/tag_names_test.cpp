// SPDX-License-Identifier: MIT
#include "ops/prepare/tag_names.h"

#include <gtest/gtest.h>

#include <string>

namespace tarvel {
namespace {

TEST(TagNames, AreTheSameInAnyLetterCase) {
  TagNames names;
  TagName& author = names.Get("Author");
  EXPECT_EQ(author.name, "author");
  EXPECT_EQ(&names.Get("AUTHOR"), &author);
  EXPECT_EQ(&names.Get("author"), &author);
  EXPECT_NE(&names.Get("autho"), &author);
}

TEST(TagNames, AreToldApartByAnyByte) {
  TagNames names;
  TagName& first = names.Get("a1xc");
  TagName& second = names.Get("a2xc");
  EXPECT_NE(&first, &second);
  EXPECT_EQ(&names.Get("a1xc"), &first);
  EXPECT_EQ(&names.Get("A2XC"), &second);
  EXPECT_EQ(second.head, "  a2xc = {");
}

TEST(TagNames, TellWhatIsKnownOfATag) {
  TagNames names;
  EXPECT_TRUE(names.Get("Title").IsKnown());
  EXPECT_TRUE(names.Get("title").is_title);
  EXPECT_TRUE(names.Get("booktitle").is_title);
  EXPECT_TRUE(names.Get("editor").is_of_names);
  EXPECT_FALSE(names.Get("authors").is_of_names);
  EXPECT_EQ(names.Get("owner").row.use, TagRow::Use::kBookkeeping);
  EXPECT_TRUE(names.Get("note").row.use == TagRow::Use::kNeeded);
  EXPECT_FALSE(names.Get("numpages").IsKnown());
  EXPECT_TRUE(names.Get("numpages").is_misread);
  EXPECT_EQ(names.Get("numpages").words, WordBit(2));
  EXPECT_TRUE(names.Get("bdsk-file-1").row.is_verbatim);
  EXPECT_FALSE(names.Get("x").row.is_verbatim);
  EXPECT_TRUE(names.Get("e@mail").holds_at);
}

TEST(TagNames, ForgetManyOnly) {
  TagNames names;
  names.Get("x").last_entry = 1;
  names.ForgetMany();
  EXPECT_EQ(names.Get("x").last_entry, 1U);
  for (int i = 0; i < 5000; ++i) names.Get("name" + std::to_string(i)).last_entry = 1;
  EXPECT_EQ(names.Get("name7").last_entry, 1U) << "nothing is forgotten before that";
  names.ForgetMany();
  EXPECT_EQ(names.Get("x").last_entry, 0U);
}

}  // namespace
}  // namespace tarvel
