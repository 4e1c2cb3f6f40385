// SPDX-License-Identifier: MIT
#include "ops/prepare/text_facts.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#include "core/ascii.h"

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
  PairCodes();

  /// The number of the two bytes at `at`, of which the second may stand after the end.
  static std::size_t NumberAt(std::string_view text, std::size_t at) {
    return at + 1 < text.size() ? NumberOf(text.data() + at) : NumberOf(text[at], '\0');
  }
  static std::size_t NumberOf(const char* bytes) {
    std::uint16_t number = 0;
    std::memcpy(&number, bytes, sizeof number);
    return number;
  }
  Code operator[](std::size_t number) const { return codes_[number]; }

 private:
  static std::size_t NumberOf(char first, char second) {
    const std::array<char, 2> bytes{first, second};
    return NumberOf(bytes.data());
  }
  /// Adds to the codes of all pairs of these bytes; of all second ones where none are given.
  void Mark(Code code, std::string_view first, std::string_view second = {});

  std::array<Code, 65536> codes_{};
};

void PairCodes::Mark(Code code, std::string_view first, std::string_view second) {
  for (const char one : first) {
    for (int byte = 0; byte < 256; ++byte) {
      const auto other = static_cast<char>(byte);
      if (!second.empty() && second.find(other) == std::string_view::npos) continue;
      Code& marked = codes_[NumberOf(one, other)];
      marked = static_cast<Code>(marked | code);
    }
  }
}

PairCodes::PairCodes() {
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

/// Collects the facts of the text from `at` to before `limit`, or to the brace or quote for which
/// `ends(byte)` is true; gives the offset where it ended.
template <typename Ends>
std::size_t Scan(std::string_view text, std::size_t at, std::size_t limit, TextFacts& facts,
                 Ends ends) {
  static const PairCodes codes;
  const std::size_t last = std::min(limit, text.size() - 1);  // its second byte is none
  for (;; ++at) {
    while (at < last && codes[PairCodes::NumberOf(text.data() + at)] == 0) ++at;
    if (at >= limit) return limit;
    const Code code = codes[PairCodes::NumberAt(text, at)];
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

DelimitedText FindDelimiter(std::string_view bytes, std::size_t from, std::size_t limit,
                            char delimiter) {
  DelimitedText found;
  found.end = limit;
  if (from >= limit) return found;
  Braces braces(delimiter);
  found.end = Scan(bytes, from, limit, found.facts, [&](char byte) { return braces.End(byte); });
  found.is_closed = found.end < limit && bytes[found.end] == delimiter;
  return found;
}

}  // namespace tarvel
