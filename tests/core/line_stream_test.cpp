// SPDX-License-Identifier: MIT
#include "core/line_stream.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <string>
#include <vector>

namespace tarvel {
namespace {

struct Read {
  std::string line;
  bool at_end;
};

std::vector<Read> ReadAll(std::string_view bytes, std::size_t limit) {
  LineStream stream(bytes);
  std::vector<Read> reads;
  while (const auto line = stream.ReadLine(limit)) {
    reads.push_back({std::string(*line), stream.AtEnd()});
  }
  EXPECT_TRUE(stream.AtEnd()) << "a failed read has met the end";
  return reads;
}

/// The same through stdio itself. Only for bytes without a zero: fgets does not give a line's size.
std::vector<Read> ReadAllWithStdio(const std::string& bytes, std::size_t limit) {
  std::vector<Read> reads;
  std::FILE* file = std::tmpfile();
  std::fwrite(bytes.data(), 1, bytes.size(), file);
  std::rewind(file);
  std::vector<char> buffer(limit);
  while (std::fgets(buffer.data(), static_cast<int>(limit), file)) {
    reads.push_back({buffer.data(), std::feof(file) != 0});
  }
  std::fclose(file);
  return reads;
}

void ExpectSame(const std::vector<Read>& got, const std::vector<Read>& expected,
                const std::string& says) {
  ASSERT_EQ(got.size(), expected.size()) << says;
  for (std::size_t i = 0; i < got.size(); ++i) {
    EXPECT_EQ(got[i].line, expected[i].line) << says;
    EXPECT_EQ(got[i].at_end, expected[i].at_end) << says << ", read " << i;
  }
}

TEST(LineStream, ServesLinesAsStdioDoes) {
  struct Case {
    std::string_view bytes;
    std::size_t limit;
    std::vector<Read> reads;
    std::string says;
  };
  const Case cases[] = {
      {"", 10, {}, "an empty file has no line"},
      {"ab\ncd\n", 10, {{"ab\n", false}, {"cd\n", false}}, "the line break is kept"},
      {"ab\ncd",
       10,
       {{"ab\n", false}, {"cd", true}},
       "a last line without line break meets the end"},
      {"abcde", 6, {{"abcde", false}}, "a read that takes the last byte has not met the end"},
      {"abcde", 20, {{"abcde", true}}, "a read with room left has"},
      {"abcdefg\n",
       4,
       {{"abc", false}, {"def", false}, {"g\n", false}},
       "a longer line comes in pieces"},
      {"abc\nd\n",
       4,
       {{"abc", false}, {"\n", false}, {"d\n", false}},
       "the line break can be a piece"},
      {std::string_view("a\0b\n", 4), 9, {{std::string("a\0b\n", 4), false}}, "a zero is a byte"},
      {"a\r\nb\r", 9, {{"a\r\n", false}, {"b\r", true}}, "only LF breaks a line"},
  };
  for (const Case& c : cases) ExpectSame(ReadAll(c.bytes, c.limit), c.reads, c.says);
}

TEST(LineStream, AgreesWithStdioOnRandomBytes) {
  std::mt19937 random(7);
  for (int run = 0; run < 2000; ++run) {
    std::string bytes;
    const auto size = random() % 40;
    for (unsigned i = 0; i < size; ++i) bytes += "ab\n"[random() % 3];
    const std::size_t limit = 2 + random() % 12;
    ExpectSame(ReadAll(bytes, limit), ReadAllWithStdio(bytes, limit), bytes);
  }
}

TEST(LineStream, GoesBackToAPositionAndClearsTheEnd) {
  LineStream stream("one\ntwo");
  stream.ReadLine(100);
  const std::size_t second = stream.Position();
  EXPECT_EQ(second, 4U);
  EXPECT_EQ(stream.ReadLine(100), "two");
  EXPECT_TRUE(stream.AtEnd());
  stream.SetPosition(second);
  EXPECT_FALSE(stream.AtEnd());
  EXPECT_EQ(stream.ReadLine(100), "two");
  stream.SetPosition(0);
  EXPECT_EQ(stream.ReadLine(100), "one\n");
}

/// Gives its bytes a few at a time, as a slow disk would.
class DrippingSource final : public ByteSource {
 public:
  DrippingSource(std::string bytes, std::size_t told_size, std::size_t fails_at)
      : bytes_(std::move(bytes)), told_size_(told_size), fails_at_(fails_at) {}
  std::ptrdiff_t Read(char* buffer, std::size_t size) override {
    if (at_ >= fails_at_) return -1;
    const std::size_t got = std::min({size, bytes_.size() - at_, std::size_t{3}});
    bytes_.copy(buffer, got, at_);
    at_ += got;
    return static_cast<std::ptrdiff_t>(got);
  }
  std::size_t Size() const override { return told_size_; }

