// SPDX-License-Identifier: MIT
#include "ops/operations.h"

#include "core/reports.h"

namespace tarvel {

int Extract() { return RunExtract(GlobalRun()); }
int Compare() { return RunCompare(GlobalRun()); }
int CreateText() { return RunText(GlobalRun()); }
int JournalStrings() { return RunJournals(GlobalRun()); }
int Clean_double() { return RunCleanDoubles(GlobalRun()); }
int Clean_author() { return RunCleanAuthors(GlobalRun()); }
int CleanCharacters() { return RunCleanCharacters(GlobalRun()); }
int Clean_tags() { return RunCleanTags(GlobalRun()); }

}  // namespace tarvel
