// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "core/file_system.h"
#include "ops/run_context.h"

namespace tarvel::testing {

/// A file system in memory, any part of which can be made to fail.
class MemoryFiles final : public FileSystem {
 public:
  std::map<std::string, std::string> files;
  std::set<std::string> read_only;          // cannot be opened with "r+"
  std::set<std::string> unreadable;         // cannot be opened at all
  std::set<std::string> not_creatable;      // cannot be created
  std::map<std::string, std::size_t> room;  // how many bytes a new file takes before writes fail
  std::size_t most_room = static_cast<std::size_t>(-1);  // the same for every new file
  std::set<std::string> close_fails;
  std::set<std::string> read_fails;                  // opens, but the first read fails
  std::size_t piece = static_cast<std::size_t>(-1);  // the most bytes that one read gives
  std::set<std::pair<std::string, std::string>> same_files;

  std::unique_ptr<ByteSource> OpenSource(const std::string& path, ReadMode mode) override;
  std::unique_ptr<ByteSink> CreateSink(const std::string& path, CreateMode mode) override;
  bool IsSameFile(const std::string& one, const std::string& other) override;
  /// Numbers the files; nothing for one that does not exist.
  std::optional<FileState> StateAt(const std::string& path) override;
};

/// A run over files in memory, with the styles of this process and the reporter that is installed
/// when something is said; the program directory is "/program".
RunContext MemoryRun(FileSystem& files, std::string_view first, std::string_view second = {});

}  // namespace tarvel::testing
