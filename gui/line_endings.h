// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>

#include "app/globals.h"
#include "core/file_system.h"

namespace tarvel {

/// How many line breaks of each kind a file holds, and how many bytes.
struct LineBreaks {
  std::uint64_t bytes = 0;
  std::uint64_t crlf = 0;     // CR LF pairs
  std::uint64_t lone_cr = 0;  // CRs that no LF follows
  std::uint64_t lone_lf = 0;  // LFs that no CR precedes
};

/// Adds the line breaks of the next piece of a file. `last` is the last byte of the piece before
/// it, 0 at the start, and becomes the last byte of this one.
void CountLineBreaks(std::string_view bytes, char& last, LineBreaks& breaks);

/// The code of the system that a file with these line breaks comes from: Windows or Linux if its
/// kind outnumbers both others, otherwise Mac. So a file without any line break is a Mac file.
int SystemOf(const LineBreaks& breaks);

/// Makes sure that the picked file of `path` has LF line breaks. If most of its line breaks are of
/// another kind, a converted copy is written beside it, with "_linux" before its extension, a box
/// says so, and `path` becomes the copy's path. Returns 1 when the file may be used; 0 after a
/// failure, which leaves `path` as it is (why there is no copy is noted in it): no path, a file that cannot be opened or is empty, a path
/// without a ".", a copy that cannot be created or written, or would be the picked file itself or
/// replace the other picked file. A copy that is there already and has the right bytes is used
/// and not written again.
int ConvertLineEndings(PathBuffer& path);
/// The same on other files than those of the machine.
int ConvertLineEndings(PathBuffer& path, FileSystem& files);

}  // namespace tarvel
