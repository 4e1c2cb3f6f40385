// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>

#include "ops/prepare/tag_names.h"
#include "ops/prepare/text_facts.h"

namespace tarvel {

/// A tag as it is to be written.
struct FormedTag {
  /// The order in which tags are written. Of two lines that hold the same word operations take the
  /// later one, so lines that hold the word of another tag come first, and those that operations
  /// look for after the others. Bookkeeping comes last: an entry that begins with it counts as
  /// empty.
  enum class Rank { kMisread, kBooktitle, kMisreadOwn, kUsual, kBookkeeping };

  const TagName* known;
  std::string_view value;
  std::size_t offset = 0;
  TextFacts facts = {};  // of the value, with or without outer braces
  Rank rank = Rank::kUsual;
  WordSet harm = 0;  // words in its line by which it is misread
  bool is_inherited = false;
  bool is_left_out = false;

  std::string_view Name() const { return known->name; }
  bool IsNeeded() const { return known->row.use == TagRow::Use::kNeeded; }
  void SetValue(std::string_view text) {
    value = text;
    facts = FactsOf(text);
  }
};

}  // namespace tarvel
