// SPDX-License-Identifier: MIT
#include "ops/exempt_tags.h"

#include <gtest/gtest.h>

namespace tarvel {
namespace {

TEST(FindExemptTag, FindsANameWithBlanksBeforeAnEqualsSignAndABrace) {
  const auto found = FindExemptTag("x u R\tl \t= \t{u}");
  ASSERT_TRUE(found);
  EXPECT_EQ(found->name, "URL");
  EXPECT_EQ(found->begin, 2U);
  EXPECT_EQ(found->end, 9U) << "before the equals sign";
  for (const char* line : {"file={", "OWNER = {a}", "timestamp\t={", "xdoi={", "a = {url = {b}}"}) {
    EXPECT_TRUE(FindExemptTag(line)) << line;
  }
  for (const char* line : {"url {", "={", "", "url = \"{\"", "urls = {", "ur l x= {", "url =\n{"}) {
    EXPECT_FALSE(FindExemptTag(line)) << line;
  }
}

TEST(FindExemptTag, GoesOnWhereItIsTold) {
  const std::string_view line = "url = {doi = {x}}";
  EXPECT_EQ(FindExemptTag(line)->name, "URL");
  EXPECT_EQ(FindExemptTag(line, 4)->name, "DOI");
  EXPECT_EQ(FindExemptTag(line, 7)->name, "DOI");
  EXPECT_FALSE(FindExemptTag(line, 8)) << "it begins before";
  EXPECT_FALSE(FindExemptTag(line, line.size()));
}

}  // namespace
}  // namespace tarvel
