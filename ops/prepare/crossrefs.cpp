// SPDX-License-Identifier: MIT
#include "ops/prepare/crossrefs.h"

#include <algorithm>
#include <deque>
#include <functional>
#include <unordered_set>

#include "ops/prepare/letters.h"
#include "ops/prepare/name_tables.h"

namespace tarvel {

namespace {

/// The tags of parents may make a library this many times as long, and this many bytes more.
constexpr std::size_t kMostGrowth = 8;
constexpr std::size_t kLeastRoom = std::size_t{1} << 20;

/// How far parents of parents are followed, so that a circle has an end.
constexpr std::size_t kMostParents = 8;

template <typename Tags>
std::string_view ValueOf(const Tags& tags, std::string_view name) {
  for (const auto& tag : tags) {
    if (EqualNoCase(tag.name, name)) return tag.value;
  }
  return {};
}

}  // namespace

CrossReferences::CrossReferences(std::string_view bytes)
    : bytes_(bytes), reader_(bytes, strings_), room_(bytes.size() * kMostGrowth + kLeastRoom) {}

CrossReferences::Parent CrossReferences::Inherit(BibItem& entry) {
  parents_.clear();
  std::string_view key = ValueOf(entry.tags, "crossref");
  if (key.empty()) return Parent::kNone;
  std::deque<std::string> own;  // names in lower case
  std::unordered_set<std::string_view> names;
  for (const BibTag& tag : entry.tags) names.insert(own.emplace_back(Lower(tag.name)));
  while (!key.empty() && parents_.size() < kMostParents) {
    const Tags* const tags = ParentTags(key, entry.begin);
    if (!tags) break;
    parents_.push_back(tags);
    for (const OwnTag& tag : *tags) {
      if (!names.insert(tag.name).second || !TakeRoom(tag.name, tag.value)) continue;
      entry.tags.push_back({tag.name, tag.value, entry.begin, FactsOf(tag.value)});
    }
    key = ValueOf(*tags, "crossref");
  }
  return parents_.empty() ? Parent::kMissing : Parent::kFound;
}

bool CrossReferences::TakeRoom(std::string_view name, std::string_view value) {
  const std::size_t size = name.size() + value.size();
  if (size > room_) return false;
  room_ -= size;
  return true;
}

/// The tags of the entry of this key; null when there is none, or when it is the child itself.
const CrossReferences::Tags* CrossReferences::ParentTags(std::string_view key, std::size_t child) {
  const std::optional<std::size_t> parent = FindKey(Lower(key));
  return parent && *parent != child ? &OwnTags(*parent) : nullptr;
}

/// The offset of the first entry of this key, which is in lower case.
std::optional<std::size_t> CrossReferences::FindKey(const std::string& key) {
  const auto [found, is_new] = offsets_.try_emplace(key);
  if (is_new) found->second = SearchKey(key);
  return found->second;
}

std::optional<std::size_t> CrossReferences::SearchKey(const std::string& key) {
  if (!has_read_keys_) ReadKeys();
  const std::size_t hash = std::hash<std::string>()(key);
  auto found = std::lower_bound(keys_.begin(), keys_.end(), KeyPlace{hash, 0});
  for (; found != keys_.end() && found->hash == hash; ++found) {
    Read(found->begin);
    if (EqualNoCase(item_.key, key)) return found->begin;
  }
  return std::nullopt;
}

void CrossReferences::ReadKeys() {
  has_read_keys_ = true;
  reader_.KeepValues(false);
  while (reader_.Next(item_)) {
    if (item_.kind != BibItem::Kind::kEntry) continue;
    keys_.push_back({std::hash<std::string>()(Lower(item_.key)), item_.begin});
  }
  reader_.KeepValues(true);
  strict_from_ = reader_.StrictFrom();
  std::sort(keys_.begin(), keys_.end());
}

void CrossReferences::Read(std::size_t begin) {
  reader_.GoTo(begin, begin > strict_from_);
  reader_.Next(item_);
}

/// What becomes the school of a thesis is that of its children, whatever type they are of.
void CrossReferences::TakeSchool(Tags& tags) {
  const auto find = [&tags](std::string_view name) {
    return std::find_if(tags.begin(), tags.end(),
                        [name](const OwnTag& tag) { return tag.name == name; });
  };
  const auto institution = find("institution");
  if (institution != tags.end() && find("school") == tags.end()) institution->name = "school";
}

const CrossReferences::Tags& CrossReferences::OwnTags(std::size_t begin) {
  const auto [found, is_new] = own_.try_emplace(begin);
  if (!is_new) return found->second;
  Read(begin);
  Tags& tags = found->second;
  for (const BibTag& tag : item_.tags) tags.push_back({Lower(tag.name), std::string(tag.value)});
  const bool is_child = std::any_of(tags.begin(), tags.end(),
                                    [](const OwnTag& tag) { return tag.name == "crossref"; });
  if (!is_child && IsThesis(FindKnownType(item_.type, ValueOf(tags, "type")).type))
    TakeSchool(tags);
  return tags;
}

}  // namespace tarvel
