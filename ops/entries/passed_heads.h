// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "ops/entries/cited_entries.h"

namespace tarvel {

/// An entry that BibTeX takes for a cited key, while Extract takes another one. `head` and `taken`
/// are offsets.
struct PassedHead {
  std::string_view key;
  std::size_t head;   // of its "@"
  std::size_t taken;  // of a byte on the first line of the entry that Extract takes
};

/// Looks through a library for entries of the cited keys that were passed over: the key stands on
/// a different line from the "@", has blanks around it, stands in parentheses or has no comma after
/// it, or the type is unknown. Of entries with one key BibTeX takes the first and calls the others
/// repeated. Calls `on_passed` for each entry found. Linear in the library.
void FindPassedHeads(std::string_view library, const std::vector<std::string>& keys,
                     const CitedEntries& taken,
                     const std::function<void(const PassedHead&)>& on_passed);

}  // namespace tarvel
