// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/hash_index.h"
#include "ops/prepare/name_tables.h"

namespace tarvel {

/// All that is known of a tag by its name.
struct TagName {
  std::string name;            // in lower case
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
  /// The name in any letter case. Valid until `ForgetMany`.
  TagName& Get(std::string_view name);
  /// Forgets the names when they have become many.
  void ForgetMany();

 private:
  struct Spelling {
    std::string text;
    TagName* name;
  };
  TagName& Add(std::string_view spelling, std::size_t hash);

  std::vector<std::unique_ptr<TagName>> names_;
  std::vector<Spelling> spellings_;
  HashIndex index_;  // of the spellings
};

}  // namespace tarvel
