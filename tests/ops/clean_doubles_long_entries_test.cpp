// SPDX-License-Identifier: MIT
// What the warnings of Clean doubles see in a long entry they remember for its next double.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ops/operations.h"
#include "tests/support/memory_files.h"
#include "tests/support/recording_reporter.h"
#include "tests/support/recording_warnings.h"

namespace tarvel {
namespace {

using namespace tarvel::testing;
using Lines = std::vector<std::string>;

Lines DroppedDiffers(const std::string& library) {
  RecordingReporter reporter;
  RecordingWarnings warnings;
  MemoryFiles files;
  files.files["lit.bib"] = library;
  RunContext run = MemoryRun(files, "lit.bib");
  run.warnings = &warnings;
  EXPECT_EQ(RunCleanDoubles(run), 1);
  return warnings.TextsOf(WarningKind::kDroppedDiffers);
}

std::string Misc(const std::string& key, const std::string& note, const std::string& more) {
  return "@misc{" + key + ",\n  note = {" + note + "},\n" + more + "}\n\n";
}

const std::string kFiller = "  filler = {" + std::string(1500, 'f') + "},\n";

std::string Differs(const std::string& kept) {
  return "the entry was dropped as a duplicate of '" + kept +
         "', but they differ in 'doi'; check whether it is another work";
}

TEST(CleanDoublesLongEntries, AreComparedWithEachDouble) {
  for (const std::string& filler : {std::string(), kFiller}) {
    EXPECT_EQ(DroppedDiffers(Misc("a", "x", "  doi = {1},\n" + filler) +
                             Misc("b", "x", "  doi = {1},\n") + Misc("c", "x", "  doi = {2},\n") +
                             Misc("d", "x", "") + Misc("e", "x", "  doi = {3},\n")),
              (Lines{Differs("a"), Differs("a")}));
  }
}

TEST(CleanDoublesLongEntries, AreForgottenWhenTheyAreOverwritten) {
  EXPECT_EQ(
      DroppedDiffers(Misc("a", "x", "") + Misc("a", "y", "  doi = {1},\n" + kFiller) +
                     Misc("b", "y", "  doi = {1},\n") + Misc("a", "z", "  doi = {2},\n" + kFiller) +
                     Misc("c", "z", "  doi = {2},\n") + Misc("d", "z", "  doi = {3},\n")),
      Lines{Differs("a_b")});
}

}  // namespace
}  // namespace tarvel
