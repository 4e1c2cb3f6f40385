// SPDX-License-Identifier: MIT
#include "core/keyed_hash.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <set>
#include <string>

namespace tarvel {
namespace {

TEST(KeyedHash, IsTheSameForTheSameBytesOnly) {
  std::set<std::size_t> hashes;
  for (std::size_t size = 0; size < 40; ++size) {
    EXPECT_EQ(KeyedHash(std::string(size, 'x')), KeyedHash(std::string(size, 'x')));
    hashes.insert(KeyedHash(std::string(size, 'x')));
    hashes.insert(KeyedHash(std::string(size, '\0')));
    for (std::size_t at = 0; at < size; ++at) {
      std::string changed(size, 'x');
      changed[at] = 'y';
      hashes.insert(KeyedHash(changed));
    }
  }
  EXPECT_EQ(hashes.size(), 1U + 39U * 2 + 39U * 40 / 2) << "every byte and the size count";
}

TEST(KeyedHash, TakesAViewOfNothing) {
  EXPECT_EQ(KeyedHash(std::string_view()), KeyedHash(std::string()));
}

/// Tables take the lower bits of a hash.
TEST(KeyedHash, MixesIntoTheLowerBits) {
  std::set<std::size_t> low;
  for (int i = 0; i < 1000; ++i) low.insert(KeyedHash("key" + std::to_string(i)) & 0xFFF);
  EXPECT_GT(low.size(), 700U);
}

}  // namespace
}  // namespace tarvel
