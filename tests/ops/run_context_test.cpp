// SPDX-License-Identifier: MIT
#include "ops/run_context.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>

#include "app/globals.h"
#include "core/run_files.h"
#include "tests/support/disk_files.h"
#include "tests/support/memory_files.h"
#include "tests/support/operation_runs.h"
#include "tests/support/outcome.h"
#include "tests/support/recording_reporter.h"
#include "tests/support/recording_warnings.h"

namespace tarvel {
namespace {

using testing::MemoryFiles;
using testing::MemoryRun;
using testing::TemporaryDirectory;

TEST(OutputPath, StandsBesideTheLibrary) {
  EXPECT_EQ(OutputPath("/d/my.refs.bib", Output::kTagLog), "/d/my.refs_tag.log");
  EXPECT_EQ(OutputPath("/d.e/refs", Output::kTagLog), "/d_tag.log");
  EXPECT_EQ(OutputPath("refs", Output::kTagLog), "") << "without a \".\" there is no path";
  EXPECT_EQ(OutputPath("/d/my.refs.bib", Output::kTagLog, "/o"), "/o/my.refs_tag.log");
  EXPECT_EQ(OutputPath("refs", Output::kTagLog, "/o.d"), "")
      << "the directory's \".\" is not the name's";
  EXPECT_EQ(OutputPath("/d.e/refs", Output::kTagLog, "/o"), "");
}

TEST(HeaderOf, GoesByTheExtension) {
  EXPECT_EQ(HeaderOf("a_tag.log"), testing::kLogHeader);
  EXPECT_EQ(HeaderOf("a_tag.bib"), testing::kBibHeader);
  EXPECT_EQ(HeaderOf("a_text.txt"), testing::kTextHeader);
  EXPECT_EQ(HeaderOf("a_extract.tex"), testing::kTexHeader);
  EXPECT_EQ(HeaderOf("a.txt.b"), "") << "no other file has one";
  for (const std::string_view suffix : OutputSuffixes) EXPECT_NE(HeaderOf(suffix), "") << suffix;
}

TEST(CreateOutput, RefusesAFileThatIsAPickedInput) {
  const TemporaryDirectory directory;
  const std::string first = directory / "first.bib";
  const std::string second = directory / "second.bib";
  testing::WriteDiskFile(first, "one");
  testing::WriteDiskFile(second, "two");
  std::filesystem::create_symlink(first, directory / "link");
  std::filesystem::create_hard_link(second, directory / "hard");
  MemoryFiles unused;
  RunContext run = MemoryRun(unused, first, second);
  RunContext on_disk{.first_path = run.first_path,
                     .second_path = run.second_path,
                     .settings = run.settings,
                     .files = RealFileSystem(),
                     .reporter = run.reporter,
                     .styles = run.styles,
                     .program_directory = run.program_directory};
  for (const auto* name : {"first.bib", "second.bib", "link", "hard"}) {
    EXPECT_FALSE(CreateOutput(on_disk, directory / name, CreateMode::kWrite)) << name;
  }
  EXPECT_EQ(testing::ReadDiskFile(first), "one");
  EXPECT_EQ(testing::ReadDiskFile(second), "two");
  EXPECT_TRUE(CreateOutput(on_disk, directory / "other", CreateMode::kWriteRead));
  EXPECT_FALSE(CreateOutput(on_disk, "", CreateMode::kWrite)) << "no path, no file";
}

TEST(CloseOutputs, PrintsEachFileThatDidNotArrive) {
  testing::RecordingReporter reporter;
  MemoryFiles files;
  files.room["a.log"] = 0;
  const RunContext run = MemoryRun(files, "a.bib");
  const auto log = CreateOutput(run, "a.log", CreateMode::kWrite);
  const auto library = CreateOutput(run, "b.bib", CreateMode::kWrite);
  log->Write("x");
  library->Write("y");
  EXPECT_FALSE(CloseOutputs(run, {log.get(), library.get()}));
  EXPECT_EQ(reporter.printed,
            testing::Printed("Could not write the file 'a.log': No space left on device"));
  EXPECT_EQ(files.files["b.bib"], "y") << "the others are closed all the same";
}

TEST(CreateOutput, CreatesAnOperationsFileEmptyOrWithItsHeader) {
  testing::RecordingReporter reporter;
  MemoryFiles files;
  const RunContext run = MemoryRun(files, "a.bib");
  const auto empty = CreateOutput(run, "b.bib", Output::kTagLibrary);
  const auto headed = CreateWithHeader(run, "b.bib", Output::kTagLog);
  EXPECT_TRUE(CloseOutputs(run, {empty.get(), headed.get()}));
  EXPECT_EQ(empty->Path(), "b_tag.bib");
  EXPECT_EQ(files.files["b_tag.bib"], "");
  EXPECT_EQ(files.files["b_tag.log"], testing::kLogHeader);
  files.not_creatable.insert("b_tag.log");
  EXPECT_FALSE(CreateWithHeader(run, "b.bib", Output::kTagLog));
  EXPECT_FALSE(CreateWithHeader(run, "b", Output::kTagLibrary)) << "no path, no file";
  EXPECT_EQ(reporter.printed, "");
}

TEST(CreateOutput, SaysWhyAnOperationsFileCannotBeCreated) {
  testing::RecordingReporter reporter;
  const TemporaryDirectory directory;
  const std::string library = directory / "a.bib";
  testing::WriteDiskFile(library, "x");
  std::filesystem::create_directory(directory / "a_tag.log");
  std::filesystem::create_symlink(library, directory / "a_char.bib");
  std::filesystem::create_symlink("a_double.log", directory / "a_double.bib");
  RunFiles files(RealFileSystem());
  const RunContext run = MemoryRun(files, library);
  EXPECT_FALSE(CreateOutput(run, library, Output::kTagLog));
  EXPECT_FALSE(CreateOutput(run, library, Output::kCharacterLibrary));
  EXPECT_FALSE(CreateOutput(run, "a", Output::kTagLog));
  const auto double_log = CreateOutput(run, library, Output::kDoubleLog);
  EXPECT_FALSE(CreateOutput(run, library, Output::kDoubleLibrary));
  const std::string no = "warning: could not create the file '";
  EXPECT_EQ(
      reporter.warnings,
      (std::vector<std::string>{no + (directory / "a_tag.log") + "': Is a directory",
                                no + (directory / "a_char.bib") + "': the run reads it",
                                "warning: 'a' has no extension, and new files are named after it",
                                no + (directory / "a_double.bib") + "': File exists"}));
}

TEST(OpenForUpdate, SaysOfAFileThatItIsReadOnly) {
  testing::RecordingReporter reporter;
  const TemporaryDirectory directory;
  testing::WriteDiskFile(directory / "a.bib", "x");
  RunFiles files(RealFileSystem());
  const RunContext run = MemoryRun(files, directory / "a.bib");
  ASSERT_TRUE(OpenForUpdate(run, directory / "a.bib"));
  EXPECT_EQ(OpenForUpdate(run, directory / "a.bib")->Bytes(), "x");
  EXPECT_FALSE(OpenForUpdate(run, directory / "none.bib"));
  EXPECT_EQ(reporter.warnings, std::vector<std::string>());
  // A program that runs cannot be written, not even by root, whom permissions do not stop.
  EXPECT_FALSE(OpenForUpdate(run, "/proc/self/exe"));
  EXPECT_EQ(reporter.warnings, std::vector<std::string>{
                                   "warning: the file '/proc/self/exe' is read-only, and this "
                                   "operation takes only files that could be written; copy it, or "
                                   "run tarvel-batch with --output-dir"});
}

TEST(Fail, PrintsTheTextAndReturnsTheResult) {
  testing::RecordingReporter reporter;
  MemoryFiles files;
  const RunContext run = MemoryRun(files, "a.bib");
  EXPECT_EQ(Fail(run, "Function X()_1 => no"), kFailed);
  EXPECT_EQ(Fail(run, "more", kInputNotOpened), 2999);
  EXPECT_EQ(reporter.printed, testing::Printed("Function X()_1 => no") + testing::Printed("more"));
}

TEST(WarningsOf, GoWhereTheRunSendsThem) {
  MemoryFiles files;
  RunContext run = MemoryRun(files, "a.bib");
  const LineStream input("one\ntwo\n");
  EXPECT_FALSE(WarningsOf(run, "a.bib", input).Wanted());
  testing::RecordingWarnings to;
  run.warnings = &to;
  WarningsOf(run, "b.bib", input).Report(WarningKind::kLongLine, 4, "k", "t");
  EXPECT_EQ(to.lines, std::vector<std::string>{"long-line b.bib:2 [k] t"});
}

/// What a run leaves whose configuration stands below `directory`.
std::map<std::string, std::string> RunFrom(const std::string& directory,
                                           const testing::OperationRun& operation) {
  testing::RecordingReporter reporter;
  GlobalJournalStyles = {};
  MemoryFiles files;
  RunContext run = testing::SampleRun(operation, files);
  run.program_directory = [directory] { return directory; };
  const std::string program = "/program";
  std::map<std::string, std::string> moved;
  for (const auto& [path, bytes] : files.files) {
    const bool configuration = path.starts_with(program);
    moved[configuration ? directory + path.substr(program.size()) : path] = bytes;
  }
  files.files = moved;
  EXPECT_EQ(operation.run(run), 1) << operation.name << "\n" << reporter.printed;
  for (const auto& [path, bytes] : moved) files.files.erase(path);
  return files.files;
}

TEST(ProgramDirectory, IsEmptyForAProgramInTheRoot) {
  for (const testing::OperationRun& operation : testing::OperationRuns()) {
    const auto outputs = RunFrom("", operation);
    EXPECT_FALSE(outputs.empty());
    EXPECT_EQ(outputs, RunFrom("/opt/tarvel", operation)) << operation.name;
  }
}

}  // namespace
}  // namespace tarvel
