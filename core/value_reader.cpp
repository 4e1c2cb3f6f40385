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

bool IsBlank(char byte) {
  const auto code = static_cast<signed char>(byte);
  return code <= ' ' && code != 0;
}

/// Puts the next line of the stream in the place of everything from `at` on, and again while it is
/// blank to its end; gives the place of its first byte that is not blank, or npos at the end of the
/// file.
std::size_t ContinueLine(Line& line, LineStream& stream, std::size_t at, std::size_t limit) {
  for (;; limit = limits::kShortLine) {
    const auto next = stream.ReadLine(limit);
    if (!next) return std::string_view::npos;
    std::string& text = line.Edit();
    text.resize(at);
    text.append(*next);
    const std::size_t start = SkipBlanks(text, at);
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

constexpr bool IsDecision(char byte) { return byte == '{' || byte == '}' || byte == '\n'; }

/// The place of the next byte at which copying a value has something to decide: a brace or a line
/// feed. Most values have long stretches without one, so eight bytes are looked at together.
std::size_t FindDecision(std::string_view text, std::size_t from) {
  for (std::uint64_t bytes = 0; from + sizeof bytes <= text.size(); from += sizeof bytes) {
    std::memcpy(&bytes, text.data() + from, sizeof bytes);
    if (HasZero(bytes ^ Repeat('{')) || HasZero(bytes ^ Repeat('}')) ||
        HasZero(bytes ^ Repeat('\n'))) {
      break;
    }
  }
  while (from < text.size() && !IsDecision(text[from])) ++from;
  return from;
}

/// Copies the value that begins at `at`, `depth` braces deep.
bool CopyValue(Line& line, LineStream& stream, std::size_t at, int depth, std::string& value) {
  for (;;) {
    const std::string_view text = line.Text();
    const std::size_t end = FindDecision(text, at);
    value.append(text.substr(at, end - at));
    if (end == text.size()) return true;
    if (text[end] == '\n') {
      at = ContinueLine(line, stream, end, limits::kContinuation);
      if (at == std::string_view::npos) return false;
      value.push_back(' ');
      continue;
    }
    if (text[end] == '}' && depth == 1) return true;
    if (text[end] == '{') {
      ++depth;
    } else if (depth > 1) {
      --depth;
    }
    value.push_back(text[end]);
    at = end + 1;
  }
}

}  // namespace

std::size_t SkipBlanks(std::string_view text, std::size_t from) {
  while (from < text.size() && IsBlank(text[from])) ++from;
  return from;
}

bool ReadFieldValue(Line& line, LineStream& stream, ValueStart start, int depth,
                    std::string& value) {
  value.clear();
  std::size_t at = 0;
  if (start == ValueStart::kAfterBrace) {
    const std::size_t brace = line.Text().find('{');
    if (brace == std::string_view::npos) return false;
    at = brace + 1;
    ++depth;
  }
  if (start == ValueStart::kSkipBlanks) {
    at = SkipBlanks(line.Text(), 0);
  } else if (at == line.Text().size()) {
    // The line ends where the value should begin: it begins on the next one.
    at = ContinueLine(line, stream, at, limits::kShortLine);
    if (at == std::string_view::npos) return false;
  }
  return CopyValue(line, stream, at, depth, value);
}

std::string_view TextAfterValue(std::string_view line) {
  std::size_t open = line.find('{');
  std::size_t depth = 0;
  for (std::size_t close = open; close != std::string_view::npos;) {
    close = line.find('}', close + 1);
    for (; open < close; open = line.find('{', open + 1)) ++depth;
    if (close != std::string_view::npos && --depth == 0)
      return Trim(line.substr(close + 1), " \t\r\n,");
  }
  return {};
}

}  // namespace tarvel
