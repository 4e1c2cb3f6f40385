// SPDX-License-Identifier: MIT
#include "ops/exempt_tags.h"

#include "core/ascii.h"
#include "core/text_primitives.h"

namespace tarvel {

namespace {

constexpr std::size_t kNone = std::string_view::npos;

/// Where `word` begins that ends the text, blanks and tabs skipped; `kNone` when it does not.
std::size_t BeginOfLast(std::string_view text, std::string_view word) {
  for (; !word.empty(); word.remove_suffix(1)) {
    text = TrimEnd(text, IsBlankOrTab);
    if (text.empty() || ToUpper(text.back()) != word.back()) return kNone;
    text.remove_suffix(1);
  }
  return text.size();
}

}  // namespace

std::optional<ExemptTag> FindExemptTag(std::string_view line, std::size_t from) {
  for (std::size_t brace = line.find('{', from); brace != kNone;
       brace = line.find('{', brace + 1)) {
    std::string_view before = TrimEnd(line.substr(0, brace), IsBlankOrTab);
    if (!before.ends_with('=')) continue;
    before.remove_suffix(1);
    const std::string_view name = TrimEnd(before, IsBlankOrTab);
    const char last = name.empty() ? '\0' : ToUpper(name.back());
    for (const std::string_view tag : kExemptTags) {
      if (tag.back() != last) continue;
      const std::size_t begin = BeginOfLast(name, tag);
      if (begin != kNone && begin >= from) return ExemptTag{tag, begin, before.size()};
    }
  }
  return std::nullopt;
}

}  // namespace tarvel
