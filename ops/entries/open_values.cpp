// SPDX-License-Identifier: MIT
#include "ops/entries/open_values.h"

#include <algorithm>

#include "core/line_stream.h"
#include "core/value_reader.h"

namespace tarvel {

namespace {

constexpr std::size_t kBlockSize = std::size_t{1} << 12;
constexpr std::size_t kLongest = limits::kShortLine - 2;

}  // namespace

std::optional<OpenValues::Passed> OpenValues::Pass(std::string_view bytes, std::size_t line,
                                                   int depth, bool ends_at_dash) {
  if (line % kBlockSize > kLongest) return std::nullopt;  // not the first line of a block
  Passed passed{line, depth};
  for (std::size_t number = line / kBlockSize; passed.line < bytes.size(); ++number) {
    if (number >= blocks_.size()) blocks_.resize(number + 1);
    if (!blocks_[number]) blocks_[number] = BlockAt(bytes, number);
    const Block& block = *blocks_[number];
    const bool passes = block.can_be_passed && block.begin == passed.line;
    if (!passes || passed.depth + block.lowest <= 0 || (ends_at_dash && block.has_dash)) break;
    passed = {block.end, passed.depth + block.change, block.ends_blank, passed.size + block.size};
  }
  return passed.line > line ? std::optional(passed) : std::nullopt;
}

OpenValues::Block OpenValues::BlockAt(std::string_view bytes, std::size_t number) {
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
  const std::size_t first = (begin - std::min(begin, kLongest)) / kBlockSize;
  const std::size_t last = std::min(end / kBlockSize + 1, blocks_.size());
  for (std::size_t number = first; number < last; ++number) blocks_[number].reset();
}

}  // namespace tarvel
