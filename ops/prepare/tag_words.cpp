// SPDX-License-Identifier: MIT
#include "ops/prepare/tag_words.h"

#include <algorithm>
#include <bit>
#include <initializer_list>
#include <vector>

#include "app/tags.h"
#include "core/name_matcher.h"
#include "core/text_primitives.h"
#include "ops/entries/group_rules.h"
#include "ops/exempt_tags.h"
#include "ops/prepare/letters.h"

namespace tarvel {

namespace {

using namespace std::string_view_literals;

/// ORDER: `kWords`. No ligature ("fi") and no pair that a plain reader needs is split.
constexpr std::array<std::size_t, kWords.size()> kSplits{4, 2, 2, 3, 4, 3, 2, 1, 3,
                                                         8, 3, 3, 3, 3, 3, 4, 4};

constexpr WordSet SetOf(std::initializer_list<std::string_view> words) {
  WordSet set = 0;
  for (const std::string_view word : words) {
    const auto found = std::find(kWords.begin(), kWords.end(), word);
    set |= WordBit(static_cast<std::size_t>(found - kWords.begin()));
  }
  return set;
}

struct TypeWords {
  std::string_view type;
  WordSet words;
};

/// What Extract and Text look for in the lines of an entry.
constexpr std::array<TypeWords, 6> kPrinted{{
    {"ARTICLE", SetOf({"author", "journal", "year", "volume", "title", "pages"})},
    {"BOOK", SetOf({"author", "publisher", "year", "address", "title"})},
    {"INCOLLECTION",
     SetOf({"author", "publisher", "year", "address", "title", "booktitle", "editor", "pages"})},
    {"INPROCEEDINGS",
     SetOf({"author", "title", "booktitle", "year", "editor", "address", "pages"})},
    {"PHDTHESIS", SetOf({"author", "year", "school", "title"})},
    {"MASTERTHESIS", SetOf({"author", "year", "school", "title"})},
}};

/// The first of the words that Compare and Clean doubles look for, or their number.
std::size_t FirstCompared(WordSet words) {
  return std::min<std::size_t>(static_cast<std::size_t>(std::countr_zero(words)), kComparedWords);
}

NameMatcher FilterMatcher() {
  std::vector<std::string_view> names;
  for (const TagRule& rule : kTagRules) {
    if (rule.in_line_filter) names.push_back(rule.name);
  }
  return NameMatcher(names);
}

}  // namespace

WordSet PrintedWords(std::string_view type) {
  const auto row = std::find_if(kPrinted.begin(), kPrinted.end(),
                                [type](const TypeWords& words) { return words.type == type; });
  return row == kPrinted.end() ? 0 : row->words;
}

WordSet ComparedWords(std::string_view type) {
  WordSet words = 0;
  // `Field` and `kWords` have the compared tags in the same order.
  const auto add = [&](const auto* rule) {
    if (!rule) return;
    for (const Field field : rule->group.compared)
      words |= WordBit(static_cast<std::size_t>(field));
  };
  add(CompareRuleFor(type).rule);
  add(DoublesRuleFor(type).rule);
  return words;
}

WordSet HarmfulWords(WordSet own, WordSet printed) {
  const WordSet compared = WordBit(FirstCompared(own)) - 1;
  return (compared | printed | kJournalBit | SetOf({"timestamp"})) & ~own;
}

bool WinsOver(std::size_t word, WordSet own) { return word < FirstCompared(own); }

std::size_t SplitOf(std::size_t word) { return kSplits[word]; }

bool IsInLineFilter(std::string_view name) { return HoldsFilterWord(name); }

bool HoldsFilterWord(std::string_view text) {
  static const NameMatcher matcher = FilterMatcher();
  return matcher.Any(text);
}

bool IsExemptTag(std::string_view name) {
  return std::any_of(kExemptTags.begin(), kExemptTags.end(),
                     [name](std::string_view tag) { return EqualNoCase(tag, name); });
}

SpacedWord FindSpacedJournal(std::string_view text, std::size_t from, char first) {
  constexpr std::string_view kRest = "ournal";
  for (std::size_t begin = text.find(first, from); begin != std::string_view::npos;
       begin = text.find(first, begin + 1)) {
    std::size_t at = begin + 1;
    std::size_t matched = 0;
    for (; at < text.size() && matched < kRest.size(); ++at) {
      if (IsBlankOrTab(text[at])) continue;
      if (ToLower(text[at]) != kRest[matched]) break;
      ++matched;
    }
    if (matched == kRest.size()) return {begin, at - begin};
  }
  return {};
}

}  // namespace tarvel
