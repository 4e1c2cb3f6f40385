// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

#include "warnings/warnings.h"

namespace tarvel {

/// Something about a library that its reader should know.
struct PrepareWarning {
  WarningKind kind;
  std::size_t offset;
  std::string_view key;  // of the entry; empty when it is of none
  std::string_view text;
};

/// Writes the log of a preparation and passes its warnings on. Offsets must come in the order of
/// the library: one before the last is given the line of the last.
class PrepareLog {
 public:
  /// `write` is given the log in pieces, which are then removed from `Text`. Without it `Text`
  /// holds the whole log.
  PrepareLog(std::string_view bytes, std::function<void(const PrepareWarning&)> warn,
             std::function<void(std::string_view)> write = {})
      : bytes_(bytes), warn_(std::move(warn)), write_(std::move(write)) {}

  /// From now on all lines are about the entry at this offset.
  void StartEntry(std::string_view key, std::size_t offset);
  /// A line about the entry.
  void Say(std::initializer_list<std::string_view> parts);
  /// Ends the entry's lines.
  void EndEntry();
  /// A paragraph: "Line N: WHAT:", where N is the line of the offset, and the text below it.
  void SayText(std::string_view what, std::size_t offset, std::string_view text);
  void Warn(WarningKind kind, std::size_t offset, std::string_view text);

  /// Counts a tag of the library that is left out, and warns of it.
  void LeaveOut(std::size_t offset, std::string_view tag, std::string_view why);
  std::size_t LeftOut() const { return left_out_; }
  /// The log without the pieces that were given to `write`.
  std::string& Text() { return text_; }

 private:
  std::string LineOf(std::size_t offset);
  void WritePiece();

  std::string_view bytes_;
  std::function<void(const PrepareWarning&)> warn_;
  std::function<void(std::string_view)> write_;
  std::string text_;
  std::string_view key_;
  std::size_t offset_ = 0;  // of the entry
  bool has_said_ = false;
  std::size_t left_out_ = 0;
  std::size_t counted_to_ = 0;  // how far lines are counted
  std::size_t lines_ = 1;
};

}  // namespace tarvel
