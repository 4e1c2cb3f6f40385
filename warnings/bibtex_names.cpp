// SPDX-License-Identifier: MIT
#include "warnings/bibtex_names.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>
#include <vector>

#include "core/byte_set.h"
#include "core/text_primitives.h"
#include "warnings/warnings.h"

namespace tarvel {

namespace {

constexpr std::array<std::string_view, 3> kOpenEnds{"et al", "ldots", "thers"};

/// What separators begin with, and braces.
constexpr ByteSet kStops(" \t~,{}");

using Texts = std::vector<std::string_view>;

bool IsBetweenWords(char byte) { return byte == ' ' || byte == '\t' || byte == '~'; }

/// Letters of plain ASCII, digits and bytes from 128 on.
bool Counts(char byte) { return IsLetter(byte) || (byte >= '0' && byte <= '9') || byte < 0; }

/// The size of the separator that `text` begins with; 0: it begins with none.
std::size_t AndSize(std::string_view text) {
  constexpr std::string_view kAnd = "and";
  if (text.size() <= kAnd.size() || !IsBetweenWords(text[0])) return 0;
  if (!EqualNoCase(text.substr(1, kAnd.size()), kAnd)) return 0;
  const std::size_t size = 1 + kAnd.size();
  return size == text.size() || IsBetweenWords(text[size]) ? size : 0;
}
std::size_t CommaSize(std::string_view text) { return text[0] == ',' ? 1 : 0; }
std::size_t BlankSize(std::string_view text) { return IsBetweenWords(text[0]) ? 1 : 0; }

/// The parts of the text between separators outside braces that are not blank.
template <typename Size>
Texts Split(std::string_view text, const Size& separator) {
  Texts parts;
  std::size_t begin = 0;
  int depth = 0;
  const auto add = [&](std::size_t end) {
    const std::string_view part = Trim(text.substr(begin, end - begin), kBlanks);
    if (!part.empty()) parts.push_back(part);
  };
  for (std::size_t at = kStops.Find(text, 0); at < text.size(); at = kStops.Find(text, at)) {
    depth += (text[at] == '{' ? 1 : 0) - (text[at] == '}' ? 1 : 0);
    const std::size_t size = depth == 0 ? separator(text.substr(at)) : 0;
    if (size > 0) {
      add(at);
      begin = at + size;
    }
    at += std::max<std::size_t>(size, 1);
  }
  add(text.size());
  return parts;
}

/// Whether the word is a particle: its first letter outside braces is a small one.
bool IsParticle(std::string_view word) {
  const auto* const first = std::find_if(word.begin(), word.end(), [](char byte) {
    return IsLetter(byte) || byte < 0 || byte == '{';
  });
  return first != word.end() && *first >= 'a' && *first <= 'z' && word.front() != '\\';
}

/// What counts of the text, in capitals.
std::string Essence(std::string_view text) {
  std::string essence;
  for (const char byte : text) {
    if (Counts(byte)) essence += ToUpper(byte);
  }
  return essence;
}

/// The first byte that counts of every part of the words. `spelled`: all letters of a word of
/// capitals alone, such as JP.
std::string Initials(const Texts& words, bool spelled) {
  std::string initials;
  for (const std::string_view word : words) {
    const bool all = spelled && std::none_of(word.begin(), word.end(), [](char byte) {
                       return (byte >= 'a' && byte <= 'z') || byte == '\\' || byte < 0;
                     });
    bool begins = true;
    for (const char byte : word) {
      if ((begins || all) && Counts(byte)) initials += ToUpper(byte);
      if (Counts(byte)) begins = false;
      if (byte == '-' || byte == '.') begins = true;
    }
  }
  return initials;
}

/// A person's name in BibTeX's parts.
struct Name {
  std::string surname;  // with the particle and a suffix
  Texts first;
};

Name NameOf(std::string_view text) {
  Name name;
  const Texts parts = Split(text, CommaSize);
  if (parts.size() > 1) {
    name.surname = Essence(parts.front()) + (parts.size() > 2 ? Essence(parts[1]) : "");
    name.first = Split(parts.back(), BlankSize);
    return name;
  }
  Texts words = Split(parts.empty() ? std::string_view() : parts.front(), BlankSize);
  if (words.empty()) return name;
  const auto last = std::find_if(words.begin(), words.end() - 1, IsParticle);
  for (auto word = last; word != words.end(); ++word) name.surname += Essence(*word);
  words.erase(last, words.end());
  name.first = std::move(words);
  return name;
}

/// How many of the words have no letter.
std::ptrdiff_t Signs(const Texts& words) {
  return std::count_if(words.begin(), words.end(), [](std::string_view word) {
    return std::none_of(word.begin(), word.end(), Counts);
  });
}

/// What is wrong with a name that became another; empty when nothing is.
std::string_view WhatChangedInName(std::string_view before, std::string_view after) {
  if (before == after) return {};
  const Name old_name = NameOf(before);
  const Name new_name = NameOf(after);
  if (old_name.surname != new_name.surname) return " has another surname now";
  if (Signs(old_name.first) > Signs(new_name.first)) return " lost a word without letters";
  const std::string initials = Initials(new_name.first, false);
  const bool same =
      initials == Initials(old_name.first, false) || initials == Initials(old_name.first, true);
  return same ? "" : " has other initials now";
}

}  // namespace

std::string WhatChanged(std::string_view old_list, std::string_view new_list) {
  for (const std::string_view end : kOpenEnds) {
    if (old_list.find(end) != std::string_view::npos) return {};
  }
  const Texts before = Split(old_list, AndSize);
  const Texts after = Split(new_list, AndSize);
  if (before.size() != after.size()) {
    return "BibTeX reads " + std::to_string(before.size()) + " names before and " +
           std::to_string(after.size()) + " after";
  }
  std::string changes;
  for (std::size_t i = 0; i < before.size(); ++i) {
    const std::string_view change = WhatChangedInName(before[i], after[i]);
    if (change.empty()) continue;
    changes.append(changes.empty() ? "" : "; ").append(Quoted(before[i])).append(change);
  }
  return changes;
}

}  // namespace tarvel
