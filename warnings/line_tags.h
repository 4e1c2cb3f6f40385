// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace tarvel {

/// A tag as BibTeX reads it. Both are parts of the text that it was read from.
struct LineTag {
  std::string_view name;
  std::string_view value;  // with its braces or quotes, and what a "#" joins to it
};

/// The tags of a line, or of the lines after an entry's first: names and "=" outside of values.
/// Commas and braces between them are skipped; an unclosed value reaches to the end.
std::vector<LineTag> TagsOf(std::string_view text);

/// Whether `name` can be that of a tag: a letter, then letters, digits and "_:.+-".
bool IsTagName(std::string_view name);

/// The name of the tag that the line begins with, blanks and commas before it left out; empty when
/// it begins with none. Lines after the first are not looked at.
std::string_view TagNameOf(std::string_view line);

/// How many more braces the text opens than it closes; negative when it closes more.
std::ptrdiff_t OpenBraces(std::string_view text);

/// Whether the line, given without the blanks around it, is empty, one of the header of this
/// program's files, or another program's note on the encoding: nobody misses it.
bool IsFileHeader(std::string_view line);

/// Where the line begins that holds the byte at `at`; not before `from`.
std::size_t LineBegin(std::string_view bytes, std::size_t from, std::size_t at);

/// Where the line ends that holds the byte at `at`, after its line break.
std::size_t LineEnd(std::string_view bytes, std::size_t at);

/// The line of `bytes` that begins at `offset`, without its line break.
std::string_view LineAt(std::string_view bytes, std::size_t offset);

}  // namespace tarvel
