// SPDX-License-Identifier: MIT
#include "warnings/byte_lanes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>

namespace tarvel {
namespace {

TEST(CountByte, CountsInTextsOfEverySize) {
  for (const char byte : {'\n', 'a', '\xFF'}) {
    for (std::size_t size = 0; size < 100; ++size) {
      EXPECT_EQ(CountByte(std::string(size, byte), byte), size);
      EXPECT_EQ(CountByte(std::string(size, 'x'), byte), 0U);
    }
    // More than a lane can count.
    EXPECT_EQ(CountByte(std::string(100'000, byte), byte), 100'000U);
  }
}

TEST(CountByte, CountsWhatAPlainCountDoes) {
  std::mt19937 random(1);
  for (int run = 0; run < 300; ++run) {
    std::string text(random() % 9000, ' ');
    for (char& byte : text) byte = static_cast<char>(random() % 4 + 126);
    const auto plain = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\x80'));
    EXPECT_EQ(CountByte(text, '\x80'), plain) << text.size();
  }
}

template <typename L>
void CheckSums() {
  std::mt19937 random(2);
  for (int run = 0; run < 300; ++run) {
    L lanes{};
    int sum = 0;
    std::uint64_t negative = 0;
    for (std::size_t i = 0; i < sizeof(L); ++i) {
      const int value = run == 0 ? -128 : run == 1 ? 127 : static_cast<int>(random() % 256) - 128;
      lanes[i] = static_cast<signed char>(run % 3 == 2 && value < 0 ? 0 : value);
      sum += lanes[i];
      negative |= std::uint64_t{lanes[i] < 0 ? 1U : 0U} << i;
    }
    EXPECT_EQ(SumOfLanes(lanes), sum);
    EXPECT_EQ(NegativeLanes(lanes), negative);
    EXPECT_EQ(HasNegative(lanes), negative != 0);
  }
}

TEST(Lanes, AreAddedUp) {
  CheckSums<Lanes>();
  CheckSums<WideLanes>();
}

TEST(Lanes, AreSetFromTheStart) {
  for (std::size_t count = 0; count < 2 * sizeof(WideLanes); ++count) {
    WideLanes one;
    WideLanes two;
    SetFirstLanes(count, one, two);
    const std::uint64_t set = (std::uint64_t{1} << count) - 1;
    EXPECT_EQ(NegativeLanes(one) | NegativeLanes(two) << sizeof(WideLanes), set);
    EXPECT_EQ(-SumOfLanes(one) - SumOfLanes(two), static_cast<int>(count));
  }
}

}  // namespace
}  // namespace tarvel
