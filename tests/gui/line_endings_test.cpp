// SPDX-License-Identifier: MIT
#include "gui/line_endings.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "tests/support/disk_files.h"
#include "tests/support/recording_reporter.h"

namespace tarvel {
namespace {

using testing::ReadDiskFile;
using testing::TemporaryDirectory;
using testing::WriteDiskFile;

LineBreaks CountIn(std::string_view bytes) {
  LineBreaks breaks;
  char last = 0;
  CountLineBreaks(bytes, last, breaks);
  return breaks;
}

TEST(SystemOf, NeedsAMajorityOverBothOthers) {
  struct Case {
    std::string_view bytes;
    int system;
    std::string_view says;
  };
  const Case cases[] = {
      {"a\nb\n", 5555, "LF"},
      {"a\r\nb\r\n", 5556, "CR LF"},
      {"a\rb\r", 5557, "CR"},
      {"a", 5557, "no line break counts as Mac"},
      {"a\nb\r", 5557, "so does a tie"},
      {"a\r\nb\n", 5557, "of any kinds"},
      {"a\r\nb\nc\r", 5557, "of all kinds"},
      {"a\r\nb\r\nc\nd\r", 5556, "Windows outnumbers both"},
      {"a\nb\nc\rd\r\n", 5555, "Linux outnumbers both"},
      {"\r\r\n", 5557, "one pair against one CR"},
  };
  for (const Case& c : cases) EXPECT_EQ(SystemOf(CountIn(c.bytes)), c.system) << c.says;
}

TEST(CountLineBreaks, CountsMoreThanAShortCounterHolds) {
  const LineBreaks breaks = CountIn(std::string(1000, '\n') + std::string(700, 'a') + "\n\r");
  EXPECT_EQ(breaks.lone_lf, 1001U);
  EXPECT_EQ(breaks.lone_cr, 1U);
}

TEST(CountLineBreaks, DoesNotDependOnThePieces) {
  std::mt19937 random(5);
  for (int run = 0; run < 5000; ++run) {
    std::string bytes;
    for (auto i = random() % 20; i > 0; --i) bytes += "a\r\n"[random() % 3];
    const LineBreaks whole = CountIn(bytes);
    LineBreaks pieces;
    char last = 0;
    for (std::size_t at = 0; at < bytes.size();) {
      const std::size_t size = random() % 4;
      CountLineBreaks(std::string_view(bytes).substr(at, size), last, pieces);
      at += size;
    }
    std::size_t crlf = 0, cr = 0, lf = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
      if (bytes[i] == '\r' && i + 1 < bytes.size() && bytes[i + 1] == '\n') {
        ++crlf;
        ++i;
      } else if (bytes[i] == '\r') {
        ++cr;
      } else if (bytes[i] == '\n') {
        ++lf;
      }
    }
    for (const LineBreaks& breaks : {whole, pieces}) {
      ASSERT_EQ(breaks.crlf, crlf) << run;
      ASSERT_EQ(breaks.lone_cr, cr) << run;
      ASSERT_EQ(breaks.lone_lf, lf) << run;
    }
  }
}

class Conversion : public ::testing::Test {
 protected:
  std::string File(const std::string& name, std::string_view bytes) {
    WriteDiskFile(directory_ / name, bytes);
    return directory_ / name;
  }
  int Convert(const std::string& path) {
    buffer_.Set(path);
    return ConvertLineEndings(buffer_);
  }
  void ExpectBox(const std::string& message, const std::string& caption) {
    ASSERT_EQ(reporter_.boxes.size(), 1U);
    EXPECT_EQ(reporter_.boxes[0].message, message);
    EXPECT_EQ(reporter_.boxes[0].caption, caption);
    EXPECT_EQ(reporter_.printed, "");
  }

