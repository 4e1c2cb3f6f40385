// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "core/file_system.h"

namespace tarvel::testing {

/// Another file system that notes what is created through it, and with which mode.
class CreateModes final : public FileSystem {
 public:
  explicit CreateModes(FileSystem& files) : files_(files) {}

  std::unique_ptr<ByteSource> OpenSource(const std::string& path, ReadMode mode) override {
    return files_.OpenSource(path, mode);
  }
  std::unique_ptr<ByteSink> CreateSink(const std::string& path, CreateMode mode) override {
    created.emplace_back(path, mode);
    return files_.CreateSink(path, mode);
  }
  bool IsSameFile(const std::string& one, const std::string& other) override {
    return files_.IsSameFile(one, other);
  }

  std::vector<std::pair<std::string, CreateMode>> created;

 private:
  FileSystem& files_;
};

}  // namespace tarvel::testing
