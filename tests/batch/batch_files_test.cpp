// SPDX-License-Identifier: MIT
#include "batch/batch_files.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "gui/line_endings.h"
#include "tests/support/disk_files.h"

namespace tarvel {
namespace {

using namespace testing;

class NoObserver final : public ReadingObserver {
 public:
  void OnRead(std::size_t /*position*/, std::size_t /*size*/) override {}
};

/// Counts the bytes that are read of a file.
class CountedSource final : public ByteSource {
 public:
  CountedSource(std::unique_ptr<ByteSource> source, std::size_t& bytes)
      : source_(std::move(source)), bytes_(bytes) {}
  std::ptrdiff_t Read(char* buffer, std::size_t size) override {
    const std::ptrdiff_t got = source_->Read(buffer, size);
    if (got > 0) bytes_ += static_cast<std::size_t>(got);
    return got;
  }
  std::size_t Size() const override { return source_->Size(); }
  std::optional<FileState> State() const override { return source_->State(); }

 private:
  std::unique_ptr<ByteSource> source_;
  std::size_t& bytes_;
};

/// The files of the machine; counts the bytes that are read.
class CountedFiles final : public FileSystem {
 public:
  std::unique_ptr<ByteSource> OpenSource(const std::string& path, ReadMode mode) override {
    auto source = RealFileSystem().OpenSource(path, mode);
    if (!source) return nullptr;
    return std::make_unique<CountedSource>(std::move(source), bytes);
  }
  std::unique_ptr<ByteSink> CreateSink(const std::string& path, CreateMode mode) override {
    return RealFileSystem().CreateSink(path, mode);
  }
  bool IsSameFile(const std::string& one, const std::string& other) override {
    return RealFileSystem().IsSameFile(one, other);
  }

  std::size_t bytes = 0;
};

class PickedFiles : public ::testing::Test {
 protected:
  void Pick(std::string_view bytes) {
    WriteDiskFile(path_, bytes);
    PathBuffer picked("picked file");
    picked.Set(path_);
    ASSERT_EQ(ConvertLineEndings(picked, files_), 1);
  }
  std::string Read() {
    const auto lines = files_.OpenLines(path_, ReadMode::kUpdate);
    return lines ? std::string(lines->Bytes()) : "not read";
  }

  TemporaryDirectory directory_;
  std::string path_ = directory_ / "lit.bib";
  CountedFiles disk_;
  NoObserver observer_;
  BatchFiles files_{disk_, false, observer_};
};

TEST_F(PickedFiles, AreReadOnce) {
  const std::string bytes = std::string(3000000, 'a') + "\n";
  Pick(bytes);
  EXPECT_EQ(Read(), bytes);
  EXPECT_EQ(disk_.bytes, bytes.size());
  EXPECT_EQ(Read(), bytes) << "lines are given up once";
  EXPECT_EQ(disk_.bytes, 2 * bytes.size());
}

TEST_F(PickedFiles, AreReadAgainWhenTheyChanged) {
  Pick("a\n");
  WriteDiskFile(path_, "bc\n");
  EXPECT_EQ(Read(), "bc\n");
}

TEST_F(PickedFiles, MustStillBeThere) {
  Pick("a\n");
  WriteDiskFile(directory_ / "other.bib", "a\n");
  ASSERT_EQ(std::rename((directory_ / "other.bib").c_str(), path_.c_str()), 0);
  EXPECT_EQ(Read(), "a\n") << "another file of the same size";
  Pick("a\n");
  ASSERT_EQ(std::remove(path_.c_str()), 0);
  EXPECT_EQ(Read(), "not read");
}

}  // namespace
}  // namespace tarvel
