// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <memory>
#include <string>

#include "core/file_system.h"

namespace tarvel::bench {

/// Files in memory, so that a benchmark measures the operation and not the disk. What is not in
/// memory, such as the program's own lists, is read from the disk.
class MemoryDisk final : public FileSystem {
 public:
  std::map<std::string, std::string> files;

  std::unique_ptr<ByteSource> OpenSource(const std::string& path, ReadMode mode) override;
  /// New files are always in memory.
  std::unique_ptr<ByteSink> CreateSink(const std::string& path, CreateMode mode) override;
  bool IsSameFile(const std::string& one, const std::string& other) override;
};

}  // namespace tarvel::bench
