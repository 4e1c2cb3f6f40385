// SPDX-License-Identifier: MIT
#include "ops/entries/growing_library.h"

#include <gtest/gtest.h>

namespace tarvel {
namespace {

TEST(GrowingLibrary, WritingInTheMiddleReplacesAndCutsNothingOff) {
  GrowingLibrary library("header\n", 0);
  library.Write(7, "one\ntwo\n");
  EXPECT_EQ(library.Bytes(), "header\none\ntwo\n");
  library.Write(7, "On");
  EXPECT_EQ(library.Bytes(), "header\nOne\ntwo\n");
  library.Write(11, "three\nfour\n");
  EXPECT_EQ(library.Bytes(), "header\nOne\nthree\nfour\n")
      << "what goes beyond the end is appended";
  EXPECT_EQ(library.Size(), 22U);
}

TEST(GrowingLibrary, LinesAreReadFromAnyOffsetWithALimit) {
  GrowingLibrary library("ab\ncdef", 100);
  EXPECT_EQ(library.ReadLine(0, 100), "ab\n");
  EXPECT_EQ(library.ReadLine(1, 100), "b\n");
  EXPECT_EQ(library.ReadLine(3, 100), "cdef");
  EXPECT_EQ(library.ReadLine(3, 4), "cde") << "at most one byte less than the limit";
  EXPECT_EQ(library.ReadLine(0, 4), "ab\n");
  EXPECT_EQ(library.ReadLine(0, 3), "ab");
  EXPECT_EQ(library.ReadLine(7, 100), std::nullopt);
}

}  // namespace
}  // namespace tarvel
