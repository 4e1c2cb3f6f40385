// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "core/file_system.h"

namespace tarvel {

/// The files of the machine as the batch program uses them.
class BatchFiles final : public FileSystem {
 public:
  /// `only_read`: inputs need not be writable. `observer` follows how far the reading has come, and
  /// must outlive this.
  BatchFiles(FileSystem& files, bool only_read, ReadingObserver& observer)
      : files_(files), only_read_(only_read), observer_(observer) {}

  std::unique_ptr<ByteSource> OpenSource(const std::string& path, ReadMode mode) override {
    return files_.OpenSource(path, only_read_ ? ReadMode::kRead : mode);
  }
  std::unique_ptr<ByteSink> CreateSink(const std::string& path, CreateMode mode) override {
    return files_.CreateSink(path, mode);
  }
  std::unique_ptr<ByteSink> CreatePending(const std::string& path, CreateMode mode) override {
    return files_.CreatePending(path, mode);
  }
  std::optional<FileState> StateAt(const std::string& path) override {
    return files_.StateAt(path);
  }
  bool IsSamePlace(const std::string& one, const std::string& other) override {
    return files_.IsSamePlace(one, other);
  }
  bool IsSameFile(const std::string& one, const std::string& other) override {
    return files_.IsSameFile(one, other);
  }
  ReadingObserver* Observer() override { return &observer_; }

  std::size_t MostKept() const override { return std::size_t{1} << 30; }
  void KeepLines(const std::string& path, const FileState& state, LineStream lines) override {
    kept_.insert_or_assign(path, KeptLines{state, std::move(lines)});
  }
  std::optional<LineStream> TakeLines(const std::string& path, const FileState& state) override {
    auto kept = kept_.extract(path);
    if (!kept || kept.mapped().state != state) return std::nullopt;
    return std::move(kept.mapped().lines);
  }

 private:
  struct KeptLines {
    FileState state;
    LineStream lines;
  };

  FileSystem& files_;
  bool only_read_;
  ReadingObserver& observer_;
  std::map<std::string, KeptLines> kept_;  // by path: what was read of files when they were picked
};

}  // namespace tarvel
