// SPDX-License-Identifier: MIT
#include "batch/side_files.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>
#include <utility>
#include <vector>

#include "app/entry_points.h"
#include "batch/prepare_command.h"
#include "batch/verbs.h"
#include "core/file_names.h"
#include "core/file_places.h"
#include "core/pending_file.h"
#include "ops/prepare/prepare.h"

namespace tarvel {

namespace {

constexpr std::array<std::string_view, 3> kProgramFiles{kJournalListFile, kStylesFile,
                                                        kLaTeXCommandsFile};
constexpr std::string_view kConverted = "_linux";

/// What preparing the libraries of a request writes.
std::vector<std::string> PreparedFiles(const BatchRequest& request) {
  const bool is_command = request.verb && request.verb->verb == Verb::kPrepare;
  std::vector<std::string> files;
  if (!is_command && !request.prepare) return files;
  for (const std::size_t i : is_command ? std::vector<std::size_t>{0} : LibrariesOf(request)) {
    for (const auto path_of : {PreparedPath, PreparedLogPath}) {
      std::string path = path_of(request.files[i], request.output_directory);
      if (!path.empty()) files.push_back(std::move(path));
    }
  }
  return files;
}

/// The files that are named, and the copies that an operation makes of those with other line
/// breaks. Preparing needs no such copy.
std::vector<std::string> InputsOf(const BatchRequest& request) {
  std::vector<std::string> inputs = request.files;
  const std::vector<std::size_t> libraries =
      request.prepare ? LibrariesOf(request) : std::vector<std::size_t>{};
  for (std::size_t i = 0; request.operation && i < request.files.size(); ++i) {
    if (std::find(libraries.begin(), libraries.end(), i) != libraries.end()) continue;
    const std::string& file = request.files[i];
    const std::string path = InDirectory(file, request.output_directory);
    if (auto copy = InsertBeforeExtension(path, kConverted)) inputs.push_back(std::move(*copy));
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
  std::vector<std::string> outputs = PreparedFiles(request);
  if (!request.operation) return outputs;
  const bool after_second = request.operation->named_after == Picker::kSecond;
  const std::string& file = request.files[after_second ? 1 : 0];
  std::vector<std::string> libraries{file};
  if (request.prepare) {
    libraries = {PreparedPath(file, request.output_directory)};
  } else if (auto converted = InsertBeforeExtension(file, kConverted)) {
    libraries.push_back(std::move(*converted));
  }
  for (const std::string& library : libraries) {
    for (const Output output : request.operation->outputs) {
      auto path = OutputPath(library, output, request.output_directory);
      if (!path.empty()) outputs.push_back(std::move(path));
    }
  }
  return outputs;
}

bool Holds(const std::vector<std::string>& files, const std::string& path) {
  return std::any_of(files.begin(), files.end(),
                     [&](const std::string& file) { return AreOneFile(path, file); });
}

/// Why the file that `option` names is refused; empty when it is not.
std::string WhyRefused(std::string_view option, const std::string& path,
                       const BatchRequest& request) {
  if (path.empty()) return {};
  const bool is_read = Holds(InputsOf(request), path) || Holds(ProgramFiles(), path);
  if (!is_read && !Holds(OutputsOf(request), path)) return {};
  return std::string("'")
      .append(option)
      .append("' names a file that '")
      .append(request.operation ? request.operation->batch_name : request.verb->name)
      .append(is_read ? "' reads: '" : "' writes: '")
      .append(path)
      .append("'");
}

}  // namespace

std::string WhyRefused(const BatchRequest& request) {
  for (const std::string& path : request.files) {
    if (!HasTemporaryName(path)) continue;
    return "'" + path + "' has the name of a temporary file, which is removed; rename it first";
  }
  std::error_code error;
  if (!request.output_directory.empty() &&
      !std::filesystem::is_directory(request.output_directory, error)) {
    return "the value '" + request.output_directory + "' of '--output-dir' is not a directory";
  }
  const bool on_terminal = request.warnings_file == kAllOnTerminal;
  const std::string warnings = on_terminal ? std::string() : request.warnings_file;
  const std::string& key_map = request.key_map_file;
  std::string reason = WhyRefused("--warnings", warnings, request);
  if (reason.empty()) reason = WhyRefused("--key-map", key_map, request);
  if (!reason.empty() || warnings.empty() || key_map.empty()) return reason;
  if (!AreOneFile(warnings, key_map)) return {};
  return "'--warnings' and '--key-map' name the same file: '" + key_map + "'";
}

}  // namespace tarvel
