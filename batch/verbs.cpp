// SPDX-License-Identifier: MIT
#include "batch/verbs.h"

#include <algorithm>

namespace tarvel {

const VerbRow* FindVerb(std::string_view name) {
  const auto* const found = std::find_if(kVerbRows.begin(), kVerbRows.end(),
                                         [&](const VerbRow& row) { return row.name == name; });
  return found == kVerbRows.end() ? nullptr : found;
}

}  // namespace tarvel
