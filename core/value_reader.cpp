// SPDX-License-Identifier: MIT
#include "core/value_reader.h"

#include "core/byte_finder.h"
#include "core/text_primitives.h"

namespace tarvel {

namespace {

bool IsContinuationBlank(char byte) {
  const auto code = static_cast<signed char>(byte);
  return code <= ' ' && code != 0;
}

}  // namespace

std::size_t SkipContinuationBlanks(std::string_view text, std::size_t from) {
  while (from < text.size() && IsContinuationBlank(text[from])) ++from;
  return from;
}

std::size_t FindValueStop(std::string_view text, std::size_t from, int& depth) {
  ByteFinder<ByteRange::One('{'), ByteRange::One('}'), ByteRange::One('\n')> stops(text);
  for (from = stops.Find(from, text.size()); from < text.size() && text[from] != '\n';
       from = stops.Find(from + 1, text.size())) {
    depth += text[from] == '{' ? 1 : -1;
    if (depth == 0 && text[from] == '}') break;
  }
  return from;
}

std::size_t ContinueLine(Line& line, LineStream& stream, std::size_t at, std::size_t limit) {
  for (;; limit = limits::kShortLine) {
    const auto next = stream.ReadLine(limit);
    if (!next) return std::string_view::npos;
    std::string& text = line.Edit();
    text.resize(at);
    text.append(*next);
    const std::size_t start = SkipContinuationBlanks(text, at);
    if (start < text.size()) return start;
  }
}

bool ReadFieldValue(Line& line, LineStream& stream, std::string& value) {
  value.clear();
  const std::size_t brace = line.Text().find('{');
  if (brace == std::string_view::npos) return false;
  std::size_t at = brace + 1;
  if (at == line.Text().size()) {
    // The line ends where the value should begin: it begins on the next one.
    at = ContinueLine(line, stream, at, limits::kShortLine);
  }
  for (int depth = 1; at != std::string_view::npos;) {
    const std::string_view text = line.Text();
    const std::size_t end = FindValueStop(text, at, depth);
    value.append(text.substr(at, end - at));
    if (depth == 0 || end == text.size()) return true;
    at = ContinueLine(line, stream, end, limits::kContinuation);
    if (at != std::string_view::npos) value.push_back(' ');
  }
  return false;  // the file ends inside the value
}

std::string_view TextAfterValue(std::string_view line) {
  const std::size_t brace = line.find('{');
  if (brace == std::string_view::npos) return {};
  int depth = 1;
  const std::size_t end = FindValueStop(line, brace + 1, depth);
  return depth == 0 ? Trim(line.substr(end + 1), " \t\r\n,") : std::string_view();
}

}  // namespace tarvel
