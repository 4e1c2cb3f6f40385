// SPDX-License-Identifier: MIT
#include "core/hash_index.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <random>
#include <vector>

namespace tarvel {
namespace {

auto Is(std::size_t wanted) {
  return [wanted](std::size_t number) { return number == wanted; };
}
constexpr auto kAny = [](std::size_t) { return true; };
constexpr auto kNone = [](std::size_t) { return false; };

TEST(HashIndex, EmptyIndexFindsNothing) { EXPECT_EQ(HashIndex().Find(0, kAny), std::nullopt); }

TEST(HashIndex, NumberZeroAndHashZeroAreLikeAnyOther) {
  HashIndex index;
  EXPECT_EQ(index.Put(0, 0, kAny), std::nullopt);
  EXPECT_EQ(index.Find(0, kAny), 0U);
}

TEST(HashIndex, ThingsOfTheSameHashAreToldApart) {
  HashIndex index;
  for (std::size_t number = 0; number < 3; ++number) {
    EXPECT_EQ(index.Put(42, number, kNone), std::nullopt);
  }
  for (std::size_t number = 0; number < 3; ++number) {
    EXPECT_EQ(index.Find(42, Is(number)), number);
  }
  EXPECT_EQ(index.Find(42, kNone), std::nullopt);
}

TEST(HashIndex, PuttingTheSameThingAgainGivesTheNumberBefore) {
  HashIndex index;
  index.Put(7, 5, kAny);
  EXPECT_EQ(index.Put(7, 6, Is(5)), 5U);
  EXPECT_EQ(index.Find(7, kAny), 6U);
  EXPECT_EQ(index.Find(7, Is(5)), std::nullopt);
}

TEST(HashIndex, FindsOrPuts) {
  HashIndex index;
  EXPECT_EQ(index.FindOrPut(7, 5, Is(5)), std::nullopt);
  EXPECT_EQ(index.FindOrPut(7, 6, Is(5)), 5U);
  EXPECT_EQ(index.Find(7, kAny), 5U);
  EXPECT_EQ(index.FindOrPut(7, 6, Is(6)), std::nullopt);
  EXPECT_EQ(index.Find(7, Is(6)), 6U);
}

TEST(HashIndex, TakesAnyNumberOfNumbers) {
  const auto hash_of = [](std::size_t number) { return number * 0x9E3779B97F4A7C15U; };
  HashIndex index;
  for (std::size_t number = 0; number < 1000; ++number) {
    index.Put(hash_of(number), number, Is(number));
  }
  for (std::size_t number = 0; number < 1000; ++number) {
    EXPECT_EQ(index.Find(hash_of(number), Is(number)), number);
  }
  EXPECT_EQ(index.Find(hash_of(1000), Is(1000)), std::nullopt);
}

TEST(HashIndex, AsksOnlyAboutNumbersWithThatHash) {
  HashIndex index;
  index.Put(std::size_t{1} << 50, 5, kAny);  // the same slot, other upper bits
  EXPECT_EQ(index.Find(0, kAny), std::nullopt);
}

TEST(HashIndex, SlotsRunOnFromTheLastToTheFirst) {
  HashIndex index;
  const std::size_t last = ~std::size_t{0};
  for (std::size_t number = 0; number < 3; ++number) index.Put(last, number, kNone);
  for (std::size_t number = 0; number < 3; ++number)
    EXPECT_EQ(index.Find(last, Is(number)), number);
}

TEST(HashIndex, KeepsOfAHashWhatFitsInANumber) {
  HashIndexOf<std::uint32_t> index;
  index.Put(std::size_t{1} << 50, 5, kAny);
  EXPECT_EQ(index.Find(0, kAny), 5U);
  EXPECT_EQ(index.Find(std::size_t{1} << 31, kAny), std::nullopt);
}

template <typename Index>
void ExpectToDoWhatAMapDoes() {
  constexpr std::size_t kKeys = 500;
  for (const bool well_mixed : {true, false}) {
    std::mt19937_64 random(1);
    std::vector<std::size_t> hashes(kKeys);
    for (std::size_t& hash : hashes) hash = well_mixed ? random() : random() % 5;
    Index index;
    std::map<std::size_t, std::size_t> plain;  // key to number
    std::vector<std::size_t> keys;             // number to key
    for (int step = 0; step < 2000; ++step) {
      const std::size_t key = random() % kKeys;
      const auto is_same = [&](std::size_t number) { return keys[number] == key; };
      const auto known = plain.find(key);
      const auto expected =
          known == plain.end() ? std::optional<std::size_t>() : std::optional(known->second);
      ASSERT_EQ(index.Find(hashes[key], is_same), expected);
      if (step % 2 == 0) continue;
      keys.push_back(key);
      ASSERT_EQ(index.Put(hashes[key], keys.size() - 1, is_same), expected);
      plain[key] = keys.size() - 1;
    }
  }
}

TEST(HashIndex, DoesWhatAMapDoes) { ExpectToDoWhatAMapDoes<HashIndex>(); }
TEST(HashIndex, DoesWhatAMapDoesInLessMemory) {
  ExpectToDoWhatAMapDoes<HashIndexOf<std::uint32_t>>();
}

}  // namespace
}  // namespace tarvel
