// SPDX-License-Identifier: MIT
#include "warnings/author_reasons.h"

#include <cstddef>

#include "core/name_list.h"

namespace tarvel {

namespace {

constexpr std::size_t kNone = std::string_view::npos;

bool HasComma(std::string_view name) { return name.find(',') != kNone; }

/// The first name of a list that `test` is true of; empty when there is none.
template <typename Test>
std::string_view FirstName(std::string_view list, const Test& test) {
  NameParts names(list);
  while (const auto name = names.Next()) {
    if (test(*name)) return *name;
  }
  return {};
}

/// The name of a list of one; empty when there are more, or none.
std::string_view OnlyName(std::string_view list) {
  NameParts names(list);
  const auto name = names.Next();
  return name && !names.Next() ? *name : std::string_view();
}

std::string Quoted(std::string_view text) { return std::string("'").append(text).append("'"); }

}  // namespace

std::string WhyNoKnownForm(std::string_view list) {
  const std::string_view plain =
      FirstName(list, [](std::string_view name) { return !HasComma(name); });
  if (plain.empty()) {
    const std::string_view only = OnlyName(list);
    if (only.empty() || list.find('.') != kNone) return {};
    return Quoted(only) + " is a single name with a comma";
  }
  if (HasComma(list)) return Quoted(plain) + " has no comma, but other names have one";
  const std::string_view word =
      FirstName(list, [](std::string_view name) { return name.find_first_of(" ~") == kNone; });
  return Quoted(word.empty() ? plain : word) + " has no first names";
}

}  // namespace tarvel
