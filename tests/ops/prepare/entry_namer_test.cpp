// SPDX-License-Identifier: MIT
#include "ops/prepare/entry_namer.h"

#include <gtest/gtest.h>

#include <string>

namespace tarvel {
namespace {

struct Named {
  std::string tags;  // "TYPE name=value;..."
  std::string log;
  int warnings = 0;
};

/// Names an entry of which all tags from `inherited` on are its parent's.
Named NameEntry(const std::string& entry, std::size_t inherited = 99) {
  Named named;
  BibStrings strings;
  BibReader reader(entry, strings);
  BibItem item;
  EXPECT_TRUE(reader.Next(item));
  PrepareLog log(entry, [&](const PrepareWarning&) { ++named.warnings; });
  EntryNamer namer(log);
  namer.Name(item, inherited);
  named.tags = namer.Type();
  for (const FormedTag& tag : namer.Tags()) {
    named.tags.append(" ").append(tag.Name()).append("=").append(tag.value).append(";");
  }
  named.log = log.Text();
  return named;
}

TEST(EntryNamer, RenamesUnlessTheNewNameIsThere) {
  EXPECT_EQ(NameEntry("@article{k, JournalTitle={J}}").tags, "ARTICLE journal=J;");
  EXPECT_EQ(NameEntry("@article{k, journaltitle={J}, journal={K}}").tags,
            "ARTICLE journaltitle=J; journal=K;");
}

TEST(EntryNamer, ReadsWhatAThesisIsFromItsTagType) {
  EXPECT_EQ(NameEntry("@Thesis{k, type={Master's}}").tags, "MASTERTHESIS type=Master's;");
  EXPECT_EQ(NameEntry("@thesis{k, note={Master's}}").tags, "PHDTHESIS note=Master's;");
  EXPECT_EQ(NameEntry("@book{k, type={Master's}}").tags, "BOOK type=Master's;");
}

TEST(EntryNamer, AppendsASubtitle) {
  EXPECT_EQ(NameEntry("@book{k, title={A}, subtitle={B}}").tags, "BOOK title=A: B;");
  EXPECT_EQ(NameEntry("@book{k, title={A!}, subtitle={B}}").tags, "BOOK title=A! B;");
  EXPECT_EQ(NameEntry("@book{k, title={A}, subtitle={B}}", 1).tags, "BOOK title=A;")
      << "that of a parent is of the parent's title";
}

TEST(EntryNamer, TakesYearAndMonthFromADate) {
  EXPECT_EQ(NameEntry("@misc{k, date={2001-02-03}}").tags, "MISC year=2001; month=February;");
  EXPECT_EQ(NameEntry("@misc{k, date={2001-13}}").tags, "MISC year=2001;");
  EXPECT_EQ(NameEntry("@misc{k, month={May}, date={2001-02}}").tags, "MISC month=May; year=2001;");
}

TEST(EntryNamer, PrefersAnOwnTagOfAnOldNameToThatOfAParent) {
  EXPECT_EQ(
      NameEntry("@article{k, journaltitle={J}, location={L}, journal={K}, address={A}}", 2).tags,
      "ARTICLE journal=J; address=L;");
  EXPECT_EQ(NameEntry("@article{k, journaltitle={J}, journal={K}, location={L}}", 2).tags,
            "ARTICLE journaltitle=J; journal=K; address=L;")
      << "its own tag of the new name is the one";
  EXPECT_EQ(NameEntry("@misc{k, date={2010-03}, year={1950}, month={May}}", 1).tags,
            "MISC year=2010; month=March;");
  EXPECT_EQ(NameEntry("@misc{k, date={2010}, month={May}}", 1).tags, "MISC year=2010;");
  EXPECT_EQ(NameEntry("@misc{k, date={2010-03}, month={May}, year={1950}}", 2).tags,
            "MISC year=2010; month=May;");
  EXPECT_EQ(NameEntry("@misc{k, date={2010-03}, year={1950}, month={May}}", 2).tags,
            "MISC date=2010-03; year=1950; month=May;");
}

TEST(EntryNamer, KeepsTheFirstOfOneNameAndLogsTheOthers) {
  const Named named = NameEntry("@misc{k, note={a}, Note={b}}");
  EXPECT_EQ(named.tags, "MISC note=a;");
  EXPECT_NE(named.log.find("{b}"), std::string::npos);
}

TEST(EntryNamer, WarnsOfATypeThatIsInNoTable) {
  EXPECT_EQ(NameEntry("@www{k}").warnings, 0);
  EXPECT_EQ(NameEntry("@widget{k}").warnings, 1);
}

}  // namespace
}  // namespace tarvel
