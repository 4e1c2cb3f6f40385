// SPDX-License-Identifier: MIT
#include "core/byte_marks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <string_view>

namespace tarvel {
namespace {

bool IsOdd(char byte) {
  const auto code = static_cast<signed char>(byte);
  return (code < ' ' && byte != '\t' && byte != '\n' && byte != '\r') || code == 127;
}

/// The offset of the first byte from `from` on for which `test` is true, or `end`.
template <typename Test>
std::size_t PlainFind(std::string_view text, std::size_t from, std::size_t end, const Test& test) {
  while (from < end && !test(text[from])) ++from;
  return from;
}

/// Text of all sorts of bytes, some of its lines longer than what is marked at once.
std::string RandomText(std::mt19937& random) {
  constexpr std::string_view kBytes = "\n@{}\"=,\x7f\x80\xff\x01\t\r za~!?ABC";
  const std::size_t most = random() % 3 == 0 ? 12000 : 300;
  const auto plain = random() % 90 + 1;
  std::string text(random() % most, 'x');
  for (char& byte : text) {
    if (random() % plain == 0) byte = kBytes[random() % kBytes.size()];
  }
  return text;
}

void ExpectSame(std::string_view text, std::size_t from, std::size_t end, ByteMarks& marks) {
  const auto is_brace = [](char byte) { return byte == '{' || byte == '}' || byte == '"'; };
  const auto ends_name = [&](char byte) { return is_brace(byte) || byte == '=' || byte == ','; };
  ASSERT_EQ(marks.FindBrace(from, end), PlainFind(text, from, end, is_brace));
  ASSERT_EQ(marks.FindNameEnd(from, end), PlainFind(text, from, end, ends_name));
  ASSERT_EQ(marks.FindOdd(from, end), PlainFind(text, from, end, IsOdd));
}

class ByteMarksTest : public ::testing::TestWithParam<ByteMarks::Way> {};
INSTANTIATE_TEST_SUITE_P(EachWay, ByteMarksTest,
                         ::testing::Values(ByteMarks::Way::kFastest, ByteMarks::Way::kPlain));

TEST_P(ByteMarksTest, FindsWhatLookingAtEachByteFinds) {
  std::mt19937 random(6);
  for (int run = 0; run < 400; ++run) {
    const std::string text = RandomText(random);
    ByteMarks marks(text, GetParam());
    const std::size_t most = random() % 4 == 0 ? 1 + random() % 200 : std::string_view::npos;
    for (std::size_t at = 0; at < text.size();) {
      const ByteMarks::Line line = marks.NextLine(at, most);
      const std::size_t newline = std::min(text.find('\n', at), text.size() - 1);
      ASSERT_EQ(line.end, newline + 1 - at > most ? at + most : newline + 1);
      const std::string_view bytes = std::string_view(text).substr(at, line.end - at);
      ASSERT_EQ(line.has_at, bytes.find('@') != std::string_view::npos) << at;
      ASSERT_EQ(line.is_plain, std::none_of(bytes.begin(), bytes.end(), IsOdd)) << at;
      ExpectSame(text, at, line.end, marks);
      ExpectSame(text, random() % text.size(), text.size(), marks);
      at = line.end;
    }
  }
}

TEST(ByteMarks, FindsNothingInAnEmptyText) {
  ByteMarks marks("");
  EXPECT_EQ(marks.NextLine(0).end, 0U);
  EXPECT_EQ(marks.FindBrace(0, 0), 0U);
}

}  // namespace
}  // namespace tarvel
