// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/operations.h"
#include "core/file_names.h"
#include "ops/run_context.h"
#include "tests/support/memory_files.h"

namespace tarvel::testing {

/// What tests of all operations alike know of one.
struct OperationRun {
  std::string_view name;  // its word on the command line
  int (*run)(const RunContext& run);
  const Operation& row;  // of the operation table
};

/// All operations, in the order of `kOperations`.
std::span<const OperationRun> OperationRuns();

/// An operation's word on the command line as the name of a test: without its hyphen.
std::string TestName(std::string_view word);

/// The library beside which a run writes: of Extract the second file, of all others the first.
const std::string& LibraryOf(const OperationRun& operation, const RunContext& run);

/// The paths of all files that a run may write.
std::vector<std::string> OutputPaths(const OperationRun& operation, const RunContext& run);

/// The header with which the output of this path begins.
std::string_view HeaderOf(std::string_view path);

/// Adds small configuration files of every kind below "/program"; the style file is the real one.
void AddConfiguration(MemoryFiles& files);

/// A library that gives every operation something to do: references of several kinds, double
/// entries, author lists in several forms, a known journal, bad bytes, tags to remove.
extern const std::string_view kSampleLibrary;
/// One that shares some of its entries.
extern const std::string_view kSampleOther;
/// A document that cites entries of the first, and one that is missing.
extern const std::string_view kSampleDocument;
/// A journal list that knows the first library's journals.
extern const std::string_view kSampleJournals;

/// Puts the samples into `files` as an operation's picked files "lit.bib" and "paper.tex" or
/// "more.bib", beside the configuration, and gives the run.
RunContext SampleRun(const OperationRun& operation, MemoryFiles& files);

}  // namespace tarvel::testing
