// SPDX-License-Identifier: MIT
#include "ops/references/latex_commands.h"

#include <algorithm>
#include <cstdint>
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

/// A row, and the first bytes of its command as a number that compares as they do.
struct SortedRow {
  std::uint64_t prefix = 0;
  std::size_t row = 0;
};

SortedRow MakeSortedRow(std::string_view command, std::size_t row) {
  SortedRow sorted{0, row};
  for (std::size_t at = 0; at < sizeof sorted.prefix; ++at) {
    const char byte = at < command.size() ? command[at] : '\0';
    sorted.prefix = sorted.prefix << 8U | static_cast<unsigned char>(byte);
  }
  return sorted;
}

/// The command at the start of `text`: a backslash and the letters after it.
std::string_view NameAt(std::string_view text) {
  std::size_t end = 1;
  while (end < text.size() && IsLetter(text[end])) ++end;
  return text.substr(0, end);
}

}  // namespace

LaTeXCommands::LaTeXCommands(std::vector<Row> rows) : rows_(std::move(rows)) {
  std::vector<SortedRow> rows_by_command;
  for (std::size_t row = 0; row < rows_.size(); ++row) {
    const std::string& command = rows_[row].command;
    if (command.empty() || command.front() == kComment) continue;
    rows_by_command.push_back(MakeSortedRow(command, row));
  }
  // Most rows differ in their first bytes; comparing whole commands took a third of a small run.
  std::sort(rows_by_command.begin(), rows_by_command.end(),
            [this](const SortedRow& one, const SortedRow& other) {
              if (one.prefix != other.prefix) return one.prefix < other.prefix;
              const int order = rows_[one.row].command.compare(rows_[other.row].command);
              return order != 0 ? order < 0 : one.row < other.row;
            });
  for (std::size_t i = 0; i < rows_by_command.size(); ++i) {
    sorted_.push_back(rows_by_command[i].row);
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

/// The first command of the rows, in their sorted order, that is not before `text`; empty when
/// there is none.
std::string_view LaTeXCommands::FirstCommandFrom(std::string_view text) const {
  const std::size_t found =
      FirstNot({0, sorted_.size()}, [&](std::size_t row) { return rows_[row].command < text; });
  return found < sorted_.size() ? SortedCommand(found) : std::string_view();
}

/// Whether a row's command is `name`, a backslash and letters, alone or with something after it
/// that is no letter: the end, a byte before "A", between "Z" and "a", or after "z".
bool LaTeXCommands::HasRowOf(std::string_view name) const {
  constexpr std::array<std::string_view, 3> kAfterLetters{"", "[", "{"};
  return std::any_of(kAfterLetters.begin(), kAfterLetters.end(), [&](std::string_view from) {
    const std::string_view command = FirstCommandFrom(std::string(name).append(from));
    return command.starts_with(name) && NameAt(command) == name;
  });
}

std::string_view LaTeXCommands::FindCut(std::string_view text) const {
  for (std::size_t at = text.find('\\'); at != std::string_view::npos;
       at = text.find('\\', at + 1)) {
    const std::string_view name = NameAt(text.substr(at));
    if (name.size() < 3 || HasRowOf(name) || !HasRowOfBeginning(name)) continue;
    // A later row can restore what a row for the beginning replaced: this is how the table keeps
    // commands whole.
    std::string treated(name);
    if (ApplyLaTeXCommands(treated, *this) && treated != name) return name;
  }
  return {};
}

/// Whether a row's command is `name`, a backslash and letters, without its last letters.
bool LaTeXCommands::HasRowOfBeginning(std::string_view name) const {
  for (std::size_t size = 2; size < name.size(); ++size) {
    const std::string_view shorter = name.substr(0, size);
    if (FirstCommandFrom(shorter) == shorter) return true;
  }
  return false;
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
