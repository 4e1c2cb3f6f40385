// SPDX-License-Identifier: MIT
#include "ops/author_reasons.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace tarvel {

namespace {

constexpr std::size_t kNone = std::string_view::npos;

std::string_view Trim(std::string_view text, std::string_view bytes) {
  text.remove_prefix(std::min(text.find_first_not_of(bytes), text.size()));
  return text.substr(0, text.find_last_not_of(bytes) + 1);
}

bool HasComma(std::string_view name) { return name.find(',') != kNone; }

/// The names of a list, cut as the recognisers cut it.
std::vector<std::string_view> NamesIn(std::string_view list) {
  constexpr std::string_view kSeparator = " and";
  std::vector<std::string_view> names;
  for (bool more = true; more;) {
    const std::size_t end = list.find(kSeparator);
    const std::string_view name = Trim(list.substr(0, end), " ");
    if (!name.empty()) names.push_back(name);
    more = end != kNone;
    if (more) list.remove_prefix(end + kSeparator.size());
  }
  return names;
}

std::string Quoted(std::string_view text) { return std::string("'").append(text).append("'"); }

}  // namespace

std::string WhyAsItWas(std::string_view list) {
  const std::vector<std::string_view> names = NamesIn(list);
  if (names.empty()) return {};
  const auto plain =
      std::find_if(names.begin(), names.end(), [](auto name) { return !HasComma(name); });
  if (plain == names.end()) {
    const bool one_full = names.size() == 1 && list.find('.') == kNone;
    return one_full ? Quoted(names.front()) + " is a single name with a comma" : std::string();
  }
  if (HasComma(list)) return Quoted(*plain) + " has no comma, but other names have one";
  const auto word = std::find_if(names.begin(), names.end(), [](std::string_view name) {
    return name.find_first_of(" ~") == kNone;
  });
  return Quoted(word == names.end() ? *plain : *word) + " has no first names";
}

std::string_view TextBehindValue(std::string_view line) {
  const std::size_t brace = line.find('{');
  if (brace == kNone) return {};
  int depth = 0;
  for (std::size_t at = brace; at < line.size(); ++at) {
    if (line[at] == '{') ++depth;
    if (line[at] != '}' || --depth > 0) continue;
    return Trim(line.substr(at + 1), " \t\r\n,");
  }
  return {};
}

}  // namespace tarvel
