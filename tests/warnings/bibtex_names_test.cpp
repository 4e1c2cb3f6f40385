// SPDX-License-Identifier: MIT
#include "warnings/bibtex_names.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <random>
#include <string>

namespace tarvel {
namespace {

TEST(WhatChanged, NamesWhoHasAnotherName) {
  struct Case {
    std::string_view before, after, change;
  };
  const Case cases[] = {
      {"Gregor v. Bockmann", "Bockmann, G. V.", "'Gregor v. Bockmann' has another surname now"},
      {"H. Van Der Woerd and A. Roe", "H. van Der Woerd and A. Roe",
       "'H. Van Der Woerd' has another surname now"},
      {"{A {B}}c Doe", "Doe, C.", "'{A {B}}c Doe' has other initials now"},
      {"Doe, Jr., Ann", "Doe, A.", "'Doe, Jr., Ann' has another surname now"},
      {"Rajiv \\& Tharam Doe", "Doe, R. T.", "'Rajiv \\& Tharam Doe' lost a word without letters"},
      {"Doe \\relax Roe", "Roe, D.", "'Doe \\relax Roe' has other initials now"},
      {"Doe, J. and ,", "Doe, J.", "the number of names that BibTeX reads was 2 and is 1 now"},
      {"Ann Doering", "Doe, A.", "'Ann Doering' has another surname now"},
      {"Ann Doe", "Doering, A.", "'Ann Doe' has another surname now"},
      {"Doe, Jr., Ann, B.", "Doe, B.", "'Doe, Jr., Ann, B.' has another surname now"},
      {"Doe, Ann", "", "the number of names that BibTeX reads was 1 and is 0 now"},
      {"Doe, A.", "Doe, \xC3\x84.", "'Doe, A.' has other initials now"},
      {"Larson, Per-\\AAke and Roe, B.", "Larson, P.-and Roe, B.",
       "the number of names that BibTeX reads was 2 and is 1 now"},
  };
  for (const Case& c : cases) EXPECT_EQ(WhatChanged(c.before, c.after), c.change) << c.before;
}

TEST(WhatChanged, IsEmptyForTheSamePeople) {
  struct Case {
    std::string_view before, after;
  };
  const Case cases[] = {
      {"", ""},
      {"Jean-Pierre Doe AND  Ann~B. Roe", "Doe, J.-P. and Roe, A. B."},
      {"van der Berg, Kees", "van der Berg, K."},
      {"Kees van der Berg", "van der Berg, Kees"},
      {"{\\'E}mile {\\v S}im", "{\\v S}im, {\\'E}."},
      {"JP Doe", "Doe, J. P."},
      {"Al.Bo Doe", "Doe, A. B."},
      {"Doe, Jr., Ann", "Doe Jr, A."},
      {"~", "~ "},
      {"~ and {}", "{} and ~"},
      {"J\xC3\x84 Doe", "Doe, J."},
      {"\xC3\xA9mile Doe", "Doe, \xC3\xA9."},
      {"Bo-June (Paul) Hsu", "Hsu, B.-J. P."},
      {"{Doe and Sons}", "{Doe and Sons}"},
      {"Leong and and Doe, A.", "Leong and Doe, A."},
      {"A. Doe et al.", "Doe, A."},
      {"Andy Anders and Band Sand", "Anders, A. and Sand, B."},
  };
  for (const Case& c : cases) EXPECT_EQ(WhatChanged(c.before, c.after), "") << c.before;
}

TEST(WhatChanged, ReadsPlainNamesAsAllOthers) {
  // Names with a tab are never plain, and mean the same to BibTeX.
  constexpr std::array<std::string_view, 24> kPieces{
      " ",  " ",  " ",        " ", ", ", "A",  "B", "Ann", "bo",    "Doe", "DOE", "{\\'E}",
      "{Q", "r}", "\xC3\x84", "-", ".",  ". ", "'", "7",   " and ", "~",   "/",   "de "};
  std::mt19937_64 random(1);
  const auto below = [&](std::size_t end) { return static_cast<std::size_t>(random() % end); };
  const auto text = [&](std::size_t most) {
    std::string made;
    for (std::size_t count = below(most); count > 0; --count)
      made += kPieces[below(kPieces.size())];
    return made;
  };
  int same = 0;
  for (int run = 0; run < 200000; ++run) {
    const std::string first = text(5);
    const std::string surname = text(4);
    const std::string before = below(2) == 0 ? first + " " + surname : surname + "," + first;
    std::string after = surname + ", ";
    for (const char byte : first) {
      const bool is_small = byte >= 'a' && byte <= 'z';
      if (!is_small || below(6) == 0) after += below(20) == 0 ? 'X' : byte;
      if (!is_small && below(2) == 0) after += below(9) == 0 ? "-" : ". ";
    }
    std::string with_tabs = after;
    std::replace(with_tabs.begin(), with_tabs.end(), ' ', '\t');
    const std::string change = WhatChanged(before, after);
    EXPECT_EQ(change, WhatChanged(before, with_tabs)) << before << " | " << after;
    if (change.empty() && before != after) ++same;
  }
  EXPECT_GT(same, 10000);
}

}  // namespace
}  // namespace tarvel
