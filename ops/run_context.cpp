// SPDX-License-Identifier: MIT
#include "ops/run_context.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

#include "app/texts.h"

namespace tarvel {

namespace {

struct HeaderRow {
  std::string_view extension;
  std::string_view header;
};
constexpr std::array<HeaderRow, 4> kHeaders{{{".log", LogFileHeader},
                                             {".bib", BibFileHeader},
                                             {".txt", TextFileHeader},
                                             {".tex", TexFileHeader}}};

bool IsInput(const RunContext& run, const std::string& path) {
  const auto is_same = [&](const std::string& file) { return run.files.IsSameFile(path, file); };
  return is_same(run.first_path) || is_same(run.second_path) ||
         std::any_of(run.kept_files.begin(), run.kept_files.end(), is_same);
}

/// `error` is the system's, or 0.
void ReportNotCreated(const RunContext& run, const std::string& library, const std::string& path,
                      int error) {
  std::string text = "warning: could not create the file '" + path + "'";
  if (path.empty()) {
    text = "warning: '" + library + "' has no extension, and new files are named after it";
  } else if (IsInput(run, path) || error == EBUSY) {
    text += ": the run reads it";
  } else if (error != 0) {
    text.append(": ").append(std::strerror(error));
  }
  run.reporter.Warn(EscapeControls(text));
}

}  // namespace

std::string OutputPath(const std::string& library, Output output, const std::string& directory) {
  return OutputPath(library, SuffixOf(output), directory);
}

std::string OutputPath(const std::string& library, std::string_view suffix,
                       const std::string& directory) {
  if (directory.empty()) return ChangeExtension(library, suffix).value_or(std::string());
  const auto name = ChangeExtension(library.substr(library.rfind('/') + 1), suffix);
  return name ? InDirectory(*name, directory) : std::string();
}

std::optional<LineStream> OpenForUpdate(const RunContext& run, const std::string& path) {
  std::optional<LineStream> lines = run.files.OpenLines(path, ReadMode::kUpdate);
  if (!lines && !run.files.OpenSource(path, ReadMode::kUpdate) &&
      run.files.OpenSource(path, ReadMode::kRead)) {
    run.reporter.Warn(
        EscapeControls("warning: the file '" + path +
                       "' is read-only, and this operation takes only files that "
                       "could be written; copy it, or run tarvel-batch with --output-dir"));
  }
  return lines;
}

std::unique_ptr<OutputFile> CreateOutput(const RunContext& run, const std::string& path,
                                         CreateMode mode) {
  if (path.empty() || IsInput(run, path)) return nullptr;
  std::unique_ptr<ByteSink> sink = run.files.CreateSink(path, mode);
  if (!sink) return nullptr;
  return std::make_unique<OutputFile>(std::move(sink), path);
}

std::unique_ptr<OutputFile> CreateOrReport(const RunContext& run, const std::string& library,
                                           const std::string& path, CreateMode mode) {
  errno = 0;
  std::unique_ptr<OutputFile> file = CreateOutput(run, path, mode);
  if (!file) ReportNotCreated(run, library, path, errno);
  return file;
}

std::unique_ptr<OutputFile> CreateOutput(const RunContext& run, const std::string& library,
                                         Output output) {
  const std::string path = OutputPath(library, output, run.output_directory);
  return CreateOrReport(run, library, path, ModeOf(output));
}

std::unique_ptr<OutputFile> CreateWithHeader(const RunContext& run, const std::string& library,
                                             Output output) {
  std::unique_ptr<OutputFile> file = CreateOutput(run, library, output);
  if (file) file->Write(HeaderOf(file->Path()));
  return file;
}

std::string HeaderOf(std::string_view name) {
  for (const HeaderRow& row : kHeaders) {
    if (name.ends_with(row.extension)) return std::string(row.header).append("\n");
  }
  return {};
}

bool CloseOutputs(const RunContext& run, std::initializer_list<OutputFile*> files) {
  bool arrived = true;
  for (OutputFile* file : files) {
    if (file->Close()) continue;
    arrived = false;
    PrintError(run.reporter, "Could not write the file '" + file->Path() + "': " + file->Error());
  }
  return arrived;
}

FileWarnings WarningsOf(const RunContext& run, const std::string& path, const LineStream& input) {
  return {run.warnings, path, input.Bytes()};
}

int Fail(const RunContext& run, std::string_view text, int result) {
  PrintError(run.reporter, text);
  return result;
}

}  // namespace tarvel
