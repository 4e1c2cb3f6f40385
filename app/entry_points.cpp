// SPDX-License-Identifier: MIT
#include "app/entry_points.h"

#include "app/globals.h"
#include "app/process.h"
#include "app/reporter.h"

namespace tarvel {

namespace {

std::string FindProgramDirectory() {
  GetProgramDirectory(ProgramDir, ExecutablePath);
  return ProgramDir.Get();
}

FileSystem& FilesOfTheRun() {
  if (GlobalRunFiles) return *GlobalRunFiles;
  return GlobalFiles();
}

}  // namespace

RunContext GlobalRun() {
  return {.first_path = FirstFilePath.Get(),
          .second_path = SecondFilePath.Get(),
          .settings = GlobalSettings,
          .files = FilesOfTheRun(),
          .reporter = GlobalReporter(),
          .styles = GlobalJournalStyles,
          .program_directory = FindProgramDirectory,
          .warnings = GlobalWarnings,
          .output_directory = GlobalOutputDirectory,
          .citations = GlobalCitations,
          .kept_files = GlobalKeptFiles};
}

int Extract() { return RunExtract(GlobalRun()); }
int Compare() { return RunCompare(GlobalRun()); }
int CreateText() { return RunText(GlobalRun()); }
int JournalStrings() { return RunJournals(GlobalRun()); }
int Clean_double() { return RunCleanDoubles(GlobalRun()); }
int Clean_author() { return RunCleanAuthors(GlobalRun()); }
int CleanCharacters() { return RunCleanCharacters(GlobalRun()); }
int Clean_tags() { return RunCleanTags(GlobalRun()); }

}  // namespace tarvel
