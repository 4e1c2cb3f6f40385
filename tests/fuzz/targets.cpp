// SPDX-License-Identifier: MIT
// One target for every reader of bytes that others wrote: the operations, the configuration files,
// the line-ending conversion, the commands and the command line. Each runs the program's own code
// on files in memory, holds it to what it promises whatever it reads, and compares every byte that
// it writes with what the plain version of the same gives.
#include "tests/fuzz/targets.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "app/globals.h"
#include "app/reporter.h"
#include "batch/options.h"
#include "gui/line_endings.h"
#include "ops/journal_styles.h"
#include "ops/operations.h"
#include "tests/fuzz/commands.h"
#include "tests/fuzz/fuzz_input.h"
#include "tests/fuzz/promise.h"
#include "tests/fuzz/twins.h"
#include "tests/support/memory_files.h"
#include "tests/support/operation_runs.h"
#include "tests/support/prepared_judge.h"
#include "tests/support/reference_worlds.h"

namespace tarvel::fuzz {

namespace {

using testing::MemoryFiles;
using testing::OperationRun;
using Files = std::map<std::string, std::string>;

/// Keeps what is printed and counts the boxes.
class CountingReporter final : public Reporter {
 public:
  CountingReporter() { InstallReporter(*this); }
  int Print(std::string_view text) override {
    printed += text;
    return static_cast<int>(text.size());
  }
  void Box(std::string_view, std::string_view) override { ++boxes; }
  void Warn(std::string_view) override {}
  std::string printed;
  int boxes = 0;
};

CountingReporter& Reports() {
  static CountingReporter reporter;
  reporter.printed.clear();
  reporter.boxes = 0;
  return reporter;
}

/// Whether a file that was created begins with its header. After a failure it may break off before
/// the header's end.
bool HasHeader(const std::string& path, const std::string& bytes, bool succeeded) {
  const std::string header = std::string(testing::HeaderOf(path)) + "\n";
  return bytes.starts_with(header) || (!succeeded && header.starts_with(bytes));
}

void HoldOutputs(const OperationRun& operation, const RunContext& run, const Files& inputs,
                 const Files& files, bool succeeded) {
  const std::vector<std::string> outputs = testing::OutputPaths(operation, run);
  for (const auto& [path, bytes] : files) {
    const auto input = inputs.find(path);
    if (input != inputs.end()) {
      Promise(input->second == bytes, "no input changes");
      continue;
    }
    Promise(std::find(outputs.begin(), outputs.end(), path) != outputs.end(),
            "only the operation's own files are written");
    Promise(HasHeader(path, bytes, succeeded), "an output begins with its header");
  }
  for (const std::string& path : outputs) {
    Promise(!succeeded || files.contains(path), "a success has written every output");
  }
}

/// Holds a run to the plain version of its operation.
void HoldToTwin(const OperationRun& operation, const RunContext& run, const Files& inputs,
                const Files& files, int result, const std::string& printed) {
  for (const auto& [path, bytes] : files) {
    if (bytes.size() == kMostOutput) return;  // the disk was full
  }
  const std::optional<Expected> expected = ExpectedOf(operation.name, run, inputs);
  if (!expected) return;
  Promise(result == expected->result, "the result is the plain version's");
  for (const auto& [path, bytes] : expected->files) {
    const auto written = files.find(path);
    Promise(written != files.end(), "every file of the plain version is written");
    Promise(written->second == bytes, "every byte is the plain version's");
  }
  Promise(files.size() == inputs.size() + expected->files.size(), "no other file is written");
  Promise(!expected->printed || printed == *expected->printed, "the same is printed");
}

void HoldRun(const OperationRun& operation, const RunContext& run, MemoryFiles& files,
             bool run_twice) {
  const CountingReporter& reports = Reports();
  GlobalJournalStyles = {};  // formats of earlier inputs must not be needed to repeat a finding
  files.most_room = kMostOutput;
  const Files inputs = files.files;
  const int result = operation.run(run);
  Promise(result == kSucceeded || result == kFailed || result == kInputNotOpened,
          "a result is 1, 0 or 2999");
  HoldOutputs(operation, run, inputs, files.files, result == kSucceeded);
  HoldToTwin(operation, run, inputs, files.files, result, reports.printed);
  if (!run_twice) return;
  const Files after = files.files;
  Promise(operation.run(run) == result, "a second run ends as the first");
  Promise(files.files == after, "a second run writes the same");
}

const OperationRun& RunNamed(std::string_view name) {
  for (const OperationRun& operation : testing::OperationRuns()) {
    if (operation.name == name) return operation;
  }
  Promise(false, "the target is known");
  std::abort();
}

/// Runs an operation on the input's files; those that the input does not hold are samples.
void FuzzOperation(std::string_view name, const FuzzInput& input) {
  const OperationRun& operation = RunNamed(name);
  MemoryFiles files;
  RunContext run = testing::SampleRun(operation, files);
  files.files[run.first_path] = input.File(0);
  if (!run.second_path.empty()) files.files[run.second_path] = input.File(1);
  if (name == "journals" && input.files.size() > 1) {
    run.second_path = "own.tvl";
    files.files[input.own_list ? run.second_path : "/program" + std::string(kJournalListFile)] =
        input.File(1);
  }
  if (input.piece != 0) files.piece = input.piece;
  run.settings = input.settings;
  HoldRun(operation, run, files, input.run_twice);
}

/// The input as a file of styles. As few inputs are one with all of its definitions, a setting
/// makes the input's lines the formats of a whole one.
std::string StylesOf(const FuzzInput& input) {
  const std::string text = input.File(0);
  if (!input.own_list) return text;
  std::size_t at = 0;
  return testing::StylesFile([&](const std::string&) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    std::string format = text.substr(at, end - at);
    at = end + 1 < text.size() ? end + 1 : 0;
    return format;
  });
}

/// Runs an operation on the samples, with the input as one of the configuration files.
void FuzzConfiguration(std::string_view name, std::string_view file, const FuzzInput& input) {
  const OperationRun& operation = RunNamed(name);
  MemoryFiles files;
  RunContext run = testing::SampleRun(operation, files);
  files.files["/program" + std::string(file)] =
      file == kStylesFile ? StylesOf(input) : input.File(0);
  if (input.piece != 0) files.piece = input.piece;
  run.settings = input.settings;
  run.settings.UseOwnJournalFile = 0;
  HoldRun(operation, run, files, input.run_twice);
}

/// What a converted copy holds, said plainly.
std::string Converted(const std::string& bytes, int system) {
  std::string copy;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const bool pair = bytes[i] == '\r' && i + 1 < bytes.size() && bytes[i + 1] == '\n';
    if (system == kWindowsSystem && pair) continue;
    copy += system == kMacSystem && bytes[i] == '\r' ? '\n' : bytes[i];
  }
  return copy;
}

