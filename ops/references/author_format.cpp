// SPDX-License-Identifier: MIT
#include "ops/references/author_format.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace tarvel {

namespace {

constexpr std::string_view kBetweenNames = " and ";
constexpr std::string_view kAnd = " and";

/// Replaces every occurrence of `pattern`, left to right. (`ReplaceString` would miss some.)
std::string ReplaceEvery(std::string_view text, std::string_view pattern,
                         std::string_view replacement) {
  std::string result;
  std::size_t copied = 0;
  for (std::size_t at = text.find(pattern); at != std::string_view::npos;
       at = text.find(pattern, copied)) {
    result.append(text.substr(copied, at - copied)).append(replacement);
    copied = at + pattern.size();
  }
  return result.append(text.substr(copied));
}

/// Appends "Last, First" as "First Last"; a name without a comma as it is.
void AppendFirstNameFirst(std::string& result, std::string_view name) {
  const std::size_t comma = name.find(',');
  if (comma == std::string_view::npos) {
    result.append(name);
    return;
  }
  const std::size_t first = std::min(name.find_first_not_of(' ', comma + 1), name.size());
  result.append(name.substr(first)).append(" ").append(name.substr(0, comma));
}

std::string FirstNamesFirst(std::string_view list) {
  std::string result;
  for (;;) {
    const std::size_t end = list.find(kBetweenNames);
    AppendFirstNameFirst(result, list.substr(0, end));
    if (end == std::string_view::npos) return result;
    result.append(", ");
    list.remove_prefix(end + kBetweenNames.size());
  }
}

std::string FormatAPS(std::string_view list) {
  std::string result = FirstNamesFirst(list);
  const bool several = list.find(kBetweenNames) != std::string_view::npos &&
                       list.find(',') != std::string_view::npos;
  const std::size_t last = result.rfind(", ");
  if (several && last != std::string::npos) result.replace(last, 2, kBetweenNames);
  return result;
}

/// Drops every "," and "."; a blank takes the place of one that no "-" or blank follows.
std::string DropPunctuation(std::string_view list) {
  std::string result;
  for (std::size_t i = 0; i < list.size(); ++i) {
    if (list[i] != ',' && list[i] != '.') {
      result.push_back(list[i]);
    } else if (i + 1 == list.size() || (list[i + 1] != '-' && list[i + 1] != ' ')) {
      result.push_back(' ');
    }
  }
  return result;
}

std::string FormatIOP(std::string_view list) {
  std::string result = ReplaceEvery(DropPunctuation(list), kAnd, ",");
  const std::size_t last = result.rfind(',');
  if (last != std::string::npos) result.replace(last, 1, kAnd);
  return result;
}

std::string FormatNature(std::string_view list) {
  std::string result = ReplaceEvery(list, kAnd, ",");
  const std::size_t last = result.rfind(',');
  if (last == std::string::npos || last == 0) return result;
  const std::size_t second = result.rfind(',', last - 1);
  if (second != std::string::npos) result.replace(second, 1, " \\&");
  return result;
}

std::string FormatACS(std::string_view list) { return ReplaceEvery(list, kAnd, ";"); }

std::string FormatSpringer(std::string_view list) {
  std::string result;
  while (!list.empty()) {
    if (list.front() == '.' && (list.size() == 1 || list[1] == '-' || list[1] == ' ')) {
      list.remove_prefix(std::min<std::size_t>(2, list.size()));
      // The blank of the " and" went with the period.
      if (list.starts_with("and ")) {
        result.push_back(',');
        list.remove_prefix(3);
      }
    } else if (list.starts_with(", ")) {
      result.push_back(' ');
      list.remove_prefix(2);
    } else if (list.starts_with(kAnd)) {
      result.push_back(',');
      list.remove_prefix(kAnd.size());
    } else {
      result.push_back(list.front());
      list.remove_prefix(1);
    }
  }
  return result;
}

// ORDER: JournalStyle
constexpr std::array<std::string (*)(std::string_view), kStyleCount> kFormatters{
    FormatACS, FormatAPS, FormatIOP, FormatNature, FirstNamesFirst, FormatSpringer};

}  // namespace

void FormatAuthorList(std::string& list, std::optional<JournalStyle> style) {
  list = style ? kFormatters[static_cast<std::size_t>(*style)](list) : std::string();
}

}  // namespace tarvel
