// SPDX-License-Identifier: MIT
#include "gui/input_checks.h"

#include <string_view>
#include <utility>

#include "app/globals.h"
#include "app/operations.h"
#include "app/reporter.h"
#include "core/text_primitives.h"
#include "warnings/warnings.h"

namespace tarvel {

namespace {

struct FileCheck {
  const PathBuffer& path;
  bool (*settles)(Line& line);  // whether a line shows that the file is of the right kind
  std::string_view empty_caption, empty_message;
  std::string_view other_caption, not_opened_message, wrong_kind_message;
};

bool Contains(Line& line, std::string_view marker) {
  return line.Text().find(marker) != std::string_view::npos;
}

bool IsEntryLine(Line& line) { return IsKnownEntry(line); }

bool IsDocumentLine(Line& line) {
  return Contains(line, "begin{document}") || Contains(line, "end{document}");
}

bool IsJournalLine(Line& line) { return Contains(line, "******* Journal-start *******"); }

const FileCheck kFirstLibrary{
    .path = FirstFilePath,
    .settles = IsEntryLine,
    .empty_caption = "Load BibTeX file",
    .empty_message = "Please, load a BibTeX file (first file)",
    .other_caption = "BibTeX file ?",
    .not_opened_message = "Could not open the BibTeX file (first file)!",
    .wrong_kind_message = "The first file does not seem to be a BibTeX file!"};
const FileCheck kSecondLibrary{
    .path = SecondFilePath,
    .settles = IsEntryLine,
    .empty_caption = "Load BibTeX file",
    .empty_message = "Please, load a BibTeX file (second file)",
    .other_caption = "BibTeX file ?",
    .not_opened_message = "Could not open the BibTeX file (second file)!",
    .wrong_kind_message = "The second file does not seem to be a BibTeX file!"};
const FileCheck kDocument{.path = FirstFilePath,
                          .settles = IsDocumentLine,
                          .empty_caption = "Load LaTeX file",
                          .empty_message = "Please, load a LaTeX file (first file)",
                          .other_caption = "LaTeX file ?",
                          .not_opened_message = "Could not open the LaTeX file (first file)!",
                          .wrong_kind_message = "The first file does not seem to be a LaTeX file!"};
const FileCheck kJournalList{
    .path = SecondFilePath,
    .settles = IsJournalLine,
    .empty_caption = "Load Tarvel file",
    .empty_message = "Please, load a Tarvel file (second file)",
    .other_caption = "Tarvel file ?",
    .not_opened_message = "Could not open the Tarvel file (second file)!",
    .wrong_kind_message = "The second file does not seem to be a Tarvel file!"};

bool Stop(std::string_view message, std::string_view caption) {
  ShowBox(message, caption);
  return false;
}

bool AnyLineSettles(LineStream& lines, bool (*settles)(Line&)) {
  for (Line line; ReadLine(lines, limits::kShortLine, line);) {
    if (settles(line)) return true;
  }
  return false;
}

bool Passes(const FileCheck& check, FileSystem& files) {
  if (check.path.Empty()) return Stop(check.empty_message, check.empty_caption);
  auto source = files.OpenSource(check.path.Get(), ReadMode::kRead);
  if (!source) return Stop(check.not_opened_message, check.other_caption);
  LineStream lines(std::move(source));
  if (AnyLineSettles(lines, check.settles)) return true;
  WarnOfUtf16(GlobalReporter(), check.path.Get(), lines.Bytes());
  return Stop(check.wrong_kind_message, check.other_caption);
}

bool PassesAll(Needs needs, FileSystem& files) {
  switch (needs) {
    case Needs::kLibrary:
      return Passes(kFirstLibrary, files);
    case Needs::kTwoLibraries:
      return Passes(kFirstLibrary, files) && Passes(kSecondLibrary, files);
    case Needs::kDocumentAndLibrary:
      return Passes(kDocument, files) && Passes(kSecondLibrary, files);
    case Needs::kLibraryAndJournalList:
      return Passes(kFirstLibrary, files) &&
             (GlobalSettings.UseOwnJournalFile == 0 || Passes(kJournalList, files));
  }
  return true;
}

}  // namespace

int CheckInputFiles(int code) { return CheckInputFiles(code, GlobalFiles()); }

int CheckInputFiles(int code, FileSystem& files) {
  const Operation* operation = FindOperation(code);
  return !operation || PassesAll(operation->needs, files) ? 1 : 0;
}

}  // namespace tarvel
