// SPDX-License-Identifier: MIT
// Whole operations on made libraries in memory, one row for each operation and size.
#include <benchmark/benchmark.h>

#include <array>
#include <string>
#include <string_view>

#include "app/globals.h"
#include "app/process.h"
#include "bench/library_maker.h"
#include "bench/memory_disk.h"
#include "ops/journal_styles.h"
#include "ops/operations.h"

namespace tarvel::bench {
namespace {

constexpr std::string_view kFirst = "first.bib";
constexpr std::string_view kSecond = "second.bib";
constexpr std::string_view kDocument = "paper.tex";

/// Keeps what an operation prints, so that a failure can be shown.
class QuietReporter final : public Reporter {
 public:
  int Print(std::string_view text) override {
    printed += text;
    return static_cast<int>(text.size());
  }
  void Box(std::string_view, std::string_view) override {}
  void Warn(std::string_view) override {}
  std::string printed;
};

struct Row {
  const char* name;
  int (*run)(const RunContext&);
  std::string_view first;
  std::string_view second;
};

constexpr std::array<Row, 8> kRows{{{"Extract", &RunExtract, kDocument, kFirst},
                                    {"Compare", &RunCompare, kFirst, kSecond},
                                    {"Text", &RunText, kFirst, {}},
                                    {"Journals", &RunJournals, kFirst, {}},
                                    {"CleanDoubles", &RunCleanDoubles, kFirst, {}},
                                    {"CleanAuthors", &RunCleanAuthors, kFirst, {}},
                                    {"CleanCharacters", &RunCleanCharacters, kFirst, {}},
                                    {"CleanTags", &RunCleanTags, kFirst, {}}}};

std::string ProgramDirectory() {
  GetProgramDirectory(ProgramDir, ExecutablePath);
  return ProgramDir.Get();
}

void RunRow(benchmark::State& state, const Row& row) {
  const auto entries = static_cast<std::uint64_t>(state.range(0));
  MemoryDisk disk;
  disk.files.emplace(kFirst, FirstLibrary(entries));
  if (row.second == kSecond) disk.files.emplace(kSecond, SecondLibrary(entries));
  if (row.first == kDocument) disk.files.emplace(kDocument, Document(entries));
  QuietReporter reporter;
  JournalStyles styles;
  const RunContext run{.first_path = std::string(row.first),
                       .second_path = std::string(row.second),
                       .settings = Settings(),
                       .files = disk,
                       .reporter = reporter,
                       .styles = styles,
                       .program_directory = &ProgramDirectory};
  std::size_t read = disk.files.at(std::string(row.first)).size();
  if (!row.second.empty()) read += disk.files.at(std::string(row.second)).size();
  for (auto _ : state) {
    if (row.run(run) == kSucceeded) continue;
    state.SkipWithError(("failed: " + reporter.printed).c_str());
    break;
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(read));
}

const bool kRegistered = [] {
  for (const Row& row : kRows) {
    benchmark::RegisterBenchmark(row.name, RunRow, row)
        ->Arg(100)
        ->Arg(1000)
        ->Arg(10000)
        ->Unit(benchmark::kMillisecond);
  }
  return true;
}();

}  // namespace
}  // namespace tarvel::bench