void FuzzLineEndings(const FuzzInput& input) {
  const CountingReporter& reports = Reports();
  const std::string bytes = input.File(0);
  MemoryFiles files;
  files.files["lit.bib"] = bytes;
  if (input.piece != 0) files.piece = input.piece;
  LineBreaks breaks;
  char last = 0;
  CountLineBreaks(bytes, last, breaks);
  const int system = SystemOf(breaks);
  const bool converts = !bytes.empty() && system != HostSystemCode;

  PathBuffer path("picked file");
  path.Set("lit.bib");
  const int result = ConvertLineEndings(path, files);
  Promise(result == (bytes.empty() ? 0 : 1), "every file but an empty one can be used");
  Promise(reports.boxes == (converts ? 1 : 0), "a box reports a conversion");
  Promise(path.Get() == (converts ? "lit_linux.bib" : "lit.bib"), "the path is the copy's");
  Promise(files.files["lit.bib"] == bytes, "no input changes");
  Promise(files.files.contains("lit_linux.bib") == converts, "a copy only where one is needed");
  if (converts) {
    Promise(files.files["lit_linux.bib"] == Converted(bytes, system), "the copy is converted");
  }
}

/// Prepares a library and holds the result to what is promised of it: nothing of it is lost.
void FuzzPrepare(const FuzzInput& input) {
  const std::string broken =
      testing::JudgePrepared(input.File(0), {.keep_all = input.settings.PrintTitle == 0});
  Promise(broken.empty(), broken.c_str());
}

int Sum(const Settings& settings, const auto& group) {
  int sum = 0;
  for (const auto flag : group) sum += settings.*flag;
  return sum;
}

/// Reads the input as the words of a command line, which zero bytes part.
void FuzzOptions(std::string_view input) {
  constexpr std::size_t kMostWords = 64;  // more of the same only take time
  std::vector<std::string> words;
  while (words.size() < kMostWords) {
    const std::size_t end = input.find('\0');
    words.emplace_back(input.substr(0, end));
    if (end == std::string_view::npos) break;
    input.remove_prefix(end + 1);
  }
  const BatchRequest request = ParseCommandLine(words);
  if (!request.verb) {
    Promise(request.exit_status == 0 || request.exit_status == kWrongUsage, "the status is 0 or 2");
    Promise(!request.text.empty(), "there is a text or a reason");
    Promise(request.exit_status == 0 || request.text.find('\n') == std::string::npos,
            "a reason is one line");
    return;
  }
  Promise(request.exit_status == 0, "a run is asked for");
  if (!request.operation) return;
  Promise(request.files.size() == 1 || request.files.size() == 2, "one file or two");
  Promise(Sum(request.settings, kStyleFlags) == 1, "one style is chosen");
  Promise(Sum(request.settings, kPagesFlags) <= 1, "the pages flags exclude each other");
  Promise(Sum(request.settings, kJournalFlags) == 1, "one kind of names is chosen");
}

}  // namespace

void Promise(bool kept, const char* what) {
  if (kept) return;
  std::fprintf(stderr, "broken promise: %s\n", what);
  std::abort();
}

void RunTarget(std::string_view name, std::string_view input) {
  if (name == "options") return FuzzOptions(input);
  const FuzzInput decoded = Decode(input);
  if (name == "prepare") return FuzzPrepare(decoded);
  if (name == "check") return FuzzCheck(decoded);
  if (name == "rekey") return FuzzRekey(decoded);
  if (name == "line-endings") return FuzzLineEndings(decoded);
  if (name == "style-file") return FuzzConfiguration("extract", kStylesFile, decoded);
  if (name == "command-file") return FuzzConfiguration("text", kLaTeXCommandsFile, decoded);
  if (name == "journal-file") return FuzzConfiguration("journals", kJournalListFile, decoded);
  FuzzOperation(name, decoded);
}

}  // namespace tarvel::fuzz
