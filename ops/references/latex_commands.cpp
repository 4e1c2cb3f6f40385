// SPDX-License-Identifier: MIT
#include "ops/references/latex_commands.h"

#include <algorithm>
#include <utility>

#include "core/text_primitives.h"

namespace tarvel {

namespace {

constexpr std::string_view kNotOpened =
    "Function CreateText_LaTeXArray()_1: Could not open the 'LaTeXCommands.tvl' file !\n";
constexpr std::string_view kStartMark = "START";
constexpr char kComment = '#';

std::size_t FirstByte(std::string_view text) { return static_cast<unsigned char>(text.front()); }

LaTeXCommands::Row ReadRow(std::string_view line) {
  line.remove_suffix(1);
  const std::size_t command_end = std::min(line.find_first_of("\t "), line.size());
  const std::string_view command = line.substr(0, command_end);
  line.remove_prefix(command_end);
  line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
  return {std::string(command), std::string(line.substr(0, line.find(' ')))};
}

/// How often `wanted`, which is not empty, stands in `text`, side by side.
std::size_t CountOf(std::string_view wanted, std::string_view text) {
  std::size_t count = 0;
  for (std::size_t at = text.find(wanted); at != std::string_view::npos;
       at = text.find(wanted, at + wanted.size())) {
    ++count;
  }
  return count;
}

/// Whether the row could make the value longer than it may become.
bool GrowsTooLong(std::string_view value, const LaTeXCommands::Row& row) {
  if (row.replacement.size() <= row.command.size()) return false;
  const std::size_t growth = row.replacement.size() - row.command.size();
  const auto too_long = [&](std::size_t times) {
    return value.size() + times * growth > kLongestTreated;
  };
  // Nearly every value is short enough for as many commands as fit into it.
  return too_long(value.size() / row.command.size()) && too_long(CountOf(row.command, value));
}

/// The command at the start of `text`: a backslash and the letters after it.
std::string_view NameAt(std::string_view text) {
  std::size_t end = 1;
  while (end < text.size() && IsLetter(text[end])) ++end;
  return text.substr(0, end);
}

}  // namespace

LaTeXCommands::LaTeXCommands(std::vector<Row> rows) : rows_(std::move(rows)) {
  for (std::size_t row = 0; row < rows_.size(); ++row) {
    const std::string& command = rows_[row].command;
    if (command.empty() || command.front() == kComment) continue;
    sorted_.push_back(row);
    if (command.front() != '\\') continue;
    const std::string_view name = NameAt(command);
    names_.emplace(name);
    if (name.size() == command.size() && name.size() > 1) bare_.emplace(name);
  }
  std::sort(sorted_.begin(), sorted_.end(), [this](std::size_t a, std::size_t b) {
    const int order = rows_[a].command.compare(rows_[b].command);
    return order != 0 ? order < 0 : a < b;
  });
  for (std::size_t i = 0; i < sorted_.size(); ++i) {
    Span& span = by_first_byte_[FirstByte(SortedCommand(i))];
    if (span.end == 0) span.begin = i;
    span.end = i + 1;
  }
}

/// The index in `sorted_` of the first row of the span that does not pass the test; those that pass
/// stand before it.
template <typename Test>
std::size_t LaTeXCommands::FirstNot(Span span, Test passes) const {
  const auto at = [this](std::size_t i) {
    return sorted_.begin() + static_cast<std::ptrdiff_t>(i);
  };
  const auto found = std::partition_point(at(span.begin), at(span.end), passes);
  return static_cast<std::size_t>(found - sorted_.begin());
}

/// The first row from `from` on whose command `text` begins with.
std::size_t LaTeXCommands::FindRowAt(std::string_view text, std::size_t from) const {
  std::size_t first = rows_.size();
  // All commands of the span begin with the first `size` bytes of the text.
  Span span = by_first_byte_[FirstByte(text)];
  for (std::size_t size = 1; span.begin < span.end; ++size) {
    // Those that end here are equal and stand in front of the longer ones, the lowest row first.
    const auto ends_here = [&](std::size_t row) { return rows_[row].command.size() == size; };
    const std::size_t longer = FirstNot(span, ends_here);
    const std::size_t wanted =
        FirstNot({span.begin, longer}, [&](std::size_t row) { return row < from; });
    if (wanted < longer) first = std::min(first, sorted_[wanted]);
    if (size == text.size()) break;

    const std::size_t next = FirstByte(text.substr(size));
    const auto byte_of = [&](std::size_t row) {
      return FirstByte(std::string_view(rows_[row].command).substr(size));
    };
    span.begin = FirstNot({longer, span.end}, [&](std::size_t row) { return byte_of(row) < next; });
    span.end = FirstNot(span, [&](std::size_t row) { return byte_of(row) == next; });
  }
  return first;
}

std::size_t LaTeXCommands::FindRow(std::string_view text, std::size_t from) const {
  std::size_t first = rows_.size();
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (by_first_byte_[FirstByte(text.substr(at))].end == 0) continue;
    first = std::min(first, FindRowAt(text.substr(at), from));
  }
  return first;
}

std::string_view LaTeXCommands::FindCut(std::string_view text) const {
  for (std::size_t at = text.find('\\'); at != std::string_view::npos;
       at = text.find('\\', at + 1)) {
    const std::string_view name = NameAt(text.substr(at));
    if (name.size() < 3 || names_.contains(name)) continue;
    for (std::size_t size = 2; size < name.size(); ++size) {
      if (bare_.contains(name.substr(0, size))) return name;
    }
  }
  return {};
}

int CreateText_LaTeXArray(const RunContext& run, LaTeXCommands& commands) {
  const std::string path = run.program_directory().append(kLaTeXCommandsFile);
  std::optional<LineStream> file = run.files.OpenLines(path, ReadMode::kRead);
  if (!file) return Fail(run, kNotOpened);

  std::vector<LaTeXCommands::Row> rows;
  bool started = false;
  while (const auto line = file->ReadLine(limits::kShortLine)) {
    if (started) rows.push_back(ReadRow(*line));
    started = started || line->find(kStartMark) != std::string_view::npos;
  }
  commands = LaTeXCommands(std::move(rows));
  return kSucceeded;
}

bool ApplyLaTeXCommands(std::string& value, const LaTeXCommands& commands) {
  // Between two rows that occur the text does not change, so the rows skipped would not have
  // changed it either.
  const std::vector<LaTeXCommands::Row>& rows = commands.Rows();
  for (std::size_t row = commands.FindRow(value, 0); row < rows.size();
       row = commands.FindRow(value, row + 1)) {
    if (GrowsTooLong(value, rows[row])) return false;
    ReplaceString(value, rows[row].command, rows[row].replacement);
  }
  return true;
}

}  // namespace tarvel
