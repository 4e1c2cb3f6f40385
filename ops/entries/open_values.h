// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace tarvel {

/// Follows a value that no brace closes for long without looking at its bytes again: keeps of each
/// block of 4 KiB of a growing file how its lines change the depth of the braces. Values that never
/// close are read to the end of the file once for every entry that begins one.
class OpenValues {
 public:
  /// Where the lines that were passed end, at the start of a line.
  struct Passed {
    std::size_t line = 0;
    int depth = 0;             // of the braces there
    bool after_blank = false;  // the last line that was passed is blank
  };
  /// Passes lines of `bytes` from the one that begins at `line` on, where `depth` braces are open,
  /// by whole blocks: as long as none closes the value and none is longer than 998 bytes, which any
  /// reader takes at once. Nothing where no line can be passed.
  std::optional<Passed> Pass(std::string_view bytes, std::size_t line, int depth);
  /// The bytes from `begin` to `end` are new.
  void Forget(std::size_t begin, std::size_t end);

 private:
  /// The lines that begin in a block.
  struct Block {
    std::size_t begin = 0;  // of the first line
    std::size_t end = 0;    // of the last line
    int change = 0;         // of the depth
    int lowest = 0;         // the lowest change on the way
    bool ends_blank = false;
    bool can_be_passed = false;
  };
  static Block BlockAt(std::string_view bytes, std::size_t number);

  std::vector<std::optional<Block>> blocks_;
};

}  // namespace tarvel
