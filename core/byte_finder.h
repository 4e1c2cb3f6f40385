// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace tarvel {

/// The bytes from `first` to `last`, compared as signed numbers: those from 128 on are below 0.
struct ByteRange {
  signed char first;
  signed char last;

  static constexpr ByteRange One(char byte) {
    return {static_cast<signed char>(byte), static_cast<signed char>(byte)};
  }
};

/// The number of bytes that are compared at once.
inline constexpr std::size_t kMarkedBytes = 64;

/// The bytes of a text that are in one of the ranges, marked many at a time: a loop over single
/// bytes took most of the time of a scan.
template <ByteRange... kRanges>
struct ByteClass {
  static constexpr bool Holds(char byte) {
    const auto code = static_cast<signed char>(byte);
    return ((code >= kRanges.first && code <= kRanges.last) || ...);
  }
  /// A bit for each of the bytes, the lowest for the first.
  static std::uint64_t PlainMarks(const char* bytes) {
    std::uint64_t marks = 0;
    for (std::size_t at = 0; at < kMarkedBytes; ++at) {
      marks |= std::uint64_t{Holds(bytes[at]) ? 1U : 0U} << at;
    }
    return marks;
  }
  /// The same in vector code, where the processor has any.
  static std::uint64_t Marks(const char* bytes) {
#if defined(__SSE2__)
    std::uint64_t marks = 0;
    for (std::size_t part = 0; part < 4; ++part) {
      const __m128i text = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + part * 16));
      const __m128i found = AnyOf(InRange(text, kRanges)...);
      marks |= std::uint64_t{static_cast<std::uint16_t>(_mm_movemask_epi8(found))} << (part * 16);
    }
    return marks;
#else
    return PlainMarks(bytes);
#endif
  }

#if defined(__SSE2__)
 private:
  static __m128i InRange(__m128i text, ByteRange range) {
    if (range.first == INT8_MIN && range.last == -1) return text;  // their highest bit is set
    if (range.first == range.last) return _mm_cmpeq_epi8(text, _mm_set1_epi8(range.first));
    const __m128i below = _mm_cmplt_epi8(text, _mm_set1_epi8(range.first));
    const __m128i beyond = _mm_cmpgt_epi8(text, _mm_set1_epi8(range.last));
    if (range.first == INT8_MIN) return _mm_xor_si128(beyond, _mm_set1_epi8(-1));
    return _mm_andnot_si128(_mm_or_si128(below, beyond), _mm_set1_epi8(-1));
  }
  template <typename... Found>
  static __m128i AnyOf(__m128i first, Found... others) {
    ((first = _mm_or_si128(first, others)), ...);
    return first;
  }
#endif
};

/// Finds the next byte of one of several classes. Calls with rising offsets take linear time
/// together; a lower offset costs one more comparison of 64 bytes.
template <typename... Classes>
class FinderOf {
  using Words = std::array<std::uint64_t, sizeof...(Classes)>;

 public:
  static constexpr std::size_t kWordSize = kMarkedBytes;

  /// `text` must outlive this.
  explicit FinderOf(std::string_view text) : text_(text) {}

  /// The offset of the first byte of the class, counted from 0, from `from` on, or `end`, at most
  /// the size of the text.
  template <std::size_t kClass = 0>
  std::size_t Find(std::size_t from, std::size_t end) {
    for (std::size_t at = from; at < end; at = (at / kWordSize + 1) * kWordSize) {
      if (at / kWordSize != word_) Mark(at / kWordSize);
      const std::uint64_t bits = bits_[kClass] >> (at % kWordSize);
      if (bits != 0) return std::min(at + static_cast<std::size_t>(std::countr_zero(bits)), end);
    }
    return end;
  }

 private:
  void Mark(std::size_t word) {
    word_ = word;
    const std::string_view bytes = text_.substr(word * kWordSize, kWordSize);
    bits_ = bytes.size() == kWordSize ? Bits(bytes.data()) : BitsOfLast(bytes);
  }
  static Words Bits(const char* bytes) { return {Classes::Marks(bytes)...}; }
  /// The marks of the text's last bytes. The bits after them mean nothing.
  static Words BitsOfLast(std::string_view bytes) {
    std::array<char, kWordSize> word{};
    std::copy(bytes.begin(), bytes.end(), word.begin());
    return Bits(word.data());
  }

  std::string_view text_;
  std::size_t word_ = static_cast<std::size_t>(-1);  // that `bits_` marks
  Words bits_{};
};

/// Finds the next byte that is in one of the ranges.
template <ByteRange... kRanges>
class ByteFinder : public ByteClass<kRanges...>, public FinderOf<ByteClass<kRanges...>> {
 public:
  using FinderOf<ByteClass<kRanges...>>::FinderOf;
};

/// Braces and quotes.
using BraceFinder = ByteFinder<ByteRange::One('{'), ByteRange::One('}'), ByteRange::One('"')>;
/// Bytes that are neither printable ASCII nor a tab nor break lines.
using OddFinder = ByteFinder<ByteRange{-128, '\b'}, ByteRange{'\v', '\f'}, ByteRange{14, 31},
                             ByteRange::One(127)>;

/// The classes of `StructureFinder`: braces, quotes and line feeds, which matter in values; and
/// these with what stands between names and values.
inline constexpr std::size_t kInValues = 0;
inline constexpr std::size_t kInTags = 1;

/// Bytes that give a library its structure.
using StructureFinder = FinderOf<
    ByteClass<ByteRange::One('{'), ByteRange::One('}'), ByteRange::One('"'), ByteRange::One('\n')>,
    ByteClass<ByteRange::One('{'), ByteRange::One('}'), ByteRange::One('"'), ByteRange::One('\n'),
              ByteRange::One('='), ByteRange::One(',')>>;

}  // namespace tarvel
