// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <string_view>

#include "core/name_matcher.h"

namespace tarvel {

/// The head of an entry of a known type.
struct EntryHead {
  std::string_view type;  // in capitals; lives as long as the call that passes the head
  std::string_view key;   // a part of the library's bytes
  std::size_t offset = 0;
};

/// How many values were met.
struct ValueCounts {
  std::size_t values = 0;    // all of them
  std::size_t unbraced = 0;  // those in quotes or bare
  std::size_t lost = 0;      // of these, those on a line that mentions a tag that is read

  ValueCounts& operator+=(const ValueCounts& others) {
    values += others.values;
    unbraced += others.unbraced;
    lost += others.lost;
    return *this;
  }
};

/// What an operation asks of a library that it is about to read.
struct ScanRules {
  /// Its line limit, as `LineStream::ReadLine` takes it.
  std::size_t line_limit = 0;
  /// The tags whose values it reads, if any; others may stand without braces.
  const NameMatcher* read_tags = nullptr;
  /// Whether only a line that begins with "}" ends an entry for it.
  bool needs_closing_line = false;
  /// Whether it reads one value a line, and none on an entry's first line.
  bool one_value_a_line = false;
  /// Whether it has a use for every tag, and not only for `read_tags`.
  bool takes_all_tags = false;
  /// Whether it writes what stands between an "@" and a brace in capitals.
  bool upper_cases = true;
  /// The tags that it takes from lines outside entries, for tags of the entry before; if any.
  const NameMatcher* stray_tags = nullptr;
  /// Called for each entry, in their order.
  std::function<void(const EntryHead& head)> on_entry = {};
};

}  // namespace tarvel
