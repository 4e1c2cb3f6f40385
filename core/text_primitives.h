// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "core/ascii.h"
#include "core/line_stream.h"

namespace tarvel {

/// Whether the line starts an entry of one of the 24 known types. On the way every type word, the
/// text between an "@" and the next "{", is upper-cased in the line itself, whatever the result.
/// A line with an "@" that has no "{" after it is never an entry and is left as it is from there.
/// The marker need not stand at the start of the line, and most markers are prefixes: "@BOOK" also
/// accepts "@BOOKLET" and "@BOOKS". "@MASTERSTHESIS" is not known; "@MASTERTHESIS" is.
bool IsKnownEntry(std::string& line);
/// The same for an operation's line buffer, which is copied only if a type word stands in it.
bool IsKnownEntry(Line& line);

/// Reads the stream to its end in lines of at most 999 bytes and counts those for which
/// `IsKnownEntry` is true.
int CountEntries(LineStream& stream);

/// Whether `pattern` occurs in `text`, ASCII letter case ignored. An empty pattern always does.
bool ContainsNoCase(std::string_view text, std::string_view pattern);

/// Upper-cases every byte in place (`ToUpper`).
void StringToUpper(std::string& text);
/// A copy of `text` with every byte upper-cased (`ToUpper`).
std::string InCapitals(std::string_view text);

/// How often `wanted` occurs in `bytes`.
std::size_t CountByte(std::string_view bytes, char wanted);

/// Removes the leading run of "{" and then the trailing run of "}", but never the first byte that
/// is left: "{{x}}" becomes "x", "{}" becomes "}".
void StripBraces(std::string& value);

/// The text of `line` from its first byte up to `stop`, a line feed or the end.
std::string_view CopyUntilChar(std::string_view line, char stop);
/// The text after the first `start` up to `stop`, a line feed or the end; empty when `start` does
/// not stand on the line.
std::string_view CopyUntilChar(std::string_view line, char start, char stop);

/// Replaces what stands between the first `start` and the next `stop` by `insertion`. Without a
/// `stop` everything up to the line feed or the end is replaced. Without a `start` nothing is.
void ReplaceBetween(std::string& line, std::string_view insertion, char start, char stop);

/// Cuts `text` at its first comma: returns the part before it and leaves the part after it, blanks
/// and all. Without a comma everything is the first part.
std::string SplitAtComma(std::string& text);

/// Replaces occurrences of `pattern`, left to right; returns whether it occurred at all. The byte
/// after a replacement never starts a match, and a match that begins inside a partial match is
/// missed: "aab" with the pattern "ab" stays, "abab" with "x" becomes "xab". What users' tables of
/// replacements do is defined by this scan. An empty pattern does nothing and gives false.
bool ReplaceString(std::string& line, std::string_view pattern, std::string_view replacement);

/// The first page of a range: "123-130" and "123--130" both give "123", "-130" gives nothing.
constexpr std::string_view FirstPage(std::string_view pages) {
  return pages.substr(0, pages.find('-'));
}

/// Where the first occurrence of `byte` is followed by a second one, removes the second and gives
/// true. Only the first occurrence is looked at.
bool CollapseDoubledChar(std::string& text, char byte);

}  // namespace tarvel
