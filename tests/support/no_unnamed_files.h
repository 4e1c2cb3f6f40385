// SPDX-License-Identifier: MIT
#pragma once

namespace tarvel::testing {

/// From now on the kernel refuses to open files without a name (O_TMPFILE) for this process, as on
/// a file system that has none. It cannot be undone: call it in a child process.
void RefuseUnnamedFiles();

}  // namespace tarvel::testing
