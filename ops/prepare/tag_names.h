// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <deque>
#include <string>
#include <string_view>

#include "core/hash_index.h"
#include "ops/prepare/name_tables.h"

namespace tarvel {

/// All that is known of a tag by its name.
struct TagName {
  std::string name;            // in lower case
  std::string head;            // what stands before the value in a prepared library
  TagRow row;                  // without a name if nothing is known of it
  WordSet words = 0;           // that stand in its name
  bool is_misread = false;     // `IsMisreadName`
  bool is_title = false;       // of the entry or of the book
  bool is_of_names = false;    // authors or editors
  bool holds_at = false;       // it holds an "@", so its line looks like the first of an entry
  std::size_t last_entry = 0;  // the number of the entry in which it was read last

  bool IsKnown() const { return !row.name.empty(); }
};

/// The names of a library's tags. Each is looked up in the tables only once.
class TagNames {
 public:
  TagNames() = default;
  TagNames(TagNames&&) = default;  // no copies: there are pointers between the members
  TagNames& operator=(TagNames&&) = default;

  /// The name, which is not empty, in any letter case. Valid until `ForgetMany`.
  TagName& Get(std::string_view name);
  /// Forgets the names when they have become many.
  void ForgetMany();

 private:
  struct Spelling {
    std::string text;
    TagName* name;
  };
  Spelling& Find(std::string_view name);
  Spelling& Add(std::string_view spelling, std::size_t hash);

  std::deque<TagName> names_;
  std::deque<Spelling> spellings_;
  HashIndex index_;  // of the spellings
  /// The spellings that were asked for last, by a sum of a few of their bytes. A library has few
  /// spellings, and a keyed hash for each tag took a tenth of a preparation. Another spelling with
  /// the same sum takes the slot, and costs the hash.
  std::array<Spelling*, 256> recent_{};
};

}  // namespace tarvel
