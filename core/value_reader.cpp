// SPDX-License-Identifier: MIT
#include "core/value_reader.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "core/text_primitives.h"

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

constexpr std::uint64_t Repeat(char byte) {
  return 0x0101010101010101U * static_cast<unsigned char>(byte);
}

/// Whether one of eight bytes is zero.
constexpr bool HasZero(std::uint64_t bytes) {
  return ((bytes - Repeat('\x01')) & ~bytes & Repeat('\x80')) != 0;
}

constexpr bool IsStop(char byte) { return byte == '{' || byte == '}' || byte == '\n'; }

/// The offset of the next brace or line feed. Values have long stretches without one, so eight
/// bytes are looked at together.
std::size_t FindStop(std::string_view text, std::size_t from) {
  for (std::uint64_t bytes = 0; from + sizeof bytes <= text.size(); from += sizeof bytes) {
    std::memcpy(&bytes, text.data() + from, sizeof bytes);
    if (HasZero(bytes ^ Repeat('{')) || HasZero(bytes ^ Repeat('}')) ||
        HasZero(bytes ^ Repeat('\n'))) {
      break;
    }
  }
  while (from < text.size() && !IsStop(text[from])) ++from;
  return from;
}

}  // namespace

std::size_t SkipContinuationBlanks(std::string_view text, std::size_t from) {
  while (from < text.size() && IsContinuationBlank(text[from])) ++from;
  return from;
}

std::size_t FindValueStop(std::string_view text, std::size_t from, int& depth) {
  for (std::size_t at = FindStop(text, from);; at = FindStop(text, at + 1)) {
    if (at == text.size() || text[at] == '\n') return at;
    depth += text[at] == '{' ? 1 : -1;
    if (depth == 0) return at;
  }
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
