// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

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

/// Takes as many lanes as `part` has, from lane number `first` on.
template <typename L, typename P>
[[gnu::always_inline]] inline void TakeLanes(const L& lanes, std::size_t first, P& part) {
  std::memcpy(&part, reinterpret_cast<const char*>(&lanes) + first, sizeof(P));
}

/// The lanes as words.
template <typename L>
[[gnu::always_inline]] inline auto WordsOf(const L& lanes) {
  std::array<std::uint64_t, sizeof(L) / sizeof(std::uint64_t)> words{};
  std::memcpy(words.data(), &lanes, sizeof(L));
  return words;
}

/// A bit for each lane that is negative; the first lane's is the lowest.
template <typename L>
[[gnu::always_inline]] inline std::uint64_t NegativeLanes(const L& lanes) {
  std::uint64_t mask = 0;
#if defined(__SSE2__)
  for (std::size_t i = 0; i < sizeof(L); i += sizeof(Lanes)) {
    __m128i part;
    TakeLanes(lanes, i, part);
    mask |= static_cast<std::uint64_t>(_mm_movemask_epi8(part)) << i;
  }
#else
  for (std::size_t i = 0; i < sizeof(L); ++i) {
    mask |= static_cast<std::uint64_t>(lanes[i] < 0 ? 1U : 0U) << i;
  }
#endif
  return mask;
}

/// Whether any lane is negative.
template <typename L>
[[gnu::always_inline]] inline bool HasNegative(const L& lanes) {
  Lanes half;
  Lanes other;
  TakeLanes(lanes, 0, half);
  TakeLanes(lanes, sizeof(L) - sizeof(Lanes), other);
  return NegativeLanes(half | other) != 0;
}

/// The sum of all lanes.
template <typename L>
[[gnu::always_inline]] inline int SumOfLanes(const L& lanes) {
#if defined(__SSE2__)
  __m128i sums{};
  for (std::size_t i = 0; i < sizeof(L); i += sizeof(Lanes)) {
    __m128i part;
    TakeLanes(lanes, i, part);
    // Each lane is made positive by 128 more.
    sums = _mm_add_epi64(sums, _mm_sad_epu8(_mm_xor_si128(part, _mm_set1_epi8(-128)), __m128i{}));
  }
  const auto words = WordsOf(sums);
  return static_cast<int>(words[0] + words[1]) - static_cast<int>(sizeof(L)) * 128;
#else
  int sum = 0;
  for (std::size_t i = 0; i < sizeof(L); ++i) sum += lanes[i];
  return sum;
#endif
}

/// Sets the first `count` lanes of the two, which are not all, to -1, the others to 0.
template <typename L>
[[gnu::always_inline]] inline void SetFirstLanes(std::size_t count, L& one, L& two) {
  static constexpr auto kMasks = [] {
    std::array<signed char, 4 * sizeof(L)> masks{};
    for (std::size_t i = 0; i < 2 * sizeof(L); ++i) masks[i] = -1;
    return masks;
  }();
  LoadLanes(kMasks.data() + 2 * sizeof(L) - count, one);
  LoadLanes(kMasks.data() + 3 * sizeof(L) - count, two);
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
