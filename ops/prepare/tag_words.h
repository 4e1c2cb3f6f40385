// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "app/tags.h"

namespace tarvel {

/// The words by which operations find tags, as bits of a set. A line that holds one of them
/// anywhere is read as the line of that tag.
using WordSet = std::uint32_t;

/// ORDER: Compare and Clean doubles look for the first eleven in this order, and the first that is
/// found on a line counts. The others are searched for by Extract and Text, or by the test for
/// empty entries.
inline constexpr std::array<std::string_view, 17> kWords{
    "journal", "year",   "pages",  "volume",      "author",   "title",
    "note",    "url",    "number", "nationality", "comment",  "publisher",
    "address", "editor", "school", "booktitle",   "timestamp"};
inline constexpr std::size_t kComparedWords = 11;

constexpr WordSet WordBit(std::size_t word) { return WordSet{1} << word; }
inline constexpr WordSet kJournalBit = WordBit(0);

/// The words that stand in the name of a tag, which is in lower case.
constexpr WordSet WordsInName(std::string_view name) {
  WordSet words = 0;
  for (std::size_t word = 0; word < kWords.size(); ++word) {
    if (name.find(kWords[word]) != std::string_view::npos) words |= WordBit(word);
  }
  return words;
}

/// Whether the name, in lower case, would be taken for that of another tag by some operation. False
/// for "booktitle": that it takes the place of a missing title is wanted.
constexpr bool IsMisreadName(std::string_view name) {
  for (const TagRule& rule : kTagRules) {
    if (name.find(rule.name) != std::string_view::npos) return rule.name != name;
  }
  return name.find_first_of("@.:;") != std::string_view::npos;  // the last three are passed over
}

/// The words of the tags that Extract and Text look for in an entry of this type, as it is written.
WordSet PrintedWords(std::string_view type);
/// The words of the tags that Compare or Clean doubles compare in an entry of this type.
WordSet ComparedWords(std::string_view type);
/// The words that must not stand in the value of a tag: an operation that finds one of them would
/// take its line for that of another tag. `own`: the words in the tag's name. `printed`: the
/// `PrintedWords` of the entry's type.
WordSet HarmfulWords(WordSet own, WordSet printed);
/// Whether this word hides a tag from Compare and Clean doubles, when it stands on the tag's line:
/// they look for it before the words `own`, which stand in the tag's name.
bool WinsOver(std::size_t word, WordSet own);

/// The offset after the word's beginning where an empty group does the least harm to its letters.
std::size_t SplitOf(std::size_t word);

/// Whether Clean tags looks at the lines of this tag at all.
bool IsInLineFilter(std::string_view name);
/// Whether Clean tags would look at a line that holds this text.
bool HoldsFilterWord(std::string_view text);
/// Whether Clean characters leaves out the tag's line, and that line only.
bool IsExemptTag(std::string_view name);

/// A text that is a word once the blanks in it are removed: offset and size of the first from
/// `from` on; size 0 when there is none.
struct SpacedWord {
  std::size_t begin = 0;
  std::size_t size = 0;
};
/// "journal", as the operation Journals looks for it, with this first letter: 'j' or 'J'.
SpacedWord FindSpacedJournal(std::string_view text, std::size_t from, char first);

}  // namespace tarvel
