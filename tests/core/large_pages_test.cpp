// SPDX-License-Identifier: MIT
#include "core/large_pages.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>

namespace tarvel {
namespace {

constexpr std::size_t kLargePage = std::size_t{1} << 21;

TEST(TakeLargeMemory, GivesMemoryOfAnySize) {
  for (const std::size_t size :
       {std::size_t{0}, std::size_t{1}, kLargePage - 1, kLargePage, 2 * kLargePage + 12345}) {
    const LargeMemory memory = TakeLargeMemory(size);
    std::fill_n(memory.get(), size, 'x');
    EXPECT_EQ(std::count(memory.get(), memory.get() + size, 'x'),
              static_cast<std::ptrdiff_t>(size));
  }
}

TEST(TakeLargeMemory, BeginsWithALargePage) {
  const LargeMemory memory = TakeLargeMemory(kLargePage);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(memory.get()) % kLargePage, 0U);
}

TEST(AdviseLargePages, LeavesTheBytesAsTheyAre) {
  std::string bytes(3 * kLargePage, 'x');
  AdviseLargePages(bytes.data(), bytes.size());
  AdviseLargePages(bytes.data(), 1);
  EXPECT_EQ(std::count(bytes.begin(), bytes.end(), 'x'), static_cast<std::ptrdiff_t>(bytes.size()));
}

}  // namespace
}  // namespace tarvel
