// SPDX-License-Identifier: MIT
#include "ops/references/reference_warnings.h"

#include <gtest/gtest.h>

#include "tests/support/recording_warnings.h"

namespace tarvel::testing {
namespace {

using Lines = std::vector<std::string>;
using enum ReferenceValue;

class ReferenceWarningsTest : public ::testing::Test {
 protected:
  Lines Told() { return std::exchange(to_.lines, {}); }

  RecordingWarnings to_;
  FileWarnings file_{&to_, "l", "one\ntwo\nthree\n"};
  ReferenceWarnings warnings_{file_};
  EntryValues values_;
};

TEST_F(ReferenceWarningsTest, NothingPrintedIsReportedOfTheEntry) {
  warnings_.StartEntry("a", 4);
  warnings_.ReportNothingPrinted("of the weather");
  EXPECT_EQ(Told(), Lines{"nothing-printed l:2 [a] no reference was printed: of the weather"});
}

TEST_F(ReferenceWarningsTest, AValueThatWasNotReadIsAnEarlierEntrys) {
  const ReferenceValue shown[] = {kBibitem, kAuthor, kYear};
  values_[kBibitem] = "name";
  values_[kAuthor] = "A";
  warnings_.StartEntry("a", 0);
  warnings_.NoteRead(kAuthor);
  warnings_.ReportCarriedOver(shown, values_);
  EXPECT_EQ(Told(), Lines()) << "a value of its own, a name, and an empty one";

  values_[kYear] = "2001";
  warnings_.StartEntry("b", 4);
  warnings_.NoteRead(kYear);
  warnings_.ReportCarriedOver(shown, values_);
  EXPECT_EQ(Told(), Lines{"carried-over l:2 [b] shows the author of the earlier entry 'a'"});

  warnings_.StartEntry("c", 8);
  warnings_.ReportCarriedOver(std::span(shown).first(2), values_);
  EXPECT_EQ(Told(), Lines{"carried-over l:3 [c] shows the author of the earlier entry 'a'"})
      << "a value that is not shown is no matter";
  warnings_.ReportCarriedOver(shown, values_);
  EXPECT_EQ(Told().back(), "carried-over l:3 [c] shows the year of the earlier entry 'b'");
}

TEST_F(ReferenceWarningsTest, TheFirstCommandOfAValueIsNamed) {
  struct Case {
    std::string_view value, command;
  };
  for (const Case& c : {Case{"a \\foo b \\bar", "\\foo"}, Case{"\\'e", "\\'"}, Case{"x\\", "\\"},
                        Case{"\\a1", "\\a"}, Case{"\\\xC3\xA9", "\\\xC3"}}) {
    values_[kTitle] = c.value;
    values_[kBibitem] = "\\bibitem{a}";
    warnings_.StartEntry("a", 0);
    warnings_.ReportCommands(std::array{kBibitem, kTitle}, values_);
    EXPECT_EQ(Told(),
              Lines{"command-left l:1 [a] '" + std::string(c.command) + "' is left in the title"});
  }
  values_[kTitle] = "plain";
  warnings_.ReportCommands(std::array{kBibitem, kTitle}, values_);
  EXPECT_EQ(Told(), Lines());
}

}  // namespace
}  // namespace tarvel::testing
