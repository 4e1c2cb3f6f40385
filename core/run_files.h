// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/file_system.h"

namespace tarvel {

/// The files of one run, in front of the file system that holds them. What the run writes stays
/// apart, and what was there before stays as it is, until `Publish` gives all of it its names; a
/// run that ends without it leaves nothing. A path that the run has written is read back as
/// written.
class RunFiles final : public FileSystem {
 public:
  /// `files` must outlive this.
  explicit RunFiles(FileSystem& files) : files_(files) {}

  std::unique_ptr<ByteSource> OpenSource(const std::string& path, ReadMode mode) override;
  std::optional<FileState> StateAt(const std::string& path) override {
    return files_.StateAt(path);
  }
  /// Null also when another output of the run is the same file, or when it would be written in
  /// place and the run has read it (EBUSY). The sink must not outlive this; what it takes after
  /// `Publish` goes straight into the published file.
  std::unique_ptr<ByteSink> CreateSink(const std::string& path, CreateMode mode) override;
  /// All writes to a protected file fail, and with them the run. For files that the run finds only
  /// after it has created its outputs.
  bool Protect(const std::string& path) override;
  /// Forgets the new file that was created at `path`: what was there stays. Writes to it fail.
  void Drop(const std::string& path);
  bool IsSameFile(const std::string& one, const std::string& other) override {
    return files_.IsSameFile(one, other);
  }
  bool IsSamePlace(const std::string& one, const std::string& other) override {
    return files_.IsSamePlace(one, other);
  }

  std::optional<LineStream> TakeLines(const std::string& path, const FileState& state) override {
    return files_.TakeLines(path, state);
  }

  ReadingObserver* Observer() override { return files_.Observer(); }
  std::optional<LineStream> Peek(const std::string& path) override { return files_.Peek(path); }

  /// Whether a byte of any output did not arrive.
  bool WriteFailed() const { return write_failed_; }
  /// Gives the new files their names, logs last, and begins the next run. No file gets its name if
  /// a byte was not written, which the run has reported, or if a file that was read has changed
  /// since. Returns why publishing failed; empty also after such a failed write: ask `WriteFailed`
  /// before.
  [[nodiscard]] std::string Publish();
  /// Forgets the new files and begins the next run.
  void Discard();

 private:
  class Writer;
  struct NewFile {
    std::string path;
    std::shared_ptr<ByteSink> sink;
    std::shared_ptr<bool> is_protected;
  };
  void ProtectFromLinks(const std::string& path);
  bool HasRead(const std::string& path) const;
  std::string ChangedInput() const;
  std::string NotPublished(const std::string& changed) const;
  std::string PublishAll();

  FileSystem& files_;
  std::map<std::string, FileState> read_;  // path, and the file's state when it was first opened
  std::vector<NewFile> new_files_;
  bool write_failed_ = false;
};

}  // namespace tarvel
