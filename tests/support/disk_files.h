// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace tarvel::testing {

/// A directory of its own on disk, removed at the end.
class TemporaryDirectory {
 public:
  TemporaryDirectory();
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
  ~TemporaryDirectory();
  /// The path of `name` in it.
  std::string operator/(std::string_view name) const;

 private:
  std::string path_;
};

/// The whole file on disk; fails the test when it cannot be read.
std::string ReadDiskFile(const std::string& path);
void WriteDiskFile(const std::string& path, std::string_view bytes);

}  // namespace tarvel::testing
