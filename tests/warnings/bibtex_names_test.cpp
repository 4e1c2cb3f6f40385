// SPDX-License-Identifier: MIT
#include "warnings/bibtex_names.h"

#include <gtest/gtest.h>

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
      {"Doe, J. and ,", "Doe, J.", "BibTeX reads 2 names before and 1 after"},
      {"Ann Doering", "Doe, A.", "'Ann Doering' has another surname now"},
      {"Ann Doe", "Doering, A.", "'Ann Doe' has another surname now"},
      {"Doe, Jr., Ann, B.", "Doe, B.", "'Doe, Jr., Ann, B.' has another surname now"},
      {"Doe, Ann", "", "BibTeX reads 1 names before and 0 after"},
      {"Doe, A.", "Doe, \xC3\x84.", "'Doe, A.' has other initials now"},
      {"Larson, Per-\\AAke and Roe, B.", "Larson, P.-and Roe, B.",
       "BibTeX reads 2 names before and 1 after"},
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

}  // namespace
}  // namespace tarvel
