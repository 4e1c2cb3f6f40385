// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/hash_index.h"
#include "core/line_stream.h"

namespace tarvel {

/// What a journal list lacks; the list ends before it.
enum class JournalListFault { kNone, kNoStart, kNoName, kNoAbbreviation, kNoVariations };

/// One journal of the list. The names may be empty.
struct Journal {
  std::string_view full_name;
  std::string_view abbreviation;
  int variations = 0;  // how many lines of variations its block holds
};

/// The name of the list that a value matched, and its journal's index.
struct JournalMatch {
  std::string_view text;
  std::size_t index = 0;
};

/// Copies `source` without every blank, tab, '.', ':', ';', '{', '}' and backslash.
void SqueezeJournalName(std::string_view source, std::string& destination);

/// The journals of a list and the search for one by any of its names.
class JournalTable {
 public:
  /// How many journals are read; the rest of a longer list is not looked at.
  static constexpr std::size_t kMostJournals = 20000;
  /// How many variations of one journal are searched: further ones are counted, but give way to
  /// the next journal's.
  static constexpr int kSearchedVariations = 20;

  /// A table over the list `lines`; `most` is there for tests.
  explicit JournalTable(LineStream lines, std::size_t most = kMostJournals)
      : lines_(std::move(lines)), most_(most) {}

  /// Reads the list in lines of at most 4,999 bytes. Names end one byte before their line does,
  /// whatever that byte is. Call it once; after a fault the table is of no use.
  JournalListFault Read();

  /// The journals in the order of the list.
  std::span<const Journal> Journals() const { return journals_; }

  /// The journal of which one name equals `value`, letter case and the bytes that
  /// `SqueezeJournalName` leaves out aside. Abbreviations go before full names, full names before
  /// variations, and each from the first journal on. The first empty abbreviation ends the search
  /// of all abbreviations; so do an empty full name and, for its journal, an empty variation. A
  /// name of nothing but left-out bytes is not empty and matches a value of such bytes.
  std::optional<JournalMatch> FindJournal(std::string_view value) const;

 private:
  using NameNumber = std::uint32_t;
  /// Names whose search keys begin and end with the same letters, each leading to the next. Few are
  /// searched in a run: the names of the other buckets are never indexed, which saves half the time
  /// of a small library.
  struct Bucket {
    NameNumber first = kNoName;
    std::optional<HashIndexOf<NameNumber>> index;  // made when the bucket is first searched
  };
  static constexpr NameNumber kNoName = static_cast<NameNumber>(-1);

  JournalListFault ReadBlock();
  void ReadVariations(Journal& journal);
  void BuildIndex();
  JournalMatch NameAt(std::size_t number) const;
  void Link(std::size_t begin, std::size_t end);
  void IndexBucket(Bucket& bucket) const;

  LineStream lines_;  // all names are views into it
  std::size_t most_;
  std::vector<Journal> journals_;
  std::vector<JournalMatch> variations_;  // those that are searched
  // The names are numbered in the order of the search: abbreviations, full names, variations.
  std::vector<NameNumber> next_;  // of the same bucket
  mutable std::vector<Bucket> buckets_;
  mutable std::string key_;  // of the name that is searched for or indexed
};

}  // namespace tarvel
