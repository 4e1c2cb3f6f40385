// SPDX-License-Identifier: MIT
#include "core/file_system.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace tarvel {

namespace {

constexpr std::size_t kLargeFile = std::size_t{1} << 22;

constexpr mode_t kNewFileMode = 0666;  // what fopen asks for; the umask decides

class FileSource final : public ByteSource {
 public:
  FileSource(int descriptor, std::size_t size, bool can_be_mapped)
      : descriptor_(descriptor), size_(size), can_be_mapped_(can_be_mapped) {}
  FileSource(const FileSource&) = delete;
  FileSource& operator=(const FileSource&) = delete;
  ~FileSource() override {
    if (mapped_) munmap(mapped_, size_);
    close(descriptor_);
  }

  std::ptrdiff_t Read(char* buffer, std::size_t size) override {
    for (;;) {
      const ssize_t got = read(descriptor_, buffer, size);
      if (got >= 0 || errno != EINTR) return got;
    }
  }
  std::size_t Size() const override { return size_; }

  std::string_view Map() override {
    if (!can_be_mapped_) return {};
    void* const mapped = mmap(nullptr, size_, PROT_READ, MAP_PRIVATE, descriptor_, 0);
    if (mapped == MAP_FAILED) return {};
    mapped_ = mapped;
    return {static_cast<const char*>(mapped), size_};
  }

 private:
  int descriptor_;
  std::size_t size_;
  bool can_be_mapped_;
  void* mapped_ = nullptr;
};

class FileSink final : public ByteSink {
 public:
  explicit FileSink(int descriptor) : descriptor_(descriptor) {}
  FileSink(const FileSink&) = delete;
  FileSink& operator=(const FileSink&) = delete;
  ~FileSink() override {
    if (descriptor_ >= 0) close(descriptor_);
  }

  std::string Write(std::string_view bytes) override {
    while (!bytes.empty()) {
      const ssize_t written = write(descriptor_, bytes.data(), bytes.size());
      if (written < 0 && errno == EINTR) continue;
      if (written < 0) return std::strerror(errno);
      bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return {};
  }

  std::string Close() override {
    // Some file systems tell of a full disk only here. EINTR leaves the descriptor closed on Linux.
    const int result = close(descriptor_);
    descriptor_ = -1;
    return result == 0 || errno == EINTR ? std::string() : std::strerror(errno);
  }

 private:
  int descriptor_;
};

class PosixFileSystem final : public FileSystem {
 public:
  explicit PosixFileSystem(LargeFiles large_files) : large_files_(large_files) {}

  std::unique_ptr<ByteSource> OpenSource(const std::string& path, ReadMode mode) override {
    const int flags = mode == ReadMode::kUpdate ? O_RDWR : O_RDONLY;
    const int descriptor = open(path.c_str(), flags | O_CLOEXEC);
    if (descriptor < 0) return nullptr;
    struct stat status {};
    if (fstat(descriptor, &status) != 0 || S_ISDIR(status.st_mode)) {
      close(descriptor);
      return nullptr;
    }
    const bool sized = S_ISREG(status.st_mode) && status.st_size > 0;
    const std::size_t size = sized ? static_cast<std::size_t>(status.st_size) : 0;
    const bool can_be_mapped = large_files_ == LargeFiles::kMapped && size >= kLargeFile;
    return std::make_unique<FileSource>(descriptor, size, can_be_mapped);
  }

  std::unique_ptr<ByteSink> CreateSink(const std::string& path, CreateMode mode) override {
    const int flags = mode == CreateMode::kWriteRead ? O_RDWR : O_WRONLY;
    const int descriptor = open(path.c_str(), flags | O_CREAT | O_TRUNC | O_CLOEXEC, kNewFileMode);
    if (descriptor < 0) return nullptr;
    return std::make_unique<FileSink>(descriptor);
  }

  bool IsSameFile(const std::string& one, const std::string& other) override {
    struct stat first {};
    struct stat second {};
    return stat(one.c_str(), &first) == 0 && stat(other.c_str(), &second) == 0 &&
           first.st_dev == second.st_dev && first.st_ino == second.st_ino;
  }

 private:
  const LargeFiles large_files_;
};

}  // namespace

std::optional<LineStream> FileSystem::OpenLines(const std::string& path, ReadMode mode) {
  std::unique_ptr<ByteSource> source = OpenSource(path, mode);
  if (!source) return std::nullopt;
  LineStream lines(std::move(source));
  if (!lines.LoadAll()) return std::nullopt;
  if (ReadingObserver* observer = Observer()) lines.Observe(*observer);
  return lines;
}

FileSystem& RealFileSystem(LargeFiles large_files) {
  static PosixFileSystem copying(LargeFiles::kCopied);
  static PosixFileSystem mapping(LargeFiles::kMapped);
  return large_files == LargeFiles::kMapped ? mapping : copying;
}

}  // namespace tarvel
