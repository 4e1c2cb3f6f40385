// SPDX-License-Identifier: MIT
#include "core/file_names.h"

namespace tarvel {

std::optional<std::string> ChangeExtension(std::string_view path, std::string_view suffix) {
  const std::size_t dot = path.rfind('.');
  if (dot == std::string_view::npos || dot == 0) return std::nullopt;
  return std::string(path.substr(0, dot)).append(suffix);
}

std::string InDirectory(std::string_view path, std::string_view directory) {
  if (directory.empty()) return std::string(path);
  const std::string_view name = path.substr(path.rfind('/') + 1);  // npos + 1 is 0
  std::string in_directory(directory);
  if (!in_directory.ends_with('/')) in_directory += '/';
  return in_directory.append(name);
}

std::optional<std::string> InsertBeforeExtension(std::string_view path, std::string_view suffix) {
  const std::size_t dot = path.rfind('.');
  if (dot == std::string_view::npos) return std::nullopt;
  std::string changed(path);
  changed.insert(dot, suffix);
  return changed;
}

}  // namespace tarvel
