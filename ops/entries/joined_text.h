// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tarvel {

/// The text of a whole file with its lines joined as `ReadFieldValue` joins those of a value. A
/// value that goes on over many lines is a part of it, and where it ends is found without reading
/// those lines again. Made for files in which many values share lines: entries that never close
/// overlap, and reading each value anew would take time that grows with the square of their number.
///
/// Takes as much memory as the file, and 40 bytes for each line.
class JoinedText {
 public:
  /// `bytes` must outlive this.
  explicit JoinedText(std::string_view bytes);

  /// A value and where it ends.
  struct FoundValue {
    std::string_view text;  // lives as long as the `JoinedText`
    std::size_t line;       // where the line or piece begins that ends it, or the end of the file
    std::size_t limit;      // with which that line is read
  };
  /// The value after the brace at `brace`. The line of the brace must end with a line feed, and
  /// must not end the value.
  FoundValue ValueAfter(std::size_t brace) const;

 private:
  // A line, or a piece of one that begins with more blanks than are read at once.
  struct JoinedLine {
    std::size_t start;           // in the file
    std::size_t joined;          // in the joined text, of its first byte that is not blank
    std::ptrdiff_t depth;        // of the braces before it
    std::ptrdiff_t lowest;       // of the depths in it
    std::size_t next_lower = 0;  // the next line in which the depth goes lower
  };

  void AddLine(std::size_t start, std::size_t end);
  void LinkLines();
  std::string_view LineAt(std::size_t number) const;
  std::size_t LimitOf(std::size_t number) const;
  std::size_t FirstBelow(std::size_t number, std::ptrdiff_t depth) const;
  std::size_t NextBarrier(std::size_t number) const;

  std::string_view bytes_;
  std::string text_;
  std::vector<JoinedLine> lines_;      // and one after the last, where the file ends
  std::vector<std::size_t> barriers_;  // the lines that end every value that reaches them
};

}  // namespace tarvel
