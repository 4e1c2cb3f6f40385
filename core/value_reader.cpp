// SPDX-License-Identifier: MIT
#include "core/value_reader.h"

#include <algorithm>
#include <bit>

#include "core/text_primitives.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace tarvel {

namespace {

bool IsContinuationBlank(char byte) {
  const auto code = static_cast<signed char>(byte);
  return code <= ' ' && code != 0;
}

/// Puts the next line of the stream in place of everything from `at` on, and again while it is
/// blank to its end; returns the offset of its first byte that is not blank, or npos at the end of
/// the file.
std::size_t ContinueLine(Line& line, LineStream& stream, std::size_t at, std::size_t limit) {
  for (;; limit = limits::kShortLine) {
    const auto next = stream.ReadLine(limit);
    if (!next) return std::string_view::npos;
    std::string& text = line.Edit();
    text.resize(at);
    text.append(*next);
    const std::size_t start = SkipContinuationBlanks(text, at);
    if (start < text.size()) return start;
  }
}

/// The offset of the first brace or line feed from `from` on, or the size of the text. Compares 16
/// bytes at a time: a loop over single bytes took a tenth of Clean tags.
std::size_t FindBraceOrLineFeed(std::string_view text, std::size_t from) {
#if defined(__SSE2__)
  constexpr std::size_t kBlock = sizeof(__m128i);
  for (; from < text.size() && text.size() >= kBlock; from += kBlock) {
    // The last block begins with bytes that are passed over.
    const std::size_t begin = std::min(from, text.size() - kBlock);
    const std::string_view block = text.substr(begin, kBlock);
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(block.data()));
    const __m128i braces = _mm_or_si128(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('{')),
                                        _mm_cmpeq_epi8(bytes, _mm_set1_epi8('}')));
    const __m128i found = _mm_or_si128(braces, _mm_cmpeq_epi8(bytes, _mm_set1_epi8('\n')));
    const auto marks = static_cast<unsigned>(_mm_movemask_epi8(found)) >> (from - begin);
    if (marks != 0) return from + static_cast<std::size_t>(std::countr_zero(marks));
  }
#endif
  while (from < text.size() && !IsByteOf(text[from], "{}\n")) ++from;
  return std::min(from, text.size());
}

}  // namespace

std::size_t SkipContinuationBlanks(std::string_view text, std::size_t from) {
  while (from < text.size() && IsContinuationBlank(text[from])) ++from;
  return from;
}

std::size_t FindValueStop(std::string_view text, std::size_t from, int& depth) {
  while ((from = FindBraceOrLineFeed(text, from)) < text.size() && text[from] != '\n') {
    depth += text[from] == '{' ? 1 : -1;
    if (depth == 0 && text[from] == '}') break;
    ++from;
  }
  return from;
}

bool ReadFieldValue(Line& line, LineStream& stream, std::string& value) {
  value.clear();
  const std::size_t brace = line.Text().find('{');
  if (brace == std::string_view::npos) return false;
  std::size_t at = brace + 1;
  if (at == line.Text().size()) {
    // The line ends where the value should begin: it begins on the next one.
    at = ContinueLine(line, stream, at, limits::kShortLine);
  }
  for (int depth = 1; at != std::string_view::npos;) {
    const std::string_view text = line.Text();
    const std::size_t end = FindValueStop(text, at, depth);
    value.append(text.substr(at, end - at));
    if (depth == 0 || end == text.size()) return true;
    at = ContinueLine(line, stream, end, limits::kContinuation);
    if (at != std::string_view::npos) value.push_back(' ');
  }
  return false;  // the file ends inside the value
}

std::string_view TextAfterValue(std::string_view line) {
  const std::size_t brace = line.find('{');
  if (brace == std::string_view::npos) return {};
  int depth = 1;
  const std::size_t end = FindValueStop(line, brace + 1, depth);
  return depth == 0 ? Trim(line.substr(end + 1), " \t\r\n,") : std::string_view();
}

}  // namespace tarvel
