// SPDX-License-Identifier: MIT
#include "tests/support/memory_files.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <utility>

#include "app/globals.h"
#include "app/reporter.h"

namespace tarvel::testing {

namespace {

/// Speaks through the reporter that is installed when something is said.
class ForwardingReporter final : public Reporter {
 public:
  int Print(std::string_view text) override { return GlobalReporter().Print(text); }
  void Box(std::string_view message, std::string_view caption) override {
    GlobalReporter().Box(message, caption);
  }
  void Warn(std::string_view text) override { GlobalReporter().Warn(text); }
};

Reporter& InstalledReporter() {
  static ForwardingReporter reporter;
  return reporter;
}

class MemorySource final : public ByteSource {
 public:
  MemorySource(std::string bytes, std::size_t piece, bool fails)
      : bytes_(std::move(bytes)), piece_(piece), fails_(fails) {}
  std::ptrdiff_t Read(char* buffer, std::size_t size) override {
    if (fails_) return -1;
    const std::size_t got = std::min({size, piece_, bytes_.size() - at_});
    std::memcpy(buffer, bytes_.data() + at_, got);
    at_ += got;
    return static_cast<std::ptrdiff_t>(got);
  }
  std::size_t Size() const override { return bytes_.size(); }

 private:
  std::string bytes_;
  std::size_t at_ = 0;
  std::size_t piece_;
  bool fails_;
};

class MemorySink final : public ByteSink {
 public:
  MemorySink(std::string& file, std::size_t room, bool close_fails)
      : file_(file), room_(room), close_fails_(close_fails) {}
  std::string Write(std::string_view bytes) override {
    const std::size_t fits = std::min(room_ - std::min(room_, file_.size()), bytes.size());
    file_.append(bytes.substr(0, fits));
    return fits == bytes.size() ? std::string() : "No space left on device";
  }
  std::string Close() override { return close_fails_ ? "Input/output error" : std::string(); }

 private:
  std::string& file_;
  std::size_t room_;
  bool close_fails_;
};

}  // namespace

std::unique_ptr<ByteSource> MemoryFiles::OpenSource(const std::string& path, ReadMode mode) {
  const auto found = files.find(path);
  const bool opens = found != files.end() && !unreadable.contains(path) &&
                     (mode == ReadMode::kRead || !read_only.contains(path));
  if (!opens) return nullptr;
  return std::make_unique<MemorySource>(found->second, piece, read_fails.contains(path));
}

std::unique_ptr<ByteSink> MemoryFiles::CreateSink(const std::string& path, CreateMode /*mode*/) {
  if (not_creatable.contains(path)) return nullptr;
  std::string& file = files[path];
  file.clear();
  const auto limited = room.find(path);
  return std::make_unique<MemorySink>(file, limited == room.end() ? most_room : limited->second,
                                      close_fails.contains(path));
}

bool MemoryFiles::IsSameFile(const std::string& one, const std::string& other) {
  if (!files.contains(one) || !files.contains(other)) return false;
  return one == other || same_files.contains({one, other}) || same_files.contains({other, one});
}

std::optional<FileState> MemoryFiles::StateAt(const std::string& path) {
  const auto file = std::find_if(files.begin(), files.end(),
                                 [&](const auto& other) { return IsSameFile(path, other.first); });
  if (file == files.end()) return std::nullopt;
  return FileState{.number = static_cast<std::uint64_t>(std::distance(files.begin(), file))};
}

RunContext MemoryRun(FileSystem& files, std::string_view first, std::string_view second) {
  return {.first_path = std::string(first),
          .second_path = std::string(second),
          .settings = Settings(),
          .files = files,
          .reporter = InstalledReporter(),
          .styles = GlobalJournalStyles,
          .program_directory = [] { return std::string("/program"); }};
}

}  // namespace tarvel::testing
