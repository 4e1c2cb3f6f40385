// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace tarvel {

/// One of the 34 tags that Clean tags knows.
struct TagRule {
  std::string_view name;   // searched for in a tag's name, any case; written in lower case
  std::string_view label;  // of its check box
  int removed_at_start;    // the default of its flag
  bool in_line_filter;     // whether a line that mentions it is looked at at all
  bool doubles_braces;     // whether its value is written in two pairs of braces
};

inline constexpr std::size_t kTagCount = 34;

/// ORDER: a tag's name is tested against the rows from the top, and the first that it contains
/// wins. So booktitle stands before title, and citeseerurl, after url, is never reached.
inline constexpr std::array<TagRule, kTagCount> kTagRules{{
    {"author", "Author", 0, true, false},
    {"booktitle", "Booktitle", 1, true, false},
    {"title", "Title", 0, true, true},
    {"volume", "Volume", 0, true, false},
    {"pages", "Pages", 0, true, false},
    {"year", "Year", 0, true, false},
    {"journal", "Journal", 0, true, false},
    {"month", "Month", 1, true, false},
    {"abstract", "Abstract", 1, true, false},
    {"note", "Notes", 1, true, false},
    {"owner", "Owner", 1, true, false},
    {"timestamp", "Timestamp", 1, true, false},
    {"url", "URL", 1, true, false},
    {"comment", "Comment", 1, true, false},
    {"number", "Number", 1, true, false},
    {"eid", "Eid", 1, true, false},
    // Keywords is not in the line filter, on purpose: such a line is kept only if it happens to
    // mention another tag.
    {"keywords", "Keywords", 1, false, false},
    {"crossref", "Crossref", 1, true, false},
    {"review", "Review", 1, true, false},
    {"doi", "DOI", 1, true, false},
    {"file", "File", 1, true, false},
    {"editor", "Editor", 1, true, false},
    {"publisher", "Publisher", 1, true, false},
    {"address", "Address", 1, true, false},
    {"edition", "Edition", 1, true, false},
    {"school", "School", 1, true, false},
    {"series", "Series", 1, true, false},
    {"citeseerurl", "Citeseerurl", 1, true, false},
    {"type", "Type", 1, true, false},
    {"chapter", "Chapter", 1, true, false},
    {"nationality", "Nationality", 1, true, false},
    {"yearfiled", "Yearfiled", 1, true, false},
    {"organization", "Organization", 1, true, false},
    {"institution", "Institution", 1, true, false},
}};

/// The row of the tag with this very name, or `kTagCount`.
constexpr std::size_t TagIndex(std::string_view name) {
  std::size_t index = 0;
  while (index < kTagCount && kTagRules[index].name != name) ++index;
  return index;
}

}  // namespace tarvel
