// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "core/line_stream.h"

namespace tarvel {

/// The offset of the first byte from `from` on that is not blank where a value continues, or the
/// size of the text. The test is made on signed bytes, so everything from 128 on is negative and
/// blank; a byte of zero is not.
std::size_t SkipContinuationBlanks(std::string_view text, std::size_t from);

/// Follows a value in `text` from `from` on, where `depth` braces are open. Returns the offset of
/// the "}" that closes the value, of a line feed, or the size of the text; `depth` is then the
/// number of braces that are open there, 0 for that "}".
std::size_t FindValueStop(std::string_view text, std::size_t from, int& depth);

/// Puts the next line of the stream, read with `limit`, in place of everything from `at` on, and
/// again while it is blank to its end, with the limit 1,000. Returns the offset of its first byte
/// that is not blank, or npos at the end of the file.
std::size_t ContinueLine(Line& line, LineStream& stream, std::size_t at, std::size_t limit);

/// Reads the value after the first "{" of `line` into `value`, across lines as needed; returns true
/// when it was read whole.
///
/// The value is the text up to the "}" that matches the opening brace; inner braces are kept. A
/// line feed continues the value on the next line of the stream: the line feed and the blank bytes
/// after it (1 to 32, and all bytes from 128 on, as the test is made on signed bytes) become one
/// blank in the value, and lines that are blank to their end are skipped. A line (or a piece of
/// one) that ends without a line feed ends the value. Without a "{" on the line the value is empty
/// and the result false: quoted and bare values are not read. At the end of the file inside a value
/// the result is false and `value` holds what came so far.
///
/// Afterwards `line` holds the beginning of the first line and, in place of each line break, what
/// was read since: the joined text. Continuation lines are read with the limit 25,000, those that
/// replace a blank one with 1,000.
bool ReadFieldValue(Line& line, LineStream& stream, std::string& value);

/// What follows a value on its line, without the blanks and commas around it. `line` is the line
/// buffer after the value was read. A "}" that ends the entry counts. Empty for a value that does
/// not close.
std::string_view TextAfterValue(std::string_view line);

}  // namespace tarvel
