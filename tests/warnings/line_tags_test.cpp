// SPDX-License-Identifier: MIT
#include "warnings/line_tags.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tarvel {
namespace {

std::vector<std::string> Tags(std::string_view text) {
  std::vector<std::string> tags;
  for (const LineTag& tag : TagsOf(text)) {
    tags.push_back(std::string(tag.name) + "|" + std::string(tag.value));
  }
  return tags;
}

using Lines = std::vector<std::string>;

TEST(TagsOf, AreNamesAndValuesOutsideOfValues) {
  EXPECT_EQ(Tags(" title = {A {B} = c}, year=2001 , note = \"x {\"} y\"\n}\n"),
            (Lines{"title|{A {B} = c}", "year|2001 ", "note|\"x {\"} y\""}));
  EXPECT_EQ(Tags("a = {x\ny}\n, b.c-d = jan,\n"), (Lines{"a|{x\ny}", "b.c-d|jan"}));
  EXPECT_EQ(Tags("text, {a = b} x = y z = {1}"), (Lines{"x|y z = {1"}));
  EXPECT_EQ(Tags("a = {x} # jan #\n \"y\", b = {z} # {"),
            (Lines{"a|{x} # jan #\n \"y\"", "b|{z} # {"}))
      << "with its pieces";
  EXPECT_EQ(Tags("a = {never closed"), Lines{"a|{never closed"});
  EXPECT_EQ(Tags(" , %% = {x}, = {y}"), Lines());
  EXPECT_EQ(Tags(""), Lines());
}

TEST(OpenBraces, AreThoseThatDoNotClose) {
  EXPECT_EQ(OpenBraces(""), 0);
  EXPECT_EQ(OpenBraces("{a {b}, "), 1);
  EXPECT_EQ(OpenBraces("}a {"), 0);
  EXPECT_EQ(OpenBraces("}}"), -2);
  EXPECT_EQ(OpenBraces(std::string(1000, '{') + std::string(600, '}')), 400);
}

TEST(TagNameOf, IsWhatStandsBeforeTheEqualsSign) {
  EXPECT_EQ(TagNameOf("  Title \t= {x}"), "Title");
  EXPECT_EQ(TagNameOf("a.b:=x"), "a.b:");
  EXPECT_EQ(TagNameOf(" , year = {x}"), "year");
  for (const std::string_view line :
       {"", " = x", "{a = b", "}", "a, b = c", "@string{a = b", "x", "%%% = x", "1) / h = 2",
        "5.2 \\verb = x", "% isbn = {1}", "two words = x"}) {
    EXPECT_EQ(TagNameOf(line), "") << line;
  }
}

TEST(LineAt, EndsBeforeTheLineBreak) {
  EXPECT_EQ(LineAt("ab\ncd\n", 3), "cd");
  EXPECT_EQ(LineAt("ab", 0), "ab");
  EXPECT_EQ(LineAt("ab", 9), "");
}

}  // namespace
}  // namespace tarvel
