// SPDX-License-Identifier: MIT
#include "batch/check_command.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <map>
#include <memory>
#include <new>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "app/entry_points.h"
#include "app/globals.h"
#include "app/reporter.h"
#include "batch/request.h"
#include "core/text_primitives.h"
#include "gui/line_endings.h"
#include "ops/operations.h"

namespace tarvel {

namespace {

/// The operations that read a library. Extract reads as Text does, of the cited entries only.
constexpr std::array<int (*)(const RunContext&), 7> kReaders{
    RunText,         RunCompare,         RunJournals, RunCleanDoubles,
    RunCleanAuthors, RunCleanCharacters, RunCleanTags};

/// A new file whose bytes are kept in memory, or in no place at all.
class MemorySink final : public ByteSink {
 public:
  explicit MemorySink(std::string* kept) : kept_(kept) {}
  std::string Write(std::string_view bytes) override {
    if (kept_) kept_->append(bytes);
    return {};
  }
  std::string Close() override { return {}; }
  bool IsKept() const override { return kept_ != nullptr; }

 private:
  std::string* kept_;
};

class MemorySource final : public ByteSource {
 public:
  explicit MemorySource(std::string_view bytes) : bytes_(bytes) {}
  std::ptrdiff_t Read(char* buffer, std::size_t size) override {
    const std::size_t taken = bytes_.copy(buffer, size);
    bytes_.remove_prefix(taken);
    return static_cast<std::ptrdiff_t>(taken);
  }
  std::size_t Size() const override { return bytes_.size(); }

 private:
  std::string_view bytes_;
};

/// The library's path for the operations: they make the names of their outputs from it, and its own
/// may have no extension.
constexpr std::string_view kLibrary = "library.bib";
/// The path of an empty library, the second one of Compare. All findings come from reading the
/// library; comparing it with itself takes quadratic time where keys are repeated.
constexpr std::string_view kEmptyLibrary = "empty.bib";

/// Files that are only read; `library` is found at `kLibrary`. The copy that the check of line
/// breaks makes is kept in memory; what operations write goes nowhere.
class ReadOnlyFiles final : public FileSystem {
 public:
  ReadOnlyFiles(FileSystem& files, const std::string& library) : files_(files), library_(library) {}
  void DropNewFiles() { keeps_ = false; }

  std::unique_ptr<ByteSource> OpenSource(const std::string& path, ReadMode /*mode*/) override {
    const auto kept = kept_.find(path);
    if (kept != kept_.end()) return std::make_unique<MemorySource>(kept->second);
    return files_.OpenSource(PathOf(path), ReadMode::kRead);
  }
  std::unique_ptr<ByteSink> CreateSink(const std::string& path, CreateMode /*mode*/) override {
    return std::make_unique<MemorySink>(keeps_ ? &kept_[path] : nullptr);
  }
  std::optional<FileState> StateAt(const std::string& path) override {
    return files_.StateAt(PathOf(path));
  }
  bool IsSameFile(const std::string& /*one*/, const std::string& /*other*/) override {
    return false;  // no file is ever written over
  }
  ReadingObserver* Observer() override { return files_.Observer(); }

 private:
  const std::string& PathOf(const std::string& path) const {
    return path == kLibrary ? library_ : path;
  }

  FileSystem& files_;
  const std::string& library_;
  std::map<std::string, std::string> kept_{{std::string(kEmptyLibrary), {}}};
  bool keeps_ = true;
};

/// Says nothing: the operations run for their warnings only.
class SilentReporter final : public Reporter {
 public:
  int Print(std::string_view text) override { return static_cast<int>(text.size()); }
  void Box(std::string_view /*message*/, std::string_view /*caption*/) override {}
  void Warn(std::string_view /*line*/) override {}
};

/// How many bytes of a key are kept: more than are printed. Text that is taken for a key can be as
/// long as the library, and each finding in the entry holds it.
constexpr std::size_t kMostKey = 128;
constexpr std::size_t kPiece = std::size_t{1} << 16;  // what is printed at once

/// What is wrong in one line. A library can have millions of findings, so they are kept small.
struct Finding {
  std::size_t line;
  WarningKind kind;
  std::uint16_t key_size;
  std::string words;  // the key and the text

  std::string_view Key() const { return std::string_view(words).substr(0, key_size); }
  std::string_view Text() const { return std::string_view(words).substr(key_size); }
  bool operator<(const Finding& other) const {
    return std::tuple(line, kind, Key(), Text()) <
           std::tuple(other.line, other.kind, other.Key(), other.Text());
  }
};

/// Collects what the operations find, each once.
class Findings final : public Warnings {
 public:
  explicit Findings(const BatchRequest& request) : request_(request) {}

