// SPDX-License-Identifier: MIT
#include "core/utf8.h"

#include <array>

#include "core/byte_finder.h"

namespace tarvel {

namespace {

/// The characters of one size.
struct Form {
  unsigned char first_byte;  // the lowest; the next row's is beyond the highest
  char32_t lowest_code;      // what is lower is written in fewer bytes
  unsigned char code_bits;   // of the first byte
};
constexpr std::array<Form, 5> kForms{{{0x00, 0x00, 0x7F},  // one byte: ASCII
                                      {0xC0, 0x80, 0x1F},
                                      {0xE0, 0x800, 0x0F},
                                      {0xF0, 0x10000, 0x07},
                                      {0xF8, 0, 0}}};
constexpr char32_t kHighestCode = 0x10FFFF;

constexpr bool IsSurrogate(char32_t code) { return code >= 0xD800 && code <= 0xDFFF; }

using NonAsciiFinder = ByteFinder<ByteRange{-128, -1}>;

}  // namespace

Utf8Character DecodeUtf8(std::string_view text) {
  if (text.empty() || ContinuesUtf8(text.front())) return {};
  const auto first = static_cast<unsigned char>(text.front());
  std::size_t size = 1;
  while (size < kForms.size() && first >= kForms[size].first_byte) ++size;
  if (size == kForms.size() || text.size() < size) return {};
  const Form& form = kForms[size - 1];
  char32_t code = first & form.code_bits;
  for (const char byte : text.substr(1, size - 1)) {
    if (!ContinuesUtf8(byte)) return {};
    code = code << 6U | (static_cast<unsigned char>(byte) & 0x3FU);
  }
  if (code < form.lowest_code || code > kHighestCode || IsSurrogate(code)) return {};
  return {size, code};
}

std::size_t FindBadUtf8(std::string_view text, std::size_t from) {
  NonAsciiFinder non_ascii(text);
  for (std::size_t size = 0;; from += size) {
    from = non_ascii.Find(from, text.size());
    if (from == text.size()) return from;
    size = DecodeUtf8(text.substr(from)).size;
    if (size == 0) return from;
  }
}

bool IsUtf8(std::string_view text) { return FindBadUtf8(text, 0) == text.size(); }

}  // namespace tarvel
