// SPDX-License-Identifier: MIT
#include "ops/entries/entry_record.h"

#include <algorithm>
#include <optional>

#include "core/text_primitives.h"
#include "core/value_reader.h"

namespace tarvel {

namespace {

/// The value after the first "{" of `line` if all of it stands on this line; nothing if it goes on
/// after a line break.
std::optional<std::string_view> ValueOnLine(std::string_view line) {
  const std::size_t brace = line.find('{');
  if (brace == std::string_view::npos) return std::string_view();
  const std::string_view rest = line.substr(brace + 1);
  if (rest.empty()) return std::nullopt;
  int depth = 1;
  const std::size_t end = FindValueStop(rest, 0, depth);
  // A line that ends without a line break ends the value with it.
  const bool goes_on = depth != 0 && end < rest.size();
  return goes_on ? std::nullopt : std::optional(rest.substr(0, end));
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

void FieldValue::Truncate(std::size_t size) {
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
  if (ValueOnLine(line)) return std::nullopt;
  if (!joined_ && !stream.LoadAll()) return std::nullopt;
  if (!joined_) joined_.emplace(stream.Bytes());
  const auto start = static_cast<std::size_t>(line.data() - stream.Bytes().data());
  const JoinedText::FoundValue value = joined_->ValueAfter(start + line.find('{'));
  stream.SetPosition(value.line);
  (void)stream.ReadLine(value.limit);
  return value.text;
}

EntryLineEnd TagReader::ReadLine(LineStream& stream, EntryRecord& record,
                                 LongValues* long_values) const {
  const bool met_end = stream.AtEnd();
  const std::size_t offset = stream.Position();
  const auto line = stream.ReadLine(limits::kPairLine);
  if (!line) return met_end ? EntryLineEnd::kFileEnded : EntryLineEnd::kReadFailed;
  const int tag = matcher_.First(*line);
  if (tag < 0) return line->front() == '}' ? EntryLineEnd::kClosed : EntryLineEnd::kInside;
  const Field field = tags_[static_cast<std::size_t>(tag)].field;
  FieldValue& value = record[field];
  ReadValue(*line, stream, value, long_values);
  value.SetOffset(offset);
  if (field == Field::kPages) value.Truncate(FirstPage(value.Text()).size());
  return EntryLineEnd::kInside;
}

EntryLineEnd TagReader::ReadEntry(LineStream& stream, EntryRecord& record) const {
  EntryLineEnd end = EntryLineEnd::kInside;
  while (end == EntryLineEnd::kInside) end = ReadLine(stream, record);
  return end;
}

}  // namespace tarvel
