// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>

#include "ops/prepare/name_tables.h"
#include "ops/prepare/tag_words.h"

namespace tarvel {

/// A tag as it is to be written.
struct FormedTag {
  /// Of two lines with the same word operations take the later one, so lines with a word that is
  /// not theirs come first, those that operations look for after the others. Bookkeeping comes
  /// last: an entry that begins with it counts as empty.
  enum class Rank { kMisread, kBooktitle, kMisreadOwn, kUsual, kBookkeeping };

  std::string_view name;  // in lower case
  std::string_view value;
  std::size_t offset = 0;
  const TagRow* row = nullptr;  // null when nothing is known of it
  Rank rank = Rank::kUsual;
  WordSet harm = 0;  // words in its line by which it is misread
  bool is_inherited = false;
  bool is_left_out = false;

  bool IsNeeded() const { return row && row->use == TagRow::Use::kNeeded; }
  NameFacts Facts() const { return row ? NameFacts{row->words, row->is_misread} : FactsOf(name); }
};

}  // namespace tarvel
