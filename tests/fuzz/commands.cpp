// SPDX-License-Identifier: MIT
#include "tests/fuzz/commands.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <utility>

#include "app/entry_points.h"
#include "app/globals.h"
#include "app/reporter.h"
#include "batch/check_command.h"
#include "batch/rekey_command.h"
#include "batch/request.h"
#include "ops/citations/key_map.h"
#include "tests/fuzz/promise.h"
#include "tests/support/memory_files.h"
#include "tests/support/operation_runs.h"
#include "tests/support/plain_primitives.h"
#include "tests/support/plain_rekey.h"
#include "tests/support/prepared_judge.h"
#include "tests/support/recording_reporter.h"

namespace tarvel::fuzz {

namespace {

using testing::MemoryFiles;
using testing::OperationRun;
using testing::RecordingReporter;

/// The files of the process while it lives.
class ProcessFiles {
 public:
  explicit ProcessFiles(FileSystem& files) { GlobalFileSystem = &files; }
  ProcessFiles(const ProcessFiles&) = delete;
  ProcessFiles& operator=(const ProcessFiles&) = delete;
  ~ProcessFiles() { GlobalFileSystem = nullptr; }
};

/// Takes what is printed on a standard stream.
class Captured {
 public:
  explicit Captured(std::FILE*& stream) : stream_(stream), before_(stream) {
    stream_ = open_memstream(&bytes_, &size_);
  }
  Captured(const Captured&) = delete;
  Captured& operator=(const Captured&) = delete;
  ~Captured() { Finish(); }

  /// Gives the stream back; returns what was printed.
  std::string Finish() {
    if (before_ != nullptr) {
      std::fclose(stream_);
      stream_ = std::exchange(before_, nullptr);
      printed_.assign(bytes_, size_);
      std::free(bytes_);
    }
    return printed_;
  }

 private:
  std::FILE*& stream_;
  std::FILE* before_;
  char* bytes_ = nullptr;
  std::size_t size_ = 0;
  std::string printed_;
};

struct Done {
  int status;
  std::string out;
};

Done Run(int (*command)(const BatchRequest& request), const BatchRequest& request) {
  Captured out(stdout);
  Captured err(stderr);
  TerminalReporter terminal("tarvel-batch");
  Reporter& before = GlobalReporter();
  InstallReporter(terminal);
  Done done{command(request), {}};
  InstallReporter(before);
  err.Finish();
  done.out = out.Finish();
  return done;
}

/// Adds the configuration below the directory where this program is, too.
void AddAllConfiguration(MemoryFiles& files) {
  testing::AddConfiguration(files);
  static const std::string directory = GlobalRun().program_directory();
  for (const std::string_view name : {kStylesFile, kLaTeXCommandsFile, kJournalListFile}) {
    files.files[directory + std::string(name)] = files.files["/program" + std::string(name)];
  }
}

/// What the operations warn of in a library, by line.
class Found final : public Warnings {
 public:
  void Report(const Warning& warning) override {
    if (RowOf(warning.kind).about != About::kReading) return;
    // Of a key as long as a line only the beginning is printed, which may be that of others.
    constexpr std::size_t kMostKey = 128;
    found.insert({warning.line, warning.kind, std::string(warning.key.substr(0, kMostKey)),
                  std::string(warning.text)});
  }
  /// The lines of the kinds that `wanted` takes.
  template <typename Wanted>
  std::string Lines(const std::string& path, const Wanted& wanted) const {
    std::string lines;
    for (const auto& [line, kind, key, text] : found) {
      if (!wanted(kind)) continue;
      const Warning warning{.kind = kind, .file = path, .line = line, .key = key, .text = text};
      lines += LineOf(warning) + "\n";
    }
    return lines;
  }

  std::set<std::tuple<std::size_t, WarningKind, std::string, std::string>> found;
};

Found WhatOperationsFind(const std::string& library) {
  Found found;
  const RecordingReporter reporter;
  for (const OperationRun& operation : testing::OperationRuns()) {
    if (operation.row.needs == Needs::kDocumentAndLibrary) continue;  // reads as Text does
    MemoryFiles files;
    RunContext run = testing::SampleRun(operation, files);
    files.files["lit.bib"] = library;
    files.most_room = kMostOutput;
    if (!run.second_path.empty()) {
      run.second_path = "empty.bib";  // all findings come from reading
      files.files[run.second_path] = "";
    }
    run.warnings = &found;
    operation.run(run);
  }
  return found;
}

bool HoldsEntry(const std::string& library) {
  testing::PlainFile file{library};
  constexpr std::size_t kLimit = 1000;
  for (std::string line; file.Gets(line, kLimit);) {
    if (testing::PlainIsKnownEntry(line)) return true;
  }
  return false;
}

}  // namespace

void FuzzCheck(const FuzzInput& input) {
  const std::string library = input.File(0);
  // The check reads a copy with other line breaks; the target "line-endings" judges that.
  if (library.empty() || library.find('\r') != std::string::npos) return;
  // Seven operations read it twice.
  constexpr std::size_t kMost = 60000;
  if (library.size() > kMost) return;
  MemoryFiles files;
  files.files["lit.bib"] = library;
  AddAllConfiguration(files);
  const auto before = files.files;
  const ProcessFiles process(files);

  BatchRequest request;
  request.files = {"lit.bib"};
  const auto chosen = static_cast<std::size_t>(input.piece) % kWarningKindCount;
  const auto is_chosen = [&](WarningKind kind) { return static_cast<std::size_t>(kind) == chosen; };
  const bool only = input.own_list;
  const bool ignore = input.run_twice;
  if (only) request.only = {std::string(kWarningKinds[chosen].name)};
  if (ignore) request.ignore = {std::string(kWarningKinds[chosen].name)};
  const Done done = Run(RunCheckCommand, request);
  Promise(files.files == before, "a check writes nothing");
  if (!HoldsEntry(library)) {
    Promise(done.status == 2 && done.out.empty(), "a file without entries is no library");
    return;
  }
  const Found found = WhatOperationsFind(library);
  const std::string lines = found.Lines("lit.bib", [&](WarningKind kind) {
    return (!only || is_chosen(kind)) && !(ignore && is_chosen(kind));
  });
  Promise(done.out == lines, "the check prints what the operations find");
  Promise(done.status == (lines.empty() ? 0 : 1), "the status is 1 when something is found");
  if (!found.found.empty()) return;
  const std::string broken = testing::JudgeReading(library);
  Promise(broken.empty(), broken.c_str());
}

void FuzzRekey(const FuzzInput& input) {
  const std::string map = input.File(0);
  const std::string document = input.File(1);
  const auto keys = testing::PlainReadKeyMap(map);
  KeyMap read;
  Promise((read.Read(map) == 0) == keys.has_value(), "a key map is one or not");

  MemoryFiles files;
  files.files = {{"keys", map}, {"paper.tex", document}};
  if (input.piece != 0) files.piece = input.piece;
  const auto before = files.files;
  const ProcessFiles process(files);
  const RecordingReporter reporter;
  BatchRequest request;
  request.files = {"keys", "paper.tex"};
  request.quiet = true;
  const Done done = Run(RunRekeyCommand, request);
  Promise(done.out.empty(), "nothing is printed");
  auto expected = before;
  if (keys) expected["paper_rekeyed.tex"] = testing::PlainRekey(document, *keys).text;
  Promise(done.status == (keys ? 0 : kWrongUsage), "the status says whether the map is one");
  Promise(files.files == expected, "every byte is the plain version's");
}

}  // namespace tarvel::fuzz
