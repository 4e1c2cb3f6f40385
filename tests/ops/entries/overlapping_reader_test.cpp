// SPDX-License-Identifier: MIT
#include "ops/entries/overlapping_reader.h"

#include <gtest/gtest.h>

#include <string>

#include "core/text_primitives.h"
#include "tests/support/hostile_library.h"

namespace tarvel {
namespace {

/// Reads every entry of a library with both readers: each line that starts one is read as one, even
/// inside the entry before it.
void ExpectSameAsFromTheStart(const std::string& library) {
  LineStream input(library);
  LineStream other(library);
  const TagReader plain(kDoublesTags);
  OverlappingReader reader{TagReader(kDoublesTags)};
  EntryRecord expected;
  std::size_t start = 0;
  for (Line line; ReadLine(input, limits::kPairLine, line); start = input.Position()) {
    const std::size_t after = input.Position();
    if (!IsKnownEntry(line)) continue;
    other.SetPosition(start);
    other.ReadLine(limits::kPairLine);
    expected.Start(line.Text());
    const EntryLineEnd end = plain.ReadEntry(other, expected);
    const std::size_t end_offset = other.Position();
    EXPECT_EQ(reader.Read(input, line.Text()), end);
    EXPECT_EQ(input.Position(), end_offset);
    EXPECT_EQ(reader.ClosedAt(end_offset), end == EntryLineEnd::kClosed);
    EXPECT_FALSE(reader.ClosedAt(end_offset + 1));
    EXPECT_EQ(reader.Entry().key, expected.key);
    for (std::size_t i = 0; i < kFieldCount; ++i) {
      EXPECT_EQ(reader.Entry().fields[i].Text(), expected.fields[i].Text()) << "field " << i;
    }
    input.SetPosition(after);
  }
  if (::testing::Test::HasFailure()) ADD_FAILURE() << library;
}

TEST(OverlappingReader, TakesTheLastValueOfEveryTag) {
  ExpectSameAsFromTheStart(
      "@book{a,\ntitle = {1},\nyear = {1},\n} title\n"
      "@book{b,\nyear = {2},\n} author = {b}\n"
      "@book{c,\ntitle = {\n3},\n}\n@book{d,\n}\n@book{e,\nnote = {5}");
}

TEST(OverlappingReader, ReadsHostileLibrariesLikeAReaderThatStartsAnew) {
  testing::HostileLibraries libraries(99);
  const int runs = testing::RandomRuns(500);
  for (int run = 0; run < runs && !HasFailure(); ++run) {
    std::string library = libraries.Next();
    if (run % 2 == 0) library += libraries.Related(library);
    ExpectSameAsFromTheStart(library);
  }
}

TEST(OverlappingReader, ReadsEntriesThatLieInEachOtherLikeAReaderThatStartsAnew) {
  testing::HostileLibraries libraries(100);
  const int runs = testing::RandomRuns(300);
  for (int run = 0; run < runs && !HasFailure(); ++run) {
    ExpectSameAsFromTheStart(libraries.NextNested());
  }
}

}  // namespace
}  // namespace tarvel
