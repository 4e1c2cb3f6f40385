// SPDX-License-Identifier: MIT
#include "ops/journals/journal_lines.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string>

#include "core/text_primitives.h"
#include "core/value_reader.h"
#include "warnings/line_tags.h"
#include "warnings/tally.h"

namespace tarvel {

namespace {

/// Whether the text begins with `letters`, given in upper case, blanks and tabs skipped.
bool BeginsIgnoringBlanks(std::string_view text, std::string_view letters) {
  std::size_t at = 0;
  for (const char letter : letters) {
    while (at < text.size() && IsBlankOrTab(text[at])) ++at;
    if (at == text.size() || ToUpper(text[at]) != letter) return false;
    ++at;
  }
  return true;
}

bool HoldsBrace(std::string_view line) {
  return line.find('{') != std::string_view::npos || line.find('}') != std::string_view::npos;
}

/// What a head and the word "journal" begin with.
constexpr std::string_view kInitials = "@jJ";

bool IsAscii(std::string_view text) {
  return std::none_of(text.begin(), text.end(),
                      [](char byte) { return static_cast<signed char>(byte) < 0; });
}

/// One pass over a library.
class JournalRenamer {
 public:
  JournalRenamer(LineStream& input, OutputFile& library, OutputFile& log,
                 const JournalTable& journals, const Settings& settings, FileWarnings& warnings)
      : input_(input),
        library_(library),
        log_(log),
        journals_(journals),
        settings_(settings),
        warnings_(warnings) {
    for (std::size_t i = 0; i < kInitials.size(); ++i) initials_[i] = FindInitial(i);
  }

  void Walk();

 private:
  std::size_t FindInitial(std::size_t i) const;
  std::size_t NextInitial();
  void HandleJournalLine(Line& line);
  void ReportHead();
  void ReportBracing(std::string_view line);
  void ReportCutValue(std::string_view value, std::size_t offset, std::string_view text);
  void ReportJoined(std::size_t begin, std::size_t end);
  void ReportNonAscii(std::string_view name, std::size_t offset);
  void CountUnknown(std::string_view line, std::size_t offset);
  void ReportUnknown();
  void Rename(Line& line, const Journal& journal, std::string_view name);

