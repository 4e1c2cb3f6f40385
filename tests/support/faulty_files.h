// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "core/file_system.h"

namespace tarvel::testing {

/// A file system in front of another one. It counts the calls that can fail and makes one of them
/// fail, or lets the disk fill up.
class FaultyFiles final : public FileSystem {
 public:
  enum class Call { kOpen, kRead, kCreate, kWrite, kClose };
  static constexpr std::size_t kNever = static_cast<std::size_t>(-1);

  explicit FaultyFiles(FileSystem& files) : files_(files) {}

  std::size_t fail_at = kNever;  // which call fails, counted from 0; the others work
  std::size_t room = kNever;     // how many bytes all new files together take
  std::vector<Call> calls;       // what was called so far

  std::unique_ptr<ByteSource> OpenSource(const std::string& path, ReadMode mode) override;
  std::unique_ptr<ByteSink> CreateSink(const std::string& path, CreateMode mode) override;
  bool IsSameFile(const std::string& one, const std::string& other) override {
    return files_.IsSameFile(one, other);
  }

  /// Notes a call; whether it is the one that fails.
  bool Fails(Call call);

 private:
  FileSystem& files_;
};

}  // namespace tarvel::testing
