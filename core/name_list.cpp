// SPDX-License-Identifier: MIT
#include "core/name_list.h"

#include "core/text_primitives.h"

namespace tarvel {

namespace {

constexpr std::size_t kNone = std::string_view::npos;
constexpr std::string_view kSeparator = " and";

/// The offset of the first separator, or none. Looks for its last letter, which is rarer in names
/// than its first byte.
std::size_t FindSeparator(std::string_view list) {
  constexpr std::size_t kBefore = kSeparator.size() - 1;
  for (std::size_t at = kBefore; (at = list.find(kSeparator.back(), at)) != kNone; ++at) {
    if (list.substr(0, at + 1).ends_with(kSeparator)) return at - kBefore;
  }
  return kNone;
}

}  // namespace

std::optional<std::string_view> NameParts::Next() {
  while (!at_end_) {
    const std::size_t end = FindSeparator(rest_);
    const std::string_view part = Trim(rest_.substr(0, end), " ");
    at_end_ = end == kNone;
    if (!at_end_) rest_.remove_prefix(end + kSeparator.size());
    if (!part.empty()) return part;
  }
  return std::nullopt;
}

}  // namespace tarvel
