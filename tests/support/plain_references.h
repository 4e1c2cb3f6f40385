// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/settings.h"
#include "tests/support/plain_primitives.h"
#include "tests/support/recording_reporter.h"

// What Extract and Text do, written down step by step without tables, indexes or views: files are
// read again as often as the rules say, and every rule is an "if". Slow and easy to check; the
// product must give the same bytes.

namespace tarvel::testing {

/// What a run finds.
struct PlainWorld {
  std::string document;
  std::string library;
  std::string styles;
  std::string commands;
  Settings settings;
};

/// What a run leaves.
struct PlainOutcome {
  int result = 0;
  std::map<std::string, std::string> files;  // by suffix
  std::string printed;
  std::vector<RecordingReporter::ShownBox> boxes;

  int Fail(std::string_view text) {
    printed += Printed(text);
    return result = 0;
  }
};

/// The style buffers, by "prefix + key" without a blank.
using PlainStyles = std::map<std::string, std::string>;

std::string PlainAuthors(const std::string& list, const Settings& settings);
std::string PlainFormat(const std::string& format, const std::vector<std::string>& values);
int PlainReadStyles(const std::string& bytes, PlainStyles& styles, PlainOutcome& outcome);

/// The values of the current entry and what is left of earlier ones.
struct PlainValues {
  std::string bibitem, author, journal, year, volume, title, pages, publisher, address, editor,
      booktitle, school;
};

/// Reads the tags of an entry from the current line on, to the line that ends it.
void PlainReadTags(const std::string& type_word, std::string& line, PlainFile& file,
                   std::size_t limit, bool for_text, const Settings& settings, PlainValues& values);

/// The prefix of the selected style; empty when none is.
std::string PlainPrefix(const Settings& settings);

/// The reference of an article, a book, ... ; `suffix` is "_latex" or empty.
std::string PlainReference(const std::string& type_word, const std::string& suffix, bool for_text,
                           const Settings& settings, const PlainStyles& styles,
                           const PlainValues& values);

}  // namespace tarvel::testing
