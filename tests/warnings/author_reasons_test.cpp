// SPDX-License-Identifier: MIT
#include "warnings/author_reasons.h"

#include <gtest/gtest.h>

namespace tarvel {
namespace {

TEST(WhyNoKnownForm, NamesTheNameThatStandsInTheWay) {
  struct Case {
    std::string_view list, reason;
  };
  const Case cases[] = {
      {"Doe, J. and Roe", "'Roe' has no comma, but other names have one"},
      {"Roe and Doe, J. and Poe", "'Roe' has no comma, but other names have one"},
      {"John Smith and Plato", "'Plato' has no first names"},
      {"Plato and Aristotle", "'Plato' has no first names"},
      {"John~Smith and Bob Jones", "'John~Smith' has no first names"},
      {"Doe, John", "'Doe, John' is a single name with a comma"},
  };
  for (const Case& c : cases) EXPECT_EQ(WhyNoKnownForm(c.list), c.reason) << c.list;
}

TEST(WhyNoKnownForm, IsEmptyWhereNothingIsWrong) {
  for (const std::string_view list :
       {"", "   ", " and ", "Doe, J.", "Doe, J. and Roe, K.", "Doe, John and Roe, Karl"}) {
    EXPECT_EQ(WhyNoKnownForm(list), "") << list;
  }
}

}  // namespace
}  // namespace tarvel
