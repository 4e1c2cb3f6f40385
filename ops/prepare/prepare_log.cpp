// SPDX-License-Identifier: MIT
#include "ops/prepare/prepare_log.h"

#include "core/text_primitives.h"

namespace tarvel {

void PrepareLog::StartEntry(std::string_view key, std::size_t offset) {
  key_ = key;
  offset_ = offset;
  has_said_ = false;
}

void PrepareLog::Say(std::initializer_list<std::string_view> parts) {
  if (!has_said_) text_.append("Entry '").append(key_).append("', line ").append(LineOf(offset_));
  text_.append(has_said_ ? "    " : ":\n    ");
  for (const std::string_view part : parts) text_.append(part);
  text_.append("\n");
  has_said_ = true;
}

void PrepareLog::EndEntry() {
  if (has_said_) text_.append("\n");
  has_said_ = false;
  key_ = {};
  WritePiece();
}

void PrepareLog::SayText(std::string_view what, std::size_t offset, std::string_view text) {
  text_.append("Line ").append(LineOf(offset)).append(": ").append(what).append(":\n");
  text_.append(text).append("\n\n");
  WritePiece();
}

/// So that the log of a large library does not stand in memory as well.
void PrepareLog::WritePiece() {
  constexpr std::size_t kPiece = std::size_t{1} << 16;
  if (text_.size() < kPiece || !write_) return;
  write_(text_);
  text_.clear();
}

void PrepareLog::Warn(WarningKind kind, std::size_t offset, std::string_view text) {
  warn_({kind, offset, key_, text});
}

void PrepareLog::LeaveOut(std::size_t offset, std::string_view tag, std::string_view why) {
  ++left_out_;
  Warn(WarningKind::kLeftOut, offset,
       "the tag " + Quoted(tag) + " was left out: " + std::string(why));
}

/// The number of an offset's line. An offset before the one asked for last counts as that.
std::string PrepareLog::LineOf(std::size_t offset) {
  if (offset > counted_to_) {
    lines_ += CountByte(bytes_.substr(counted_to_, offset - counted_to_), '\n');
    counted_to_ = offset;
  }
  return std::to_string(lines_);
}

}  // namespace tarvel
