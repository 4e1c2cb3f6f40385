// SPDX-License-Identifier: MIT
#include "ops/journals/journal_lines.h"

#include <algorithm>
#include <cstddef>
#include <string>

#include "core/text_primitives.h"
#include "core/value_reader.h"
#include "warnings/tally.h"

namespace tarvel {

namespace {

/// Whether the text begins with `letters`, given in upper case, blanks and tabs passed over.
bool BeginsIgnoringBlanks(std::string_view text, std::string_view letters) {
  std::size_t at = 0;
  for (const char letter : letters) {
    while (at < text.size() && IsBlankOrTab(text[at])) ++at;
    if (at == text.size() || ToUpper(text[at]) != letter) return false;
    ++at;
  }
  return true;
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
        warnings_(warnings) {}

  void Walk();

 private:
  void HandleJournalLine(Line& line);
  void ReportCutLine(std::string_view line);
  void CountUnknown(std::string_view line, std::size_t place);
  void ReportUnknown();
  void Rename(Line& line, const Journal& journal, std::string_view name);

  LineStream& input_;
  OutputFile& library_;
  OutputFile& log_;
  const JournalTable& journals_;
  const Settings& settings_;
  FileWarnings& warnings_;
  Tally unknown_;  // names that are not in the list
  std::string bibitem_;
  std::string value_;
  int changes_ = 0;
};

void JournalRenamer::Walk() {
  for (Line line; ReadLine(input_, limits::kPairLine, line);) {
    if (IsKnownEntry(line)) bibitem_ = CopyUntilChar(line.Text(), '{', ',');
    if (MentionsJournal(line.Text())) {
      HandleJournalLine(line);
    } else {
      library_.Write(line.Text());
    }
  }
  ReportUnknown();
  log_.Write({"\n\n", std::to_string(changes_), " changes have been made in total. "});
}

void JournalRenamer::HandleJournalLine(Line& line) {
  const std::size_t place = input_.Position() - 1;
  ReportCutLine(line.Text());
  BraceJournalValue(line);
  ReadFieldValue(line, input_, value_);  // without a value, or a whole one, what there is counts
  const auto match = journals_.FindJournal(value_);
  if (!match) {
    CountUnknown(line.Text(), place);
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

/// Reports a line without braces that is not "journal = value," alone: it is cut at its first ",".
void JournalRenamer::ReportCutLine(std::string_view line) {
  if (!warnings_.Wanted() || line.find_first_of("{}") != std::string_view::npos) return;
  const std::size_t comma = std::min(line.find(','), line.size());
  const bool is_tag = MentionsJournal(line.substr(0, std::min(line.find('='), comma)));
  const std::string_view lost = line.substr(std::min(comma + 1, line.size()));
  const bool loses = lost.find_first_not_of(kBlanks) != std::string_view::npos;
  if (is_tag && line.find('=') < comma && !loses) return;
  warnings_.Report(WarningKind::kLineCut, input_.Position() - 1, bibitem_,
                   std::string("a line that mentions a journal was cut and got a \"}\": '")
                       .append(line.substr(0, line.find('\n')))
                       .append("'"));
}

void JournalRenamer::CountUnknown(std::string_view line, std::size_t place) {
  if (!warnings_.Wanted() || value_.empty()) return;
  if (!MentionsJournal(line.substr(0, line.find('=')))) return;
  unknown_.Add(value_, place);
}

void JournalRenamer::ReportUnknown() {
  for (const auto& [name, found] : unknown_.ByCount()) {
    warnings_.Report(WarningKind::kUnknownJournal, found.first, {},
                     std::string("the journal '")
                         .append(name)
                         .append("' is not in the list, times: ")
                         .append(std::to_string(found.count)));
  }
}

/// Writes the line with `name` in the place of its value. A value over several lines does not stand
/// in the joined line as it was read, so it stays there; it is logged all the same.
void JournalRenamer::Rename(Line& line, const Journal& journal, std::string_view name) {
  std::string& text = line.Edit();
  std::replace(text.begin(), text.end(), '\t', ' ');
  ReplaceString(text, value_, name);
  library_.Write(text);
  if (value_ == name) return;
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
  if (line.Text().find_first_of("{}") != std::string_view::npos) return;
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
