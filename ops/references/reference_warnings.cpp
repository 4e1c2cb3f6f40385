// SPDX-License-Identifier: MIT
#include "ops/references/reference_warnings.h"

#include <algorithm>

#include "core/ascii.h"

namespace tarvel {

namespace {

// ORDER: ReferenceValue
constexpr std::array<std::string_view, kValueCount> kValueNames{
    "name",  "author",    "title",   "journal", "year",      "volume",
    "pages", "publisher", "address", "editor",  "booktitle", "school"};

std::string_view NameOf(ReferenceValue value) {
  return kValueNames[static_cast<std::size_t>(value)];
}

/// The LaTeX command at the start of `text`: a backslash and letters, or one other byte.
std::string_view CommandAt(std::string_view text) {
  std::size_t end = 1;
  while (end < text.size() && IsLetter(text[end])) ++end;
  return text.substr(0, std::max<std::size_t>(end, 2));
}

}  // namespace

void ReferenceWarnings::StartEntry(std::string_view key, std::size_t offset) {
  key_ = key;
  offset_ = offset;
  read_.fill(false);
}

void ReferenceWarnings::ReportNothingPrinted(std::string_view why) {
  if (!warnings_.Wanted()) return;
  warnings_.Report(WarningKind::kNothingPrinted, offset_, key_,
                   std::string("no reference was printed: ").append(why));
}

void ReferenceWarnings::ReportCarriedOver(std::span<const ReferenceValue> shown,
                                          const EntryValues& values) {
  if (!warnings_.Wanted()) return;
  for (std::size_t i = 0; i < kValueCount; ++i) {
    if (read_[i]) owner_[i] = key_;
  }
  for (const ReferenceValue value : shown) {
    const auto index = static_cast<std::size_t>(value);
    if (value == ReferenceValue::kBibitem || read_[index] || values[value].empty()) continue;
    warnings_.Report(WarningKind::kCarriedOver, offset_, key_,
                     std::string("shows the ")
                         .append(NameOf(value))
                         .append(" of the earlier entry '")
                         .append(owner_[index])
                         .append("'"));
  }
}

void ReferenceWarnings::ReportCommands(std::span<const ReferenceValue> shown,
                                       const EntryValues& values) {
  if (!warnings_.Wanted()) return;
  for (const ReferenceValue value : shown) {
    const std::string_view text = values[value];
    const std::size_t at = text.find('\\');
    if (value == ReferenceValue::kBibitem || at == std::string_view::npos) continue;
    warnings_.Report(WarningKind::kCommandLeft, offset_, key_,
                     std::string("'")
                         .append(CommandAt(text.substr(at)))
                         .append("' is left in the ")
                         .append(NameOf(value)));
  }
}

}  // namespace tarvel
