// SPDX-License-Identifier: MIT
// Whole runs stand in tests/cases/batch/, what hooks and editors make of them in the manual.
#include "batch/check_command.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <vector>

#include "app/globals.h"
#include "app/reporter.h"
#include "batch/batch_files.h"
#include "batch/request.h"
#include "tests/support/disk_files.h"
#include "tests/support/failing_calls.h"
#include "tests/support/failing_memory.h"
#include "tests/support/recording_reporter.h"

namespace tarvel {
namespace {

struct Checked {
  int status;
  std::string out;
};

/// Prints what is reported while it lives; nobody reports anything after it.
class Terminal {
 public:
  Terminal() { InstallReporter(reporter_); }
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;
  ~Terminal() { const testing::RecordingReporter silent; }

 private:
  TerminalReporter reporter_{"tarvel-batch"};
};

Checked Check(const BatchRequest& request) {
  const Terminal terminal;
  ::testing::internal::CaptureStdout();
  const int status = RunCheckCommand(request);
  return {status, ::testing::internal::GetCapturedStdout()};
}

/// Writes a library to `path` and checks it. `only`: the kinds of warnings that are wanted.
Checked CheckLibrary(const std::string& path, const std::string& library,
                     const std::vector<std::string>& only = {}) {
  testing::WriteDiskFile(path, library);
  BatchRequest request;
  request.files = {path};
  request.only = only;
  return Check(request);
}

TEST(Check, NoticesThatTheFileWasChanged) {
  const testing::TemporaryDirectory directory;
  const std::string path = directory / "lit.bib";
  constexpr int kMostLooks = 100;
  bool noticed = false;
  // One of the looks at the file is the last, after it was read.
  for (int n = 2; n <= kMostLooks && !noticed; ++n) {  // not the first: it finds no file
    const testing::FailingCall gone("stat", ENOENT, n);
    ::testing::internal::CaptureStderr();
    const Checked checked = CheckLibrary(path, "@misc{a,\n}\n");
    noticed = ::testing::internal::GetCapturedStderr() ==
                  "tarvel-batch: " + path + " was changed while it was read\n" &&
              checked.status == 2 && checked.out.empty();
  }
  EXPECT_TRUE(noticed);
}

TEST(Check, SortsByLineAndWritesNothing) {
  const testing::TemporaryDirectory directory;
  const std::string path = directory / "lit.bib";
  testing::WriteDiskFile(path, "@misc{a,\r\n  year = 1,\r\n}\r\n@misc{a,\r\n  year = 2,\r\n}\r\n");
  BatchRequest request;
  request.files = {path};
  const Checked checked = Check(request);
  EXPECT_EQ(checked.status, 1);
  const std::string year = ": the value of 'year' has no braces around it and is read as empty";
  EXPECT_EQ(checked.out, path + ":2: warning: entry 'a'" + year + " [unbraced-value]\n" + path +
                             ":4: warning: entry 'a': the entry in line 1 has the same key "
                             "[key-twice]\n" +
                             path + ":5: warning: entry 'a'" + year + " [unbraced-value]\n");
  const std::filesystem::directory_iterator files(std::filesystem::path(path).parent_path());
  EXPECT_EQ(std::distance(begin(files), end(files)), 1);

  request.ignore = {"unbraced-value", "key-twice"};
  EXPECT_EQ(Check(request).status, 0);
  request.ignore = {"unbraced-value"};
  EXPECT_EQ(Check(request).status, 1);
  request.only = {"unbraced-value"};
  EXPECT_EQ(Check(request).status, 0);
  request.files.push_back(directory / "gone.bib");
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(Check(request).status, 2);
  EXPECT_EQ(::testing::internal::GetCapturedStderr(),
            "tarvel-batch: " + (directory / "gone.bib") +
                " could not be read: No such file or directory\n");
}

TEST(Check, ReportsALackOfMemory) {
  const testing::TemporaryDirectory directory;
  BatchRequest request;
  request.files = {directory / "lit.bib"};
  testing::WriteDiskFile(request.files[0], "@misc{a,\n  year = 1,\n}\n");
  int failures = 0;
  const Terminal terminal;
  for (std::size_t n = 1;; n += 7) {  // each seventh request for memory
    ::testing::internal::CaptureStdout();
    ::testing::internal::CaptureStderr();
    int status = 0;
    bool failed = false;
    {
      const testing::FailingMemory memory(n);
      status = RunCheckCommand(request);
      failed = memory.Failed();
    }
    EXPECT_EQ(status, failed ? 2 : 1);
    (void)::testing::internal::GetCapturedStdout();
    EXPECT_EQ(::testing::internal::GetCapturedStderr().empty(), !failed);
    if (!failed || HasFailure()) break;
    ++failures;
  }
  EXPECT_GT(failures, 10);
}

TEST(Check, ShowsItsProgress) {
  struct Counter final : ReadingObserver {
    void OnRead(std::size_t /*position*/, std::size_t /*size*/) override { ++calls; }
    int calls = 0;
  } counter;
  const testing::TemporaryDirectory directory;
  BatchFiles files(RealFileSystem(), true, counter);
  GlobalFileSystem = &files;
  EXPECT_EQ(CheckLibrary(directory / "lit.bib", "@misc{a,\n}\n").status, 0);
  GlobalFileSystem = nullptr;
  EXPECT_GT(counter.calls, 0);
}

TEST(Check, PrintsTheBeginningOfALongKey) {
  const testing::TemporaryDirectory directory;
  const std::string path = directory / "lit.bib";
  const std::string library = "@misc{" + std::string(2000, 'k') + ",\n  year = 1,\n}\n";
  EXPECT_EQ(CheckLibrary(path, library, {"unbraced-value"}).out,
            path + ":2: warning: entry '" + std::string(100, 'k') +
                "...': the value of 'year' has no braces around it and is read as empty "
                "[unbraced-value]\n");
}

TEST(Check, ReadsALibraryWhoseNameHasNoExtension) {
  const testing::TemporaryDirectory directory;
  EXPECT_EQ(CheckLibrary(directory / "lit", "@misc{a,\n  year = 1,\n}\n").status, 1);
}

TEST(Check, ReportsAKeyThatStandsOnALineOfItsOwn) {
  const testing::TemporaryDirectory directory;
  const std::string path = directory / "lit.bib";
  EXPECT_EQ(CheckLibrary(path, "@misc{\n  k,\n  year = {1}\n}\n").out,
            path +
                ":1: warning: the key does not stand on the first line of the entry and is not "
                "read; put it there, with a comma after it [broken-head]\n");
}

TEST(Check, ReportsAValueOnceThoughSeveralOperationsReadIt) {
  const testing::TemporaryDirectory directory;
  const std::string path = directory / "lit.bib";
  EXPECT_EQ(CheckLibrary(path, "@article{a,\n  numpages = {1},\n}\n").out,
            path +
                ":2: warning: entry 'a': the value of 'pages' is read from the line of 'numpages' "
                "[other-tag]\n");
}

}  // namespace
}  // namespace tarvel
