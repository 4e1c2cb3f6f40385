// SPDX-License-Identifier: MIT
#include "batch/prepare_command.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <utility>

#include "app/entry_points.h"
#include "app/globals.h"
#include "app/reporter.h"
#include "app/texts.h"

namespace tarvel {

namespace {

constexpr char kDescription[] =
    "Writes LIBRARY anew in the form that all operations read: lit.bib gives lit_prepared.bib and\n"
    "lit_prepared.log. The log has every change, and every text that is not in the new library.";

constexpr std::string_view kCaption = "Prepare";
constexpr std::string_view kErrorCaption = "Error in function 'Prepare'!";

PrepareRequest WrongUsage(std::string reason) {
  std::replace(reason.begin(), reason.end(), '\n', ' ');
  PrepareRequest request;
  request.text = std::move(reason);
  request.exit_status = kWrongUsage;
  return request;
}

int RunWithWarnings(const std::string& library, const PrepareOptions& options,
                    const WarningOutputs& outputs) {
  RunContext run = GlobalRun();
  run.first_path = library;
  run.second_path.clear();
  WarningReport report(outputs, GlobalReporter());
  const bool reports = !outputs.quiet || outputs.file;
  run.warnings = reports ? &report : nullptr;
  const int result = RunPrepare(run, options);
  if (reports) report.ReportCounts();
  if (result != kSucceeded) ReportError(ErrorHintText, kErrorCaption, kReportInBox);
  return result;
}

}  // namespace

PrepareRequest ParsePrepareLine(const std::vector<std::string>& words) {
  PrepareRequest request;
  std::vector<std::string> files;
  CLI::App app(kDescription, "tarvel-batch prepare");
  app.set_help_flag("--help", "print this text and stop");
  app.add_flag("--keep-all", request.options.keep_all,
               "keep the tags whose lines operations take for those of other tags");
  app.add_flag("--quiet", request.quiet, "print no warnings");
  app.add_option("--warnings", request.warnings_file,
                 "write the warnings into FILE: kind, file, line, key, text, tabs between")
      ->type_name("FILE")
      ->check([](const std::string& name) { return name.empty() ? "no file is named" : ""; })
      ->take_last();
  app.add_option("LIBRARY", files, "the library to prepare")->expected(0, -1);
  try {
    app.parse(std::vector<std::string>(words.rbegin(), words.rend()));
  } catch (const CLI::CallForHelp&) {
    request.text = app.help();
    return request;
  } catch (const CLI::ParseError& error) {
    return WrongUsage(error.what());
  }
  if (files.empty() || files.front().empty()) return WrongUsage("a file is missing for 'prepare'");
  if (files.size() > 1) return WrongUsage("one file too many for 'prepare'");
  request.library = std::move(files.front());
  return request;
}

int RunPrepareRequest(const PrepareRequest& request, const WarningOutputs& outputs) {
  const int result = RunWithWarnings(request.library, request.options, outputs);
  if (result == kSucceeded) ShowBox(DoneText, DoneText);
  return result;
}

std::vector<std::size_t> LibrariesOf(const BatchRequest& request) {
  switch (request.operation->needs) {
    case Needs::kTwoLibraries:
      return {0, 1};
    case Needs::kDocumentAndLibrary:
      return {1};
    case Needs::kLibrary:
    case Needs::kLibraryAndJournalList:
      break;
  }
  return {0};
}

bool PrepareLibraries(const BatchRequest& request, const WarningOutputs& outputs,
                      std::vector<std::string>& files) {
  FileSystem& disk = GlobalRun().files;
  GlobalKeptFiles = request.files;
  for (const std::size_t place : LibrariesOf(request)) {
    const std::string& library = request.files[place];
    if (place == 1 && disk.IsSameFile(library, request.files[0])) {
      files[1] = files[0];
      continue;
    }
    if (RunWithWarnings(library, {}, outputs) != kSucceeded) return false;
    files[place] = PreparedPath(library);
    GlobalKeptFiles.push_back(files[place]);
    ShowBox("Tarvel prepared the library and works on the new file '" + files[place] + "'.",
            kCaption);
  }
  return true;
}

}  // namespace tarvel
