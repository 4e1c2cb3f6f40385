// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "core/line_stream.h"

namespace tarvel {

/// The place of the first byte from `from` on that is not blank, or the end of the text. The test
/// is made on signed bytes, so everything from 128 on is negative and blank; a byte of zero is not.
std::size_t SkipBlanks(std::string_view text, std::size_t from);

/// Where `ReadFieldValue` starts to read.
enum class ValueStart {
  kLineStart,   // at the first byte of the line
  kSkipBlanks,  // at the first byte of the line that is not blank
  kAfterBrace,  // behind the first "{" of the line: what every operation asks for
};

/// Reads one tag value into `value`, across lines as needed; gives true when it was read whole.
///
/// The value is the text up to the "}" that matches the opening brace; inner braces are kept. A
/// line feed continues the value on the next line of the stream: the line feed and the blank bytes
/// after it (1 to 32, and all bytes from 128 on, as the test is made on signed bytes) become one
/// blank in the value, and lines that are blank to their end are passed over. A line (or a piece of
/// one) that ends without a line feed ends the value. Without a "{" on the line the value is empty
/// and the result false: quoted and bare values are not read. At the end of the file inside a value
/// the result is false and `value` holds what came so far.
///
/// Afterwards `line` holds the beginning of the first line and, at the place of each line break,
/// what was read since: the joined text. Continuation lines are read with the limit 25,000, those
/// that replace a blank one with 1,000.
bool ReadFieldValue(Line& line, LineStream& stream, ValueStart start, int depth,
                    std::string& value);

/// The value behind the first "{" of the line.
inline bool ReadFieldValue(Line& line, LineStream& stream, std::string& value) {
  return ReadFieldValue(line, stream, ValueStart::kAfterBrace, 0, value);
}

/// What follows a value on its line, without the blanks and commas around it. `line` is the line
/// buffer after the value was read. A "}" that ends the entry counts. Empty for a value that does
/// not close.
std::string_view TextAfterValue(std::string_view line);

}  // namespace tarvel
