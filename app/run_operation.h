// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "app/globals.h"
#include "app/operations.h"

namespace tarvel {

/// Takes `path` as the picked file of `buffer` and converts its line breaks if need be; the buffer
/// then holds the path to use. A path of more than 1000 bytes ends the process.
void PickFile(PathBuffer& buffer, std::string_view path);

/// What a button does: checks the picked files, shows the note, runs the operation and reports how
/// it ended. Returns 1 on success; 0 when the checks stopped it; else what the operation returned.
int RunOperation(const Operation& operation);

}  // namespace tarvel
