// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

// Bytes as ASCII has them, whatever the locale: one from 128 on is neither a letter nor a blank.

namespace tarvel {

/// Upper-cases one byte as the POSIX locale does: 'a' to 'z' only, bytes above 127 stay.
constexpr char ToUpper(char byte) {
  return byte >= 'a' && byte <= 'z' ? static_cast<char>(byte - 'a' + 'A') : byte;
}

/// Lower-cases one byte: 'A' to 'Z' only.
constexpr char ToLower(char byte) {
  return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

constexpr bool IsLetter(char byte) {
  const char upper = ToUpper(byte);
  return upper >= 'A' && upper <= 'Z';
}

/// What stands between the words of a file, line breaks included.
inline constexpr std::string_view kBlanks = " \t\r\n";

constexpr bool IsBlank(char byte) {
  return byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n';
}
/// The same without line breaks.
constexpr bool IsBlankOrTab(char byte) { return byte == ' ' || byte == '\t'; }

/// Whether two texts are the same, letter case aside.
constexpr bool EqualNoCase(std::string_view one, std::string_view other) {
  return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                    [](char a, char b) { return ToUpper(a) == ToUpper(b); });
}

/// Whether the byte is one of a few. The compiler makes comparisons of it; `find` calls a function
/// for every byte, which took a tenth of Clean authors.
constexpr bool IsByteOf(char byte, std::string_view bytes) {
  return std::any_of(bytes.begin(), bytes.end(), [byte](char one) { return one == byte; });
}

/// The text without the bytes at its end for which `drops` is true.
constexpr std::string_view TrimEnd(std::string_view text, bool (*drops)(char)) {
  while (!text.empty() && drops(text.back())) text.remove_suffix(1);
  return text;
}
/// The text without those of `bytes` that stand at its ends.
constexpr std::string_view Trim(std::string_view text, std::string_view bytes) {
  while (!text.empty() && IsByteOf(text.front(), bytes)) text.remove_prefix(1);
  while (!text.empty() && IsByteOf(text.back(), bytes)) text.remove_suffix(1);
  return text;
}

/// The offset of the first byte from `from` on that is not blank, or the size of the text.
constexpr std::size_t SkipBlanks(std::string_view text, std::size_t from) {
  while (from < text.size() && IsBlank(text[from])) ++from;
  return std::min(from, text.size());
}

}  // namespace tarvel
