// SPDX-License-Identifier: MIT
#include "batch/side_files.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "app/entry_points.h"
#include "core/file_names.h"
#include "core/file_system.h"

namespace tarvel {

namespace {

namespace fs = std::filesystem;

constexpr std::array<std::string_view, 3> kProgramFiles{kJournalListFile, kStylesFile,
                                                        kLaTeXCommandsFile};
constexpr std::string_view kConverted = "_linux";

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

/// Whether both are one file, which writing into one would change in the other: not so for a
/// device or a pipe.
bool AreOneFile(const std::string& one, const std::string& other) {
  std::error_code error;
  const fs::file_status status = fs::status(one, error);
  if (fs::exists(status) && !fs::is_regular_file(status)) return false;
  return RealFileSystem().IsSameFile(one, other) || PlaceOf(one) == PlaceOf(other);
}

/// What preparing the libraries of a request writes.
std::vector<std::string> PreparedFiles(const BatchRequest& request) {
  std::vector<std::string> files;
  if (!request.prepare) return files;
  for (const std::size_t place : LibrariesOf(request)) {
    const std::string& library = request.files[place];
    if (PreparedPath(library).empty()) continue;
    files.push_back(PreparedPath(library));
    files.push_back(PreparedLogPath(library));
  }
  return files;
}

/// The files that are named, and the copies that are made of those with other line breaks.
std::vector<std::string> InputsOf(const BatchRequest& request) {
  std::vector<std::string> inputs = request.files;
  for (const std::string& file : request.files) {
    if (auto copy = InsertBeforeExtension(file, kConverted)) inputs.push_back(std::move(*copy));
  }
  return inputs;
}

std::vector<std::string> ProgramFiles() {
  const std::string directory = GlobalRun().program_directory();
  std::vector<std::string> files;
  files.reserve(kProgramFiles.size());
  for (const std::string_view name : kProgramFiles) {
    files.push_back(std::string(directory).append(name));
  }
  return files;
}

std::vector<std::string> OutputsOf(const BatchRequest& request) {
  const bool after_second = request.operation->named_after == Picker::kSecond;
  const std::string& file = request.files[after_second ? 1 : 0];
  std::vector<std::string> outputs = PreparedFiles(request);
  const std::string prepared = request.prepare ? PreparedPath(file) : std::string();
  for (const auto& library :
       {std::optional(file), InsertBeforeExtension(file, kConverted), std::optional(prepared)}) {
    if (!library) continue;
    for (const Output output : request.operation->outputs) {
      if (auto path = OutputPath(*library, output); !path.empty()) outputs.push_back(path);
    }
  }
  return outputs;
}

bool Holds(const std::vector<std::string>& files, const std::string& path) {
  return std::any_of(files.begin(), files.end(),
                     [&](const std::string& file) { return AreOneFile(path, file); });
}

std::string Reason(std::string_view option, std::string_view operation, bool is_read,
                   const std::string& path) {
  return std::string("'")
      .append(option)
      .append("' names a file that '")
      .append(operation)
      .append(is_read ? "' reads: '" : "' writes: '")
      .append(path)
      .append("'");
}

/// Why the file that `option` names is refused; empty when it is not.
std::string WhyRefused(std::string_view option, const std::string& path,
                       const BatchRequest& request) {
  if (path.empty()) return {};
  const bool is_read = Holds(InputsOf(request), path) || Holds(ProgramFiles(), path);
  if (!is_read && !Holds(OutputsOf(request), path)) return {};
  return Reason(option, request.operation->batch_name, is_read, path);
}

}  // namespace

std::string WhyRefused(const PrepareRequest& request) {
  const std::string& path = request.warnings_file;
  if (path.empty()) return {};
  const bool is_read = AreOneFile(path, request.library);
  const std::string library = PreparedPath(request.library);
  if (!is_read && (library.empty() || !Holds({library, PreparedLogPath(request.library)}, path))) {
    return {};
  }
  return Reason("--warnings", "prepare", is_read, path);
}

std::string WhyRefused(const BatchRequest& request) {
  const std::string& warnings = request.warnings_file;
  const std::string& key_map = request.key_map_file;
  std::string reason = WhyRefused("--warnings", warnings, request);
  if (reason.empty()) reason = WhyRefused("--key-map", key_map, request);
  if (!reason.empty() || warnings.empty() || key_map.empty()) return reason;
  if (!AreOneFile(warnings, key_map)) return {};
  return "'--warnings' and '--key-map' name the same file: '" + key_map + "'";
}

}  // namespace tarvel
