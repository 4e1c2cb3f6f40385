// SPDX-License-Identifier: MIT
#pragma once

namespace tarvel {

struct BatchRequest;

/// "tarvel-batch check FILE...": prints on standard output, as "FILE:LINE: warning: TEXT [KIND]"
/// and in the order of the lines, what is odd about each library for any operation. Writes no file.
/// Returns the exit status: 0 when nothing was found, 1 when something was, 2 when a file could not
/// be read or is no library, whatever was found in others.
int RunCheckCommand(const BatchRequest& request);

}  // namespace tarvel
