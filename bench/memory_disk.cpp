// SPDX-License-Identifier: MIT
#include "bench/memory_disk.h"

#include <algorithm>
#include <string_view>

namespace tarvel::bench {

namespace {

class MemorySource final : public ByteSource {
 public:
  explicit MemorySource(std::string_view bytes) : size_(bytes.size()), rest_(bytes) {}
  std::ptrdiff_t Read(char* buffer, std::size_t size) override {
    const std::size_t got = rest_.copy(buffer, size);
    rest_.remove_prefix(got);
    return static_cast<std::ptrdiff_t>(got);
  }
  std::size_t Size() const override { return size_; }

 private:
  std::size_t size_;
  std::string_view rest_;
};

class MemorySink final : public ByteSink {
 public:
  explicit MemorySink(std::string& file) : file_(file) {}
  std::string Write(std::string_view bytes) override {
    file_.append(bytes);
    return {};
  }
  std::string Close() override { return {}; }

 private:
  std::string& file_;
};

}  // namespace

std::unique_ptr<ByteSource> MemoryDisk::OpenSource(const std::string& path, ReadMode mode) {
  const auto found = files.find(path);
  if (found == files.end()) return RealFileSystem().OpenSource(path, mode);
  return std::make_unique<MemorySource>(found->second);
}

std::unique_ptr<ByteSink> MemoryDisk::CreateSink(const std::string& path, CreateMode /*mode*/) {
  std::string& file = files[path];
  file.clear();
  return std::make_unique<MemorySink>(file);
}

bool MemoryDisk::IsSameFile(const std::string& one, const std::string& other) {
  return one == other && files.contains(one);
}

}  // namespace tarvel::bench
