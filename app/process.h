// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "app/globals.h"

namespace tarvel {

/// Raises the soft stack limit of the process to 80 MiB if it is lower; the hard limit stays.
/// Returns 0 always: a limit that cannot be read is left alone, one that cannot be set is reported
/// on standard error, and the program goes on.
int RaiseStackLimit();

/// Makes the process one that can be trusted with files; the first thing that a program does.
///
/// The descriptors 0 to 2 are open from then on, with `/dev/null` where they were closed, so that
/// no file of the user gets their numbers and with them the messages. A write beyond a limit of the
/// file size, or to a pipe that nobody reads, fails instead of ending the process. SIGHUP, SIGINT
/// and SIGTERM remove what has a temporary name and then end the process as they always do, if they
/// were not ignored.
void PrepareProcess();

/// Puts the path of the running executable into `executable` and its directory, without a final
/// "/", into `directory`; both are empty when the system does not say. An executable in the root
/// directory has an empty one. Returns 1 always.
int GetProgramDirectory(PathBuffer& directory, PathBuffer& executable);

/// Everything before the last "/" of `path`; empty when it has none.
std::string_view DirectoryOf(std::string_view path);

}  // namespace tarvel
