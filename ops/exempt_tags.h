// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace tarvel {

/// The tags whose lines Clean characters leaves out: paths, bookkeeping, identifiers. In upper
/// case.
inline constexpr std::array<std::string_view, 5> kExemptTags{"FILE", "OWNER", "TIMESTAMP", "DOI",
                                                             "URL"};

/// The name of an exempt tag in a line. Blanks and tabs may stand between its letters.
struct ExemptTag {
  std::string_view name;  // of `kExemptTags`
  std::size_t begin = 0;  // its offset in the line
  std::size_t end = 0;
};

/// The first exempt tag from the offset `from` on that "={" follows, where letter case, blanks and
/// tabs are ignored; nothing when there is none. Such a tag need not be the line's own: "myurl = {"
/// holds one, too.
std::optional<ExemptTag> FindExemptTag(std::string_view line, std::size_t from = 0);

}  // namespace tarvel
