// SPDX-License-Identifier: MIT
#include "ops/prepare/guards.h"

#include <algorithm>
#include <array>
#include <vector>

#include "ops/exempt_tags.h"
#include "ops/prepare/letters.h"

namespace tarvel {

namespace {

using namespace std::string_view_literals;

constexpr std::string_view kGroup = "{}";

/// Commands whose argument is no text: an empty group in it would be seen, or lead elsewhere.
constexpr std::array kVerbatimCommands{"url"sv,
                                       "href"sv,
                                       "path"sv,
                                       "nolinkurl"sv,
                                       "doi"sv,
                                       "email"sv,
                                       "ref"sv,
                                       "eqref"sv,
                                       "pageref"sv,
                                       "label"sv,
                                       "input"sv,
                                       "include"sv,
                                       "includegraphics"sv,
                                       "bibitem"sv,
                                       "begin"sv,
                                       "end"sv,
                                       "textcolor"sv,
                                       "color"sv,
                                       "hyperref"sv};

bool IsVerbatim(std::string_view command) {
  return command.starts_with("cite") || command.ends_with("cite") ||
         std::find(kVerbatimCommands.begin(), kVerbatimCommands.end(), command) !=
             kVerbatimCommands.end();
}

/// The offset after the brace that closes the one at `open`, or the end.
std::size_t GroupEnd(std::string_view text, std::size_t open) {
  std::size_t depth = 0;
  for (std::size_t at = open; at < text.size(); ++at) {
    if (text[at] == '{') ++depth;
    if (text[at] == '}' && --depth == 0) return at + 1;
  }
  return text.size();
}

std::size_t LettersEnd(std::string_view text, std::size_t at) {
  while (at < text.size() && IsLetter(text[at])) ++at;
  return at;
}

/// The end of the command at `at`, a backslash, with its argument where that is no text.
std::size_t CommandEnd(std::string_view text, std::size_t at) {
  const std::size_t end = LettersEnd(text, at + 1);
  const std::string_view name = text.substr(at + 1, end - at - 1);
  if (name.empty()) return std::min(at + 2, text.size());
  if (name == "verb" && end < text.size()) {
    return std::min(text.find(text[end], end + 1), text.size() - 1) + 1;
  }
  if (!IsVerbatim(name)) return end;
  std::size_t argument = end;
  while (argument < text.size() && text[argument] == '[') {
    const std::size_t close = text.find_first_of("[]", argument + 1);
    if (close == std::string_view::npos || text[close] == '[') return end;
    argument = close + 1;
  }
  return argument < text.size() && text[argument] == '{' ? GroupEnd(text, argument) : end;
}

/// Which bytes of a text nothing may be put in front of.
std::vector<bool> FindClosedOffsets(std::string_view text) {
  std::vector<bool> closed(text.size() + 1);
  for (std::size_t at = text.find('\\'); at < text.size(); at = text.find('\\', at)) {
    const std::size_t end = CommandEnd(text, at);
    std::fill(closed.begin() + static_cast<std::ptrdiff_t>(at) + 1,
              closed.begin() + static_cast<std::ptrdiff_t>(end), true);
    at = end;
  }
  return closed;
}

/// Where empty groups go, in any order.
using Offsets = std::vector<std::size_t>;

void FindWordOffsets(std::string_view text, std::size_t word, Offsets& offsets) {
  const std::string_view name = kWords[word];
  for (std::size_t at = 0; at + name.size() <= text.size(); ++at) {
    if (!EqualNoCase(text.substr(at, name.size()), name)) continue;
    offsets.push_back(at + SplitOf(word));
    at += name.size() - 1;
  }
}

/// Only where "journal" has blanks in it; without, it is a word like others.
void FindSpacedOffsets(std::string_view text, char first, Offsets& offsets) {
  SpacedWord word = FindSpacedJournal(text, 0, first);
  for (; word.size > 0; word = FindSpacedJournal(text, word.begin + word.size, first)) {
    if (word.size > kWords[0].size()) offsets.push_back(word.begin + 1);
  }
}

void FindExemptOffsets(std::string_view text, Offsets& offsets) {
  for (auto tag = FindExemptTag(text); tag; tag = FindExemptTag(text, tag->end)) {
    offsets.push_back(tag->begin + 1);
  }
}

void FindAtOffsets(std::string_view text, Offsets& offsets) {
  for (std::size_t at = text.find('@'); at != std::string_view::npos; at = text.find('@', at + 1)) {
    if (at + 1 == text.size() || text[at + 1] != '{') offsets.push_back(at + 1);
  }
}

/// Puts an empty group at each offset that is open.
void PutGroups(std::string_view text, Offsets& offsets, std::string& result) {
  const std::vector<bool> closed = FindClosedOffsets(text);
  std::sort(offsets.begin(), offsets.end());
  offsets.erase(std::unique(offsets.begin(), offsets.end()), offsets.end());
  result.clear();
  std::size_t copied = 0;
  for (const std::size_t offset : offsets) {
    if (closed[offset]) continue;
    result.append(text.substr(copied, offset - copied)).append(kGroup);
    copied = offset;
  }
  result.append(text.substr(copied));
}

bool HoldsUpperCasedText(std::string_view text) {
  for (std::size_t at = text.find('@'); at != std::string_view::npos; at = text.find('@', at + 1)) {
    if (at + 1 < text.size() && text[at + 1] == '{') continue;
    return text.find('{', at + 1) != std::string_view::npos;
  }
  return false;
}

/// The size of the character that may be moved out in front of a braced word: a letter or digit.
std::size_t MovableSize(std::string_view text) {
  if (IsLetter(text[0]) || IsDigit(text[0])) return 1;
  const auto is_high = [](char byte) { return static_cast<signed char>(byte) < 0; };
  if (!is_high(text[0])) return 0;
  std::size_t size = 1;
  while (size < text.size() && (static_cast<unsigned char>(text[size]) & 0xC0U) == 0x80) ++size;
  return size;
}

void AppendGuardedBegin(std::string_view& value, std::string& guarded) {
  const std::size_t end = GroupEnd(value, 0);
  const std::string_view inner = value.substr(1, end - 2);
  if (inner.empty()) {
    value = Trim(value.substr(end), " ");
    return;
  }
  if (const std::size_t size = MovableSize(inner); size > 0) {
    guarded.append(inner.substr(0, size));
    if (size < inner.size()) guarded.append("{").append(inner.substr(size)).append("}");
  } else {
    // A second pair, as BibTeX would change the case of a command's letters within one.
    guarded.append("\\relax{{").append(inner).append("}}");
  }
  value.remove_prefix(end);
}

/// Whether the byte at `at` belongs to a command or to its argument.
bool IsInArgument(std::string_view value, std::size_t at) {
  if (value[at - 1] == '\\') return true;
  std::size_t before = at;
  for (std::size_t depth = 1; before > 0 && depth > 0;) {
    --before;
    if (value[before] == '}') ++depth;
    if (value[before] == '{') --depth;
  }
  while (before > 0 && IsLetter(value[before - 1])) --before;
  return before > 0 && value[before - 1] == '\\';
}

void GuardEnd(std::string& value) {
  std::size_t inner = value.size();
  while (inner > 0 && value[inner - 1] == '}') --inner;
  if (inner < 2 || ".?!"sv.find(value[inner - 1]) == std::string_view::npos ||
      IsInArgument(value, inner - 1)) {
    value += "\\/";
    return;
  }
  const char mark = value[inner - 1];
  value.erase(inner - 1, 1);
  value += mark;
}

constexpr std::string_view kAnd = " and ";
constexpr std::string_view kMisreadAnd = " and";  // by Extract and Text

/// Whether all names of a list, parted by " and ", have a comma, and there are two at least.
bool IsListOfNames(std::string_view list) {
  std::size_t names = 0;
  for (;;) {
    const std::size_t end = list.find(kAnd);
    if (list.substr(0, end).find(',') == std::string_view::npos) return false;
    ++names;
    if (end == std::string_view::npos) return names > 1;
    list.remove_prefix(end + kAnd.size());
  }
}

/// How many pairs of braces stand around all of a value, blanks between them skipped.
std::size_t CountOuterPairs(std::string_view value) {
  std::size_t begin = 0;
  std::size_t opens = 0;
  for (; begin < value.size() && (value[begin] == '{' || value[begin] == ' '); ++begin) {
    if (value[begin] == '{') ++opens;
  }
  std::size_t end = value.size();
  std::size_t closes = 0;
  for (; end > begin && (value[end - 1] == '}' || value[end - 1] == ' '); --end) {
    if (value[end - 1] == '}') ++closes;
  }
  std::size_t depth = opens;
  std::size_t lowest = depth;
  for (const char byte : value.substr(begin, end - begin)) {
    if (byte == '{') ++depth;
    if (byte == '}' && depth > 0) lowest = std::min(lowest, --depth);
  }
  const std::size_t pairs = std::min(lowest, closes);
  const bool is_command = begin < value.size() && value[begin] == '\\';
  return pairs - (is_command && pairs == opens && pairs > 0 ? 1 : 0);
}

std::string_view StripPairs(std::string_view value, std::size_t pairs) {
  for (; pairs > 0; --pairs) value = Trim(value.substr(1, value.size() - 2), " ");
  return value;
}

}  // namespace

std::string_view StripOuterBraces(std::string_view value, bool is_names) {
  if (!value.starts_with('{') || !value.ends_with('}')) return value;
  const std::size_t pairs = CountOuterPairs(value);
  const std::string_view inner = StripPairs(value, pairs);
  if (is_names && pairs > 0 && !IsListOfNames(inner)) return StripPairs(value, pairs - 1);
  return inner;
}

bool NeedsEnds(std::string_view value) {
  return !value.empty() && (value.front() == '{' || value.back() == '}');
}

void GuardEnds(std::string_view value, std::string& guarded) {
  guarded.clear();
  while (!value.empty() && value.front() == '{' && guarded.empty()) {
    AppendGuardedBegin(value, guarded);
  }
  guarded.append(value);
  if (guarded.ends_with('}')) GuardEnd(guarded);
}

void GuardWords(std::string_view value, WordSet words, std::string& guarded) {
  Offsets offsets;
  for (std::size_t word = 0; word < kWords.size(); ++word) {
    if ((words & WordBit(word)) != 0) FindWordOffsets(value, word, offsets);
  }
  if ((words & kJournalBit) != 0) {
    for (const char first : {'j', 'J'}) FindSpacedOffsets(value, first, offsets);
  }
  FindExemptOffsets(value, offsets);
  if (HoldsUpperCasedText(value) || !offsets.empty()) FindAtOffsets(value, offsets);
  PutGroups(value, offsets, guarded);
}

bool HasPartsInBraces(std::string_view names) {
  for (std::size_t at = names.find('{'); at < names.size(); at = names.find('{', at)) {
    const std::size_t end = GroupEnd(names, at);
    const std::string_view group = names.substr(at, end - at);
    if (group.find(',') < group.size() || group.find(kMisreadAnd) < group.size()) return true;
    at = end;
  }
  return false;
}

bool HasCommaInBraces(std::string_view names) {
  std::size_t depth = 0;
  bool has_comma = false;
  for (std::size_t at = 0; at < names.size(); ++at) {
    if (names[at] == '{') ++depth;
    if (names[at] == '}' && depth > 0) --depth;
    if (depth == 0 && names.substr(at).starts_with(kAnd)) has_comma = false;
    if (names[at] != ',' || has_comma) continue;
    if (depth > 0) return true;
    has_comma = true;
  }
  return false;
}

void GuardNames(std::string_view names, std::string& guarded) {
  Offsets offsets;
  std::size_t depth = 0;
  for (std::size_t at = 0; at < names.size(); ++at) {
    if (names[at] == '{') ++depth;
    if (names[at] == '}' && depth > 0) --depth;
    if (depth > 0 && names.substr(at).starts_with(kMisreadAnd)) offsets.push_back(at + 2);
  }
  PutGroups(names, offsets, guarded);
}

Harm LookForHarm(std::string_view value, const TextFacts& facts, WordSet harmful) {
  Harm harm;
  harm.words = facts.words & harmful;
  if (facts.may_journal && (harmful & kJournalBit) != 0 &&
      (FindSpacedJournal(value, 0, 'j').size > 0 || FindSpacedJournal(value, 0, 'J').size > 0)) {
    harm.words |= kJournalBit;
  }
  harm.is_exempt = facts.has_equals && facts.has_brace && FindExemptTag(value).has_value();
  harm.is_at = facts.has_at && facts.has_brace && HoldsUpperCasedText(value);
  return harm;
}

}  // namespace tarvel
