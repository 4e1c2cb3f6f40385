// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "ops/prepare/bib_reader.h"
#include "ops/prepare/formed_tag.h"
#include "ops/prepare/prepare_log.h"
#include "ops/prepare/text_pool.h"

namespace tarvel {

/// Gives an entry and its tags the names by which operations and BibTeX's styles know them, each
/// tag once, and removes the braces around whole values.
class EntryNamer {
 public:
  explicit EntryNamer(PrepareLog& log) : log_(log) {}

  /// Names an entry of which the last tags, from `inherited` on, come from its parents. Type and
  /// tags are valid until the next call.
  void Name(const BibItem& entry, std::size_t inherited);
  std::string_view Type() const { return type_; }
  std::vector<FormedTag>& Tags() { return tags_; }
  const TagName& NameOf(std::string_view name) { return names_.Get(name); }

 private:
  void TakeTags(const BibItem& entry, std::size_t inherited);
  void TakeType(const BibItem& entry);
  void ChangeNames();
  void DropReplaced(const TagChange& change);
  void Change(const TagChange& change, FormedTag& tag);
  void AppendTo(FormedTag& tag, FormedTag& whole);
  void ChangeDate(FormedTag& tag, bool has_year);
  FormedTag* Find(std::string_view name);
  std::string_view Make(std::string_view text);

  PrepareLog& log_;
  TagNames names_;
  std::size_t entry_ = 0;  // its number
  TextPool texts_;
  std::string_view type_;
  std::vector<FormedTag> tags_;
};

}  // namespace tarvel
