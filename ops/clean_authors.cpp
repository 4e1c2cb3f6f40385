// SPDX-License-Identifier: MIT
// Clean authors: writes a library anew with every author list in the normal form, and logs the
// lists that changed.
#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "core/text_primitives.h"
#include "core/value_reader.h"
#include "ops/authors/author_lists.h"
#include "ops/large_outputs.h"
#include "ops/operations.h"
#include "warnings/author_reasons.h"
#include "warnings/bibtex_names.h"
#include "warnings/library_scan.h"
#include "warnings/line_tags.h"

namespace tarvel {

namespace {

constexpr std::string_view kNoLibrary =
    "Function Clean_author()_1, initialization => BibTeX file does not exist?";
constexpr std::string_view kNotOpened =
    "Function Clean_author()_2, Could not open the BibTeX file!";
constexpr std::string_view kLogNotCreated =
    "Function Clean_author()_3, Could not open the log file!";
constexpr std::string_view kLibraryNotCreated =
    "Function Clean_author()_4, Could not open the new BibTeX file";  // the path and " !" follow

constexpr std::string_view kAuthorTag = "AUTHOR=";

/// Whether the first bytes of the line are the author tag and its "=", blanks, tabs and letter case
/// aside. Nearly every line is turned down at its first byte that is no blank.
bool IsAuthorLine(std::string_view line) {
  std::size_t matched = 0;
  for (const char byte : line) {
    if (IsBlankOrTab(byte)) continue;
    if (ToUpper(byte) != kAuthorTag[matched]) return false;
    if (++matched == kAuthorTag.size()) return true;
  }
  return false;
}

/// Replaces every "\ " with a plain blank.
void ReplaceEscapedBlanks(std::string& text) {
  std::size_t kept = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool escapes_blank = text[at] == '\\' && at + 1 < text.size() && text[at + 1] == ' ';
    if (!escapes_blank) text[kept++] = text[at];
  }
  text.resize(kept);
}

/// Whether the value of the author line continues on the next line and was not read: it stands in
/// quotes that do not close, or begins below its name.
bool GoesOnUnread(std::string_view line) {
  const std::string_view value = Trim(line.substr(line.find('=') + 1), kBlanks);
  if (value.empty()) return true;
  return value.front() == '"' && CountByte(value, '"') == 1;
}

/// Reads the library and writes the outputs of one run.
class AuthorCleaner {
 public:
  AuthorCleaner(LineStream& input, OutputFile& library, OutputFile& log, FileWarnings& warnings)
      : input_(input), library_(library), log_(log), warnings_(warnings) {}

  /// Walks the whole library; returns the number of author lists that changed.
  int Walk();

 private:
  bool SkipHeader(Line& line);
  bool RewriteAuthors(Line& line);
  void LogChange(AuthorForm form);
  void ReportAuthors(std::string_view line, std::size_t offset, AuthorForm form);

