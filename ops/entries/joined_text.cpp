// SPDX-License-Identifier: MIT
#include "ops/entries/joined_text.h"

#include <algorithm>
#include <limits>

#include "core/line_stream.h"
#include "core/text_primitives.h"
#include "core/value_reader.h"

namespace tarvel {

namespace {

std::ptrdiff_t StepOf(char byte) { return byte == '{' ? 1 : byte == '}' ? -1 : 0; }

bool IsBlank(std::string_view text) { return SkipContinuationBlanks(text, 0) == text.size(); }

std::size_t AfterLine(std::string_view bytes, std::size_t start) {
  const std::size_t newline = bytes.find('\n', start);
  return newline == std::string_view::npos ? bytes.size() : newline + 1;
}

}  // namespace

JoinedText::JoinedText(std::string_view bytes) : bytes_(bytes) {
  text_.reserve(bytes.size());
  lines_.reserve(CountByte(bytes, '\n') + 2);
  lines_.push_back({0, 0, 0, 0});
  for (std::size_t start = 0; start < bytes.size();) {
    const std::string_view piece = bytes.substr(start, LimitOf(lines_.size() - 1) - 1);
    const bool is_blank = piece.find('\n') == std::string_view::npos && IsBlank(piece);
    const std::size_t end = is_blank ? start + piece.size() : AfterLine(bytes, start);
    AddLine(start, end);
    start = end;
  }
  LinkLines();
}

/// Fills the last line of the list and adds the one after it.
void JoinedText::AddLine(std::size_t start, std::size_t end) {
  const std::string_view line = bytes_.substr(start, end - start);
  const std::size_t first = SkipContinuationBlanks(line, 0);
  const bool is_blank = first == line.size();
  JoinedLine& added = lines_.back();
  if (!is_blank && !text_.empty()) text_.push_back(' ');
  added.joined = text_.size();
  const bool is_whole = line.back() == '\n';
  if (!is_blank) text_.append(line.substr(first, line.size() - first - (is_whole ? 1 : 0)));

  added.lowest = added.depth;
  std::ptrdiff_t depth = added.depth;
  for (const char byte : line.substr(first)) {
    depth += StepOf(byte);
    added.lowest = std::min(added.lowest, depth);
  }
  const bool fits = is_whole && line.size() < LimitOf(lines_.size() - 1);
  if (!fits && !is_blank) barriers_.push_back(lines_.size() - 1);
  lines_.push_back({end, 0, depth, 0});
}

void JoinedText::LinkLines() {
  JoinedLine& end = lines_.back();
  end.joined = text_.size();
  end.lowest = std::numeric_limits<std::ptrdiff_t>::min();
  for (std::size_t number = lines_.size() - 1; number-- > 0;) {
    lines_[number].next_lower = FirstBelow(number + 1, lines_[number].lowest);
  }
}

std::string_view JoinedText::LineAt(std::size_t number) const {
  const std::size_t start = lines_[number].start;
  const std::size_t end = number + 1 < lines_.size() ? lines_[number + 1].start : start;
  return bytes_.substr(start, end - start);
}

/// The limit with which a value that began before reads the line: lower after a blank line.
std::size_t JoinedText::LimitOf(std::size_t number) const {
  if (number == 0) return limits::kContinuation;
  const std::size_t start = lines_[number - 1].start;
  const std::string_view before = bytes_.substr(start, lines_[number].start - start);
  return IsBlank(before) ? limits::kShortLine : limits::kContinuation;
}

/// The first line from this one on in which the depth falls below `depth`, or the end.
std::size_t JoinedText::FirstBelow(std::size_t number, std::ptrdiff_t depth) const {
  while (number + 1 < lines_.size() && lines_[number].lowest >= depth) {
    number = lines_[number].next_lower;
  }
  return number;
}

/// The first barrier from this line on, or the end.
std::size_t JoinedText::NextBarrier(std::size_t number) const {
  const auto barrier = std::lower_bound(barriers_.begin(), barriers_.end(), number);
  return barrier == barriers_.end() ? lines_.size() - 1 : *barrier;
}

JoinedText::FoundValue JoinedText::ValueAfter(std::size_t brace) const {
  const auto next = std::upper_bound(
      lines_.begin(), lines_.end(), brace,
      [](std::size_t offset, const JoinedLine& line) { return offset < line.start; });
  const auto number = static_cast<std::size_t>(next - lines_.begin()) - 1;
  const JoinedLine& line = lines_[number];
  std::ptrdiff_t inside = line.depth;
  for (const char byte : bytes_.substr(line.start, brace + 1 - line.start)) inside += StepOf(byte);

  const std::size_t last = std::min(FirstBelow(number + 1, inside), NextBarrier(number + 1));
  const std::size_t limit = LimitOf(last);
  const std::string_view piece = LineAt(last).substr(0, limit - 1);
  const std::size_t first = SkipContinuationBlanks(piece, 0);
  int depth = static_cast<int>(lines_[last].depth - inside) + 1;
  const bool closes = lines_[last].lowest < inside;  // perhaps after the piece
  const std::size_t size = closes ? FindValueStop(piece, first, depth) : piece.size();

  const std::size_t begin =
      line.joined + (brace + 1 - line.start - SkipContinuationBlanks(LineAt(number), 0));
  const std::size_t end = lines_[last].joined + (size - first);
  return {std::string_view(text_).substr(begin, end - begin), lines_[last].start, limit};
}

}  // namespace tarvel