  void Report(const Warning& warning) override {
    if (RowOf(warning.kind).about != About::kReading || !IsWanted(RowOf(warning.kind).name)) return;
    const std::string_view key = warning.key.substr(0, kMostKey);
    found_.insert({warning.line, warning.kind, static_cast<std::uint16_t>(key.size()),
                   std::string(key).append(warning.text)});
  }
  /// Prints them, unless standard output has failed; true when there are any.
  bool Print(const std::string& path, Reporter& terminal) const {
    std::string lines;
    for (const Finding& finding : found_) {
      if (std::ferror(stdout) != 0) break;
      const Warning warning{.kind = finding.kind,
                            .file = path,
                            .line = finding.line,
                            .key = finding.Key(),
                            .text = finding.Text()};
      lines.append(LineOf(warning)).append("\n");
      if (lines.size() < kPiece) continue;
      terminal.Print(lines);
      lines.clear();
    }
    if (!lines.empty()) terminal.Print(lines);
    return !found_.empty();
  }

 private:
  bool IsWanted(std::string_view name) const {
    const auto holds = [&](const std::vector<std::string>& kinds) {
      return std::find(kinds.begin(), kinds.end(), name) != kinds.end();
    };
    return (request_.only.empty() || holds(request_.only)) && !holds(request_.ignore);
  }

  const BatchRequest& request_;
  std::set<Finding> found_;
};

bool HasEntry(LineStream& lines) {
  for (Line line; ReadLine(lines, limits::kShortLine, line);) {
    if (IsKnownEntry(line)) return true;
  }
  return false;
}

/// Why a file cannot be checked; empty when it can.
std::string WhyNotRead(FileSystem& files, const std::string& path) {
  std::optional<LineStream> lines = files.OpenLines(path, ReadMode::kRead);
  if (!lines) return "could not be read";
  if (HasEntry(*lines)) return {};
  if (IsUtf16(lines->Bytes())) return std::string(kIsUtf16);
  return "is not a BibTeX library: it has no entry of a known type";
}

/// Runs the operations on a library, without their outputs.
void Collect(const std::string& path, FileSystem& files, Reporter& reporter, Findings& findings) {
  for (const auto read : kReaders) {
    JournalStyles styles;
    RunContext run{.first_path = path,
                   .second_path = std::string(read == RunCompare ? kEmptyLibrary : ""),
                   .settings = {},
                   .files = files,
                   .reporter = reporter,
                   .styles = styles,
                   .program_directory = GlobalRun().program_directory,
                   .warnings = &findings};
    read(run);  // a failure is one of the library, too: its cause is among the findings
  }
}

int Refuse(const std::string& path, const std::string& reason, Reporter& terminal) {
  terminal.Warn("tarvel-batch: " + EscapeControls(path) + " " + reason);
  return 2;
}

/// Checks one file and prints what was found; returns the exit status for it.
int CheckFile(const std::string& path, const BatchRequest& request, Reporter& terminal) {
  const std::optional<FileState> state = GlobalFiles().StateAt(path);
  ReadOnlyFiles files(GlobalFiles(), path);
  PathBuffer picked("library");
  picked.Set(kLibrary);
  ConvertLineEndings(picked, files);
  files.DropNewFiles();
  const std::string& library = picked.Get();
  std::string reason = WhyNotRead(files, library);
  if (!reason.empty() && !state) reason += ReasonNotRead(path);
  Findings findings(request);
  SilentReporter silent;
  if (reason.empty()) Collect(library, files, silent, findings);
  if (reason.empty() && GlobalFiles().StateAt(path) != state) {
    reason = "was changed while it was read";
  }
  if (!reason.empty()) return Refuse(path, reason, terminal);
  return findings.Print(path, terminal) ? 1 : 0;
}

}  // namespace

int RunCheckCommand(const BatchRequest& request) {
  SilentReporter silent;
  Reporter& terminal = GlobalReporter();
  InstallReporter(silent);
  int status = 0;
  for (const std::string& path : request.files) {
    try {
      status = std::max(status, CheckFile(path, request, terminal));
    } catch (const std::bad_alloc&) {
      status = Refuse(path, "could not be read: not enough memory", terminal);
    }
  }
  InstallReporter(terminal);
  return status;
}

}  // namespace tarvel
