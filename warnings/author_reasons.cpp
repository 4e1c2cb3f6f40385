// SPDX-License-Identifier: MIT
#include "warnings/author_reasons.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <vector>

#include "core/byte_set.h"
#include "core/name_list.h"
#include "core/text_primitives.h"
#include "warnings/bibtex_names.h"
#include "warnings/warnings.h"

namespace tarvel {

namespace {

constexpr std::size_t kNone = std::string_view::npos;

constexpr ByteSet kBetweenWords(" ~");

bool HasComma(std::string_view name) { return name.find(',') != kNone; }

/// The first name of a list that `test` is true of; empty when there is none.
template <typename Test>
std::string_view FirstName(std::string_view list, const Test& test) {
  NameParts names(list);
  while (const auto name = names.Next()) {
    if (test(*name)) return *name;
  }
  return {};
}

/// The name of a list of one; empty when there are more, or none.
std::string_view OnlyName(std::string_view list) {
  NameParts names(list);
  const auto name = names.Next();
  return name && !names.Next() ? *name : std::string_view();
}

using namespace std::string_view_literals;

/// A few words, letter case aside. Most of what they are compared with differs in its first letter.
template <std::size_t N>
class FewWords {
 public:
  constexpr explicit FewWords(const std::array<std::string_view, N>& words)
      : words_(words), initials_(InitialsOf(words)) {}

  bool Holds(std::string_view word) const {
    return !word.empty() && initials_.Holds(word.front()) &&
           std::any_of(words_.begin(), words_.end(),
                       [word](std::string_view other) { return EqualNoCase(word, other); });
  }

 private:
  static constexpr ByteSet InitialsOf(const std::array<std::string_view, N>& words) {
    std::array<char, 2 * N> initials{};
    for (std::size_t i = 0; i < N; ++i) {
      initials[2 * i] = ToUpper(words[i].front());
      initials[2 * i + 1] = ToLower(words[i].front());
    }
    return ByteSet({initials.data(), initials.size()});
  }

  std::array<std::string_view, N> words_;
  ByteSet initials_;
};

/// Words before a surname that belong to it.
constexpr FewWords kParticles(std::array{"van"sv,   "von"sv, "der"sv, "den"sv, "de"sv,  "del"sv,
                                         "della"sv, "di"sv,  "da"sv,  "dos"sv, "das"sv, "du"sv,
                                         "la"sv,    "le"sv,  "ten"sv, "ter"sv, "zu"sv,  "zur"sv,
                                         "vom"sv,   "af"sv,  "av"sv});
constexpr FewWords kSuffixes(std::array{"JR"sv, "SR"sv, "II"sv, "III"sv, "IV"sv});

/// Cuts the first word from the text; empty when none is left.
std::string_view TakeWord(std::string_view& rest) {
  const std::size_t begin = kBetweenWords.FindOther(rest, 0);
  const std::size_t end = kBetweenWords.Find(rest, begin);
  const std::string_view word = rest.substr(begin, end - begin);
  rest.remove_prefix(end);
  return word;
}

bool IsSuffix(std::string_view word) { return kSuffixes.Holds(Trim(word, ".,")); }

/// What follows each "{" of a text, up to the next brace.
std::vector<std::string_view> AfterBraces(std::string_view text) {
  std::vector<std::string_view> pieces;
  for (std::size_t at = text.find('{'); at != kNone; at = text.find('{', at)) {
    const std::size_t end = text.find_first_of("{}", ++at);
    pieces.push_back(text.substr(at, end - at));
  }
  return pieces;
}

/// What follows the braces of a list, for searches.
class BracedPieces {
 public:
  explicit BracedPieces(std::string_view list) : list_(list) {}

  /// Whether a piece begins with the text. The first call takes the list apart.
  bool Begins(std::string_view text) {
    if (!pieces_) {
      pieces_ = AfterBraces(list_);
      std::sort(pieces_->begin(), pieces_->end());
    }
    const auto found = std::lower_bound(pieces_->begin(), pieces_->end(), text);
    return found != pieces_->end() && found->starts_with(text);
  }

