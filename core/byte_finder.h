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

/// Finds the next byte of a text that is in one of the ranges. Marks many bytes at a time: a loop
/// over single bytes took most of the time of a scan. Calls with rising offsets take linear time
/// together; a lower offset costs one more comparison of 64 bytes.
template <ByteRange... kRanges>
class ByteFinder {
 public:
  /// The number of bytes that are compared at once.
  static constexpr std::size_t kWordSize = 64;

  /// `text` must outlive this.
  explicit ByteFinder(std::string_view text) : text_(text) {}

  /// The offset of the first of these bytes from `from` on, or `end`, at most the size of the text.
  std::size_t Find(std::size_t from, std::size_t end) {
    for (std::size_t at = from; at < end; at = (at / kWordSize + 1) * kWordSize) {
      if (at / kWordSize != word_) Mark(at / kWordSize);
      const std::uint64_t marks = marks_ >> (at % kWordSize);
      if (marks != 0) return std::min(at + static_cast<std::size_t>(std::countr_zero(marks)), end);
    }
    return end;
  }

  static constexpr bool Holds(char byte) {
    const auto code = static_cast<signed char>(byte);
    return ((code >= kRanges.first && code <= kRanges.last) || ...);
  }
  /// A bit for each of the bytes, the lowest for the first.
  static std::uint64_t PlainMarks(const char* bytes) {
    std::uint64_t marks = 0;
    for (std::size_t at = 0; at < kWordSize; ++at) {
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
      const __m128i found = (InRange(text, kRanges) | ...);
      marks |= std::uint64_t{static_cast<std::uint16_t>(_mm_movemask_epi8(found))} << (part * 16);
    }
    return marks;
#else
    return PlainMarks(bytes);
#endif
  }

 private:
#if defined(__SSE2__)
  static __m128i InRange(__m128i text, ByteRange range) {
    const __m128i first = _mm_set1_epi8(range.first);
    if (range.first == range.last) return _mm_cmpeq_epi8(text, first);
    return ~(_mm_cmplt_epi8(text, first) | _mm_cmpgt_epi8(text, _mm_set1_epi8(range.last)));
  }
#endif
  /// Marks a word. The bits after the end of the text mean nothing.
  void Mark(std::size_t word) {
    word_ = word;
    const std::string_view bytes = text_.substr(word * kWordSize, kWordSize);
    std::array<char, kWordSize> last{};
    const bool is_last = bytes.size() < kWordSize;
    if (is_last) std::copy(bytes.begin(), bytes.end(), last.begin());
    marks_ = Marks(is_last ? last.data() : bytes.data());
  }

  std::string_view text_;
  std::size_t word_ = static_cast<std::size_t>(-1);  // that `marks_` marks
  std::uint64_t marks_ = 0;
};

/// Braces and quotes.
using BraceFinder = ByteFinder<ByteRange::One('{'), ByteRange::One('}'), ByteRange::One('"')>;
/// Bytes that are neither printable ASCII nor a tab nor break lines.
using OddFinder = ByteFinder<ByteRange{-128, '\b'}, ByteRange{'\v', '\f'}, ByteRange{14, 31},
                             ByteRange::One(127)>;

/// Bytes that give a library its structure.
using StructureFinder = ByteFinder<ByteRange::One('{'), ByteRange::One('}'), ByteRange::One('"'),
                                   ByteRange::One('\n'), ByteRange::One('='), ByteRange::One(',')>;

}  // namespace tarvel
