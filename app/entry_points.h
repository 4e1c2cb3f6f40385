// SPDX-License-Identifier: MIT
#pragma once

#include "ops/operations.h"

namespace tarvel {

/// The context of a run that the user starts: the picked files and the global settings as they are
/// now, the files of the run that is under way or else the disk, the installed reporter.
RunContext GlobalRun();

// Each operation as the buttons call it: on `GlobalRun`. They return what those of operations.h do.

int Extract();
int Compare();
int CreateText();
int JournalStrings();
int Clean_double();
int Clean_author();
int CleanCharacters();
int Clean_tags();

}  // namespace tarvel
