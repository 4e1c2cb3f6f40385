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
    kBookkeeping,  // notes that programs keep; an entry that begins with it counts as empty
    kOther,
  };

  std::string_view name;
  Use use = Use::kOther;
  bool is_verbatim = false;  // a URL, a path, a key: nothing may be put into its value
  bool is_renamed = false;   // `TagChanges` has a row for it
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

/// All changes, in the order in which they are applied.
std::span<const TagChange> TagChanges();

/// The type under which the operations know an entry.
struct KnownType {
  std::string_view type;    // in capitals
  bool is_same = true;      // as in the library, apart from letter case
  bool is_in_table = true;  // false: nothing is known of the library's word
};

/// The type to write for the type word of an entry. `thesis_type` is its tag "type", or empty: it
/// decides which type a "thesis" becomes.
KnownType FindKnownType(std::string_view word, std::string_view thesis_type);
/// Whether a known type is one of the two types of theses.
bool IsThesis(std::string_view type);
/// Whether entries of a known type are parts of books, of which they have a "booktitle".
bool IsPartOfBook(std::string_view type);

}  // namespace tarvel
