// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_system.h"

namespace tarvel {

/// Checks that the files which an operation needs are picked, can be opened and look like what they
/// should be. Returns 1 when the operation may run, 0 after a message box that says what is wrong.
/// Takes one of `OperationCode`; any other code gives 1 at once.
///
/// Files are read in lines of at most 999 bytes and only up to the first line that settles the
/// question.
int CheckInputFiles(int code);
/// The same on other files than those of the machine.
int CheckInputFiles(int code, FileSystem& files);

}  // namespace tarvel
