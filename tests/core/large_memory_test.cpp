// SPDX-License-Identifier: MIT
#include "core/large_memory.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <memory_resource>
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

TEST(LargeMemory, GivesMemoryOfAnySize) {
  std::pmr::vector<char> memory(LargeMemory());
  for (const std::size_t size : {std::size_t{1}, 2 * kLargePage - 1, 2 * kLargePage + 1}) {
    memory.assign(size, 'x');
    EXPECT_EQ(memory.back(), 'x');
    EXPECT_EQ(reinterpret_cast<std::size_t>(memory.data()) % alignof(std::max_align_t), 0U);
  }
}

}  // namespace
}  // namespace tarvel
