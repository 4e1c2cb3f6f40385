// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "ops/journal_styles.h"
#include "warnings/warnings.h"

namespace tarvel {

/// Reports what is odd about the references that are printed of a library's entries.
class ReferenceWarnings {
 public:
  /// `warnings`, those of the library, must outlive this.
  explicit ReferenceWarnings(FileWarnings& warnings) : warnings_(warnings) {}

  /// Whether anybody wants warnings.
  bool Wanted() const { return warnings_.Wanted(); }
  /// An entry begins, with the line that holds the byte at `offset`.
  void StartEntry(std::string_view key, std::size_t offset);
  /// A value of the entry was read as that of the tag `name`, which must outlive this, from the
  /// text of a line and those joined to it; `offset` is that of one of its bytes.
  void NoteRead(ReferenceValue value, std::string_view name, std::string_view line,
                std::size_t offset);
  /// The entry of this key, which begins at `offset`, was read as a part of the value of `tag`.
  void ReportSwallowed(std::string_view tag, std::size_t offset, std::string_view key);
  /// `command` of a value is about to be replaced in part.
  void NoteCut(ReferenceValue value, std::string_view command);

  /// No reference was printed, because of `why`.
  void ReportNothingPrinted(std::string_view why);
  /// Reports what is odd about the values that a reference shows: read from the line of another
  /// tag, those of an earlier entry, missing. `text` is what the entry holds.
  void ReportValues(std::span<const ReferenceValue> shown, const EntryValues& values,
                    std::string_view text);
  /// Reports the LaTeX commands in the values shown that were replaced in part, or not at all.
  void ReportCommands(std::span<const ReferenceValue> shown, const EntryValues& values);
  /// Reports the values shown whose braces do not match.
  void ReportUnbalanced(std::span<const ReferenceValue> shown, const EntryValues& values);
  /// Reports editors that are shown as they stand in the library.
  void ReportRawEditors(const EntryValues& values);

 private:
  /// Where a value of the entry was read. The offset is 0 if it was not.
  struct Source {
    std::string_view tag;     // as which it was read
    bool is_own = true;       // the line begins with the tag
    std::string line;         // if not, the name of the tag that it begins with
    bool is_its_own = false;  // the tag stands elsewhere on the line
    std::size_t own = 0;      // where it was read last from a line of the tag's own; 0: nowhere
    std::size_t earlier = 0;  // where another value of the tag was read before; 0: nowhere
    std::size_t offset = 0;
    std::string cut;  // a command that is replaced in part
  };

  Source& SourceOf(ReferenceValue value) { return sources_[static_cast<std::size_t>(value)]; }
  void ReportOtherTag(const Source& source);
  void ReportTwice(const Source& source, std::string_view text);
  void ReportMissing(std::span<const ReferenceValue> missing, std::string_view text);

  FileWarnings& warnings_;
  std::string key_;
  std::size_t offset_ = 0;
  std::array<Source, kValueCount> sources_;     // of the entry
  std::array<std::string, kValueCount> owner_;  // the keys of the entries that the values are of
};

}  // namespace tarvel
