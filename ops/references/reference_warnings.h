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

  /// An entry begins, with the line that holds the byte at `offset`.
  void StartEntry(std::string_view key, std::size_t offset);
  /// A value of the entry was read.
  void NoteRead(ReferenceValue value) { read_[static_cast<std::size_t>(value)] = true; }

  /// No reference was printed, because of `why`.
  void ReportNothingPrinted(std::string_view why);
  /// Reports the values shown that are those of an earlier entry.
  void ReportCarriedOver(std::span<const ReferenceValue> shown, const EntryValues& values);
  /// Reports the first LaTeX command in each value shown.
  void ReportCommands(std::span<const ReferenceValue> shown, const EntryValues& values);

 private:
  FileWarnings& warnings_;
  std::string key_;
  std::size_t offset_ = 0;
  std::array<bool, kValueCount> read_{};        // of the entry
  std::array<std::string, kValueCount> owner_;  // the keys of the entries that the values are of
};

}  // namespace tarvel
