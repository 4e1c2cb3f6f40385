// SPDX-License-Identifier: MIT
#include "ops/prepare/tag_names.h"

#include <algorithm>
#include <array>
#include <functional>
#include <utility>

#include "ops/prepare/letters.h"

namespace tarvel {

namespace {

constexpr std::size_t kMany = 4096;

/// Whether a tag that nothing is known of holds an address or a path, by its name.
bool LooksVerbatim(std::string_view name) {
  constexpr std::array<std::string_view, 7> kSigns{"url", "doi",    "file", "link",
                                                   "uri", "eprint", "pdf"};
  return std::any_of(kSigns.begin(), kSigns.end(), [name](std::string_view sign) {
    return name.find(sign) != std::string_view::npos;
  });
}

TagName Make(std::string name) {
  TagName made;
  if (const TagRow* const row = FindTag(name)) {
    made.row = *row;
  } else {
    made.row.is_verbatim = LooksVerbatim(name);
  }
  made.words = WordsInName(name);
  made.is_misread = IsMisreadName(name);
  made.is_title = name == "title" || name == "booktitle";
  made.is_of_names = name == "author" || name == "editor";
  made.holds_at = name.find('@') != std::string::npos;
  made.name = std::move(name);
  return made;
}

}  // namespace

TagName& TagNames::Get(std::string_view name) {
  const std::size_t hash = std::hash<std::string_view>()(name);
  const auto found = index_.Find(hash, [&](std::size_t i) { return spellings_[i].text == name; });
  return found ? *spellings_[*found].name : Add(name, hash);
}

TagName& TagNames::Add(std::string_view spelling, std::size_t hash) {
  std::string lower = Lower(spelling);
  TagName* name = nullptr;
  if (lower != spelling) {
    name = &Get(lower);
  } else {
    name = names_.emplace_back(std::make_unique<TagName>(Make(std::move(lower)))).get();
  }
  index_.Put(hash, spellings_.size(), [](std::size_t) { return false; });
  spellings_.push_back({std::string(spelling), name});
  return *name;
}

void TagNames::ForgetMany() {
  if (names_.size() < kMany) return;
  names_.clear();
  spellings_.clear();
  index_ = {};
}

}  // namespace tarvel