  TemporaryDirectory directory_;
  testing::RecordingReporter reporter_;
  PathBuffer buffer_{"picked file"};
};

TEST_F(Conversion, UsesALinuxFileAsPicked) {
  const std::string path = File("lit.bib", "a\nb\r\n\n");
  EXPECT_EQ(Convert(path), 1);
  EXPECT_EQ(buffer_.Get(), path);
  EXPECT_TRUE(reporter_.boxes.empty());
  EXPECT_FALSE(std::filesystem::exists(directory_ / "lit_linux.bib"));
}

TEST_F(Conversion, WritesACopyOfAWindowsFile) {
  const std::string bytes = "a\r\nb\rc\r\r\nd\ne\r\nf\r\n\r";
  const std::string path = File("lit.bib", bytes);
  EXPECT_EQ(Convert(path), 1);
  EXPECT_EQ(buffer_.Get(), directory_ / "lit_linux.bib");
  EXPECT_EQ(ReadDiskFile(directory_ / "lit_linux.bib"), "a\nb\rc\r\nd\ne\nf\n\r")
      << "a lone CR is copied";
  EXPECT_EQ(ReadDiskFile(path), bytes);
  ExpectBox(
      "It seems that the file was created by a different operating system (Windows). Tarvel "
      "created a new Linux file for security.",
      "File conversion");
}

TEST_F(Conversion, WritesACopyOfAMacFile) {
  EXPECT_EQ(Convert(File("my.refs.bib", "a\rb\r\nc\r\rd")), 1);
  EXPECT_EQ(buffer_.Get(), directory_ / "my.refs_linux.bib");
  EXPECT_EQ(ReadDiskFile(directory_ / "my.refs_linux.bib"), "a\nb\n\nc\n\nd")
      << "every CR becomes LF, that of a pair too";
  ExpectBox(
      "It seems that the file was created by a different operating system (Mac). Tarvel created a "
      "new Linux file for security.",
      "File conversion");
}

TEST_F(Conversion, TakesAFileWithoutLineBreakForAMacFile) {
  EXPECT_EQ(Convert(File("one.bib", "@article{a, b = {c}}")), 1);
  EXPECT_EQ(ReadDiskFile(directory_ / "one_linux.bib"), "@article{a, b = {c}}");
  EXPECT_EQ(reporter_.boxes.size(), 1U);
}

TEST_F(Conversion, DoesNotDependOnThePiecesItReads) {
  // CR LF at every place around the size of a piece.
  for (std::size_t size = (1U << 18) - 3; size < (1U << 18) + 3; ++size) {
    const std::string path = File("big.bib", std::string(size, 'x') + "\r\n\r\n\r");
    EXPECT_EQ(Convert(path), 1);
    EXPECT_EQ(ReadDiskFile(directory_ / "big_linux.bib"), std::string(size, 'x') + "\n\n\r");
  }
}

TEST_F(Conversion, RefusesNoPath) {
  EXPECT_EQ(Convert(""), 0);
  ExpectBox("File ?", "File ?");
}

TEST_F(Conversion, RefusesWhatCannotBeOpened) {
  for (const std::string& path : {directory_ / "none.bib", directory_ / ""}) {
    reporter_.boxes.clear();
    EXPECT_EQ(Convert(path), 0);
    EXPECT_EQ(buffer_.Get(), path);
    ExpectBox("Could not open the file!", "File ?");
  }
}

TEST_F(Conversion, RefusesAnEmptyFileWithoutAWord) {
  const std::string path = File("empty.bib", "");
  EXPECT_EQ(Convert(path), 0);
  EXPECT_EQ(buffer_.Get(), path);
  EXPECT_TRUE(reporter_.boxes.empty());
}

TEST_F(Conversion, RefusesAPathWithoutADotThatNeedsIt) {
  std::filesystem::create_directory("/tmp/tarvel-nodot");
  const std::string path = "/tmp/tarvel-nodot/refs";
  WriteDiskFile(path, "a\r\n");
  EXPECT_EQ(Convert(path), 0);
  EXPECT_EQ(buffer_.Get(), path);
  ExpectBox("Could not open the file!", "File ?");
  reporter_.boxes.clear();
  WriteDiskFile(path, "a\n");
  EXPECT_EQ(Convert(path), 1) << "without need it is used as picked";
  EXPECT_TRUE(reporter_.boxes.empty());
  std::filesystem::remove_all("/tmp/tarvel-nodot");
}

TEST_F(Conversion, LeavesThePickedPathWhenTheCopyCannotBeCreated) {
  const std::string path = File("lit.bib", "a\r\n");
  std::filesystem::create_directory(directory_ / "lit_linux.bib");
  EXPECT_EQ(Convert(path), 0);
  EXPECT_EQ(buffer_.Get(), path);
  EXPECT_TRUE(reporter_.boxes.empty());
}

/// A file in `directory` whose path has `size` bytes.
std::string PathOfSize(const TemporaryDirectory& directory, std::size_t size) {
  std::string path = directory / "d";
  while (path.size() + 260 < size) path += "/" + std::string(100, 'd');
  std::filesystem::create_directories(path);
  const std::size_t left = size - path.size() - 1;
  const std::string middle(left / 2, 'm');
  path += "/" + middle;
  std::filesystem::create_directories(path);
  return path + "/" + std::string(size - path.size() - 5, 'f') + ".bib";
}

TEST_F(Conversion, TakesACopyWhosePathHas1000Bytes) {
  const std::string path = PathOfSize(directory_, 994);
  ASSERT_EQ(path.size(), 994U);
  WriteDiskFile(path, "@misc{a,\r\n}\r\n");
  EXPECT_EQ(Convert(path), 1);
  EXPECT_EQ(buffer_.Get().size(), 1000U);
  EXPECT_EQ(ReadDiskFile(buffer_.Get()), "@misc{a,\n}\n");
}

using ConversionDeathTest = Conversion;

TEST_F(ConversionDeathTest, EndsTheProcessWhenOnlyThePathOfTheCopyIsTooLong) {
  const std::string bytes = "@misc{a,\r\n}\r\n";
  for (const std::size_t size : {995U, 1000U}) {
    const std::string path = PathOfSize(directory_, size);
    ASSERT_EQ(path.size(), size);
    WriteDiskFile(path, bytes);
    EXPECT_EXIT(Convert(path), ::testing::ExitedWithCode(1),
                "^tarvel: the path of the picked file is " + std::to_string(size + 6) +
                    " bytes long; 1000 are the most\n$");
    EXPECT_EQ(ReadDiskFile(path), bytes);
  }
}

TEST_F(Conversion, NeverWritesOverThePickedFile) {
  const std::string path = File("lit.bib", "a\r\n");
  std::filesystem::create_symlink(path, directory_ / "lit_linux.bib");
  EXPECT_EQ(Convert(path), 0);
  EXPECT_EQ(buffer_.Get(), path);
  EXPECT_EQ(ReadDiskFile(path), "a\r\n");
  EXPECT_TRUE(reporter_.boxes.empty());
}

TEST_F(Conversion, NeverReplacesTheOtherPickedFile) {
  const std::string bytes = "@misc{mine,\n}\n";
  const std::string other = File("lit_linux.bib", bytes);
  const std::string path = File("lit.bib", "@misc{a,\r\n}\r\n");
  for (PathBuffer* picked : {&FirstFilePath, &SecondFilePath}) {
    picked->Set(other);
    reporter_.boxes.clear();
    reporter_.printed.clear();
    EXPECT_EQ(Convert(path), 0);
    EXPECT_EQ(buffer_.Get(), path);
    EXPECT_EQ(ReadDiskFile(other), bytes);
    EXPECT_TRUE(reporter_.boxes.empty());
    EXPECT_EQ(reporter_.printed, testing::Printed("Could not write the file '" + other +
                                                  "': it is a picked file with other contents"));
    picked->Set("");
  }
  EXPECT_EQ(Convert(path), 1) << "a file that is not picked is overwritten";
  EXPECT_EQ(ReadDiskFile(other), "@misc{a,\n}\n");
}

TEST_F(Conversion, TakesTheCopyThatIsPickedAlready) {
  const std::string path = File("lit.bib", "@misc{a,\r\n}\r\n");
  EXPECT_EQ(Convert(path), 1);
  const std::string copy = directory_ / "lit_linux.bib";
  const auto time = std::filesystem::last_write_time(copy) - std::chrono::hours(1);
  std::filesystem::last_write_time(copy, time);
  FirstFilePath.Set(copy);
  EXPECT_EQ(Convert(path), 1);
  FirstFilePath.Set("");
  EXPECT_EQ(buffer_.Get(), copy);
  EXPECT_EQ(reporter_.boxes.size(), 2U) << "the box reports each conversion";
  EXPECT_EQ(std::filesystem::last_write_time(copy), time) << "but nothing is written again";
  for (const std::string longer : {"@misc{a,\n}\nx", "@misc{a,\n}", ""}) {
    WriteDiskFile(copy, longer);
    FirstFilePath.Set(copy);
    EXPECT_EQ(Convert(path), 0) << "a longer or shorter one is another file";
    FirstFilePath.Set("");
    EXPECT_EQ(ReadDiskFile(copy), longer);
  }
}

TEST_F(Conversion, ReportsAFullDisk) {
  const std::string path = File("lit.bib", "a\r\n");
  std::filesystem::create_symlink("/dev/full", directory_ / "lit_linux.bib");
  EXPECT_EQ(Convert(path), 0);
  EXPECT_EQ(buffer_.Get(), path);
  EXPECT_EQ(reporter_.printed,
            testing::Printed("Could not write the file '" + (directory_ / "lit_linux.bib") +
                             "': No space left on device"));
}

}  // namespace
}  // namespace tarvel
