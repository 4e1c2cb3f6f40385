// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/line_stream.h"
#include "ops/run_context.h"

namespace tarvel {

/// The work that the rows of a table may still cause. They can change the same values again and
/// again, so that a small table and a small library would take hours.
class RowBudget {
 public:
  /// A step is about the work of looking at one byte of a value.
  explicit RowBudget(std::uint64_t steps) : left_(steps) {}
  void Take(std::uint64_t steps) { left_ -= std::min(left_, steps); }
  bool IsSpent() const { return left_ == 0; }

 private:
  std::uint64_t left_;
};

/// The table of LaTeX commands and what plain text has in their place, with an index that finds the
/// rows that can change a text.
class LaTeXCommands {
 public:
  /// A row; both texts are parts of the file.
  struct Row {
    std::string_view command;
    std::string_view replacement;
  };

  LaTeXCommands() = default;
  /// Reads the table from a file of any size; 20 MB take at most 0.8 GB of memory.
  explicit LaTeXCommands(LineStream file);

  const std::vector<Row>& Rows() const { return rows_; }
  /// The first row from `from` on that is applied and whose command occurs in `text`; the number of
  /// rows when there is none, or when the budget is spent. Rows without a command and rows that
  /// begin with "#" are not applied.
  std::size_t FindRow(std::string_view text, std::size_t from, RowBudget& budget) const;
  /// The first command of `text`, a backslash and letters, that has no row of its own while a row
  /// for a shorter one replaces its beginning; empty when there is none. Once the budget is spent,
  /// no more is found.
  std::string_view FindCut(std::string_view text, RowBudget& budget) const;

 private:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  /// A command that rows are applied for.
  struct Command {
    std::uint64_t prefix = 0;     // its first bytes as a number, which compares as they do
    std::size_t row = 0;          // the first of its rows
    std::size_t rows_end = 0;     // of its rows in `sorted_rows_`
    std::size_t shorter = kNone;  // the longest other command that it begins with
  };

  /// The commands from one to before another.
  struct Span {
    std::size_t begin = 0;
    std::size_t end = 0;
  };

  std::string_view TextOf(const Command& command) const { return rows_[command.row].command; }
  bool IsBefore(const Command& command, std::uint64_t prefix, std::string_view text) const;
  void ReadRows();
  void NoteBeginning(std::size_t command);
  bool MayBegin(std::string_view text) const;
  std::size_t FirstNotBefore(Span span, std::string_view text) const;
  std::size_t LongestStartOf(std::string_view text, RowBudget& budget) const;
  std::span<const std::size_t> RowsOf(std::size_t command) const;
  std::size_t RowOf(std::size_t command, std::size_t from) const;
  bool HasRowOf(std::string_view name) const;
  bool HasRowOfBeginning(std::string_view name, RowBudget& budget) const;

  std::optional<LineStream> file_;
  std::vector<Row> rows_;
  std::vector<std::size_t> sorted_rows_;  // by their commands' bytes, then as in the table
  std::vector<Command> commands_;         // in the same order
  // The commands that begin with a byte, and whether one may begin with two bytes: few bytes of a
  // value are looked up, then, and among few commands.
  std::array<Span, 256> by_first_byte_{};
  std::bitset<65536> pairs_;
};

/// Reads the table of LaTeX commands below the program directory; returns 1, or 0 after a
/// `PrintError` when the file cannot be opened.
///
/// Every line (of at most 999 bytes) after the first that contains "START" is a row: the command
/// up to a tab or a blank, blanks and tabs, the replacement up to a blank. The last byte of a line
/// is cut, whatever it is.
int CreateText_LaTeXArray(const RunContext& run, LaTeXCommands& commands);

/// The most bytes that the rows may make of a value.
inline constexpr std::size_t kLongestTreated = 1'000'000;

/// Whether all rows were applied to a value.
enum class Treatment { kDone, kTooLong, kTooOften };

/// Applies the rows to `value`, one after the other, each with `ReplaceString` to what those before
/// it left. Stops when the budget is spent (kTooOften), and at a row that could make the value
/// longer than it is and than `kLongestTreated` bytes (kTooLong): rows whose replacements hold the
/// commands of others can double a value again and again.
Treatment ApplyLaTeXCommands(std::string& value, const LaTeXCommands& commands, RowBudget& budget);

}  // namespace tarvel
