// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string_view>

#include "warnings/warnings.h"

namespace tarvel {

/// The head of an entry of a known type.
struct EntryHead {
  std::string_view type;  // in capitals; lives as long as the call that passes the head
  std::string_view key;   // a part of the library's bytes
  std::size_t offset = 0;
};

/// What an operation asks of a library that it is about to read.
struct ScanRules {
  /// Its line limit, as `LineStream::ReadLine` takes it.
  std::size_t line_limit = 0;
  /// The tags whose values it reads; others may stand without braces.
  std::span<const std::string_view> read_tags = {};
  /// Whether only a line that begins with "}" ends an entry for it.
  bool needs_closing_line = false;
  /// Called for each entry, in their order.
  std::function<void(const EntryHead& head)> on_entry = {};
};

/// Looks through the bytes of a library and reports what will be read otherwise than its author
/// meant. One pass; entries of the usual form are only tallied. Does nothing when `warnings` are
/// not wanted.
void ScanLibrary(std::string_view bytes, const ScanRules& rules, FileWarnings& warnings);

/// A part of a library, from the start of a line to that of another or to the end; offsets.
struct LibraryRange {
  std::size_t begin;
  std::size_t end;
};

/// The same for a range of the library, as if nothing stood before it. Offsets count from the start
/// of the library.
void ScanRange(std::string_view bytes, const LibraryRange& range, const ScanRules& rules,
               FileWarnings& warnings);

/// The name of the tag that the line begins with, blanks around it left out; empty when it begins
/// with none.
std::string_view TagNameOf(std::string_view line);

}  // namespace tarvel
