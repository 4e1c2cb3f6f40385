// SPDX-License-Identifier: MIT
#include "tests/support/outcome.h"

#include <gtest/gtest.h>

namespace tarvel::testing {

std::string WithoutStart(std::string_view text, std::string_view start) {
  EXPECT_TRUE(text.starts_with(start)) << text;
  return std::string(text.substr(text.starts_with(start) ? start.size() : text.size()));
}

Outcome OutcomeOf(const Cleaning& operation, std::string_view input, const Settings& settings,
                  MemoryFiles files, const std::string& path) {
  RecordingReporter reporter;
  files.files[path] = input;
  const std::size_t given = files.files.size();
  RunContext run = MemoryRun(files, path);
  run.settings = settings;
  Outcome outcome;
  outcome.result = operation.run(run);
  EXPECT_EQ(files.files[path], input) << "the input is never changed";
  EXPECT_EQ(files.files.size(), given + 2) << "two files are written";
  outcome.library = WithoutStart(files.files[OutputPath(path, operation.library)], kBibHeader);
  outcome.log = WithoutStart(files.files[OutputPath(path, operation.log)], kLogHeader);
  outcome.printed = reporter.printed;
  outcome.boxes = reporter.boxes;
  return outcome;
}

}  // namespace tarvel::testing
