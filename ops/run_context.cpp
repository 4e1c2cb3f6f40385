// SPDX-License-Identifier: MIT
#include "ops/run_context.h"

#include "app/globals.h"
#include "app/process.h"
#include "core/reports.h"

namespace tarvel {

RunContext GlobalRun() {
  return {FirstFilePath.Get(),
          SecondFilePath.Get(),
          GlobalSettings,
          RealFileSystem(),
          [] {
            GetProgramDirectory(ProgramDir, ExecutablePath);
            return ProgramDir.Get();
          },
          GlobalWarnings};
}

std::string OutputPath(const std::string& library, Output output) {
  return ChangeExtension(library, SuffixOf(output)).value_or(std::string());
}

std::unique_ptr<OutputFile> CreateOutput(const RunContext& run, const std::string& path,
                                         CreateMode mode) {
  if (path.empty() || run.files.IsSameFile(path, run.first_path) ||
      run.files.IsSameFile(path, run.second_path)) {
    return nullptr;
  }
  std::unique_ptr<ByteSink> sink = run.files.CreateSink(path, mode);
  if (!sink) return nullptr;
  return std::make_unique<OutputFile>(std::move(sink), path);
}

bool CloseOutputs(std::initializer_list<OutputFile*> files) {
  bool arrived = true;
  for (OutputFile* file : files) {
    if (file->Close()) continue;
    arrived = false;
    PrintError("Could not write the file '" + file->Path() + "': " + file->Error());
  }
  return arrived;
}

FileWarnings WarningsOf(const RunContext& run, const std::string& path, const LineStream& input) {
  return {run.warnings, path, input.Bytes()};
}

int Fail(std::string_view text, int result) {
  PrintError(text);
  return result;
}

}  // namespace tarvel
