// SPDX-License-Identifier: MIT
#include "core/file_places.h"

#include <filesystem>
#include <system_error>

namespace tarvel {

namespace fs = std::filesystem;

std::string PlaceOfFile(const std::string& path) {
  constexpr int kMostLinks = 40;  // as many as the system follows
  std::error_code error;
  fs::path place = path;
  for (int i = 0; i < kMostLinks && fs::is_symlink(place, error); ++i) {
    place = place.parent_path() / fs::read_symlink(place, error);
  }
  const fs::path directory = fs::canonical(fs::absolute(place, error).parent_path(), error);
  return error ? fs::absolute(place, error).lexically_normal() : directory / place.filename();
}

bool AreOneFile(const std::string& one, const std::string& other) {
  std::error_code error;
  const fs::file_status status = fs::status(one, error);
  if (fs::exists(status) && !fs::is_regular_file(status)) return false;
  return fs::equivalent(one, other, error) || PlaceOfFile(one) == PlaceOfFile(other);
}

std::string DirectoryOfFile(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? "." : path.substr(0, slash + 1);
}

}  // namespace tarvel
