// SPDX-License-Identifier: MIT
#include "ops/prepare/text_facts.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

#include "core/ascii.h"
#include "core/byte_finder.h"

namespace tarvel {

namespace {

/// ORDER: `kWords`. Two letters of each word that are rare in texts, by the offset of the first.
constexpr std::array<std::size_t, kWords.size()> kRareLetters{0, 0, 1, 0, 0, 2, 0, 1, 0,
                                                              9, 2, 5, 1, 1, 3, 3, 1};

using Code = std::uint8_t;
constexpr Code kWord = 31;       // the number of the word that the bytes may be of, or 0
constexpr Code kStructure = 32;  // the first is a brace or a quote
constexpr Code kOddWhite = 64;   // white space that is no single blank
constexpr Code kSign = 128;      // the first is an "@", a "=", or the "j" of a "journal"
static_assert(kWords.size() < kWord);

/// What two bytes that follow each other mean. For nearly all it is nothing.
class PairCodes {
 public:
  constexpr PairCodes();

  /// The code of the two bytes at `at`, of which the second may stand after the end.
  Code At(std::string_view text, std::size_t at) const {
    return at + 1 < text.size() ? At(text.data() + at) : codes_[NumberOf(text[at], '\0')];
  }
  Code At(const char* bytes) const {
    std::uint16_t number = 0;
    std::memcpy(&number, bytes, sizeof number);
    return codes_[number];
  }

 private:
  static constexpr std::size_t NumberOf(char first, char second) {
    return std::bit_cast<std::uint16_t>(std::array{first, second});
  }
  /// Adds to the codes of all pairs of these bytes; of all second ones where none are given.
  constexpr void Mark(Code code, std::string_view first, std::string_view second = {});

  std::array<Code, 65536> codes_{};
};

constexpr void PairCodes::Mark(Code code, std::string_view first, std::string_view second) {
  for (const char one : first) {
    for (std::size_t i = 0; i < (second.empty() ? 256 : second.size()); ++i) {
      Code& marked = codes_[NumberOf(one, second.empty() ? static_cast<char>(i) : second[i])];
      marked = static_cast<Code>(marked | code);
    }
  }
}

constexpr PairCodes::PairCodes() {
  Mark(kStructure, "{}\"");
  Mark(kOddWhite, "\t\r\n");
  Mark(kOddWhite, " ", " ");
  Mark(kSign, "@=");
  Mark(kSign, "jJ", "oO \t\r\n");
  for (std::size_t word = 0; word < kWords.size(); ++word) {
    const std::string_view letters = kWords[word].substr(kRareLetters[word], 2);
    const std::array first{letters[0], ToUpper(letters[0])};
    const std::array second{letters[1], ToUpper(letters[1])};
    Mark(static_cast<Code>(word + 1), {first.data(), 2}, {second.data(), 2});
  }
}

constexpr PairCodes kCodes;

/// Whether the word stands around its rare letters, which are at `at`.
bool IsWordAround(std::string_view text, std::size_t at, std::size_t word) {
  const std::size_t before = kRareLetters[word];
  return before <= at && EqualNoCase(text.substr(at - before, kWords[word].size()), kWords[word]);
}

void TakeSign(char sign, TextFacts& facts) {
  if (sign == '@') {
    facts.has_at = true;
  } else if (sign == '=') {
    facts.has_equals = true;
  } else {
    facts.may_journal = true;
  }
}

/// Counts the braces of a text.
class Braces {
 public:
  explicit Braces(char delimiter) : delimiter_(delimiter) {}
  /// Whether a delimited text ends with the byte, a brace or a quote.
  bool End(char byte) {
    if (depth_ == 0 && (byte == delimiter_ || byte == '}')) return true;
    if (byte == '{') ++depth_;
    if (byte == '}') --depth_;
    return false;
  }

 private:
  char delimiter_;
  std::size_t depth_ = 0;
};

/// The first offset from `at` to before `last` where two bytes have a code, or `last`. Looks at
/// four at a time, as a jump for each byte would take most of the time.
inline std::size_t FindPair(std::string_view text, std::size_t at, std::size_t last) {
  const auto code_at = [=](std::size_t offset) -> std::uint32_t {
    return kCodes.At(text.data() + offset);
  };
  for (; at + 4 <= last; at += 4) {
    const std::uint32_t codes =
        code_at(at) | code_at(at + 1) << 8U | code_at(at + 2) << 16U | code_at(at + 3) << 24U;
    if (codes != 0) return at + static_cast<std::size_t>(std::countr_zero(codes)) / 8;
  }
  while (at < last && code_at(at) == 0) ++at;
  return at;
}

/// Collects the facts of the text from `at` to before `limit`, or to the brace or quote for which
/// `ends(byte)` is true; gives the offset where it ended.
template <typename Ends>
std::size_t Scan(std::string_view text, std::size_t at, std::size_t limit, TextFacts& facts,
                 Ends ends) {
  const std::size_t last = std::min(limit, text.size() - 1);  // its second byte is none
  for (;; ++at) {
    at = FindPair(text, at, last);
    if (at >= limit) return limit;
    const Code code = kCodes.At(text, at);
    if ((code & kStructure) != 0) {
      if (ends(text[at])) return at;
      if (text[at] == '{') facts.has_brace = true;
    }
    if ((code & kOddWhite) != 0) facts.is_plain = false;
    if ((code & kSign) != 0) TakeSign(text[at], facts);
    const std::size_t word = code & kWord;
    if (word != 0 && IsWordAround(text, at, word - 1)) facts.words |= WordBit(word - 1);
  }
}

}  // namespace

TextFacts FactsOf(std::string_view text) {
  TextFacts facts;
  if (!text.empty()) Scan(text, 0, text.size(), facts, [](char) { return false; });
  return facts;
}

std::size_t FindDelimiter(std::string_view bytes, std::size_t from, std::size_t limit,
                          char delimiter, TextFacts& facts) {
  facts = {};
  if (from >= limit) return limit;
  Braces braces(delimiter);
  return Scan(bytes, from, limit, facts, [&](char byte) { return braces.End(byte); });
}

std::size_t FindDelimiter(std::string_view bytes, std::size_t from, std::size_t limit,
                          char delimiter) {
  Braces braces(delimiter);
  BraceFinder finder(bytes);
  std::size_t at = finder.Find(from, limit);
  while (at < limit && !braces.End(bytes[at])) at = finder.Find(at + 1, limit);
  return at;
}

std::size_t FindOddWhite(std::string_view text, std::size_t from) {
  while (from < text.size() && (kCodes.At(text, from) & kOddWhite) == 0) ++from;
  return from;
}

}  // namespace tarvel
