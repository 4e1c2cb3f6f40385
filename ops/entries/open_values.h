// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace tarvel {

/// Follows a value whose closing brace is far away, without reading its bytes again: notes for each
/// block of 1 KiB of a growing file how its lines change the depth of the braces, and the same for
/// 16, 256 and 4096 blocks together. Without this, values that never close would be read to the end
/// of the file once for every entry that begins one.
class OpenValues {
 public:
  /// How far lines were passed, and what is known there.
  struct Passed {
    std::size_t line = 0;      // where the next line begins
    int depth = 0;             // of the braces there
    bool after_blank = false;  // the last line that was passed is blank
    std::size_t size = 0;      // what the lines add to the value, with a blank before each
  };
  /// Passes lines of `bytes`, from the one that begins at `line`, where `depth` braces are open.
  /// Passes whole blocks, as long as no line closes the value and no line is longer than 998 bytes,
  /// which any reader takes at once, and, where `ends_at_dash`, none holds a "-". Returns nothing
  /// if no line can be passed.
  std::optional<Passed> Pass(std::string_view bytes, std::size_t line, int depth,
                             bool ends_at_dash = false);
  /// Forgets the blocks of the bytes from `begin` to `end`, which were written anew.
  void Forget(std::size_t begin, std::size_t end);

 private:
  /// The lines that begin in a block.
  struct Block {
    std::size_t begin = 0;  // of the first line
    std::size_t end = 0;    // of the last line
    int change = 0;         // of the depth
    int lowest = 0;         // the lowest change on the way
    bool ends_blank = false;
    bool has_dash = false;
    std::size_t size = 0;  // of the lines that are not blank, with one blank before each
    bool can_be_passed = false;
  };
  const Block& BlockAt(std::string_view bytes, std::size_t level, std::size_t number);
  static Block ReadBlock(std::string_view bytes, std::size_t number);
  Block JoinBlocks(std::string_view bytes, std::size_t level, std::size_t first);

  // The blocks that were asked for; on each level those that make one of the next.
  std::array<std::vector<std::optional<Block>>, 4> levels_;
};

}  // namespace tarvel
