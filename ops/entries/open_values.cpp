// SPDX-License-Identifier: MIT
#include "ops/entries/open_values.h"

#include <algorithm>

#include "core/line_stream.h"
#include "core/value_reader.h"

namespace tarvel {

namespace {

constexpr std::size_t kBlockSize = std::size_t{1} << 10;
constexpr std::size_t kBlocksInNext = 16;  // of a level, in a block of the next
constexpr std::size_t kLongest = limits::kShortLine - 2;
static_assert(kLongest < kBlockSize);  // so a line begins in each block

/// Whether the line is the first that begins in its block.
bool BeginsBlock(std::string_view bytes, std::size_t line) {
  const std::size_t begin = line - line % kBlockSize;
  if (begin == 0) return line == 0;
  return bytes.substr(begin - 1, line - begin).find('\n') == std::string_view::npos;
}

}  // namespace

std::optional<OpenValues::Passed> OpenValues::Pass(std::string_view bytes, std::size_t line,
                                                   int depth, bool ends_at_dash) {
  if (!BeginsBlock(bytes, line)) return std::nullopt;
  Passed passed{line, depth};
  std::size_t level = 0;
  std::size_t number = line / kBlockSize;
  while (passed.line < bytes.size()) {
    const Block& block = BlockAt(bytes, level, number);
    const bool ends = passed.depth + block.lowest <= 0 || (ends_at_dash && block.has_dash);
    if (block.can_be_passed && !ends) {
      passed = {block.end, passed.depth + block.change, block.ends_blank, passed.size + block.size};
      for (++number; number % kBlocksInNext == 0 && level + 1 < levels_.size(); ++level) {
        number /= kBlocksInNext;
      }
    } else if (level > 0) {  // perhaps its first blocks can be passed
      --level;
      number *= kBlocksInNext;
    } else {
      break;
    }
  }
  return passed.line > line ? std::optional(passed) : std::nullopt;
}

const OpenValues::Block& OpenValues::BlockAt(std::string_view bytes, std::size_t level,
                                             std::size_t number) {
  std::vector<std::optional<Block>>& blocks = levels_[level];
  if (number >= blocks.size()) blocks.resize(number + 1);
  if (!blocks[number]) {
    blocks[number] = level == 0 ? ReadBlock(bytes, number)
                                : JoinBlocks(bytes, level - 1, number * kBlocksInNext);
  }
  return *blocks[number];
}

/// Joins the blocks of a level from number `first` on to one of the next level.
OpenValues::Block OpenValues::JoinBlocks(std::string_view bytes, std::size_t level,
                                         std::size_t first) {
  Block joined = BlockAt(bytes, level, first);
  for (std::size_t i = 1; i < kBlocksInNext && joined.can_be_passed; ++i) {
    const Block& next = BlockAt(bytes, level, first + i);
    joined.lowest = std::min(joined.lowest, joined.change + next.lowest);
    joined.change += next.change;
    joined.end = next.end;
    joined.size += next.size;
    joined.ends_blank = next.ends_blank;
    joined.has_dash = joined.has_dash || next.has_dash;
    joined.can_be_passed = next.can_be_passed;
  }
  return joined;
}

OpenValues::Block OpenValues::ReadBlock(std::string_view bytes, std::size_t number) {
  const std::size_t begin = number * kBlockSize;
  Block block;
  if (begin > 0) {
    const std::size_t newline = bytes.substr(begin - 1, kBlockSize).find('\n');
    if (newline == std::string_view::npos) return block;
    block.begin = begin + newline;
  }
  block.end = block.begin;
  while (block.end < begin + kBlockSize) {
    const std::string_view line = bytes.substr(block.end, kLongest);
    const std::size_t size = line.find('\n') + 1;
    if (size == 0) return block;
    for (const char byte : line.substr(0, size)) {
      block.change += (byte == '{' ? 1 : 0) - (byte == '}' ? 1 : 0);
      block.lowest = std::min(block.lowest, block.change);
    }
    const std::size_t first = SkipContinuationBlanks(line.substr(0, size), 0);
    block.ends_blank = first == size;
    if (!block.ends_blank) block.size += size - first;  // a blank in place of the line feed
    block.end += size;
  }
  block.has_dash =
      bytes.substr(block.begin, block.end - block.begin).find('-') != std::string_view::npos;
  block.can_be_passed = true;
  return block;
}

/// A block's last line may begin up to `kLongest` bytes before the new ones.
void OpenValues::Forget(std::size_t begin, std::size_t end) {
  std::size_t first = (begin - std::min(begin, kLongest)) / kBlockSize;
  std::size_t last = end / kBlockSize;
  for (std::vector<std::optional<Block>>& blocks : levels_) {
    for (std::size_t number = first; number <= last && number < blocks.size(); ++number) {
      blocks[number].reset();
    }
    first /= kBlocksInNext;
    last /= kBlocksInNext;
  }
}

}  // namespace tarvel
