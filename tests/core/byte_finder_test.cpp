// SPDX-License-Identifier: MIT
#include "core/byte_finder.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>

namespace tarvel {
namespace {

/// The offset of the first byte from `from` on for which `test` is true, or `end`.
template <typename Test>
std::size_t PlainFind(std::string_view text, std::size_t from, std::size_t end, const Test& test) {
  while (from < end && !test(text[from])) ++from;
  return from;
}

/// Text of all sorts of bytes, in some texts mostly "x".
std::string RandomText(std::mt19937& random) {
  constexpr std::string_view kBytes = "\n@{}\"=,\x7f\x80\xff\x01\t\r\x1f\b\v\f\x0e za~!?ABC";
  const auto plain = random() % 90 + 1;
  std::string text(random() % 400, 'x');
  for (char& byte : text) {
    if (random() % plain == 0) byte = kBytes[random() % kBytes.size()];
  }
  return text;
}

template <typename Finder, typename Test>
void ExpectFindsLike(const Test& test) {
  std::mt19937 random(6);
  for (int run = 0; run < 2000; ++run) {
    const std::string text = RandomText(random);
    Finder finder(text);
    std::size_t from = 0;
    for (int ask = 0; ask < 30 && !text.empty(); ++ask) {
      from = random() % 4 == 0 ? random() % text.size() : std::min(from + 1, text.size());
      const std::size_t end = from + random() % (text.size() - from + 1);
      ASSERT_EQ(finder.Find(from, end), PlainFind(text, from, end, test)) << from << ' ' << end;
    }
  }
}

template <typename Finder, typename Test>
void ExpectMarksLike(const Test& test) {
  ExpectFindsLike<Finder>(test);
  for (int code = -128; code < 128; ++code) {
    const auto byte = static_cast<char>(code);
    EXPECT_EQ(Finder::Holds(byte), test(byte)) << code;
    const std::string word(Finder::kWordSize, byte);
    EXPECT_EQ(Finder::Marks(word.data()), test(byte) ? ~std::uint64_t{0} : 0) << code;
    EXPECT_EQ(Finder::PlainMarks(word.data()), test(byte) ? ~std::uint64_t{0} : 0) << code;
  }
}

TEST(ByteFinder, FindsTheBytesOfALibrarysStructure) {
  const auto any_of = [](std::string_view bytes) {
    return [bytes](char byte) { return bytes.find(byte) != std::string_view::npos; };
  };
  ExpectMarksLike<StructureFinder>(any_of("{}\"\n=,"));
  ExpectMarksLike<BraceFinder>(any_of("{}\""));
}

TEST(ByteFinder, FindsBytesThatAreNotPrintable) {
  ExpectMarksLike<OddFinder>([](char byte) {
    const auto code = static_cast<signed char>(byte);
    return (code < ' ' && byte != '\t' && byte != '\n' && byte != '\r') || code == 127;
  });
}

TEST(ByteFinder, FindsBytesThatAreNotAscii) {
  ExpectMarksLike<ByteFinder<ByteRange{-128, -1}>>(
      [](char byte) { return static_cast<signed char>(byte) < 0; });
}

TEST(ByteFinder, FindsNothingInAnEmptyText) {
  StructureFinder finder("");
  EXPECT_EQ(finder.Find(0, 0), 0U);
}

TEST(ByteFinder, MarksEachByteAtItsOwnBit) {
  std::string word(BraceFinder::kWordSize, 'x');
  for (std::size_t at = 0; at < word.size(); ++at) {
    word[at] = '{';
    EXPECT_EQ(BraceFinder::Marks(word.data()), std::uint64_t{1} << at);
    EXPECT_EQ(BraceFinder::PlainMarks(word.data()), std::uint64_t{1} << at);
    word[at] = 'x';
  }
}

}  // namespace
}  // namespace tarvel
