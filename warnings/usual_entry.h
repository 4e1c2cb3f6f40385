// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>

namespace tarvel {

/// The type of the entry that begins with `entry`, in capitals; empty when the text begins with no
/// entry of a known type.
std::string_view TypeOf(std::string_view entry);

/// The extent of an entry, and whether it needs a closer look.
struct EntryText {
  std::size_t size;
  /// Whether it is an entry of a known type in the usual form, after which nothing is open: of such
  /// an entry there is nothing to tell.
  bool is_usual;
};

/// Measures the entry at the start of `text`, which is not empty: up to the next "@" behind the
/// first byte, or to the end. One pass.
EntryText MeasureEntry(std::string_view text);

}  // namespace tarvel
