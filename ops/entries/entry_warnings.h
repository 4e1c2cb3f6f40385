// SPDX-License-Identifier: MIT
// Warnings about entries that are copied, dropped or taken for others.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "core/keyed_hash.h"
#include "core/text_primitives.h"
#include "ops/entries/entry_record.h"
#include "ops/entries/group_rules.h"
#include "warnings/library_scan.h"
#include "warnings/warnings.h"

namespace tarvel {

/// A compared value that was read from the line of another tag.
struct Misread {
  std::string_view tag;   // as which it was read
  std::string_view line;  // the name of the tag that the line begins with; empty: none
  std::size_t offset;     // of the line
};

/// The compared values of an entry that were read from lines of other tags; `library` is what it
/// was read from.
std::vector<Misread> MisreadValues(const TypeGroup& group, const EntryRecord& entry,
                                   std::string_view library);

/// Reports them, but for a title that is a booktitle: that is so in every volume of proceedings,
/// and matters where it decides something.
void ReportMisread(const std::vector<Misread>& values, std::string_view key,
                   FileWarnings& warnings);

/// The text of an entry: its lines up to the first that begins with "}" and does not stand in a
/// value, at most up to the next entry. `lines` are those that the operation read for the entry; if
/// they end with a piece of a long line, the text ends there too.
std::string_view EntryTextAt(std::string_view library, const LibraryRange& lines);

/// Whether two entries have the same lines after their keys, up to the first that begins with "}".
/// Each text begins with the entry's first line, which holds the comma after the key, and may go on
/// after its last.
bool AreCopies(std::string_view one, std::string_view two);

/// The tags that BibTeX reads in a dropped entry, but not in the one that is kept.
struct UnreadTags {
  std::vector<std::string> tags;
  std::string why;
};

/// A set of keys or of names of tags. Letter case is ignored, as BibTeX does for the keys of
/// parents.
class KeysAnyCase {
 public:
  void Add(std::string_view key) { keys_.insert(InCapitals(key)); }
  bool Has(std::string_view key) const { return keys_.contains(InCapitals(key)); }
  bool IsEmpty() const { return keys_.empty(); }

 private:
  std::unordered_set<std::string, KeyedStringHash> keys_;  // in capitals
};

/// What the warnings about dropped entries must know of the entry that is kept. Made once for a
/// kept entry, however many are dropped for it.
class KeptEntryFacts {
 public:
  /// `text` begins with the entry's first line and may go on after the entry. It need not outlive
  /// this.
  explicit KeptEntryFacts(std::string_view text);

  /// The names of the tags title, author, year, doi and eprint of the dropped entry that the kept
  /// one lacks or has with another value. Letter case, braces, blanks and punctuation are ignored.
  /// Journal, volume and pages count too, unless they were `compared` before.
  std::vector<std::string_view> DifferingTags(std::string_view dropped, bool compared = true) const;
  /// The tags that BibTeX reads in the dropped entry, but not in the kept one. Asked for only when
  /// the two are not copies.
  UnreadTags UnreadOf(std::string_view dropped) const;

 private:
  void FindUnread(std::string_view text);

  std::array<std::vector<std::string>, 8> values_;  // of the identifying tags, sorted
  KeysAnyCase unread_;  // the names of tags that stand in the entry and that BibTeX does not read
  std::string why_;
};

/// Reports the entries that begin in the lines from `begin` to `end`, after the first of them: they
/// were read as parts of the entry `key`, and are in no file. Lines before the offset `reported`
/// were looked at earlier; it becomes the end of these.
void ReportSwallowed(std::string_view library, const LibraryRange& lines, std::string_view key,
                     std::size_t& reported, FileWarnings& warnings);

/// The key in the tag `crossref` of an entry, which begins with its first line.
std::optional<std::string_view> ParentOf(std::string_view entry);

/// Reports that the parent of a copied entry, whose text begins at `offset`, is not copied.
void ReportMissingParent(std::string_view entry, std::size_t offset, std::string_view parent,
                         FileWarnings& warnings);

/// An entry as it was copied: up to the first line that begins with "}".
struct CopiedEntry {
  std::string_view text;
  std::size_t end;  // of the last line that was copied, in its library
};

/// Reports a copy that ends inside a value, with the tags that are not in it.
void ReportCutEntry(std::string_view library, const CopiedEntry& copied, FileWarnings& warnings);

/// Two entries that were found equal.
struct EqualEntries {
  std::string_view key;      // of the entry that the verdict is about
  std::string_view other;    // the key of the other one
  std::size_t offset;        // of the entry in its library
  std::string_view verdict;  // what happened, as in "was dropped as a duplicate of"
};

/// Reports what makes the verdict doubtful: values of other tags, and tags that differ.
void ReportVerdict(const EqualEntries& entries, const std::vector<Misread>& misread,
                   const std::vector<std::string_view>& differing, FileWarnings& warnings);

/// Reports the tags that BibTeX reads in the dropped entry only, and why.
void ReportUnread(const EqualEntries& entries, const UnreadTags& unread, FileWarnings& warnings);

}  // namespace tarvel
