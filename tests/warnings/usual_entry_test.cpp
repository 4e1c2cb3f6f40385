// SPDX-License-Identifier: MIT
#include "warnings/usual_entry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace tarvel {
namespace {

/// Whether all of the text is one entry of the usual form.
bool IsUsualEntry(const std::string& text) {
  const EntryText entry = MeasureEntry(text);
  EXPECT_EQ(entry.size, std::min(text.find('@', 1), text.size()));
  return entry.is_usual && entry.size == text.size();
}

const std::string kEntry = "@article{Doe2001,\n  author = {Doe, J.},\n  title={Ants}\n}\n\n";

TEST(UsualEntry, ClosesAllItsValuesAndItself) {
  EXPECT_TRUE(IsUsualEntry(kEntry));
  EXPECT_TRUE(IsUsualEntry("@EditorialMaterial{a,\n  year = {2001},\n  note = {n}\n}\n"));
  const std::string head = "@book{a,\n  publisher = {Penguin Books Limited},\n";
  EXPECT_TRUE(IsUsualEntry(head + "  note = {n}\n}\n \t\r\n"));
  EXPECT_TRUE(IsUsualEntry(head + "  note = {n},  year = {n}\n}\n"));
  const std::vector<std::string> others{
      "  note = {n}\n}",          // without a last line break
      "  note = {n}\n} \n",       // with a blank behind the brace
      "  note = {n}\n",           // without a brace
      "  note = {n}}\n",          // with it on the line of a tag
      "  note = \"n\"\n}\n",      // in quotes
      "  note = 2001\n}\n",       // bare
      "  note =\n{n}\n}\n",       // on the next line
      "  note = {n\n}\n",         // open
      "  note = {n}}\n}\n",       // closed twice
      "  note = {\xFC}\n}\n",     // not ASCII
      "  note = {n}\n}\nmore\n",  // text behind it
  };
  for (const std::string& rest : others) EXPECT_FALSE(IsUsualEntry(head + rest)) << rest;
}

TEST(UsualEntry, IsOfAKnownType) {
  const std::string rest = kEntry.substr(kEntry.find('{'));
  EXPECT_EQ(TypeOf("@PhdThesis" + rest), "PHDTHESIS");
  EXPECT_EQ(TypeOf("@EDITORIALMATERIAL" + rest), "EDITORIALMATERIAL");
  for (const std::string head : {"@mastersthesis", "@article ", "@", "@articl", "@articles", "@ook",
                                 "article", "@EDITORIALMATERIALS", "@b@ok", "@\x01RTICLE", ""}) {
    EXPECT_EQ(TypeOf(head + rest), "") << head;
    EXPECT_FALSE(IsUsualEntry(head + rest)) << head;
  }
}

/// Every place in a step, and more steps than a lane can count.
TEST(UsualEntry, IsUnusualForOneByteWhereverItStands) {
  for (std::size_t fill = 0; fill < 9000; fill += fill < 70 ? 1 : 613) {
    const std::string head = "@misc{key,\n  note = {" + std::string(fill, 'x');
    const std::string tail = std::string(8960 - fill % 70, 'y') + "},\n  year = {2001}\n}\n";
    EXPECT_TRUE(IsUsualEntry(head + "z" + tail)) << fill;
    for (const std::string odd : {"\x80", "{", "}", "=", "= x", "},\n", "={", "=,{"}) {
      EXPECT_FALSE(IsUsualEntry(head + odd + tail)) << fill << " " << odd;
    }
  }
}

/// The text behind an entry does not count, whatever it is and wherever in a step it begins.
TEST(UsualEntry, EndsBeforeTheNextAt) {
  for (std::size_t fill = 10; fill < 150; ++fill) {
    const std::string entry = "@misc{key,\n  note = {" + std::string(fill, 'x') + "}\n}\n";
    for (const std::size_t behind : {1U, 2U, 3U, 40U, 200U}) {
      const std::string rest = "@" + std::string(behind, '\xFC') + "{{= @ }}";
      const EntryText measured = MeasureEntry(entry + rest);
      EXPECT_EQ(measured.size, entry.size());
      EXPECT_TRUE(measured.is_usual) << fill << " " << behind;
      const EntryText open = MeasureEntry(entry + "{\n}\n" + rest);
      EXPECT_EQ(open.size, entry.size() + 4);
      EXPECT_TRUE(open.is_usual);
      EXPECT_FALSE(MeasureEntry(entry + "=" + rest).is_usual);
      EXPECT_FALSE(MeasureEntry(entry + "{" + rest).is_usual);
    }
  }
  EXPECT_EQ(MeasureEntry("@").size, 1U);
  EXPECT_EQ(MeasureEntry("@@").size, 1U);
  EXPECT_EQ(MeasureEntry("x").size, 1U);
}

TEST(UsualEntry, HasManyBraces) {
  std::string many;
  for (int i = 0; i < 500; ++i) many += "{";
  const std::string head = "@misc{key,\n  note = {";
  const std::string tail = "},\n  year = {2001}\n}\n";
  EXPECT_FALSE(IsUsualEntry(head + many + tail));
  EXPECT_FALSE(IsUsualEntry(head + many.substr(0, 256) + tail)) << "not counted in one byte";
  EXPECT_TRUE(IsUsualEntry(head + many + std::string(500, '}') + tail));
  // More open ones in a row than one lane can count, closed in another rhythm.
  std::string closed;
  for (int i = 0; i < 9000; ++i) closed += "}xx";
  EXPECT_TRUE(IsUsualEntry(head + std::string(9000, '{') + closed + tail));
}

}  // namespace
}  // namespace tarvel
