// SPDX-License-Identifier: MIT
#include "warnings/warnings.h"

#include <algorithm>

#include "core/utf8.h"

namespace tarvel {

namespace {

constexpr std::size_t kMarkDistance = std::size_t{1} << 12;
/// The bytes of a warning's text that go to the reporter; the file has all of it.
constexpr std::size_t kLongestText = 200;

std::size_t CountBreaks(std::string_view bytes) {
  return static_cast<std::size_t>(std::count(bytes.begin(), bytes.end(), '\n'));
}

bool IsControl(char byte) { return (byte >= 0 && byte < ' ') || byte == 127; }

void AppendEscaped(std::string& to, char byte) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  constexpr std::string_view kBytes = "\n\t\r\\";
  constexpr std::string_view kLetters = "ntr\\";
  to += '\\';
  const std::size_t letter = kBytes.find(byte);
  if (letter != std::string_view::npos) {
    to += kLetters[letter];
    return;
  }
  const auto code = static_cast<unsigned char>(byte);
  to += 'x';
  to += kDigits[code / 16];
  to += kDigits[code % 16];
}

bool IsEscapedInField(char byte) { return byte == '\\' || IsControl(byte); }

/// A field of a file of tabs: the backslash is doubled so that the text can be had back.
std::string EscapeField(std::string_view text) {
  if (std::none_of(text.begin(), text.end(), IsEscapedInField)) return std::string(text);
  std::string field;
  for (const char byte : text) {
    if (IsEscapedInField(byte)) {
      AppendEscaped(field, byte);
    } else {
      field += byte;
    }
  }
  return field;
}

/// The beginning of a long text, not cut within a UTF-8 character.
std::string Shorten(std::string_view text) {
  if (text.size() <= kLongestText) return std::string(text);
  std::size_t size = kLongestText;
  while (size > 0 && ContinuesUtf8(text[size])) --size;
  return std::string(text.substr(0, size)).append("...");
}

std::string LineOf(const Warning& warning) {
  std::string line(warning.file);
  if (warning.line != 0) line.append(":").append(std::to_string(warning.line));
  line.append(": ");
  if (!warning.key.empty()) line.append("entry '").append(Shorten(warning.key)).append("': ");
  return line.append(Shorten(warning.text));
}

}  // namespace

std::size_t LineNumbers::At(std::size_t offset) {
  offset = std::min(offset, bytes_.size());
  if (breaks_before_.empty()) breaks_before_.push_back(0);
  const std::size_t mark = offset / kMarkDistance;
  while (breaks_before_.size() <= mark) {
    const std::size_t from = (breaks_before_.size() - 1) * kMarkDistance;
    breaks_before_.push_back(breaks_before_.back() +
                             CountBreaks(bytes_.substr(from, kMarkDistance)));
  }
  if (last_offset_ > offset || last_offset_ < mark * kMarkDistance) {
    last_offset_ = mark * kMarkDistance;
    last_breaks_ = breaks_before_[mark];
  }
  last_breaks_ += CountBreaks(bytes_.substr(last_offset_, offset - last_offset_));
  last_offset_ = offset;
  return last_breaks_ + 1;
}

void FileWarnings::Report(WarningKind kind, std::size_t offset, std::string_view key,
                          std::string_view text) {
  if (!ReportNumber(kind))
    to_->Report(
        {.kind = kind, .file = path_, .line = numbers_.At(offset), .key = key, .text = text});
}

std::string EscapeControls(std::string_view text) {
  std::string result;
  for (const char byte : text) {
    if (IsControl(byte)) {
      AppendEscaped(result, byte);
    } else {
      result += byte;
    }
  }
  return result;
}

void WarningReport::Report(const Warning& warning) {
  const std::size_t count = ++counts_[static_cast<std::size_t>(warning.kind)];
  if (outputs_.file) {
    outputs_.file->Write({RowOf(warning.kind).name, "\t", EscapeField(warning.file), "\t",
                          std::to_string(warning.line), "\t", EscapeField(warning.key), "\t",
                          EscapeField(warning.text), "\n"});
  }
  if (!outputs_.quiet && count <= kMostShown) reporter_.Warn(EscapeControls(LineOf(warning)));
}

bool WarningReport::ReportNumber(WarningKind kind) {
  std::size_t& count = counts_[static_cast<std::size_t>(kind)];
  if (outputs_.file || (!outputs_.quiet && count < kMostShown)) return false;
  ++count;
  return true;
}

void WarningReport::MapKey(std::string_view old_key, std::string_view new_key) {
  if (!outputs_.key_map) return;
  outputs_.key_map->Write({EscapeField(old_key), "\t", EscapeField(new_key), "\n"});
}

void WarningReport::ReportCounts() const {
  if (outputs_.quiet) return;
  for (std::size_t i = 0; i < counts_.size(); ++i) {
    if (counts_[i] == 0) continue;
    std::string line = std::string("in total ").append(kWarningKinds[i].summary).append(" (");
    line.append(kWarningKinds[i].name).append("): ").append(std::to_string(counts_[i]));
    if (counts_[i] > kMostShown) {
      line.append(", told of the first ").append(std::to_string(kMostShown));
    }
    reporter_.Warn(line);
  }
}

}  // namespace tarvel
