// SPDX-License-Identifier: MIT
#include "ops/entries/open_values.h"

#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <string>
#include <string_view>

namespace tarvel {
namespace {

/// Lines of which few change the depth of the braces much: one in `rarely`.
std::string Lines(std::mt19937& random, std::size_t size, unsigned rarely) {
  std::string text;
  while (text.size() < size) {
    const std::size_t kind = random() % rarely;
    if (kind == 0) text.append(random() % 4, '{');
    if (kind == 1) text.append(random() % 4, '}');
    if (kind == 3 && random() % 4 == 0) text += "1-2";
    if (kind == 2 && random() % 8 == 0) text.append(998 + random() % 3, 'x');
    if (random() % 8 == 0) text += "  ";
    if (random() % 8 > 0) text += "{text}";
    text += '\n';
  }
  return text;
}

/// Whether a line leaves a value open, and `depth` with the braces after it.
bool StaysOpen(std::string_view line, int& depth) {
  for (const char byte : line) {
    depth += (byte == '{' ? 1 : 0) - (byte == '}' ? 1 : 0);
    if (depth <= 0) return false;
  }
  return true;
}

/// Passes the lines of each block of 1 KiB, as long as all of them can be passed, by reading them.
std::optional<OpenValues::Passed> PassByReading(std::string_view text, std::size_t line, int depth,
                                                bool ends_at_dash) {
  const auto block_of = [](std::size_t offset) { return offset / 1024; };
  const std::size_t before = line > 1 ? text.rfind('\n', line - 2) + 1 : 0;
  if (line > 0 && block_of(before) == block_of(line)) return std::nullopt;
  std::optional<OpenValues::Passed> passed;
  OpenValues::Passed read{line, depth};
  while (read.line < text.size()) {
    const std::size_t end = text.find('\n', read.line) + 1;
    const std::string_view bytes = text.substr(read.line, end - read.line);
    const bool has_dash = bytes.find('-') != std::string_view::npos;
    if (bytes.size() > 998 || (ends_at_dash && has_dash) || !StaysOpen(bytes, read.depth)) break;
    const std::size_t first = bytes.find_first_not_of(" \n");
    read.after_blank = first == std::string_view::npos;
    if (!read.after_blank) read.size += bytes.size() - first;
    const bool ends_block = block_of(end) > block_of(read.line);
    read.line = end;
    if (ends_block) passed = read;
  }
  return passed;
}

void ExpectEqual(const std::optional<OpenValues::Passed>& passed,
                 const std::optional<OpenValues::Passed>& read) {
  ASSERT_EQ(passed.has_value(), read.has_value());
  if (!passed) return;
  EXPECT_EQ(passed->line, read->line);
  EXPECT_EQ(passed->depth, read->depth);
  EXPECT_EQ(passed->after_blank, read->after_blank);
  EXPECT_EQ(passed->size, read->size);
}

TEST(OpenValues, PassWhatCanBePassedAlsoAfterWrites) {
  std::mt19937 random(3);
  std::size_t passed = 0;
  std::size_t nothing = 0;
  for (int run = 0; run < 120; ++run) {
    std::string text = Lines(random, 30000, 60);
    OpenValues values;
    for (int write = 0; write < 20; ++write) {
      const std::string part = Lines(random, random() % 300, 60);
      // Often where a block's last line goes on into the next one.
      const bool at_border = random() % 2 == 0;
      const std::size_t at = at_border ? (1 + random() % 25) * 1024 + random() % 4
                                       : random() % (text.size() - part.size());
      text.replace(at, part.size(), part);
      values.Forget(at, at + part.size());
      for (std::size_t line = 0; line < text.size(); line = text.find('\n', line) + 1) {
        const int depth = 1 + static_cast<int>(random() % 6);
        const bool ends_at_dash = random() % 2 == 0;
        const auto found = values.Pass(text, line, depth, ends_at_dash);
        ExpectEqual(found, PassByReading(text, line, depth, ends_at_dash));
        ++(found ? passed : nothing);
      }
    }
  }
  EXPECT_GT(passed, 10000U);
  EXPECT_GT(nothing, 10000U);
}

TEST(OpenValues, PassBlocksTogetherAlsoAfterWrites) {
  std::mt19937 random(4);
  std::size_t far = 0;
  std::string text = Lines(random, 1000000, 20000);
  OpenValues values;
  for (int write = 0; write < 150; ++write) {
    const std::string part = Lines(random, random() % 300, 60);
    const std::size_t at = random() % (text.size() - part.size());
    text.replace(at, part.size(), part);
    values.Forget(at, at + part.size());
    const std::size_t line = text.find('\n', random() % 980 * 1024) + 1;
    const int depth = 1 + static_cast<int>(random() % 200);
    const auto found = values.Pass(text, line, depth, write % 8 == 0);
    ExpectEqual(found, PassByReading(text, line, depth, write % 8 == 0));
    if (found && found->line > line + 300000) ++far;
  }
  EXPECT_GT(far, 20U);
}

TEST(OpenValues, PassNothingFromTheMiddleOfABlock) {
  std::string text;
  while (text.size() < 10000) text += "line\n";
  OpenValues values;
  EXPECT_FALSE(values.Pass(text, 1030, 1));
  EXPECT_TRUE(values.Pass(text, 1025, 1)) << "the first line that begins in its block";
  ASSERT_TRUE(values.Pass(text, 0, 1));
  EXPECT_EQ(values.Pass(text, 0, 1)->line, 9220U) << "the last lines do not fill a block";
}

}  // namespace
}  // namespace tarvel
