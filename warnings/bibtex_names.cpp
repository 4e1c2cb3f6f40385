// SPDX-License-Identifier: MIT
#include "warnings/bibtex_names.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "core/byte_set.h"
#include "core/text_primitives.h"
#include "warnings/warnings.h"

namespace tarvel {

namespace {

constexpr std::array<std::string_view, 3> kOpenEnds{"et al", "ldots", "thers"};

bool IsBetweenWords(char byte) { return byte == ' ' || byte == '\t' || byte == '~'; }

/// Letters of plain ASCII, digits and bytes from 128 on.
constexpr bool Counts(char byte) {
  return IsLetter(byte) || (byte >= '0' && byte <= '9') || byte < 0;
}

/// The size of the separator that `text` begins with; 0: it begins with none.
std::size_t AndSize(std::string_view text) {
  constexpr std::string_view kAnd = "and";
  if (text.size() <= kAnd.size() || !IsBetweenWords(text[0]) || ToUpper(text[1]) != 'A') return 0;
  if (!EqualNoCase(text.substr(1, kAnd.size()), kAnd)) return 0;
  const std::size_t size = 1 + kAnd.size();
  return size == text.size() || IsBetweenWords(text[size]) ? size : 0;
}
std::size_t CommaSize(std::string_view text) { return text[0] == ',' ? 1 : 0; }
std::size_t BlankSize(std::string_view text) { return IsBetweenWords(text[0]) ? 1 : 0; }

/// What cuts a text into parts.
struct Separator {
  ByteSet stops;  // what it begins with, and braces
  std::size_t (*size)(std::string_view text);
};
constexpr Separator kAnd{ByteSet(" \t~{}"), AndSize};
constexpr Separator kComma{ByteSet(",{}"), CommaSize};
constexpr Separator kBlank{ByteSet(" \t~{}"), BlankSize};

/// Cuts the first part that is not blank from the text, up to a separator outside braces; empty
/// when none is left.
template <const Separator& kSeparator>
std::string_view TakePart(std::string_view& rest) {
  std::string_view part;
  while (part.empty() && !rest.empty()) {
    int depth = 0;
    std::size_t size = 0;
    std::size_t end = kSeparator.stops.Find(rest, 0);
    for (; end < rest.size(); end = kSeparator.stops.Find(rest, end + 1)) {
      depth += (rest[end] == '{' ? 1 : 0) - (rest[end] == '}' ? 1 : 0);
      size = depth == 0 ? kSeparator.size(rest.substr(end)) : 0;
      if (size > 0) break;
    }
    part = Trim(rest.substr(0, end), kBlanks);
    rest.remove_prefix(end + size);
  }
  return part;
}

/// Whether the word is a particle: the first of its letters and braces is a small letter.
bool IsParticle(std::string_view word) {
  const auto* const first = std::find_if(word.begin(), word.end(), [](char byte) {
    return IsLetter(byte) || byte < 0 || byte == '{';
  });
  return first != word.end() && *first >= 'a' && *first <= 'z' && word.front() != '\\';
}

/// Whether what counts of two texts is the same, letter case aside.
bool HaveSameEssence(std::string_view one, std::string_view other) {
  if (one == other) return true;
  const auto* at = one.begin();
  const auto* const end = one.end();
  for (const char byte : other) {
    if (!Counts(byte)) continue;
    at = std::find_if(at, end, Counts);
    if (at == end || ToUpper(*at++) != ToUpper(byte)) return false;
  }
  return std::none_of(at, end, Counts);
}

/// A person's name in BibTeX's parts.
struct Name {
  std::string_view surname;  // with the particle and a suffix
  std::string_view first;
};

/// The text from the beginning of one of its parts to the end of another.
std::string_view Span(std::string_view from, std::string_view to) {
  return {from.data(), static_cast<std::size_t>(to.data() + to.size() - from.data())};
}

/// The surname begins with the first particle, or is the last word.
Name NameWithoutCommas(std::string_view text) {
  std::string_view rest = text;
  std::string_view surname;
  for (std::string_view word = TakePart<kBlank>(rest); !word.empty();
       word = TakePart<kBlank>(rest)) {
    surname = word;
    if (IsParticle(word)) break;
  }
  if (surname.empty()) return {};
  const auto begin = static_cast<std::size_t>(surname.data() - text.data());
  return {text.substr(begin), text.substr(0, begin)};
}

Name NameOf(std::string_view text) {
  const std::string_view surname = TakePart<kComma>(text);
  const std::string_view second = TakePart<kComma>(text);
  if (second.empty()) return NameWithoutCommas(surname);
  std::string_view last = TakePart<kComma>(text);
  if (last.empty()) return {surname, second};
  for (std::string_view part = last; !part.empty(); part = TakePart<kComma>(text)) last = part;
  return {Span(surname, second), last};
}

/// The words before a surname, as far as they are compared.
struct FirstNames {
  std::string initials;   // the first byte that counts of every part of the words, in capitals
  std::size_t signs = 0;  // words without any letter
};

/// `spelled`: of a word of capitals alone, such as JP, all letters are initials.
FirstNames FirstNamesOf(std::string_view names, bool spelled) {
  FirstNames result;
  for (std::string_view word = TakePart<kBlank>(names); !word.empty();
       word = TakePart<kBlank>(names)) {
    const bool all = spelled && std::none_of(word.begin(), word.end(), [](char byte) {
                       return (byte >= 'a' && byte <= 'z') || byte == '\\' || byte < 0;
                     });
    bool begins = true;
    bool is_sign = true;
    for (const char byte : word) {
      const bool counts = Counts(byte);
      if (counts && (begins || all)) result.initials += ToUpper(byte);
      if (counts) is_sign = false;
      begins = !counts && (begins || byte == '-' || byte == '.');
    }
    if (is_sign) ++result.signs;
  }
  return result;
}

/// What the bytes of plain first names are. Any other is none of such a name.
enum class NameByte : std::uint8_t { kOther, kCounts, kSpace, kBreak, kApostrophe };
constexpr std::array<NameByte, 256> kNameBytes = [] {
  std::array<NameByte, 256> kinds{};
  for (std::size_t code = 0; code < kinds.size(); ++code) {
    if (Counts(static_cast<char>(code))) kinds[code] = NameByte::kCounts;
  }
  kinds[' '] = NameByte::kSpace;
  kinds['-'] = kinds['.'] = NameByte::kBreak;
  kinds['\''] = NameByte::kApostrophe;
  return kinds;
}();
NameByte KindOf(char byte) { return kNameBytes[static_cast<unsigned char>(byte)]; }

/// Cuts the first initial and what stands between it and the next.
void TakeInitial(std::string_view& initials) {
  std::size_t at = 1;
  while (at < initials.size() && KindOf(initials[at]) == NameByte::kCounts) ++at;
  while (at < initials.size() &&
         (initials[at] == '.' || initials[at] == '-' || initials[at] == ' ')) {
    ++at;
  }
  initials.remove_prefix(at);
}

/// Whether all words of `names` begin with a capital or a byte from 128 on, hold no braces and no
/// command, and have exactly these initials.
bool ArePlainInitials(std::string_view names, std::string_view initials) {
  bool begins = true;  // a part of a word
  NameByte before = NameByte::kSpace;
  for (const char byte : names) {
    const NameByte kind = KindOf(byte);
    const bool begins_word = before == NameByte::kSpace && kind != NameByte::kSpace;
    const bool is_capital = (byte >= 'A' && byte <= 'Z') || byte < 0;
    if (kind == NameByte::kOther || (begins_word && !is_capital)) return false;
    before = kind;
    if (kind == NameByte::kCounts && begins) {
      if (initials.empty() || initials.front() != ToUpper(byte)) return false;
      TakeInitial(initials);
      begins = false;
    }
    begins = begins || kind == NameByte::kSpace || kind == NameByte::kBreak;
  }
  return initials.empty();
}

/// Whether the surname is one word for BibTeX, with and without a comma after it.
bool IsPlainSurname(std::string_view surname) {
  int depth = 0;
  for (const char byte : surname) {
    if ((byte >= 0 && byte <= ' ') || byte == '~' || byte == ',') return false;
    depth += (byte == '{' ? 1 : 0) - (byte == '}' ? 1 : 0);
  }
  return !surname.empty() && depth == 0;
}

/// Whether `after` is the surname of `before`, a comma, and the initials of plain first names, so
/// that BibTeX reads the same person. Most names that were rearranged are like this; to take both
/// apart for all of them took a sixth of Clean authors.
bool IsPlainlyTheSame(std::string_view before, std::string_view after) {
  const std::size_t comma = after.find(',');
  if (comma == std::string_view::npos) return false;
  const std::string_view surname = after.substr(0, comma);
  const std::string_view initials = Trim(after.substr(comma + 1), " ");
  if (initials.empty() || before.size() <= surname.size() || !IsPlainSurname(surname)) return false;
  const std::size_t rest = before.size() - surname.size();
  if (before[rest - 1] == ' ' && before.ends_with(surname)) {
    return ArePlainInitials(before.substr(0, rest), initials);
  }
  return before[surname.size()] == ',' && before.starts_with(surname) &&
         ArePlainInitials(before.substr(surname.size() + 1), initials);
}

/// What is wrong with a name that became another; empty when nothing is.
std::string_view WhatChangedInName(std::string_view before, std::string_view after) {
  if (before == after || IsPlainlyTheSame(before, after)) return {};
  const Name old_name = NameOf(before);
  const Name new_name = NameOf(after);
  if (!HaveSameEssence(old_name.surname, new_name.surname)) return " has another surname now";
  const FirstNames old_first = FirstNamesOf(old_name.first, false);
  const FirstNames new_first = FirstNamesOf(new_name.first, false);
  if (old_first.signs > new_first.signs) return " lost a word without letters";
  const bool same = new_first.initials == old_first.initials ||
                    new_first.initials == FirstNamesOf(old_name.first, true).initials;
  return same ? "" : " has other initials now";
}

bool HasOpenEnd(std::string_view list) {
  return std::any_of(kOpenEnds.begin(), kOpenEnds.end(), [list](std::string_view end) {
    return list.find(end) != std::string_view::npos;
  });
}

}  // namespace

std::string WhatChanged(std::string_view old_list, std::string_view new_list) {
  std::string changes;
  std::string_view rest = old_list;
  std::size_t before = 0;
  std::size_t after = 0;
  while (!rest.empty() || !new_list.empty()) {
    const std::string_view old_name = TakePart<kAnd>(rest);
    const std::string_view new_name = TakePart<kAnd>(new_list);
    before += old_name.empty() ? 0 : 1;
    after += new_name.empty() ? 0 : 1;
    const std::string_view change = WhatChangedInName(old_name, new_name);
    if (change.empty()) continue;
    changes.append(changes.empty() ? "" : "; ").append(Quoted(old_name)).append(change);
  }
  if (before != after) {
    changes = "the number of names that BibTeX reads was " + std::to_string(before) + " and is " +
              std::to_string(after) + " now";
  }
  if (changes.empty() || HasOpenEnd(old_list)) return {};
  return changes;
}

}  // namespace tarvel
