// SPDX-License-Identifier: MIT
#include "ops/entries/open_values.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

namespace tarvel {
namespace {

/// Lines of which few change the depth of the braces much.
std::string Lines(std::mt19937& random, std::size_t size) {
  std::string text;
  while (text.size() < size) {
    const std::size_t kind = random() % 60;
    if (kind == 0) text.append(random() % 4, '{');
    if (kind == 1) text.append(random() % 4, '}');
    if (kind == 3 && random() % 4 == 0) text += "1-2";
    if (kind == 2 && random() % 8 == 0) text.append(998 + random() % 3, 'x');
    if (kind > 50) text += "  ";
    if (kind > 5) text += "{text}";
    text += '\n';
  }
  return text;
}

/// Whether the lines from `begin` to `end` leave a value open, and `depth` with the braces there.
bool StaysOpen(std::string_view text, std::size_t begin, std::size_t end, int& depth) {
  for (std::size_t at = begin; at < end; ++at) {
    depth += (text[at] == '{' ? 1 : 0) - (text[at] == '}' ? 1 : 0);
    if (depth <= 0) return false;
  }
  return true;
}

TEST(OpenValues, PassLinesThatLeaveTheValueOpenAlsoAfterWrites) {
  std::mt19937 random(3);
  std::size_t passed = 0;
  std::size_t stopped = 0;
  std::size_t dashes = 0;
  for (int run = 0; run < 120; ++run) {
    std::string text = Lines(random, 30000);
    OpenValues values;
    for (int write = 0; write < 20; ++write) {
      const std::string part = Lines(random, random() % 300);
      // Often where a block's last line goes on into the next one.
      const bool at_border = random() % 2 == 0;
      const std::size_t at = at_border ? (1 + random() % 6) * 4096 + random() % 4
                                       : random() % (text.size() - part.size());
      text.replace(at, part.size(), part);
      values.Forget(at, at + part.size());
      for (std::size_t line = 0; line < text.size(); line = text.find('\n', line) + 1) {
        const int before = 1 + static_cast<int>(random() % 6);
        const bool ends_at_dash = random() % 2 == 0;
        const auto offset = values.Pass(text, line, before, ends_at_dash);
        if (!offset) continue;
        const bool has_dash = text.find('-', line) < offset->line;
        EXPECT_FALSE(ends_at_dash && has_dash);
        if (has_dash) ++dashes;
        ++passed;
        if (offset->line < text.size()) ++stopped;
        int depth = before;
        ASSERT_TRUE(StaysOpen(text, line, offset->line, depth)) << line;
        EXPECT_EQ(offset->depth, depth);
        EXPECT_EQ(text[offset->line - 1], '\n');
        EXPECT_EQ(offset->after_blank, text[offset->line - 2] == '\n');
        std::size_t longest = 0;
        std::size_t size = 0;
        for (std::size_t from = line; from < offset->line; from = text.find('\n', from) + 1) {
          const std::size_t newline = text.find('\n', from);
          longest = std::max(longest, newline + 1 - from);
          const std::size_t first = text.find_first_not_of(' ', from);
          if (first < newline) size += 1 + newline - first;
        }
        EXPECT_EQ(offset->size, size);
        EXPECT_LE(longest, 998U);
      }
    }
  }
  EXPECT_GT(passed, 1000U);
  EXPECT_GT(dashes, 100U);
  EXPECT_GT(stopped, 1000U);
}

TEST(OpenValues, PassNothingFromTheMiddleOfABlock) {
  std::string text;
  while (text.size() < 10000) text += "line\n";
  OpenValues values;
  EXPECT_FALSE(values.Pass(text, 2000, 1));
  ASSERT_TRUE(values.Pass(text, 0, 1));
  EXPECT_EQ(values.Pass(text, 0, 1)->line, 8195U) << "the last lines do not fill a block";
}

}  // namespace
}  // namespace tarvel
