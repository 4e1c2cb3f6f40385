// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tarvel {

/// What a run can warn of. ORDER: `kWarningKinds`.
enum class WarningKind : std::uint8_t {
  kUnbracedValue,
  kUnknownType,
  kBlankInType,
  kRunsOn,
  kOpenValue,
  kSharedLine,
  kOtherTag,
  kStrayTag,
  kKeyAsTag,
  kAtInKey,
  kUpperCased,
  kLongLine,
  kBadBytes,
  kKeyTwice,
  kMissingCitation,
  kOtherCitation,
  kKeyWithBlank,
  kUncitedEntry,
  kCarriedOver,
  kValueMissing,
  kDetailMissing,
  kUnbalanced,
  kNothingPrinted,
  kRawEditors,
  kCommandCut,
  kCommandLeft,
  kNoGroup,
  kWeakVerdict,
  kDroppedDiffers,
  kCutEntry,
  kOverwritten,
  kEndedEarly,
  kAuthorsAsTheyWere,
  kDoubtfulName,
  kTextLost,
  kUnknownJournal,
  kLineCut,
  kBracedJournal,
  kNonAsciiName,
  kCharacter,
  kLineLeftOut,
  kTornValue,
  kRenamedTag,
  kTagTwice,
  kBrokenHead,
  kUnknownTag,
  kEntryDropped,
  kTextNotCopied,
  kLargeOutput,
  kUnreadText,
  kUndefinedString,
  kMissingParent,
  kLeftOut,
  kMisreadKey,
  kMisreadTag,
  kBadKey,
  kLineBreaks,
};

/// How bad it is. ORDER: the worst first.
enum class Severity : std::uint8_t {
  kLoss,  // something of the input is not in the outputs, or stands there wrongly
  kNote,  // worth knowing
};

/// What a warning is about.
enum class About : std::uint8_t {
  kReading,  // the library itself, which is read otherwise than its author meant
  kRun,      // what a run did with it
  kComing,   // what a run is about to do; such a warning is sent at once and not in the summary
};

/// One kind of warning, as people see it.
struct WarningRow {
  std::string_view name;  // on the terminal, in the file of warnings and in the manual
  Severity severity;
  About about;
  std::string_view summary;  // what was found, in the plural
};

inline constexpr std::size_t kWarningKindCount = 57;

inline constexpr auto kWarningKinds = [] {
  using enum Severity;
  using enum About;
  return std::array<WarningRow, kWarningKindCount>{{
      {"unbraced-value", kLoss, kReading, "values that are not in braces"},
      {"unknown-type", kLoss, kReading, "entries of an unknown type"},
      {"blank-in-type", kLoss, kReading, "blanks between an entry's type and its brace"},
      {"runs-on", kLoss, kReading, "entries without a closing brace"},
      {"open-value", kLoss, kReading, "values that never close"},
      {"shared-line", kLoss, kReading,
       "tags and entries that are not read because they share a line"},
      {"other-tag", kLoss, kReading, "values that were read from the line of another tag"},
      {"stray-tag", kLoss, kReading, "tags outside entries that are taken for an entry's"},
      {"key-as-tag", kLoss, kReading,
       "first lines of entries that are taken for the line of a tag"},
      {"at-in-key", kLoss, kReading, "entries that are skipped because their key contains an @"},
      {"upper-cased", kLoss, kReading, "texts after an @ that were upper-cased"},
      {"long-line", kLoss, kReading, "lines that are too long to be read at once"},
      {"bad-bytes", kNote, kReading, "lines with bytes that are neither ASCII nor valid UTF-8"},
      {"key-twice", kNote, kReading, "keys that occur again in a library"},
      {"missing-citation", kLoss, kRun, "cited keys without an entry"},
      {"other-citation", kLoss, kRun, "citations that were not read, or were read from a comment"},
      {"key-with-blank", kLoss, kRun, "cited keys with blanks"},
      {"uncited-entry", kNote, kRun, "entries that the document does not cite"},
      {"carried-over", kLoss, kRun, "references that show a value of an earlier entry"},
      {"value-missing", kLoss, kRun, "references without an author, title, journal or year"},
      {"detail-missing", kNote, kRun, "references without another value that they print"},
      {"unbalanced", kLoss, kRun, "titles that lost a brace"},
      {"nothing-printed", kLoss, kRun, "entries that printed nothing"},
      {"raw-editors", kNote, kRun, "lists of editors that were printed as they stand"},
      {"command-cut", kLoss, kRun, "LaTeX commands of which only the beginning was replaced"},
      {"command-left", kNote, kRun, "LaTeX commands left in the plain text"},
      {"no-group", kNote, kRun, "entries that are not compared by their values"},
      {"weak-verdict", kLoss, kRun, "verdicts based on the line of another tag"},
      {"dropped-differs", kLoss, kRun, "dropped entries that differ from the kept one"},
      {"cut-entry", kLoss, kRun, "entries that were copied in part"},
      {"overwritten", kLoss, kRun, "entries that were overwritten"},
      {"ended-early", kLoss, kRun, "runs that failed at the end of the library"},
      {"authors-as-they-were", kNote, kRun, "author lists that were left unchanged"},
      {"doubtful-name", kLoss, kRun, "names that may have become wrong"},
      {"text-lost", kLoss, kReading, "texts that were lost at the end of a line"},
      {"unknown-journal", kNote, kRun, "journal names that are not in the list"},
      {"line-cut", kLoss, kRun, "lines that were cut because they mention a journal"},
      {"braced-journal", kLoss, kRun, "macros and quoted names that became the value of a journal"},
      {"non-ascii-name", kLoss, kRun,
       "new journal names with non-ASCII letters, in libraries that had none"},
      {"character", kLoss, kRun, "kinds of characters that became question marks"},
      {"line-left-out", kLoss, kRun, "kinds of tags whose lines were left out"},
      {"torn-value", kLoss, kRun, "lines left out that are only a part of a value or of an entry"},
      {"renamed-tag", kLoss, kRun, "tags that were written under another name"},
      {"tag-twice", kLoss, kRun, "entries that have a tag twice now"},
      {"broken-head", kLoss, kReading, "entries whose first line BibTeX can no longer read"},
      {"unknown-tag", kLoss, kRun, "unknown tags that were dropped"},
      {"entry-dropped", kLoss, kRun, "entries that were dropped although they had more tags"},
      {"text-not-copied", kLoss, kRun, "texts that were not copied"},
      {"large-output", kNote, kComing, "new files that may become large"},
      {"unread-text", kLoss, kRun, "commands that could not be read to their end"},
      {"undefined-string", kLoss, kRun, "strings that are not defined"},
      {"missing-parent", kLoss, kRun, "cross-references to no entry"},
      {"left-out", kLoss, kRun, "tags that were left out"},
      {"misread-key", kLoss, kReading, "keys that operations misread"},
      {"misread-tag", kLoss, kRun, "tags that operations would misread"},
      {"bad-key", kLoss, kRun, "keys that lead to another entry of the new library, or to none"},
      {"line-breaks", kLoss, kRun,
       "files with the line breaks of another system that were read as they are"},
  }};
}();

constexpr const WarningRow& RowOf(WarningKind kind) {
  return kWarningKinds[static_cast<std::size_t>(kind)];
}

}  // namespace tarvel
