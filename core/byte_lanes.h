// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace tarvel {

/// As many bytes as are looked at in one step, each as a signed number. Comparisons and sums work
/// on each lane for itself; what is true is -1. A compiler without such registers makes do.
using Lanes [[gnu::vector_size(16)]] = signed char;
/// Twice as many, for processors that have such registers.
using WideLanes [[gnu::vector_size(32)]] = signed char;
/// How many times a lane can be counted up or down by one.
inline constexpr std::size_t kMostLaneSteps = 127;

// The functions below are always inlined, so that they become code for the processor that their
// caller is for, and take no lanes as values, for which such functions have no common form.

/// Takes the bytes from `text` on.
template <typename L>
[[gnu::always_inline]] inline void LoadLanes(const void* text, L& lanes) {
  std::memcpy(&lanes, text, sizeof(L));
}

/// The lanes as words.
template <typename L>
[[gnu::always_inline]] inline auto WordsOf(const L& lanes) {
  std::array<std::uint64_t, sizeof(L) / sizeof(std::uint64_t)> words{};
  std::memcpy(words.data(), &lanes, sizeof(L));
  return words;
}

template <typename L>
[[gnu::always_inline]] inline bool HasNegative(const L& lanes) {
  std::uint64_t all = 0;
  for (const std::uint64_t word : WordsOf(lanes)) all |= word;
  return (all & 0x8080808080808080U) != 0;
}

/// The sum of all lanes.
template <typename L>
[[gnu::always_inline]] inline int SumOfLanes(const L& lanes) {
  // A lane is made positive by 128 more. Then neighbours are added until four sums of 16 bits are
  // left, which the multiplication adds up in the uppermost of them.
  constexpr std::uint64_t kOdd = 0x00FF00FF00FF00FFU;
  std::uint64_t pairs = 0;
  for (const std::uint64_t word : WordsOf(lanes)) {
    const std::uint64_t positive = word ^ 0x8080808080808080U;
    pairs += (positive & kOdd) + (positive >> 8U & kOdd);
  }
  const auto sum = static_cast<int>(pairs * 0x0001000100010001U >> 48U);
  return sum - static_cast<int>(sizeof(L)) * 128;
}

/// Sets the last `count` lanes, which are not all, to -1, the others to 0.
template <typename L>
[[gnu::always_inline]] inline void SetLastLanes(std::size_t count, L& lanes) {
  static constexpr auto kMasks = [] {
    std::array<signed char, 2 * sizeof(L)> masks{};
    for (std::size_t i = sizeof(L); i < masks.size(); ++i) masks[i] = -1;
    return masks;
  }();
  LoadLanes(kMasks.data() + count, lanes);
}

/// Whether the processor has registers for `WideLanes`.
bool HasWideLanes();

/// What is put in front of a function that is for such processors.
#if defined(__x86_64__)
#define TARVEL_FOR_WIDE_LANES [[gnu::target("avx2")]]
#else
#define TARVEL_FOR_WIDE_LANES
#endif

/// How often `byte` stands in `text`.
std::size_t CountByte(std::string_view text, char byte);

}  // namespace tarvel
