// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <string_view>

#include "core/ascii.h"

namespace tarvel {

/// The types of the entries that the program knows.
inline constexpr std::array<std::string_view, 24> kEntryTypes{
    "ARTICLE",          "BOOK",       "PHDTHESIS",  "INCOLLECTION",
    "INPROCEEDINGS",    "MISC",       "OTHER",      "PROCEEDINGS",
    "ELECTRONIC",       "BOOKLET",    "INBOOK",     "MASTERTHESIS",
    "CONFERENCE",       "MANUAL",     "TECHREPORT", "UNPUBLISHED",
    "STANDARD",         "PERIODICAL", "PATENT",     "MEETINGABSTRACT",
    "PROCEEDINGSPAPER", "LETTER",     "REVIEW",     "EDITORIALMATERIAL"};

/// The type that the word names in any letter case, as it stands in `kEntryTypes`; empty when it
/// names none.
constexpr std::string_view FindEntryType(std::string_view word) {
  const auto* const found =
      std::find_if(kEntryTypes.begin(), kEntryTypes.end(),
                   [word](std::string_view type) { return EqualNoCase(type, word); });
  return found == kEntryTypes.end() ? std::string_view() : *found;
}

}  // namespace tarvel
