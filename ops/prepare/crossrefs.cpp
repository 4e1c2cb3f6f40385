// SPDX-License-Identifier: MIT
#include "ops/prepare/crossrefs.h"

#include <algorithm>
#include <array>
#include <deque>
#include <unordered_set>
#include <utility>

#include "core/keyed_hash.h"
#include "ops/prepare/letters.h"
#include "ops/prepare/name_tables.h"

namespace tarvel {

namespace {

/// The tags of parents may make a library this many times as long, and this many bytes more.
constexpr std::size_t kMostGrowth = 8;
constexpr std::size_t kLeastRoom = std::size_t{1} << 20;

/// About what a tag takes in the library and in the log, beside its value and twice its name.
constexpr std::size_t kAroundTag = 16;

/// How far parents of parents are followed, so that a circle has an end.
constexpr std::size_t kMostParents = 32;

// Tags of a book, and what they are called in its parts.
constexpr std::array<std::pair<std::string_view, std::string_view>, 2> kBookTitles{
    {{"title", "booktitle"}, {"subtitle", "booksubtitle"}}};

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
  parents_ = 0;
  std::string_view key = ValueOf(entry.tags, "crossref");
  if (key.empty()) return Parent::kNone;
  std::deque<std::string> own;  // names in lower case
  std::unordered_set<std::string_view, KeyedStringHash> names;
  for (const BibTag& tag : entry.tags) names.insert(own.emplace_back(Lower(tag.name)));
  const bool is_part = IsPartOfBook(FindKnownType(entry.type, {}).type);
  while (!key.empty()) {
    if (parents_ == kMostParents) return Parent::kTooMany;
    const OwnEntry* const parent = ParentOf(key, entry.begin);
    if (!parent) break;
    ++parents_;
    for (const OwnTag& tag : parent->tags) {
      // Looking at a tag takes room, too: an entry may have very many that its children have.
      if (!TakeRoom(1)) return Parent::kTooLong;
      if (names.insert(tag.name).second && !Add(entry, tag.name, tag.value)) {
        return Parent::kTooLong;
      }
    }
    // In biblatex the title of a book is the "booktitle" of its parts.
    for (const auto& [name, in_part] : kBookTitles) {
      const std::string_view title = is_part ? ValueOf(parent->tags, name) : std::string_view();
      if (title.empty() || !names.insert(in_part).second) break;
      if (!Add(entry, in_part, title)) return Parent::kTooLong;
    }
    key = parent->crossref;
  }
  if (parents_ > 0) return Parent::kFound;
  return EqualNoCase(key, entry.key) ? Parent::kItself : Parent::kMissing;
}

/// Adds a tag; false when there is no room for it.
bool CrossReferences::Add(BibItem& entry, std::string_view name, std::string_view value) {
  if (!TakeRoom(2 * name.size() + value.size() + kAroundTag)) return false;
  entry.tags.push_back({name, value, entry.begin, FactsOf(value)});
  return true;
}

/// Whether so many bytes may still be added. Once it says no it always does, so that no more tags
/// are looked at for nothing.
bool CrossReferences::TakeRoom(std::size_t bytes) {
  const bool has_room = bytes <= room_;
  room_ = has_room ? room_ - bytes : 0;
  return has_room;
}

/// The entry of this key; null when there is none, or when it is the child itself.
const CrossReferences::OwnEntry* CrossReferences::ParentOf(std::string_view key,
                                                           std::size_t child) {
  const std::optional<std::size_t> parent = FindKey(Lower(key));
  return parent && *parent != child ? &OwnEntryAt(*parent) : nullptr;
}

/// The offset of the first entry of this key, which is in lower case.
std::optional<std::size_t> CrossReferences::FindKey(const std::string& key) {
  const auto [found, is_new] = offsets_.try_emplace(key);
  if (is_new) found->second = SearchKey(key);
  return found->second;
}

std::optional<std::size_t> CrossReferences::SearchKey(const std::string& key) {
  if (!has_read_keys_) ReadKeys();
  const std::size_t hash = KeyedHash(key);
  auto found = std::lower_bound(keys_.begin(), keys_.end(), KeyOffset{hash, 0});
  for (; found != keys_.end() && found->hash == hash; ++found) {
    Read(found->begin);
    if (EqualNoCase(item_.key, key)) return found->begin;
  }
  return std::nullopt;
}

void CrossReferences::ReadKeys() {
  has_read_keys_ = true;
  reader_.KeepTags(false);
  while (reader_.Next(item_)) {
    if (!item_.IsWritten()) continue;
    keys_.push_back({KeyedHash(Lower(item_.key)), item_.begin});
  }
  reader_.KeepTags(true);
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

const CrossReferences::OwnEntry& CrossReferences::OwnEntryAt(std::size_t begin) {
  const auto [found, is_new] = own_.try_emplace(begin);
  OwnEntry& entry = found->second;
  if (!is_new) return entry;
  Read(begin);
  std::unordered_set<std::string, KeyedStringHash> names;  // the first tag of a name counts
  for (const BibTag& tag : item_.tags) {
    std::string name = Lower(tag.name);
    if (names.insert(name).second) entry.tags.push_back({std::move(name), std::string(tag.value)});
  }
  const bool is_child = std::any_of(entry.tags.begin(), entry.tags.end(),
                                    [](const OwnTag& tag) { return tag.name == "crossref"; });
  entry.crossref = ValueOf(entry.tags, "crossref");
  const std::string_view type = ValueOf(entry.tags, "type");
  if (!is_child && IsThesis(FindKnownType(item_.type, type).type)) TakeSchool(entry.tags);
  return entry;
}

}  // namespace tarvel
