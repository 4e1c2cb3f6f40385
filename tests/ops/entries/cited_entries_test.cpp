// SPDX-License-Identifier: MIT
#include "ops/entries/cited_entries.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace tarvel {
namespace {

using Texts = std::vector<std::string>;

/// The texts of the ranges that matter for the keys.
Texts Ranges(const std::string& library, const Texts& keys) {
  LineStream lines{std::string_view(library)};
  CitedEntries entries(keys);
  Texts ranges;
  entries.Find(lines, [&](const LibraryRange& range) {
    ranges.push_back(library.substr(range.begin, range.end - range.begin));
  });
  return ranges;
}

const std::string kA = "@article{a,\n  title = {A},\n}\n\n";
const std::string kB = "@book{b,\n  note = {x@y},\n}\n";
const std::string kC = "text @misc{c,\n}";

TEST(CitedEntries, RangesAreThoseOfTheCitedEntriesUpToTheNextHead) {
  const std::string library = "@comment{x}\n" + kA + kB + kC;
  EXPECT_EQ(Ranges(library, {}), Texts{});
  EXPECT_EQ(Ranges(library, {"d"}), Texts{});
  EXPECT_EQ(Ranges(library, {"a"}), Texts{kA});
  EXPECT_EQ(Ranges(library, {"b"}), Texts{kB});
  EXPECT_EQ(Ranges(library, {"c"}), Texts{kC}) << "from the start of the line to the end";
  EXPECT_EQ(Ranges(library, {"c", "d", "a"}), (Texts{kA, kC})) << "in the order of the library";
  EXPECT_EQ(Ranges(library, {"a", "b", "c"}), (Texts{kA, kB, kC}));
}

TEST(CitedEntries, RangesHoldOnlyTheFirstEntryOfAKey) {
  EXPECT_EQ(Ranges(kA + kB + kA + kB, {"a"}), Texts{kA});
  EXPECT_EQ(Ranges(kA + kA + kB, {"b", "a"}), (Texts{kA, kB}));
}

TEST(CitedEntries, LinesThatOnlyLookLikeHeadsHaveRanges) {
  const std::string online = "@online{o,\n  title = {O},\n}\n";
  EXPECT_EQ(Ranges(kA + online + kB, {"o"}), Texts{online});
  EXPECT_EQ(Ranges(kA + online + kB, {"a"}), Texts{kA + online}) << "it is read with the entry";
  EXPECT_EQ(Ranges(kA + online + kB, {"a", "o"}), (Texts{kA, online}));
  EXPECT_EQ(Ranges(online + "@misc{o,\n}\n" + kB, {"o"}), (Texts{online, "@misc{o,\n}\n"}))
      << "the search goes on to the entry";
}

/// A head after byte 999 of its line is one, as lines are read in pieces.
TEST(CitedEntries, RangesBeginWithTheLineHoweverLongItIs) {
  const std::string long_line = std::string(999, 'x') + "@misc{k,\n";
  EXPECT_EQ(Ranges(kA + long_line + "}\n" + kB, {"k"}), Texts{long_line + "}\n"});
  const std::string two = "@misc{j," + std::string(991, ' ') + "@misc{k,\n";
  EXPECT_EQ(Ranges(kA + two + "}\n" + kB, {"k", "j"}), Texts{two + "}\n"}) << "once";
  EXPECT_EQ(Ranges(kA + two + "}\n" + kB, {"j"}), Texts{two + "}\n"});
  EXPECT_EQ(Ranges(kA + two + "}\n" + kB, {"a", "k", "b"}), (Texts{kA, two + "}\n", kB}));
}

TEST(CitedEntries, HeadsAreFoundWithoutAnObserver) {
  const std::string library = kA + kB + kC;
  const Texts keys{"c", "a"};
  CitedEntries entries(keys);
  LineStream lines{std::string_view(library)};
  entries.Find(lines);
  EXPECT_EQ(entries.Head(0), (kA + kB).size());
  EXPECT_EQ(entries.Head(1), 0U);
}

}  // namespace
}  // namespace tarvel
