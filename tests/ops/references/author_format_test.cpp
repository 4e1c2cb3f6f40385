// SPDX-License-Identifier: MIT
#include "ops/references/author_format.h"

#include <gtest/gtest.h>

#include "tests/support/plain_references.h"
#include "tests/support/reference_worlds.h"

namespace tarvel {
namespace {

using namespace std::string_view_literals;
using enum JournalStyle;

std::string Formatted(std::string_view list, std::optional<JournalStyle> style) {
  std::string text(list);
  FormatAuthorList(text, style);
  return text;
}

struct Case {
  JournalStyle style;
  std::string_view list;
  std::string_view result;
  std::string_view says;
};

constexpr std::string_view kThree = "Doe, J. and Roe, K. and Poe, L.";
constexpr std::string_view kTwo = "Doe, J. and Roe, K.";
constexpr std::string_view kOne = "Doe, J.";

constexpr Case kCases[] = {
    {kAPS, kThree, "J. Doe, K. Roe and L. Poe", "first names first, the last name after \"and\""},
    {kAPS, kTwo, "J. Doe and K. Roe", "two names"},
    {kAPS, kOne, "J. Doe", "one name"},
    {kAPS, "", "", "no name"},
    {kAPS, "Plato", "Plato", "a name without a comma stays"},
    {kAPS, "  Plato ", "  Plato ", "with its blanks"},
    {kAPS, "Doe, J. and Plato and Roe, K.", "J. Doe, Plato and K. Roe", "also among others"},
    {kAPS, "Plato and Socrates", "Plato, Socrates", "without any comma there is no final \"and\""},
    {kAPS, "Doe, J., Jr.", "J., Jr. Doe", "the first comma of a name counts"},
    {kAPS, "Doe, J. and Roe, K., Jr.", "J. Doe, K. and Jr. Roe", "the last \", \" may be a name's"},
    {kAPS, "Doe,   J.", "J. Doe", "blanks after the comma are skipped"},
    {kAPS, "Doe,\tJ.", "\tJ. Doe", "tabs are not"},
    {kAPS, "Doe,", " Doe", "no first name"},
    {kAPS, ",J.", "J. ", "no last name"},
    {kAPS, "Doe, J.  and  Roe, K.", "J.  Doe and K.  Roe",
     "\" and \" takes one blank on each side"},
    {kAPS, "Doe, J. and", "J. and Doe", "\" and\" at the end separates nothing"},
    {kAPS, "Doe, J. and ", "J. Doe and ", "\" and \" at the end does"},
    {kAPS, "Sand, A. and Andersson, B.", "A. Sand and B. Andersson", "names with and in them"},
    {kAPS, "A, B and and C, D", "B A and D and C", "read from the left, without overlap"},
    {kWiley, kThree, "J. Doe, K. Roe, L. Poe", "as APS without the final \"and\""},
    {kWiley, kTwo, "J. Doe, K. Roe", "two names"},
    {kWiley, kOne, "J. Doe", "one name"},
    {kWiley, "", "", "no name"},
    {kWiley, "Plato and Doe, J.", "Plato, J. Doe", "a name without a comma stays"},
    {kIOP, kThree, "Doe J, Roe K and Poe L ", "the final period became a blank"},
    {kIOP, kTwo, "Doe J and Roe K ", "two names"},
    {kIOP, kOne, "Doe J ", "one name"},
    {kIOP, "", "", "no name"},
    {kIOP, "Doe, John and Roe, Karl", "Doe John and Roe Karl", "no final period, no blank"},
    {kIOP, "Doe, J.P.", "Doe J P ", "a blank for a period before a letter"},
    {kIOP, "Doe, J.-P.", "Doe J-P ", "none before a hyphen"},
    {kIOP, "Doe,J.", "Doe J ", "a blank for a comma before a letter"},
    {kIOP, "A,,B", "A  B", "the byte looked at is the list's, dropped or not"},
    {kIOP, "Doe, J. and", "Doe J and", "\" and\" becomes a comma and the last comma \" and\""},
    {kIOP, "Doe, J. andersson", "Doe J andersson", "any \" and\" counts"},
    {kNature, kThree, "Doe, J., Roe, K. \\& Poe, L.", "an ampersand before the last name"},
    {kNature, kTwo, "Doe, J. \\& Roe, K.", "two names"},
    {kNature, kOne, "Doe, J.", "one comma: nothing to replace"},
    {kNature, "", "", "no name"},
    {kNature, ",", ",", "one comma alone"},
    {kNature, ",,", " \\&,", "two commas"},
    {kNature, "Plato and Socrates", "Plato, Socrates", "fewer than two commas"},
    {kNature, "Doe, J., Jr.", "Doe \\& J., Jr.", "every comma counts"},
    {kACS, kThree, "Doe, J.; Roe, K.; Poe, L.", "semicolons between the names"},
    {kACS, kOne, "Doe, J.", "one name"},
    {kACS, "", "", "no name"},
    {kACS, "Doe, J. andersson", "Doe, J.;ersson", "any \" and\" counts"},
    {kACS, "Doe, J.\tand Roe", "Doe, J.\tand Roe", "but only after a blank"},
    {kACS, " and and", ";;", "one after the other"},
    {kSpringerCompSci, kThree, "Doe J, Roe K, Poe L", "no periods, no commas within names"},
    {kSpringerCompSci, kTwo, "Doe J, Roe K", "two names"},
    {kSpringerCompSci, kOne, "Doe J", "one name"},
    {kSpringerCompSci, "", "", "no name"},
    {kSpringerCompSci, "Doe, J.-P.", "Doe JP", "a hyphen goes with its period"},
    {kSpringerCompSci, "Doe, J. P.", "Doe JP", "a blank too"},
    {kSpringerCompSci, "Doe, J.P.", "Doe J.P", "a period before a letter stays"},
    {kSpringerCompSci, "Doe, John and Roe, Karl", "Doe John, Roe Karl", "\" and\" becomes a comma"},
    {kSpringerCompSci, "Doe, J. andersson", "Doe Jandersson", "there it has to be a whole word"},
    {kSpringerCompSci, "Doe,J.", "Doe,J", "a comma without a blank stays"},
    {kSpringerCompSci, "J.-and K.", "J, K", "\"and \" directly after any dropped period"},
    {kSpringerCompSci, "a. and and b", "a,, b", "one after the other"},
    {kSpringerCompSci, "..", ".", "the last one goes"},
    {kAPS, "\xC3\x89mile, A. and \0, B."sv, "A. \xC3\x89mile and B. \0"sv, "bytes are bytes"},
};

TEST(FormatAuthorList, GivesEachStyleItsForm) {
  for (const Case& c : kCases) {
    EXPECT_EQ(Formatted(c.list, c.style), c.result) << c.says << ": '" << c.list << "'";
  }
}

TEST(FormatAuthorList, EmptiesTheListWhenNoStyleIsSelected) {
  EXPECT_EQ(Formatted(kThree, std::nullopt), "");
}

TEST(FormatAuthorList, AgreesWithThePlainVersionOnRandomLists) {
  testing::WorldMaker maker(5);
  Settings settings;
  for (int i = 0; i < 20000; ++i) {
    Choose(settings, kStyleFlags, kStyleFlags[static_cast<std::size_t>(i % 6)]);
    const std::string list = maker.Authors();
    ASSERT_EQ(Formatted(list, SelectedStyle(settings)), testing::PlainAuthors(list, settings))
        << list << " in style " << i % 6;
  }
}

TEST(FormatAuthorList, TakesListsOfAnyLength) {
  std::string list = "Doe, J.";
  for (int i = 0; i < 50000; ++i) list += " and Roe, K.";
  EXPECT_EQ(Formatted(list, kACS).size(), 7 + 50000U * 9);
  EXPECT_TRUE(Formatted(list, kAPS).ends_with("K. Roe and K. Roe"));
}

}  // namespace
}  // namespace tarvel
