// SPDX-License-Identifier: MIT
#include "ops/prepare/tag_names.h"

#include <algorithm>
#include <array>
#include <utility>

#include "core/keyed_hash.h"
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
  made.head = "  " + name + " = {";
  made.name = std::move(name);
  return made;
}

}  // namespace

TagName& TagNames::Get(std::string_view name) {
  const auto byte = [name](std::size_t at) { return static_cast<unsigned char>(name[at]); };
  const std::size_t bytes =
      name.size() + byte(0) * 3U + byte(name.size() / 2) * 5U + byte(name.size() - 1) * 7U;
  Spelling*& recent = recent_[bytes % recent_.size()];
  if (!recent || recent->text != name) recent = &Find(name);
  return *recent->name;
}

TagNames::Spelling& TagNames::Find(std::string_view name) {
  const std::size_t hash = KeyedHash(name);
  const auto found = index_.Find(hash, [&](std::size_t i) { return spellings_[i].text == name; });
  return found ? spellings_[*found] : Add(name, hash);
}

TagNames::Spelling& TagNames::Add(std::string_view spelling, std::size_t hash) {
  std::string lower = Lower(spelling);
  TagName* const name =
      lower != spelling ? &Get(lower) : &names_.emplace_back(Make(std::move(lower)));
  index_.Put(hash, spellings_.size(), [](std::size_t) { return false; });
  return spellings_.emplace_back(Spelling{std::string(spelling), name});
}

void TagNames::ForgetMany() {
  if (spellings_.size() < kMany) return;  // each name has one, or more
  *this = {};
}

}  // namespace tarvel
