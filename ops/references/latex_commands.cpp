// SPDX-License-Identifier: MIT
#include "ops/references/latex_commands.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <limits>
#include <utility>

#include "core/text_primitives.h"

namespace tarvel {

namespace {

constexpr std::string_view kNotOpened =
    "Function CreateText_LaTeXArray()_1: Could not open the 'LaTeXCommands.tvl' file !\n";
constexpr std::string_view kStartMark = "START";
constexpr char kComment = '#';
constexpr std::uint64_t kComparison = 8;  // of two texts or numbers, in steps of `RowBudget`

std::size_t FirstByte(std::string_view text) { return static_cast<unsigned char>(text.front()); }

LaTeXCommands::Row ReadRow(std::string_view line) {
  line.remove_suffix(1);
  const std::size_t command_end = std::min(line.find_first_of("\t "), line.size());
  const std::string_view command = line.substr(0, command_end);
  line.remove_prefix(command_end);
  line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
  return {command, line.substr(0, line.find(' '))};
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

/// The first eight bytes of the text as a number, zeros after its end.
std::uint64_t PrefixOf(std::string_view text) {
  std::array<unsigned char, sizeof(std::uint64_t)> bytes{};
  std::copy_n(text.begin(), std::min(text.size(), bytes.size()), bytes.begin());
  std::uint64_t prefix = 0;
  for (const unsigned char byte : bytes) prefix = prefix << 8U | byte;
  return prefix;
}

/// The first two bytes of the text as a number, zeros after its end.
std::size_t PairOf(std::string_view text) {
  return FirstByte(text) << 8U | (text.size() > 1 ? FirstByte(text.substr(1)) : 0);
}

/// The command at the start of `text`: a backslash and the letters after it.
std::string_view NameAt(std::string_view text) {
  std::size_t end = 1;
  while (end < text.size() && IsLetter(text[end])) ++end;
  return text.substr(0, end);
}

}  // namespace

LaTeXCommands::LaTeXCommands(LineStream file) : file_(std::move(file)) {
  ReadRows();
  RowBudget unlimited(std::numeric_limits<std::uint64_t>::max());
  std::vector<Command> by_command;  // one for each row
  by_command.reserve(rows_.size());
  for (std::size_t row = 0; row < rows_.size(); ++row) {
    const std::string_view command = rows_[row].command;
    if (command.empty() || command.front() == kComment) continue;
    by_command.push_back({PrefixOf(command), row});
  }
  std::sort(by_command.begin(), by_command.end(), [this](const Command& one, const Command& other) {
    if (one.prefix != other.prefix) return one.prefix < other.prefix;
    const int order = TextOf(one).compare(TextOf(other));
    return order != 0 ? order < 0 : one.row < other.row;
  });
  for (Command& command : by_command) {
    const std::string_view text = TextOf(command);
    if (commands_.empty() || TextOf(commands_.back()) != text) {
      command.shorter = LongestStartOf(text, unlimited);
      commands_.push_back(command);
      NoteBeginning(commands_.size() - 1);
    }
    sorted_rows_.push_back(command.row);
    commands_.back().rows_end = sorted_rows_.size();
  }
}

/// Reads the rows after the line that begins the table.
void LaTeXCommands::ReadRows() {
  (void)file_->LoadAll();  // what cannot be read ends the table
  rows_.reserve(CountByte(file_->Bytes(), '\n') + 1);
  bool started = false;
  while (const auto line = file_->ReadLine(limits::kShortLine)) {
    if (started) rows_.push_back(ReadRow(*line));
    started = started || line->find(kStartMark) != std::string_view::npos;
  }
}

/// Enters the last command into the tables of beginnings.
void LaTeXCommands::NoteBeginning(std::size_t command) {
  const std::string_view text = TextOf(commands_[command]);
  Span& span = by_first_byte_[FirstByte(text)];
  if (span.end == 0) span.begin = command;
  span.end = command + 1;
  if (text.size() > 1) {
    pairs_.set(PairOf(text));
    return;
  }
  for (std::size_t second = 0; second < 256; ++second) pairs_.set(PairOf(text) + second);
}

/// Whether the command stands before the text, whose first bytes `prefix` is. Most differ in their
/// first bytes; comparing all of them took a third of a small run.
bool LaTeXCommands::IsBefore(const Command& command, std::uint64_t prefix,
                             std::string_view text) const {
  return command.prefix != prefix ? command.prefix < prefix : TextOf(command) < text;
}

/// The first command of the span, whose commands are sorted, that is not before the text.
std::size_t LaTeXCommands::FirstNotBefore(Span span, std::string_view text) const {
  const std::uint64_t prefix = PrefixOf(text);
  const auto begin = commands_.begin();
  const auto found =
      std::partition_point(begin + static_cast<std::ptrdiff_t>(span.begin),
                           begin + static_cast<std::ptrdiff_t>(span.end),
                           [&](const Command& command) { return IsBefore(command, prefix, text); });
  return static_cast<std::size_t>(found - begin);
}

/// The longest command that the text, which is not empty, begins with. All others that it begins
/// with are the `shorter` ones of that. What stands in the sorted order between a beginning of the
/// text and the text has that beginning, too: so each is one of the last command before the text.
std::size_t LaTeXCommands::LongestStartOf(std::string_view text, RowBudget& budget) const {
  const Span span = by_first_byte_[FirstByte(text)];
  budget.Take(kComparison * std::bit_width(span.end - span.begin));
  const std::size_t next = FirstNotBefore(span, text);
  if (next < span.end && TextOf(commands_[next]) == text) return next;
  std::size_t command = next == span.begin ? kNone : next - 1;
  while (command != kNone && !text.starts_with(TextOf(commands_[command]))) {
    command = commands_[command].shorter;
    budget.Take(kComparison);
  }
  return command;
}

/// The rows of a command, in the order of the table.
std::span<const std::size_t> LaTeXCommands::RowsOf(std::size_t command) const {
  const std::size_t begin = command == 0 ? 0 : commands_[command - 1].rows_end;
  return std::span(sorted_rows_).subspan(begin, commands_[command].rows_end - begin);
}

/// The first row of a command from `from` on, or the number of rows.
std::size_t LaTeXCommands::RowOf(std::size_t command, std::size_t from) const {
  const std::span<const std::size_t> rows = RowsOf(command);
  const auto row = std::lower_bound(rows.begin(), rows.end(), from);
  return row == rows.end() ? rows_.size() : *row;
}

/// False only for a text that begins with no command.
bool LaTeXCommands::MayBegin(std::string_view text) const {
  return by_first_byte_[FirstByte(text)].end != 0 && pairs_[PairOf(text)];
}

std::size_t LaTeXCommands::FindRow(std::string_view text, std::size_t from,
                                   RowBudget& budget) const {
  constexpr std::uint64_t kCall = 64;  // in steps
  std::size_t first = rows_.size();
  budget.Take(kCall + text.size());
  for (; !text.empty(); text.remove_prefix(1)) {
    if (!MayBegin(text)) continue;
    if (budget.IsSpent()) return rows_.size();
    for (std::size_t command = LongestStartOf(text, budget); command != kNone;
         command = commands_[command].shorter) {
      first = std::min(first, RowOf(command, from));
      budget.Take(kComparison * std::bit_width(RowsOf(command).size()));
    }
  }
  return first;
}

/// Whether a row's command is `name`, a backslash and letters, alone or with something after it
/// that is no letter: the end, a byte before "A", between "Z" and "a", or after "z".
bool LaTeXCommands::HasRowOf(std::string_view name) const {
  constexpr std::array<std::string_view, 3> kAfterLetters{"", "[", "{"};
  return std::any_of(kAfterLetters.begin(), kAfterLetters.end(), [&](std::string_view from) {
    const std::size_t found = FirstNotBefore({0, commands_.size()}, std::string(name).append(from));
    if (found == commands_.size()) return false;
    const std::string_view command = TextOf(commands_[found]);
    return command.starts_with(name) && NameAt(command) == name;
  });
}

std::string_view LaTeXCommands::FindCut(std::string_view text, RowBudget& budget) const {
  for (std::size_t at = text.find('\\'); at != std::string_view::npos;
       at = text.find('\\', at + 1)) {
    const std::string_view name = NameAt(text.substr(at));
    if (name.size() < 3 || HasRowOf(name) || !HasRowOfBeginning(name, budget)) continue;
    // A later row can restore what a row for the beginning replaced: this is how the table keeps
    // commands whole.
    std::string treated(name);
    const bool is_done = ApplyLaTeXCommands(treated, *this, budget) == Treatment::kDone;
    if (is_done && treated != name) return name;
  }
  return {};
}

/// Whether a row's command is `name`, a backslash and letters, without its last letters.
bool LaTeXCommands::HasRowOfBeginning(std::string_view name, RowBudget& budget) const {
  for (std::size_t command = LongestStartOf(name, budget); command != kNone;
       command = commands_[command].shorter) {
    const std::size_t size = TextOf(commands_[command]).size();
    if (size >= 2 && size < name.size()) return true;
  }
  return false;
}

int CreateText_LaTeXArray(const RunContext& run, LaTeXCommands& commands) {
  const std::string path = run.program_directory().append(kLaTeXCommandsFile);
  std::optional<LineStream> file = run.files.OpenLines(path, ReadMode::kRead);
  if (!file) return Fail(run, kNotOpened);

  commands = LaTeXCommands(std::move(*file));
  return kSucceeded;
}

Treatment ApplyLaTeXCommands(std::string& value, const LaTeXCommands& commands, RowBudget& budget) {
  // Between two rows that occur the text does not change, so the rows skipped would not have
  // changed it either.
  const std::vector<LaTeXCommands::Row>& rows = commands.Rows();
  for (std::size_t row = commands.FindRow(value, 0, budget); row < rows.size();
       row = commands.FindRow(value, row + 1, budget)) {
    if (GrowsTooLong(value, rows[row])) return Treatment::kTooLong;
    ReplaceString(value, rows[row].command, rows[row].replacement);
  }
  return budget.IsSpent() ? Treatment::kTooOften : Treatment::kDone;
}

}  // namespace tarvel
