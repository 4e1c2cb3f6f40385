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
      {"Smith, John A. and Doe, J.",
       "'Smith, John A.' has a full first name, but the list has full stops, as initials have"},
      {"Doe, Al and Roe, B.",
       "'Doe, Al' has a full first name, but the list has full stops, as initials have"},
      {"Doe, Jean-Paul and Roe, B.",
       "'Doe, Jean-Paul' has a full first name, but the list has full stops, as initials have"},
      {"Doe, Jos\\'e and Roe, B.",
       "'Doe, Jos\\'e' has a full first name, but the list has full stops, as initials have"},
      {"Doe, {\\AA}ke and Roe, B.",
       "'Doe, {\\AA}ke' has a full first name, but the list has full stops, as initials have"},
      {"Doe, \xC3\x89\xC3\xA9n and Roe, B.",
       "'Doe, \xC3\x89\xC3\xA9n' has a full first name, but the list has full stops, as initials "
       "have"},
      {"Smith, A., Jones, B., Brown, C.",
       "'Smith, A., Jones, B., Brown, C.' has more than two commas; write 'and' between the names"},
      {"Doe, J. AND Roe, Karl",
       "'Doe, J. AND Roe, Karl' was one name, as its 'and' was in capitals; run again"},
  };
  for (const Case& c : cases) EXPECT_EQ(WhyNoKnownForm(c.list), c.reason) << c.list;
}

TEST(WhyNoKnownForm, IsEmptyWhereNothingIsWrong) {
  for (const std::string_view list :
       {"", "   ", " and ", "Doe, J.", "Doe, J. and Roe, K.", "Doe, van and Roe, K.",
        "Doe, John and Roe, Karl", "Doe, JP and Roe, K.", "Doe, J. et al.",
        "Doe, Jr, J. and Roe, K.", "Doe, {\\AA} and Roe, K.", "Doe, \xC3\x89. and Roe, \xC3\x89",
        "Doe, J.-P. and Roe, K."}) {
    EXPECT_EQ(WhyNoKnownForm(list), "") << list;
  }
}

TEST(WhyDoubtful, NamesTheNamesThatMayBeWrong) {
  struct Case {
    std::string_view before, after, reason;
  };
  const Case cases[] = {
      {"F. Delorme and others", "Others, F. D.", "'others' became a person"},
      {"F. Delorme and Others", "Delorme, F. {\\ldots}", ""},
      {"Smith J and Jones BCD", "J, S. and Bcd, J.",
       "'Smith J' ends in what looks like initials, which became the surname; 'Jones BCD' ends in "
       "what looks like initials, which became the surname"},
      {"Smith J.B.", "J.b., S.",
       "'Smith J.B.' ends in what looks like initials, which became the surname"},
      {"Plato and Aristotle", "Aristotle, P.",
       "'Plato' has one word and was paired with another name; 'Aristotle' has one word and was "
       "paired with another name"},
      {"Jan {van der Berg}", "{vanderBerg}, J.",
       "'Jan {van der Berg}' lost the blanks in its braces"},
      {"Kees van der Laan", "Laan, K. V. D.",
       "'Kees van der Laan' has a particle, which became an initial"},
      {"King, Jr, Martin", "King, J. M.", "'King, Jr, Martin' has a suffix, which may have moved"},
      {"Jones Jr and Bob Smith", "Jones Jr, and Smith, B.",
       "'Jones Jr' has a suffix and no first name: it ends in a comma now, which BibTeX refuses"},
      {"Jones III and Bob Smith", "Iii, J. and Smith, B.",
       "'Jones III' has a suffix, which may have moved"},
      {"Bob Jones Jr. and Bob Smith", "Jones Jr., B. and Smith, B.",
       "'Bob Jones Jr.' has a suffix, which may have moved"},
      {"von Davier, Jr, Ann and Doe, John", "Von Davier Jr, A. and Doe, J.",
       "'von Davier, Jr, Ann' has a suffix, which may have moved; the first name's particle is a "
       "capital"},
      {"john Jameson and Bob Jones", "Jameson, J. and Jones, B.",
       "'john Jameson' has another surname now"},
      {"von Davier, Matthias and Doe, John", "Von Davier, M. and Doe, J.",
       "the first name's particle is a capital"},
  };
  for (const Case& c : cases) EXPECT_EQ(WhyDoubtful(c.before, c.after), c.reason) << c.before;
}

TEST(WhyDoubtful, IsEmptyWhereNothingIsWrong) {
  EXPECT_EQ(WhyDoubtful("Plato and Aristotle", "Plato and Aristotle"), "");
  EXPECT_EQ(WhyDoubtful("John Smith and Bob Jones", "Smith, J. and Jones, B."), "");
  EXPECT_EQ(WhyDoubtful("Doe, John", "Doe, J."), "");
  EXPECT_EQ(WhyDoubtful("Anna Van", "Van, A."), "");
  EXPECT_EQ(WhyDoubtful("J\\'an {\\v S}im", "{\\v S}im, J."), "");
  EXPECT_EQ(WhyDoubtful("", ""), "");
  EXPECT_EQ(WhyDoubtful("~ and John Smith", "~ and Smith, J."), "");
}

}  // namespace
}  // namespace tarvel
