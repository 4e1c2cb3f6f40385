// SPDX-License-Identifier: MIT
#include "core/byte_marks.h"

#include <algorithm>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace tarvel {

ByteMarks::Word ByteMarks::PlainMarksOf(const char* bytes) {
  Word word;
  for (std::size_t at = 0; at < kWordSize; ++at) {
    const char byte = bytes[at];
    const std::uint64_t bit = std::uint64_t{1} << at;
    if (byte == '\n') word.breaks |= bit;
    if (byte == '@') word.ats |= bit;
    const bool breaks = byte == '\t' || byte == '\r' || byte == '\n';
    if ((static_cast<signed char>(byte) < ' ' && !breaks) || byte == 127) word.odd |= bit;
    if (byte == '{' || byte == '}' || byte == '"') word.braces |= bit;
    if (byte == '=' || byte == ',') word.separators |= bit;
  }
  return word;
}

#if defined(__SSE2__)

ByteMarks::Word ByteMarks::FastMarksOf(const char* bytes) {
  Word word;
  for (unsigned part = 0; part < 4; ++part) {
    const __m128i text = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + part * 16));
    const auto is = [text](char byte) { return _mm_cmpeq_epi8(text, _mm_set1_epi8(byte)); };
    const auto put = [part](__m128i found, std::uint64_t& bits) {
      bits |= std::uint64_t{static_cast<std::uint16_t>(_mm_movemask_epi8(found))} << (part * 16);
    };
    put(is('\n'), word.breaks);
    put(is('@'), word.ats);
    // Compared as signed bytes, so that those from 128 on are below a blank.
    const __m128i low = _mm_cmplt_epi8(text, _mm_set1_epi8(' '));
    const __m128i plain = _mm_or_si128(_mm_or_si128(is('\t'), is('\r')), is('\n'));
    put(_mm_or_si128(_mm_andnot_si128(plain, low), is(127)), word.odd);
    put(_mm_or_si128(_mm_or_si128(is('{'), is('}')), is('"')), word.braces);
    put(_mm_or_si128(is('='), is(',')), word.separators);
  }
  return word;
}

#else

ByteMarks::Word ByteMarks::FastMarksOf(const char* bytes) { return PlainMarksOf(bytes); }

#endif

/// Marks the window that begins with the word of the byte at `from`.
void ByteMarks::Load(std::size_t from) {
  begin_ = from / kWordSize * kWordSize;
  loaded_ = true;
  const std::size_t size =
      std::min(text_.size() - std::min(begin_, text_.size()), kWindow * kWordSize);
  const std::size_t whole = size / kWordSize;
  const auto marks_of = [this](const char* bytes) {
    return way_ == Way::kFastest ? FastMarksOf(bytes) : PlainMarksOf(bytes);
  };
  for (std::size_t i = 0; i < whole; ++i) {
    words_[i] = marks_of(text_.data() + begin_ + i * kWordSize);
  }
  if (whole == kWindow) return;
  std::array<char, kWordSize> rest{};
  std::copy_n(text_.data() + begin_ + whole * kWordSize, size - whole * kWordSize, rest.begin());
  words_[whole] = marks_of(rest.data());
  std::fill(words_.begin() + static_cast<std::ptrdiff_t>(whole) + 1, words_.end(), Word());
}

}  // namespace tarvel
