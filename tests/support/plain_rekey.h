// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace tarvel::testing {

using PlainKeys = std::map<std::string, std::string>;

/// The lines of a key map; nothing when one of them is none.
std::optional<PlainKeys> PlainReadKeyMap(const std::string& bytes);

struct PlainRekeyed {
  std::string text;
  std::size_t replaced = 0;
};

/// A LaTeX document with the keys in the citation commands of LaTeX, natbib, biblatex and csquotes
/// replaced, read byte after byte: the judge of the reader of documents.
PlainRekeyed PlainRekey(const std::string& document, const PlainKeys& keys);

}  // namespace tarvel::testing
