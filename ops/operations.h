// SPDX-License-Identifier: MIT
#pragma once

#include "ops/run_context.h"

namespace tarvel {

// Each operation as the buttons call it: on the picked files and the global settings. All give 1
// when they succeeded; 0, or 2999 for a library that could not be opened, when they failed.

int Extract();
int Compare();
int CreateText();
int JournalStrings();
int Clean_double();
int Clean_author();
int CleanCharacters();
int Clean_tags();

// Each operation as a function of its context: what does the work and what tests call.

int RunExtract(const RunContext& run);
int RunCompare(const RunContext& run);
int RunText(const RunContext& run);
int RunJournals(const RunContext& run);
int RunCleanDoubles(const RunContext& run);
int RunCleanAuthors(const RunContext& run);
int RunCleanCharacters(const RunContext& run);
int RunCleanTags(const RunContext& run);

}  // namespace tarvel
