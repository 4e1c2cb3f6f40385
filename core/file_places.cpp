// SPDX-License-Identifier: MIT
#include "core/file_places.h"

#include <filesystem>
#include <system_error>

namespace tarvel {

namespace {

namespace fs = std::filesystem;

/// Where a file is or would be, links followed, also those that lead to nothing yet.
fs::path PlaceOf(fs::path path) {
  constexpr int kMostLinks = 40;  // as many as the system follows
  std::error_code error;
  for (int i = 0; i < kMostLinks && fs::is_symlink(path, error); ++i) {
    path = path.parent_path() / fs::read_symlink(path, error);
  }
  const fs::path directory = fs::canonical(fs::absolute(path, error).parent_path(), error);
  return error ? fs::absolute(path, error).lexically_normal() : directory / path.filename();
}

}  // namespace

bool AreOneFile(const std::string& one, const std::string& other) {
  std::error_code error;
  const fs::file_status status = fs::status(one, error);
  if (fs::exists(status) && !fs::is_regular_file(status)) return false;
  return fs::equivalent(one, other, error) || PlaceOf(one) == PlaceOf(other);
}

std::string DirectoryOfFile(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? "." : path.substr(0, slash + 1);
}

}  // namespace tarvel
