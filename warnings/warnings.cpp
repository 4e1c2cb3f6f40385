// SPDX-License-Identifier: MIT
#include "warnings/warnings.h"

#include <algorithm>

#include "core/text_primitives.h"
#include "core/utf8.h"

namespace tarvel {

namespace {

constexpr std::size_t kMarkDistance = std::size_t{1} << 12;
/// The bytes of a warning's text that go to the reporter; the file has all of it.
constexpr std::size_t kLongestText = 300;
/// The bytes that are shown of a key or of another text of a library.
constexpr std::size_t kLongestQuote = 100;

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
std::string Shorten(std::string_view text, std::size_t most) {
  if (text.size() <= most) return std::string(text);
  std::size_t size = most;
  while (size > 0 && ContinuesUtf8(text[size])) --size;
  return std::string(text.substr(0, size)).append("...");
}

/// Whether the key of such a warning is that of a citation, and no entry has it.
bool IsOfNoEntry(WarningKind kind) {
  return kind == WarningKind::kMissingCitation || kind == WarningKind::kKeyWithBlank;
}

std::string_view WordOf(Severity severity) {
  return severity == Severity::kLoss ? "loss: " : "note: ";
}

}  // namespace

std::string LineOf(const Warning& warning) {
  std::string line;
  if (!warning.file.empty()) line.append(warning.file).append(":");
  if (warning.line != 0) line.append(std::to_string(warning.line)).append(":");
  line.append(line.empty() ? "warning: " : " warning: ");
  if (!warning.key.empty()) {
    line.append(IsOfNoEntry(warning.kind) ? "key " : "entry ");
    line.append(Quoted(warning.key)).append(": ");
  }
  line.append(Shorten(warning.text, kLongestText));
  return EscapeControls(line.append(" [").append(RowOf(warning.kind).name).append("]"));
}

std::size_t LineNumbers::At(std::size_t offset) {
  offset = std::min(offset, bytes_.size());
  if (breaks_before_.empty()) breaks_before_.push_back(0);
  const std::size_t mark = offset / kMarkDistance;
  while (breaks_before_.size() <= mark) {
    const std::size_t from = (breaks_before_.size() - 1) * kMarkDistance;
    breaks_before_.push_back(breaks_before_.back() +
                             CountByte(bytes_.substr(from, kMarkDistance), '\n'));
  }
  if (last_offset_ > offset || last_offset_ < mark * kMarkDistance) {
    last_offset_ = mark * kMarkDistance;
    last_breaks_ = breaks_before_[mark];
  }
  last_breaks_ += CountByte(bytes_.substr(last_offset_, offset - last_offset_), '\n');
  last_offset_ = offset;
  return last_breaks_ + 1;
}

void FileWarnings::Report(WarningKind kind, std::size_t offset, std::string_view key,
                          TextParts parts) {
  if (ReportNumber(kind)) return;
  std::string text;
  for (const std::string_view part : parts) text += part;
  to_->Report({.kind = kind, .file = path_, .line = numbers_.At(offset), .key = key, .text = text});
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

bool IsUtf16(std::string_view bytes) {
  return bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF");
}

void WarnOfUtf16(Reporter& reporter, std::string_view path, std::string_view bytes) {
  if (!IsUtf16(bytes)) return;
  reporter.Warn("warning: the file '" + EscapeControls(path) + "' " + std::string(kIsUtf16));
}

std::string Quoted(std::string_view text) {
  return std::string("'").append(Shorten(text, kLongestQuote)).append("'");
}

void WarningReport::Report(const Warning& warning) {
  KindCount& kind = kinds_[static_cast<std::size_t>(warning.kind)];
  ++kind.count;
  if (outputs_.file) {
    outputs_.file->Write({RowOf(warning.kind).name, "\t", EscapeField(warning.file), "\t",
                          std::to_string(warning.line), "\t",
                          EscapeField(Shorten(warning.key, kLongestQuote)), "\t",
                          EscapeField(warning.text), "\n"});
  }
  const bool is_coming = RowOf(warning.kind).about == About::kComing;
  if (outputs_.all || (is_coming && !outputs_.quiet)) {
    reporter_.Warn(LineOf(warning));
  } else if (!outputs_.quiet && kind.examples.size() < kExamples) {
    kind.examples.push_back(LineOf(warning));
  }
}

bool WarningReport::ReportNumber(WarningKind kind) {
  KindCount& counted = kinds_[static_cast<std::size_t>(kind)];
  const bool is_example = !outputs_.quiet && counted.examples.size() < kExamples;
  if (outputs_.file || outputs_.all || is_example) return false;
  ++counted.count;
  return true;
}

void WarningReport::ReportValues(std::string_view file, std::size_t values, std::size_t unread) {
  if (outputs_.quiet || unread * 2 <= values) return;
  std::string line = "warning: " + std::string(file) + " cannot be read as it is: ";
  line.append(std::to_string(unread)).append(" of ").append(std::to_string(values));
  line.append(
      " values are in quotes or have no braces, and are read as empty. Run 'tarvel-batch prepare ");
  line.append(file).append("' and work on the copy that it writes.");
  unread_.push_back(EscapeControls(line));
  if (outputs_.all) reporter_.Warn(unread_.back());
}

void WarningReport::MapKey(std::string_view old_key, std::string_view new_key) {
  if (!outputs_.key_map) return;
  outputs_.key_map->Write({EscapeField(old_key), "\t", EscapeField(new_key), "\n"});
}

/// The indexes of the kinds that were reported, in the order of the summary.
std::vector<std::size_t> WarningReport::WorstFirst() const {
  std::vector<std::size_t> order;
  for (std::size_t i = 0; i < kinds_.size(); ++i) {
    const bool was_sent = kWarningKinds[i].about == About::kComing;
    if (kinds_[i].count != 0 && !was_sent) order.push_back(i);
  }
  std::stable_sort(order.begin(), order.end(), [this](std::size_t one, std::size_t other) {
    const Severity severity = kWarningKinds[one].severity;
    if (severity != kWarningKinds[other].severity) return severity < kWarningKinds[other].severity;
    return kinds_[one].count > kinds_[other].count;
  });
  return order;
}

void WarningReport::ReportSummary() const {
  if (outputs_.quiet || outputs_.all) return;
  for (const std::string& line : unread_) reporter_.Warn(line);
  bool has_more = false;
  for (const std::size_t i : WorstFirst()) {
    const WarningRow& row = kWarningKinds[i];
    std::string line("warning: ");
    line.append(WordOf(row.severity)).append(row.summary).append(": ");
    line.append(std::to_string(kinds_[i].count)).append(" [").append(row.name).append("]");
    reporter_.Warn(line);
    for (const std::string& example : kinds_[i].examples) reporter_.Warn(example);
    has_more = has_more || kinds_[i].count > kinds_[i].examples.size();
  }
  if (has_more && !outputs_.file) {
    reporter_.Warn(
        "warning: there are more warnings; tarvel-batch writes all of them with --warnings FILE");
  }
}

std::size_t WarningReport::Losses() const {
  std::size_t losses = 0;
  for (std::size_t i = 0; i < kinds_.size(); ++i) {
    if (kWarningKinds[i].severity == Severity::kLoss) losses += kinds_[i].count;
  }
  return losses;
}

}  // namespace tarvel
