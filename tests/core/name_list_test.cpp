// SPDX-License-Identifier: MIT
#include "core/name_list.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tarvel {
namespace {

std::vector<std::string> NamesOf(std::string_view list) {
  std::vector<std::string> names;
  NameParts parts(list);
  while (const auto name = parts.Next()) names.emplace_back(*name);
  EXPECT_EQ(parts.Next(), std::nullopt) << "the end is the end";
  return names;
}

TEST(NameParts, AreCutAtEveryAndThatABlankPrecedes) {
  struct Case {
    std::string_view list;
    std::vector<std::string> names;
    std::string_view says;
  };
  const Case cases[] = {
      {"Doe, J. and Roe, K.", {"Doe, J.", "Roe, K."}, "the usual list"},
      {"Doe", {"Doe"}, "a list of one"},
      {"", {}, "an empty list"},
      {"  ", {}, "nothing but blanks"},
      {" Doe   and   Roe ", {"Doe", "Roe"}, "blanks around names are dropped"},
      {"Doe andersson", {"Doe", "ersson"}, "whatever follows"},
      {"Doe\tand Roe", {"Doe\tand Roe"}, "only a blank counts before it"},
      {"Fernandez and Brandt", {"Fernandez", "Brandt"}, "inside a word it does not"},
      {"and Doe", {"and Doe"}, "nor at the start of the list"},
      {" and Doe and", {"Doe"}, "empty names are left out"},
      {"Doe and and and Roe", {"Doe", "Roe"}, "wherever they stand"},
      {"Doe AND Roe", {"Doe AND Roe"}, "capitals are no separator"},
      {"d and nd", {"d", "nd"}, "the letters of the separator may be names"},
  };
  for (const Case& c : cases) EXPECT_EQ(NamesOf(c.list), c.names) << c.says;
}

}  // namespace
}  // namespace tarvel
