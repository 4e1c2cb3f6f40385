// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string_view>

#include "ops/prepare/tag_words.h"

namespace tarvel {

/// What is known of a tag by its name.
struct TagRow {
  enum class Use : unsigned char {
    kNeeded,       // operations or BibTeX's own styles use it: it is never left out
    kBookkeeping,  // of programs; an entry that begins with it counts as empty
    kOther,
  };

  std::string_view name;
  Use use = Use::kOther;
  bool is_verbatim = false;  // an address, a path, a key: nothing may be put into its value
  bool is_renamed = false;   // a row of `TagChanges` is of it
};

/// The row of a tag, its name in lower case; null when nothing is known of it.
const TagRow* FindTag(std::string_view name);

/// A tag that becomes another, if the entry has none of that name.
struct TagChange {
  enum class How { kRename, kRenameInThesis, kAppend, kDate };

  std::string_view from;
  std::string_view to;
  How how = How::kRename;
};

/// All of them, in the order in which they are applied.
std::span<const TagChange> TagChanges();

/// The type under which the operations know an entry.
struct KnownType {
  std::string_view type;    // in capitals
  bool is_same = true;      // the library's own word, letter case aside
  bool is_in_table = true;  // else nothing is known of the library's word
};

/// The type to write for the library's word. What a "thesis" is its tag "type" says; empty when it
/// has none.
KnownType FindKnownType(std::string_view word, std::string_view thesis_type);
/// Whether a known type is one of the two of theses.
bool IsThesis(std::string_view type);

}  // namespace tarvel
