// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/keyed_hash.h"
#include "ops/prepare/bib_reader.h"

namespace tarvel {

/// Gives entries the tags of the entry that their "crossref" names, by BibTeX's rule for a
/// document that cites everything: a tag that the entry lacks is that of its parent, wherever the
/// parent stands. Unlike BibTeX, which warns of it, it follows the "crossref" of a parent too; and
/// like biblatex it makes the title of a book the "booktitle" of its parts.
class CrossReferences {
 public:
  /// `bytes` must outlive this. The library is read once for its keys when the first entry with a
  /// "crossref" is given to `Inherit`.
  explicit CrossReferences(std::string_view bytes);

  /// kMissing: no entry has the key. kItself: it is the entry's own. kTooMany, kTooLong: the tags
  /// of some parents were not added. ORDER: `kParentTexts`.
  enum class Parent { kNone, kFound, kMissing, kItself, kTooMany, kTooLong };
  /// Adds the tags that the entry gets from its parents, after its own and with its offset as
  /// theirs. They are valid as long as this lives. No more are added once the tags of parents would
  /// make the library many times as long.
  Parent Inherit(BibItem& entry);
  /// Whether the last entry given to `Inherit` has a parent.
  bool HasParent() const { return parents_ > 0; }

 private:
  /// Where an entry stands, by a hash of its key in lower case.
  struct KeyOffset {
    std::size_t hash;
    std::size_t begin;
    bool operator<(const KeyOffset& other) const {
      return hash != other.hash ? hash < other.hash : begin < other.begin;
    }
  };
  struct OwnTag {
    std::string name;  // in lower case
    std::string value;
  };
  using Tags = std::vector<OwnTag>;
  /// A parent with the tags of its own entry only.
  struct OwnEntry {
    Tags tags;
    std::string crossref;
  };

  void ReadKeys();
  std::optional<std::size_t> FindKey(const std::string& key);
  std::optional<std::size_t> SearchKey(const std::string& key);
  void Read(std::size_t begin);
  const OwnEntry* ParentOf(std::string_view key, std::size_t child);
  const OwnEntry& OwnEntryAt(std::size_t begin);
  static void TakeSchool(Tags& tags);
  bool Add(BibItem& entry, std::string_view name, std::string_view value);
  bool TakeRoom(std::size_t bytes);

  std::string_view bytes_;
  BibStrings strings_;  // of the whole library, once its keys are read
  BibReader reader_;
  BibItem item_;  // that was read last
  bool has_read_keys_ = false;
  std::vector<KeyOffset> keys_;
  std::size_t strict_from_ = 0;
  std::size_t room_;  // how many bytes may still be added
  std::unordered_map<std::string, std::optional<std::size_t>, KeyedStringHash>
      offsets_;                                    // of keys that were looked up before
  std::unordered_map<std::size_t, OwnEntry> own_;  // parents, by the offsets of their entries
  std::size_t parents_ = 0;                        // of the last entry given to `Inherit`
};

}  // namespace tarvel