  LineStream& input_;
  OutputFile& library_;
  OutputFile& log_;
  const JournalTable& journals_;
  const Settings& settings_;
  FileWarnings& warnings_;
  Tally unknown_;                                         // names that are not in the list
  std::array<std::size_t, kInitials.size()> initials_{};  // the next of each
  std::string bibitem_;
  std::string value_;
  int changes_ = 0;
  std::optional<bool> library_is_ascii_;
};

void JournalRenamer::Walk() {
  std::size_t copied = 0;  // the bytes that were read and written
  for (;; copied = input_.Position()) {
    const auto text = input_.ReadLineHolding(NextInitial(), limits::kPairLine);
    const std::size_t start = input_.Position() - (text ? text->size() : 0);
    library_.Write(input_.Bytes().substr(copied, start - copied));
    if (!text) break;
    Line line(*text);
    const bool is_head = IsKnownEntry(line);
    if (is_head) bibitem_ = CopyUntilChar(line.Text(), '{', ',');
    if (MentionsJournal(line.Text())) {
      if (is_head) ReportHead();
      HandleJournalLine(line);
    } else {
      library_.Write(line.Text());
    }
  }
  ReportUnknown();
  log_.Write({"\n\n", std::to_string(changes_), " changes have been made in total. "});
}

/// The next of one of `kInitials`, or the size of the input.
std::size_t JournalRenamer::FindInitial(std::size_t i) const {
  return std::min(input_.Bytes().find(kInitials[i], input_.Position()), input_.Bytes().size());
}

/// The next of all of them. Lines without one are copied as they are, many at once: most of a
/// library.
std::size_t JournalRenamer::NextInitial() {
  for (std::size_t i = 0; i < kInitials.size(); ++i) {
    if (initials_[i] < input_.Position()) initials_[i] = FindInitial(i);
  }
  return *std::min_element(initials_.begin(), initials_.end());
}

void JournalRenamer::HandleJournalLine(Line& line) {
  const std::size_t offset = input_.Position() - 1;
  ReportBracing(line.Text());
  BraceJournalValue(line);
  const std::size_t after_line = input_.Position();
  ReadFieldValue(line, input_, value_);  // without a value, or a whole one, what there is counts
  if (warnings_.Wanted()) ReportJoined(after_line, input_.Position());
  const auto match = journals_.FindJournal(value_);
  if (!match) {
    CountUnknown(line.Text(), offset);
    library_.Write(line.Text());
    return;
  }
  const Journal& journal = journals_.Journals()[match->index];
  if (settings_.JournalAbbreviated == 1) {
    Rename(line, journal, journal.abbreviation);
  } else if (settings_.JournalFullNames == 1) {
    Rename(line, journal, journal.full_name);
  }
}

/// Reports an entry's first line that mentions a journal: a value is read from it, with the lines
/// up to one that closes it.
void JournalRenamer::ReportHead() {
  const bool by_key = ContainsNoCase(bibitem_, "journal");
  warnings_.Report(
      WarningKind::kKeyAsTag, input_.Position() - 1, bibitem_,
      {"the first line mentions a journal and is taken for its line: the lines after "
       "it may be joined to it, and journals in them are not renamed; ",
       by_key ? "rename the key" : "put each tag on a line of its own, or prepare the library"});
}

/// Reports a line without braces that becomes one with braces: what it loses, and that a macro or
/// quotes become a part of the value.
void JournalRenamer::ReportBracing(std::string_view line) {
  if (!warnings_.Wanted() || HoldsBrace(line)) return;
  const std::size_t comma = std::min(line.find(','), line.size());
  const std::size_t equals = line.find('=');
  const bool is_tag = equals < comma && MentionsJournal(line.substr(0, equals));
  const std::string_view lost = line.substr(std::min(comma + 1, line.size()));
  const bool loses = lost.find_first_not_of(kBlanks) != std::string_view::npos;
  const std::size_t offset = input_.Position() - 1;
  const std::string text = Quoted(line.substr(0, line.find('\n')));
  if (!is_tag || loses) {
    warnings_.Report(WarningKind::kLineCut, offset, bibitem_,
                     "a line that mentions a journal was cut and got a \"}\": " + text);
  } else if (comma == line.size()) {
    warnings_.Report(WarningKind::kLineCut, offset, bibitem_,
                     "no comma ends the value of 'journal' on its line: the next lines, up to a "
                     "'}', became a part of it: " +
                         text);
  }
  if (!is_tag) return;
  const std::string_view value = Trim(line.substr(equals + 1, comma - equals - 1), kBlanks);
  const bool quoted = value.starts_with('"');
  if (!loses && comma < line.size()) ReportCutValue(value, offset, text);
  warnings_.Report(WarningKind::kBracedJournal, offset, bibitem_,
                   std::string(quoted ? "the quotes became a part of the value of "
                                      : "the macro's name became the value of ") +
                       Quoted(Trim(line.substr(0, equals), kBlanks)) + ": " + Quoted(value));
}

/// Reports a value without braces that goes on after the first comma, or after a '='.
void JournalRenamer::ReportCutValue(std::string_view value, std::size_t offset,
                                    std::string_view text) {
  if (value.find('=') != std::string_view::npos) {
    warnings_.Report(
        WarningKind::kLineCut, offset, bibitem_,
        {"the value of 'journal' holds a '=': it was cut there, and the next lines, up "
         "to a '}', became a part of it: ",
         text});
  } else if (value.starts_with('"') && (value.size() == 1 || value.back() != '"')) {
    warnings_.Report(WarningKind::kLineCut, offset, bibitem_,
                     {"the value of 'journal' was cut at its first comma; BibTeX cannot read what "
                      "follows: ",
                      text});
  }
}

/// Reports entries and other commands among the lines that a value took in, for want of a "}".
void JournalRenamer::ReportJoined(std::size_t begin, std::size_t end) {
  const std::string_view bytes = input_.Bytes();
  while (begin < end) {
    const std::string_view line = LineAt(bytes, begin);
    if (Trim(line, kBlanks).starts_with('@')) {
      std::string upper(line);
      const bool is_entry = IsKnownEntry(upper);
      warnings_.Report(WarningKind::kLineCut, begin,
                       is_entry ? CopyUntilChar(line, '{', ',') : std::string_view(),
                       "was joined to a line above that mentions a journal, as no \"}\" ends the "
                       "value there: BibTeX cannot read it");
    }
    begin += line.size() + 1;
  }
}

void JournalRenamer::CountUnknown(std::string_view line, std::size_t offset) {
  if (!warnings_.Wanted() || value_.empty()) return;
  if (!MentionsJournal(line.substr(0, line.find('=')))) return;
  unknown_.Add(value_, offset);
}

void JournalRenamer::ReportUnknown() {
  for (const auto& [name, found] : unknown_.ByCount()) {
    warnings_.Report(WarningKind::kUnknownJournal, found.first, {},
                     "the journal " + Quoted(name) +
                         " is not in the list, times: " + std::to_string(found.count));
  }
}

/// Reports a name with letters that are not ASCII when the library has none.
void JournalRenamer::ReportNonAscii(std::string_view name, std::size_t offset) {
  if (IsAscii(name)) return;
  if (!library_is_ascii_) library_is_ascii_ = IsAscii(input_.Bytes());
  if (!*library_is_ascii_) return;
  warnings_.Report(
      WarningKind::kNonAsciiName, offset, bibitem_,
      "the new name " + Quoted(name) + " has letters that are not ASCII; the library had none");
}

/// Writes the line with `name` in the place of its value. A value over several lines does not stand
/// in the joined line as it was read, so it stays there; it is logged all the same.
void JournalRenamer::Rename(Line& line, const Journal& journal, std::string_view name) {
  std::string& text = line.Edit();
  std::replace(text.begin(), text.end(), '\t', ' ');
  ReplaceString(text, value_, name);
  library_.Write(text);
  if (value_ == name) return;
  if (warnings_.Wanted()) ReportNonAscii(name, input_.Position() - 1);
  ++changes_;
  log_.Write({"Entry '", bibitem_, "':\nThe name of the Journal '", journal.full_name,
              "', which is named '", value_, "' in the BibTeX library,\nhas been renamed to: '",
              name, "'\n\n"});
}

}  // namespace

bool MentionsJournal(std::string_view line) {
  // A search for each case of the first letter: few lines hold either, and looking for one byte is
  // the fastest search there is.
  for (const char initial : {'j', 'J'}) {
    for (std::size_t at = line.find(initial); at != std::string_view::npos;
         at = line.find(initial, at + 1)) {
      if (BeginsIgnoringBlanks(line.substr(at + 1), "OURNAL")) return true;
    }
  }
  return false;
}

void BraceJournalValue(Line& line) {
  if (HoldsBrace(line.Text())) return;
  const std::string_view text = line.Text();
  std::string braced;
  for (const char byte : text.substr(0, text.find(','))) {
    braced += byte;
    if (byte == '=') braced += " {";
  }
  line.Edit() = braced.append("},\n");
}

void RenameJournals(LineStream& input, OutputFile& library, OutputFile& log,
                    const JournalTable& journals, const Settings& settings,
                    FileWarnings& warnings) {
  JournalRenamer(input, library, log, journals, settings, warnings).Walk();
}

}  // namespace tarvel
