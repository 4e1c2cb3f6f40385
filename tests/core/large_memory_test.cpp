// SPDX-License-Identifier: MIT
#include "core/large_memory.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

namespace tarvel {
namespace {

// Whether a page is large cannot be seen; that any memory may be asked for, and is kept, can.
TEST(LargeMemory, AskingLeavesMemoryOfAnySizeAndPlaceAsItIs) {
  std::vector<char> memory(5 * kLargePage, 'x');
  for (const std::size_t offset : {std::size_t{0}, std::size_t{1}, kLargePage - 1, kLargePage}) {
    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, kLargePage, 3 * kLargePage}) {
      AskForLargePages(memory.data() + offset, size);
    }
  }
  EXPECT_EQ(memory, std::vector<char>(5 * kLargePage, 'x'));
  AskForLargePages(nullptr, 0);
}

}  // namespace
}  // namespace tarvel