 private:
  std::string_view list_;
  std::optional<std::vector<std::string_view>> pieces_;  // sorted
};

/// Whether words in braces stand joined in the new list, whose pieces are given.
bool LostBlanks(std::string_view name, BracedPieces& joined) {
  const std::vector<std::string_view> pieces = AfterBraces(name);
  return std::any_of(pieces.begin(), pieces.end(), [&joined](std::string_view piece) {
    std::string squeezed(Trim(piece, " "));
    return std::erase(squeezed, ' ') != 0 && joined.Begins(squeezed);
  });
}

/// Whether the word is made of one to three capitals, as the initials of a list of PubMed's are.
bool LooksLikeInitials(std::string_view word) {
  constexpr std::size_t kMostInitials = 3;
  std::size_t capitals = 0;
  for (const char byte : word) {
    if (byte >= 'A' && byte <= 'Z') {
      ++capitals;
    } else if (byte != '.') {
      return false;
    }
  }
  return capitals != 0 && capitals <= kMostInitials;
}

/// Whether the word is one of a first name in full: it has more letters than a pair of initials,
/// and no full stop. A UTF-8 character counts as one letter.
bool IsFullWord(std::string_view word) {
  if (word.find('.') != kNone || kParticles.Holds(Trim(word, ",")) || IsSuffix(word)) return false;
  std::size_t letters = 0;
  bool begins_low = false;
  bool ends_low = false;
  for (const char byte : word) {
    if (!IsLetter(byte) && static_cast<unsigned char>(byte) < 0xC0) continue;
    ++letters;
    ends_low = byte >= 'a' && byte <= 'z';
    begins_low = begins_low || (letters == 1 && ends_low);
  }
  return letters > 2 || (letters == 2 && ends_low && !begins_low);  // "Al", not "JP" and "et"
}

/// Why a name that was rearranged may have become wrong; empty when it has not. `joined`: what
/// follows the braces of the new list. `commas`: the list has names with commas. `has_dots`: the
/// new list ends with the dots for "and others".
std::string_view WhyDoubtfulName(std::string_view name, BracedPieces& joined, bool commas,
                                 bool has_dots) {
  std::size_t words = 0;
  std::string_view first;
  std::string_view last;
  bool has_suffix = false;
  bool ends_in_suffix = false;
  bool has_particle = false;  // before another word
  std::string_view rest = name;
  for (std::string_view word = TakeWord(rest); !word.empty(); ++words) {
    const std::string_view next = TakeWord(rest);
    first = words == 0 ? word : first;
    last = word;
    has_suffix = has_suffix || IsSuffix(word);
    ends_in_suffix = IsSuffix(word) && (word.starts_with("Jr") || word.starts_with("Sr"));
    has_particle = has_particle || (!next.empty() && kParticles.Holds(word));
    word = next;
  }
  if (words == 0) return {};
  if (words == 1 && EqualNoCase(Trim(name, " ~"), "others")) {
    return has_dots ? ""sv : "became a person"sv;
  }
  if (words == 2 && ends_in_suffix && !commas) {
    return "has a suffix and no first name: it ends in a comma now, which BibTeX refuses";
  }
  if (has_suffix) return "has a suffix, which may have moved";
  if (LostBlanks(name, joined)) return "lost the blanks in its braces";
  if (commas) return {};
  if (words == 1) return "has one word and was paired with another name";
  if (words > 1 && IsFullWord(first) && LooksLikeInitials(last)) {
    return "ends in what looks like initials, which became the surname";
  }
  return has_particle ? "has a particle, which became an initial"sv : ""sv;
}

/// The first name with a first name in full; empty when all have initials.
std::string_view FullFirstName(std::string_view list) {
  return FirstName(list, [](std::string_view name) {
    std::string_view rest = name.substr(std::min(name.find(','), name.size()));
    std::string_view word = TakeWord(rest);
    while (!word.empty() && !IsFullWord(word)) word = TakeWord(rest);
    return !word.empty();
  });
}

}  // namespace

std::string WhyNoKnownForm(std::string_view list) {
  const std::string_view plain =
      FirstName(list, [](std::string_view name) { return !HasComma(name); });
  if (plain.empty()) {
    if (list.find('.') != kNone) {
      const std::string_view full = FullFirstName(list);
      if (full.empty()) return {};
      if (std::count(full.begin(), full.end(), ',') > 2) {
        return Quoted(full) + " has more than two commas; write 'and' between the names";
      }
      if (ContainsNoCase(full, " and ")) {
        return Quoted(full) + " was one name, as its 'and' was in capitals; run again";
      }
      return Quoted(full) + " has a full first name, but the list has full stops, as initials have";
    }
    const std::string_view only = OnlyName(list);
    if (only.empty()) return {};
    return Quoted(only) + " is a single name with a comma";
  }
  if (HasComma(list)) return Quoted(plain) + " has no comma, but other names have one";
  const std::string_view word = FirstName(
      list, [](std::string_view name) { return kBetweenWords.Find(name, 0) == name.size(); });
  return Quoted(word.empty() ? plain : word) + " has no first names";
}

std::string WhyDoubtful(std::string_view old_list, std::string_view new_list) {
  if (old_list == new_list) return {};
  BracedPieces joined(new_list);
  const bool commas = HasComma(old_list);
  const bool has_dots = new_list.ends_with("{\\ldots}");
  std::string reasons;
  NameParts names(old_list);
  while (const auto name = names.Next()) {
    const std::string_view reason = WhyDoubtfulName(*name, joined, commas, has_dots);
    if (reason.empty()) continue;
    reasons.append(reasons.empty() ? "" : "; ").append(Quoted(*name)).append(" ").append(reason);
  }
  if (reasons.empty()) reasons = WhatChanged(old_list, new_list);
  const bool raised = !old_list.empty() && !new_list.empty() && old_list.front() >= 'a' &&
                      old_list.front() <= 'z' && new_list.front() == ToUpper(old_list.front());
  if (raised && kParticles.Holds(TakeWord(old_list))) {
    reasons.append(reasons.empty() ? "" : "; ").append("the first name's particle is a capital");
  }
  return reasons;
}

}  // namespace tarvel
