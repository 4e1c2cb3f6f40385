// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>

namespace tarvel {

/// A character of a UTF-8 text.
struct Utf8Character {
  std::size_t size = 0;  // in bytes; 0: there is no valid character
  char32_t code = 0;
};

/// The character at the start of `text`. Not valid are characters that are not whole, that could be
/// written in fewer bytes, surrogates and what is beyond U+10FFFF (RFC 3629).
Utf8Character DecodeUtf8(std::string_view text);

/// The offset of the first byte from `from` on at which no valid character begins; the size of the
/// text if all are valid. A character must begin at `from`.
std::size_t FindBadUtf8(std::string_view text, std::size_t from);

/// Whether all of `text` is valid.
bool IsUtf8(std::string_view text);

/// Whether the byte continues a character of several bytes.
constexpr bool ContinuesUtf8(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80;
}

}  // namespace tarvel
