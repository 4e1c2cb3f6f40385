// SPDX-License-Identifier: MIT
#include "ops/prepare/tag_lines.h"

#include <algorithm>
#include <optional>

#include "core/line_stream.h"
#include "ops/prepare/letters.h"
#include "ops/prepare/tag_words.h"

namespace tarvel {

namespace {

/// No line is longer, its break included, so that the shortest limit is kept.
constexpr std::size_t kMostLine = limits::kShortLine - 1;
/// What stands around the name and the value of a tag on one line.
constexpr std::size_t kAround = std::string_view("   = {},\n").size();
/// A tag whose line Clean characters leaves out must stay on one line. No operation reads its value
/// with the shortest limit, so it may be as long as the next.
constexpr std::size_t kMostExemptLine = limits::kPairLine - 1;
constexpr std::string_view kIndent = "    ";

bool LooksLikeAuthors(std::string_view text) {
  constexpr std::string_view kAuthor = "author=";
  std::size_t matched = 0;
  for (const char byte : text) {
    if (byte == ' ' || byte == '\t') continue;
    if (ToLower(byte) != kAuthor[matched]) return false;
    if (++matched == kAuthor.size()) return true;
  }
  return false;
}

/// Whether the value may be broken at this blank.
bool MayBreak(std::string_view value, std::size_t blank) {
  if (value[blank] != ' ' || blank + 1 == value.size()) return false;
  const char next = value[blank + 1];
  return next > ' ' && next < 127 && !LooksLikeAuthors(value.substr(blank + 1));
}

/// Breaks a value into the lines that it is written in.
class ValueLines {
 public:
  /// The first line has `before` bytes around it.
  ValueLines(std::string_view value, std::size_t before)
      : rest_(value), room_(kMostLine - std::min(kMostLine, before)) {}

  /// The next line but the last, or nothing.
  std::optional<std::string_view> Next() {
    if (rest_.size() <= room_) return std::nullopt;
    const std::size_t end = FindEnd();
    if (end == rest_.size()) return std::nullopt;
    if (end > room_) fit_ = LineFit::kTooLong;
    const std::string_view line = rest_.substr(0, end);
    rest_.remove_prefix(end + 1);
    room_ = kMostLine - kAround - kIndent.size();
    return line;
  }
  /// The last line, when there is no next.
  std::string_view Last() const { return rest_; }
  /// How the lines that came so far fit.
  LineFit Fit() const { return rest_.size() > room_ ? LineFit::kTooLong : fit_; }

 private:
  /// The last blank outside of braces that leaves the line short enough, or else the last inside,
  /// or the first after; the end when there is none.
  std::size_t FindEnd() {
    std::size_t outside = 0;
    std::size_t inside = 0;
    std::size_t depth = depth_;
    for (std::size_t at = 0; at < rest_.size(); ++at) {
      if (at > room_ && outside + inside > 0) break;
      if (rest_[at] == '{') ++depth;
      if (rest_[at] == '}' && depth > 0) --depth;
      if (!MayBreak(rest_, at)) continue;
      (depth == 0 ? outside : inside) = at;
      if (depth > 0) inside_depth_ = depth;
    }
    depth_ = outside > 0 ? 0 : inside > 0 ? inside_depth_ : depth;
    if (outside > 0) return outside;
    if (inside == 0) return rest_.size();
    if (fit_ == LineFit::kManyLines) fit_ = LineFit::kTangledLines;
    return inside;
  }

  std::string_view rest_;
  std::size_t room_;
  std::size_t depth_ = 0;
  std::size_t inside_depth_ = 0;
  LineFit fit_ = LineFit::kManyLines;
};

/// Appends a value, broken into lines.
void AppendLines(std::string& library, std::string_view value, std::size_t before) {
  ValueLines lines(value, before);
  while (const auto line = lines.Next()) library.append(*line).append("\n").append(kIndent);
  library.append(lines.Last());
}

}  // namespace

LineFit FitOf(std::string_view name, std::string_view value) {
  const std::size_t size = name.size() + value.size() + kAround;
  if (size <= kMostLine) return LineFit::kOneLine;
  if (IsExemptTag(name)) return size <= kMostExemptLine ? LineFit::kOneLine : LineFit::kTooLong;
  ValueLines lines(value, name.size() + kAround);
  while (lines.Next()) {
  }
  return lines.Fit();
}

void AppendTag(std::string& library, const TagName& tag, std::string_view value) {
  library.append(tag.head);
  const std::size_t before = tag.name.size() + kAround;
  if (before + value.size() <= kMostLine || IsExemptTag(tag.name)) {
    library.append(value);
  } else {
    AppendLines(library, value, before);
  }
  library.append("},\n");
}

void AppendPreamble(std::string& library, std::string_view text) {
  constexpr std::string_view kBegin = "@PREAMBLE{{";
  library.append(kBegin);
  AppendLines(library, text, kBegin.size() + kAround);
  library.append("}}\n");
}

}  // namespace tarvel
