// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "app/globals.h"

namespace tarvel {

/// Raises the soft stack limit of the process to 80 MiB if it is lower; the hard limit stays. Gives
/// 0 always: a limit that cannot be read is left alone, one that cannot be set is told on standard
/// error, and the program goes on.
int RaiseStackLimit();

/// Lets the program end with a message and the exit status 1 when a file that it has mapped is cut
/// short by another program or cannot be read, where the system would end it without a word.
void ReportLostFiles();

/// Puts the path of the running executable into `executable` and its directory, without a final
/// "/", into `directory`; both are empty when the system does not tell. An executable in the root
/// directory has an empty one. Gives 1 always.
int GetProgramDirectory(PathBuffer& directory, PathBuffer& executable);

/// Everything before the last "/" of `path` that is not its first byte; empty when there is none.
std::string_view DirectoryOf(std::string_view path);

}  // namespace tarvel
