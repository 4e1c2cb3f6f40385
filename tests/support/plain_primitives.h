// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

// The quirky primitives once more, byte by byte as their rules read in plain prose: the judges of
// the fast ones, and what the plain operations are made of, which share no code with the program.

namespace tarvel::testing {

/// A file that is read like stdio reads it.
struct PlainFile {
  std::string bytes;
  std::size_t at = 0;

  /// fgets: false at the end, which leaves `line`.
  bool Gets(std::string& line, std::size_t limit);
};

bool PlainIsKnownEntry(std::string& line);
bool PlainReplaceString(std::string& line, const std::string& pattern,
                        const std::string& replacement);
/// The value after the first "{" of `line`, which becomes the joined text.
bool PlainReadFieldValue(std::string& line, PlainFile& file, std::string& value);

std::string PlainUpper(const std::string& text);
bool PlainContainsNoCase(const std::string& text, const std::string& pattern);
void PlainStripBraces(std::string& value);
bool PlainCollapseDoubledChar(std::string& text, char byte);
std::string PlainCopyUntilChar(const std::string& line, char stop);
std::string PlainCopyUntilChar(const std::string& line, char start, char stop);
void PlainReplaceBetween(std::string& line, const std::string& insertion, char start, char stop);

}  // namespace tarvel::testing
