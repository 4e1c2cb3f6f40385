// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/settings.h"
#include "core/line_stream.h"
#include "core/name_matcher.h"
#include "core/output_file.h"
#include "core/reports.h"
#include "ops/journal_styles.h"
#include "ops/large_outputs.h"
#include "ops/references/reference_warnings.h"

namespace tarvel {

/// What is done to a value right after it was read.
enum class AfterReading {
  kNothing,
  kFormatNames,  // rewritten as an author list of the style
  kStripTitle,   // the title loses its outer braces, whichever tag was read
  kCutPages,     // only the first page, or the range, as the settings say
};

/// Which lines a tag skips although its name stands on them.
enum class SkipWhen { kNothing, kBooktitleAnyCase, kBooktitleLowerCase };

/// One tag of a kind of entry.
struct TagRead {
  std::string_view name;  // searched for anywhere on a line, any case
  ReferenceValue value;
  AfterReading after = AfterReading::kNothing;
  SkipWhen skip_when = SkipWhen::kNothing;
};

/// One kind of entry that references are made of.
struct EntryKind {
  ReferenceKind kind;
  std::span<const TagRead> tags;  // ORDER: tested from the first to the last on every line
  NameMatcher names;              // of the tags
};

/// The kind of entry with this very type word; null when references are not made of it.
const EntryKind* FindEntryKind(std::string_view type_word);

/// Where Extract and Text differ in walking a library.
struct WalkRules {
  std::size_t line_limit;
  bool strips_titles;       // while reading
  bool collapses_dashes;    // of ranges of pages
  bool is_plain_text;       // else LaTeX: braces must match
  std::string_view advice;  // closes the note on an entry of an unsupported type
  std::function<std::string(std::string_view key)> name_reference;
  /// Prints a reference; returns the values that it shows, none when it printed nothing.
  std::function<std::vector<ReferenceValue>(const EntryKind& kind, EntryValues& values)> print;
  /// Returns a LaTeX command of the value that printing replaces in part; may be empty.
  std::function<std::string_view(std::string_view value)> find_cut = {};
  /// Watches the output; may be null.
  GrowingOutput* size = nullptr;
};

/// Walks a library and has a reference printed for each entry of a supported type.
class ReferenceWalk {
 public:
  /// `warnings` are those of the library. All must outlive the walk.
  ReferenceWalk(LineStream& library, OutputFile& output, const Settings& settings,
                const WalkRules& rules, FileWarnings& warnings);

  /// Reads the next line of the library; false at its end, which leaves the current line.
  bool ReadNext() { return ReadLine(library_, rules_.line_limit, line_); }

  /// Handles `entries` entries, from the current line on; false when the library ends before. A
  /// head on the library's last line ends the walk at once, which is no failure.
  bool Run(int entries);

  /// How many entries were of an unsupported type.
  int Unsupported() const { return unsupported_; }

 private:
  bool HandleEntry();
  void NoteCutCommands(const EntryKind& kind);
  void ReportReference(const EntryKind& kind, std::span<const ReferenceValue> shown,
                       std::size_t start);
  void WriteUnsupported(std::string_view key, std::string_view type_word);
  void RepeatLastLine(int entries);
  void ReadTags(const EntryKind& kind);
  void ReadTagsOfLine(const EntryKind& kind);
  void ReportSwallowed(const TagRead& tag, std::size_t start);
  bool Skips(const TagRead& tag) const;
  void Treat(const TagRead& tag);

  LineStream& library_;
  OutputFile& output_;
  const Settings& settings_;
  const WalkRules& rules_;
  const std::optional<JournalStyle> style_;
  Line line_;
  EntryValues values_;
  int unsupported_ = 0;
  ReferenceWarnings warnings_;
};

/// The names of all the tags that references are made of.
extern const std::array<std::string_view, 11> kReferenceTags;

/// Prints a reference with a format and the values that belong to it; returns the values that the
/// format shows, none when nothing was printed.
std::vector<ReferenceValue> PrintReference(OutputFile& output, const std::string& format,
                                           std::span<const ReferenceValue> order,
                                           const EntryValues& values);

/// Shows the box that says how many entries are not in the file; none when it is 0. `file_name` is
/// what the text calls the file.
void ReportUnsupported(Reporter& reporter, int unsupported, std::string_view file_name);

}  // namespace tarvel