 private:
  std::string bytes_;
  std::size_t told_size_;
  std::size_t fails_at_;
  std::size_t at_ = 0;
};

constexpr std::size_t kNever = static_cast<std::size_t>(-1);

TEST(LineStream, ReadsASourceAsItsLinesAreAskedFor) {
  const std::string bytes = "first line\nsecond line\nthird";
  for (const std::size_t size : {bytes.size(), std::size_t{0}}) {
    LineStream stream(std::make_unique<DrippingSource>(bytes, size, kNever));
    EXPECT_EQ(stream.ReadLine(8), "first l");
    EXPECT_EQ(stream.ReadLine(100), "ine\n");
    EXPECT_EQ(stream.ReadLine(100), "second line\n");
    EXPECT_EQ(stream.ReadLine(100), "third");
    EXPECT_FALSE(stream.ReadLine(100).has_value());
    EXPECT_FALSE(stream.ReadFailed());
  }
}

TEST(LineStream, PassesOverLinesWithoutAByteAsReadingThemWould) {
  std::mt19937 random(9);
  for (int run = 0; run < 5000; ++run) {
    std::string bytes;
    for (auto i = random() % 60; i > 0; --i) bytes += "aaaabb\n@"[random() % 8];
    const std::size_t limit = 2 + random() % 12;
    LineStream plain(bytes);
    LineStream whole(bytes);
    LineStream dripping(std::make_unique<DrippingSource>(bytes, bytes.size(), kNever));
    // Now and then a line is read in between, so that the search starts inside a long line, too.
    for (int reads = 0; reads < 30; ++reads) {
      const bool any_line = random() % 3 == 0;
      auto expected = plain.ReadLine(limit);
      while (!any_line && expected && expected->find('@') == std::string_view::npos) {
        expected = plain.ReadLine(limit);
      }
      for (LineStream* stream : {&whole, &dripping}) {
        const auto got = any_line ? stream->ReadLine(limit) : stream->ReadLineWith('@', limit);
        ASSERT_EQ(got, expected) << bytes;
        ASSERT_EQ(stream->Position(), plain.Position()) << bytes;
        ASSERT_EQ(stream->AtEnd(), plain.AtEnd()) << bytes;
      }
    }
  }
}

TEST(LineStream, TakesAFileThatShrankOrGrewMeanwhile) {
  LineStream shrunk(std::make_unique<DrippingSource>("abc", 10, kNever));
  EXPECT_TRUE(shrunk.LoadAll());
  EXPECT_EQ(shrunk.Bytes(), "abc");
  LineStream grown(std::make_unique<DrippingSource>("abcdefghi", 5, kNever));
  EXPECT_TRUE(grown.LoadAll());
  EXPECT_EQ(grown.Bytes(), "abcde");
}

TEST(LineStream, ReportsAReadError) {
  LineStream stream(std::make_unique<DrippingSource>("abcdefghi", 9, 3));
  EXPECT_FALSE(stream.LoadAll());
  EXPECT_TRUE(stream.ReadFailed());
}

TEST(Line, IsAViewUntilItIsChanged) {
  const std::string text = "abc";
  Line line(text);
  EXPECT_EQ(line.Text().data(), text.data());
  line.Edit()[0] = 'X';
  EXPECT_EQ(line.Text(), "Xbc");
  EXPECT_EQ(text, "abc");
  line.Set("new");
  EXPECT_EQ(line.Text(), "new");
}

TEST(ReadLineIntoLine, LeavesTheLineAtTheEnd) {
  LineStream stream("a\n");
  Line line;
  EXPECT_TRUE(ReadLine(stream, 10, line));
  EXPECT_FALSE(ReadLine(stream, 10, line));
  EXPECT_EQ(line.Text(), "a\n");
}

}  // namespace
}  // namespace tarvel
