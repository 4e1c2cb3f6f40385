// SPDX-License-Identifier: MIT
#include "ops/entries/entry_record.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "core/text_primitives.h"
#include "core/value_reader.h"

namespace tarvel {

namespace {

std::vector<std::string_view> NamesOf(std::span<const TagName> tags) {
  std::vector<std::string_view> names;
  for (const TagName& tag : tags) names.push_back(tag.name);
  return names;
}

/// The value behind the first "{" of `line` if all of it stands on this line; nothing if it goes on
/// behind a line break.
std::optional<std::string_view> ValueOnLine(std::string_view line) {
  const std::size_t brace = line.find('{');
  if (brace == std::string_view::npos) return std::string_view();
  const std::string_view rest = line.substr(brace + 1);
  if (rest.empty()) return std::nullopt;
  int depth = 1;
  for (std::size_t i = 0; i < rest.size(); ++i) {
    if (rest[i] == '\n') return std::nullopt;
    if (rest[i] == '{') ++depth;
    if (rest[i] == '}' && --depth == 0) return rest.substr(0, i);
  }
  return rest;  // the line ends without a line break, and the value with it
}

void ReadValue(std::string_view text, LineStream& stream, FieldValue& value,
               LongValues* long_values) {
  if (const auto on_line = ValueOnLine(text)) return value.SetView(*on_line);
  if (long_values) {
    if (const auto found = long_values->LookUp(text, stream)) return value.SetView(*found);
  }
  const std::size_t start = stream.Position();
  Line line(text);
  ReadFieldValue(line, stream, value.SetJoined());
  if (long_values) long_values->CountRead(stream.Position() - start);
}

/// Keeps the first page: "123-130" and "123--130" both become "123", "-130" becomes empty.
void KeepFirstPage(FieldValue& pages) {
  const std::size_t dash = pages.Text().find('-');
  if (dash != std::string_view::npos) pages.Cut(dash);
}

}  // namespace

std::string_view TextStore::Keep(std::string_view text) { return Keep(std::span(&text, 1)); }

std::string_view TextStore::Keep(std::span<const std::string_view> texts) {
  std::size_t size = 0;
  for (const std::string_view text : texts) size += text.size();
  char* const copy = static_cast<char*>(texts_.allocate(size, 1));
  char* end = copy;
  for (const std::string_view text : texts) end = std::copy(text.begin(), text.end(), end);
  return {copy, size};
}

void FieldValue::Cut(std::size_t size) {
  if (is_joined_) {
    joined_.resize(std::min(size, joined_.size()));
  } else {
    view_ = view_.substr(0, size);
  }
}

void EntryRecord::Start(std::string_view head) {
  key = CopyUntilChar(head, '{', ',');
  type = CopyUntilChar(head, '@', '{');
  for (FieldValue& field : fields) field.Clear();
}

std::optional<std::string_view> LongValues::LookUp(std::string_view line, LineStream& stream) {
  if (read_ <= 2 * stream.Bytes().size() || line.back() != '\n') return std::nullopt;
  if (!joined_ && !stream.LoadAll()) return std::nullopt;
  if (!joined_) joined_.emplace(stream.Bytes());
  const auto start = static_cast<std::size_t>(line.data() - stream.Bytes().data());
  const auto value = joined_->ValueBehind(start + line.find('{'));
  if (!value) return std::nullopt;
  stream.SetPosition(value->line);
  (void)stream.ReadLine(value->limit);
  return value->text;
}

TagReader::TagReader(std::span<const TagName> tags) : tags_(tags), matcher_(NamesOf(tags)) {}

EntryLineEnd TagReader::ReadLine(LineStream& stream, EntryRecord& record,
                                 LongValues* long_values) const {
  const bool met_end = stream.AtEnd();
  const std::size_t place = stream.Position();
  const auto line = stream.ReadLine(limits::kPairLine);
  if (!line) return met_end ? EntryLineEnd::kFileEnded : EntryLineEnd::kReadFailed;
  const int tag = matcher_.First(*line);
  if (tag < 0) return line->front() == '}' ? EntryLineEnd::kClosed : EntryLineEnd::kInside;
  const Field field = tags_[static_cast<std::size_t>(tag)].field;
  FieldValue& value = record[field];
  ReadValue(*line, stream, value, long_values);
  value.SetPlace(place);
  if (field == Field::kPages) KeepFirstPage(value);
  return EntryLineEnd::kInside;
}

EntryLineEnd TagReader::ReadEntry(LineStream& stream, EntryRecord& record) const {
  EntryLineEnd end = EntryLineEnd::kInside;
  while (end == EntryLineEnd::kInside) end = ReadLine(stream, record);
  return end;
}

}  // namespace tarvel