  LineStream& input_;
  OutputFile& library_;
  OutputFile& log_;
  FileWarnings& warnings_;
  std::string key_;  // of the entry that is being read
  std::string old_list_;
  std::string new_list_;
};

int AuthorCleaner::Walk() {
  int changed = 0;
  Line line;
  for (bool more = SkipHeader(line); more; more = ReadLine(input_, limits::kLongLine, line)) {
    if (IsKnownEntry(line)) key_ = CopyUntilChar(line.Text(), '{', ',');
    if (!IsAuthorLine(line.Text())) {
      library_.Write(line.Text());
    } else if (RewriteAuthors(line)) {
      ++changed;
    }
  }
  return changed;
}

/// Reads to the first line without '#'. Those before it are not copied; the first line of this
/// program's own header is one of them. False when all lines have a '#'.
bool AuthorCleaner::SkipHeader(Line& line) {
  while (ReadLine(input_, limits::kLongLine, line)) {
    if (line.Text().find('#') == std::string_view::npos) return true;
    const std::string_view text = Trim(line.Text(), kBlanks);
    if (IsFileHeader(text)) continue;
    warnings_.Report(
        WarningKind::kTextNotCopied, input_.Position() - 1, {},
        "a line with '#' at the beginning of the library was not copied: " + Quoted(text));
  }
  return false;
}

/// Writes the author line anew, whatever it looked like; true when the list changed. What follows
/// the value on its line is dropped.
bool AuthorCleaner::RewriteAuthors(Line& line) {
  const std::size_t offset = input_.Position() - 1;
  ReadFieldValue(line, input_, old_list_);
  ReplaceEscapedBlanks(old_list_);
  const AuthorForm form = ArrangeAuthorList(old_list_, new_list_);
  const bool changed = new_list_ != old_list_;
  if (warnings_.Wanted()) ReportAuthors(line.Text(), offset, form);
  if (changed) LogChange(form);
  library_.Write({"  author = {", new_list_, "},\n"});
  return changed;
}

/// Reports a list that is of no known form, names that may have become wrong, and what is lost
/// after the list.
void AuthorCleaner::ReportAuthors(std::string_view line, std::size_t offset, AuthorForm form) {
  const std::string reason = form == AuthorForm::kOther ? WhyNoKnownForm(old_list_) : std::string();
  if (!reason.empty()) {
    warnings_.Report(WarningKind::kAuthorsAsTheyWere, offset, key_,
                     "the author list was left unchanged: " + reason);
  }
  const bool is_plain = form == AuthorForm::kBraced || form == AuthorForm::kSingleWord;
  // A list that is not rearranged can still have changed: particles are written in lower case.
  const std::string doubt =
      is_plain ? WhatChanged(old_list_, new_list_) : WhyDoubtful(old_list_, new_list_);
  if (!doubt.empty()) {
    warnings_.Report(WarningKind::kDoubtfulName, offset, key_,
                     "check the new author list: " + doubt);
  }
  if (GoesOnUnread(line)) {
    warnings_.Report(WarningKind::kTornValue, offset, key_,
                     "only the first line of 'author' was replaced, so that BibTeX cannot read the "
                     "rest of the entry; put the list in braces");
  }
  const std::string_view lost = TextAfterValue(line);
  if (lost.empty()) return;
  if (OpenBraces(lost) > 0) {
    warnings_.Report(WarningKind::kTornValue, offset, key_,
                     "a value that begins after the authors was cut off and its next lines remain: "
                     "BibTeX cannot read the rest of the entry");
  }
  warnings_.Report(WarningKind::kTextLost, offset, key_,
                   "what follows the authors was lost: " + Quoted(lost));
}

void AuthorCleaner::LogChange(AuthorForm form) {
  log_.Write("Function flags:");
  for (int flag = 1; flag <= kAuthorForms; ++flag) {
    log_.Write(flag == static_cast<int>(form) ? " 1" : " 0");
  }
  log_.Write({"\nAuthor names arrangened for entry '", key_, "':\n"});  // sic
  log_.Write({"    Old author list: ", old_list_, "\n"});
  log_.Write({"    New author list: ", new_list_, "\n\n"});
}

void WriteSummary(OutputFile& log, int changed, const std::string& input,
                  const std::string& library) {
  log.Write({"\n\n\nThe author list of ", std::to_string(changed),
             " BibTeX entries from the BibTeX file\n    '", input, "'\n"});
  log.Write("were put into the correct BibTeX structure. ");
  log.Write({"The new BibTeX file is stored in\n    '", library, "'."});
}

}  // namespace

int RunCleanAuthors(const RunContext& run) {
  if (run.first_path.empty()) return Fail(run, kNoLibrary);
  std::optional<LineStream> input = run.files.OpenLines(run.first_path, ReadMode::kRead);
  if (!input) return Fail(run, kNotOpened, kInputNotOpened);

  const auto log = CreateWithHeader(run, run.first_path, Output::kAuthorLog);
  if (!log) return Fail(run, kLogNotCreated);
  const std::string path = OutputPath(run.first_path, Output::kAuthorLibrary, run.output_directory);
  run.reporter.Print(path + " " + run.first_path + "\n");
  const auto library = CreateWithHeader(run, run.first_path, Output::kAuthorLibrary);
  if (!library) return Fail(run, std::string(kLibraryNotCreated).append(path).append(" !"));

  FileWarnings warnings = WarningsOf(run, run.first_path, *input);
  constexpr std::array kReadTags{std::string_view("author")};
  const NameMatcher tags(kReadTags);
  NamedKeys keys(input->Bytes(), [](std::string_view entry) { return CountByte(entry, '\n'); });
  ScanLibrary(input->Bytes(),
              {.line_limit = limits::kLongLine,
               .read_tags = &tags,
               .stray_tags = &tags,
               .on_entry = [&](const EntryHead& head) { keys.Take(head); }},
              warnings);
  WarnOfLargeOutput(run, log->Path(), keys.Bytes(), kLongKeys);
  const int changed = AuthorCleaner(*input, *library, *log, warnings).Walk();
  WriteSummary(*log, changed, run.first_path, library->Path());
  return CloseOutputs(run, {library.get(), log.get()}) ? kSucceeded : kFailed;
}

}  // namespace tarvel
