// SPDX-License-Identifier: MIT
#include "core/file_system.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "core/descriptor.h"
#include "core/file_places.h"
#include "core/file_sink.h"
#include "core/pending_file.h"

namespace tarvel {

namespace {

FileState StateOf(const struct stat& status) {
  return {.device = status.st_dev,
          .number = status.st_ino,
          .size = status.st_size,
          .written_s = status.st_mtim.tv_sec,
          .written_ns = status.st_mtim.tv_nsec,
          .changed_s = status.st_ctim.tv_sec,
          .changed_ns = status.st_ctim.tv_nsec};
}

class FileSource final : public ByteSource {
 public:
  FileSource(Descriptor descriptor, const FileState& state)
      : descriptor_(std::move(descriptor)), state_(state) {}

  std::ptrdiff_t Read(char* buffer, std::size_t size) override {
    for (;;) {
      const ssize_t got = read(descriptor_.Number(), buffer, size);
      if (got >= 0 || errno != EINTR) return got;
    }
  }
  std::size_t Size() const override { return static_cast<std::size_t>(state_.size); }
  std::optional<FileState> State() const override { return state_; }

 private:
  Descriptor descriptor_;
  FileState state_;
};

/// The state of the file at `path`, links followed; nothing when it is no regular file.
std::optional<FileState> RegularFileAt(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  return StateOf(status);
}

class PosixFileSystem final : public FileSystem {
 public:
  std::unique_ptr<ByteSource> OpenSource(const std::string& path, ReadMode mode) override {
    // Looked at first, since opening a device can have effects. The file may be exchanged after
    // that, so opening does not wait for a pipe's writer, and what was opened is looked at again.
    if (!RegularFileAt(path)) return nullptr;
    const int flags = mode == ReadMode::kUpdate ? O_RDWR : O_RDONLY;
    Descriptor file(open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status {};
    if (!file.IsOpen() || fstat(file.Number(), &status) != 0 || !S_ISREG(status.st_mode)) {
      return nullptr;
    }
    return std::make_unique<FileSource>(std::move(file), StateOf(status));
  }

  std::optional<FileState> StateAt(const std::string& path) override { return RegularFileAt(path); }

  std::unique_ptr<ByteSink> CreateSink(const std::string& path, CreateMode mode) override {
    const int flags = mode == CreateMode::kWriteRead ? O_RDWR : O_WRONLY;
    Descriptor file(open(path.c_str(), flags | O_CREAT | O_TRUNC | O_CLOEXEC, kNewFileMode));
    return file.IsOpen() ? std::make_unique<FileSink>(std::move(file)) : nullptr;
  }

  std::unique_ptr<ByteSink> CreatePending(const std::string& path, CreateMode mode) override {
    return CreatePendingFile(path, mode);
  }

  bool IsSamePlace(const std::string& one, const std::string& other) override {
    return AreOneFile(one, other);
  }

  bool IsSameFile(const std::string& one, const std::string& other) override {
    struct stat first {};
    struct stat second {};
    return stat(one.c_str(), &first) == 0 && stat(other.c_str(), &second) == 0 &&
           first.st_dev == second.st_dev && first.st_ino == second.st_ino;
  }
};

}  // namespace

std::string ReasonNotRead(const std::string& path) {
  struct stat status {};
  int error = stat(path.c_str(), &status) == 0 ? 0 : errno;
  if (error == 0 && S_ISDIR(status.st_mode)) error = EISDIR;
  if (error == 0 && !S_ISREG(status.st_mode)) return ": not a regular file";
  if (error == 0 && access(path.c_str(), R_OK) != 0) error = errno;
  return error == 0 ? std::string() : std::string(": ").append(std::strerror(error));
}

std::optional<LineStream> FileSystem::OpenLines(const std::string& path, ReadMode mode) {
  std::unique_ptr<ByteSource> source = OpenSource(path, mode);
  if (!source) return std::nullopt;
  const std::optional<FileState> state = source->State();
  std::optional<LineStream> lines = state ? TakeLines(path, *state) : std::nullopt;
  if (!lines) lines.emplace(std::move(source));
  if (!lines->LoadAll()) return std::nullopt;
  if (ReadingObserver* observer = Observer()) lines->Observe(*observer);
  return lines;
}

FileSystem& RealFileSystem() {
  static PosixFileSystem files;
  return files;
}

}  // namespace tarvel
