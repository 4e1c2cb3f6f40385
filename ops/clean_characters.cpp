// SPDX-License-Identifier: MIT
// Clean characters: writes a library anew in which '?' stands for every byte that is not printable
// ASCII, a tab or part of a line break, and logs where those bytes stood.
#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/byte_finder.h"
#include "core/text_primitives.h"
#include "core/utf8.h"
#include "ops/exempt_tags.h"
#include "ops/large_outputs.h"
#include "ops/operations.h"
#include "warnings/library_scan.h"
#include "warnings/line_tags.h"
#include "warnings/tally.h"

namespace tarvel {

namespace {

constexpr std::string_view kJabRefMarker = "@comment{jabref";

constexpr char kDelete = 127;

/// What the log says of a bad byte, after "could be found.".
std::string_view KindOf(signed char code) {
  if (code == kDelete) return "";
  return code < 0 ? " <- negative value (!)" : " <- command (!)";
}

/// What the log says after the column of a bad byte.
std::string NoteOf(char byte) {
  const auto code = static_cast<signed char>(byte);
  std::string note = "\n   character ";
  note.append(std::to_string(code)).append(" (--").append(1, byte).append("--) could be found.");
  return note.append(KindOf(code)).append("\n\n");
}

/// What follows the key on the first line of an entry; another line as it is.
std::string_view AfterHead(std::string_view line) {
  if (!Trim(line, " \t\xEF\xBB\xBF").starts_with('@')) return line;
  return line.substr(std::min(line.find(','), line.size()));
}

/// Whether the entry lacks a comma, or has one too many, when the line is left out. `rest` is what
/// follows it.
bool TearsComma(std::string_view line, std::string_view rest) {
  line = Trim(line, kBlanks);
  const std::string_view next = rest.substr(std::min(rest.find_first_not_of(kBlanks), rest.size()));
  const bool is_last = next.empty() || next.front() == '}' || next.front() == ')';
  const bool leads = line.starts_with(',');
  const bool ends = line.ends_with(',');
  if (leads) return ends && !is_last;
  return !ends && next.starts_with(',');
}

/// The name of a code point, as in "U+00FC".
std::string NameOf(char32_t code) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string name = "U+";
  for (unsigned shift = code > 0xFFFFF ? 20 : code > 0xFFFF ? 16 : 12;; shift -= 4) {
    name += kDigits[code >> shift & 0xFU];
    if (shift == 0) return name;
  }
}

/// How many bytes of the text are replaced.
std::size_t CountBad(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), OddFinder::Holds));
}

/// One pass over a library.
class CharacterCleaner {
 public:
  CharacterCleaner(LineStream& input, OutputFile& library, OutputFile& log, FileWarnings& warnings)
      : input_(input), odd_(input.Bytes()), library_(library), log_(log), warnings_(warnings) {}

  /// REQUIRES: the input is in memory.
  void Walk();
  int BadBytes() const { return bad_bytes_; }

 private:
  void ReplaceBadBytes(std::string_view line);
  void LogBadByte(char byte, std::size_t column);
  void NoteLeftOut(std::string_view line, std::string_view tag);
  void CountCharacter(std::string_view text);
  void ReportFound();

  LineStream& input_;
  OddFinder odd_;
  std::size_t offset_ = 0;  // of the line that is being read
  OutputFile& library_;
  OutputFile& log_;
  FileWarnings& warnings_;
  Tally left_out_;  // the names of the tags whose lines were left out
  static constexpr std::size_t kCodesOfPage = 4096;
  std::map<std::string, Occurrences> characters_;
  std::vector<std::vector<Occurrences*>> by_code_{0x110000 / kCodesOfPage};  // to `characters_`
  std::string bibitem_;
  std::string log_line_;                // what the log says of all bad bytes of a line
  std::array<std::string, 256> notes_;  // of the bytes that were met
  int line_number_ = 0;
  int bad_bytes_ = 0;
};

void CharacterCleaner::Walk() {
  while (const auto read = input_.ReadLine(limits::kLongLine)) {
    offset_ = input_.Position() - read->size();
    ++line_number_;
    Line line(*read);
    if (const auto tag = FindExemptTag(line.Text())) {
      if (warnings_.Wanted()) NoteLeftOut(line.Text(), tag->name);
      continue;
    }
    const bool has_at = read->find('@') != std::string_view::npos;
    if (has_at && (IsKnownEntry(line) || ContainsNoCase(line.Text(), kJabRefMarker))) {
      bibitem_ = CopyUntilChar(line.Text(), '{', ',');
    }
    if (odd_.Find(offset_, input_.Position()) == input_.Position()) {
      library_.Write(line.Text());
    } else {
      ReplaceBadBytes(line.Text());
    }
  }
  ReportFound();
}

/// Writes the line at `offset_`, of which words may have become upper case.
void CharacterCleaner::ReplaceBadBytes(std::string_view line) {
  log_line_.assign("In entry '").append(bibitem_).append("', in line ");
  log_line_.append(std::to_string(line_number_)).append(" and row ");
  std::size_t copied = 0;
  const std::size_t end = offset_ + line.size();
  for (std::size_t bad = odd_.Find(offset_, end); bad < end; bad = odd_.Find(bad + 1, end)) {
    const std::size_t at = bad - offset_;
    if (warnings_.Wanted()) CountCharacter(line.substr(at));
    LogBadByte(line[at], at + 1);
    library_.Write({line.substr(copied, at - copied), "?"});
    copied = at + 1;
  }
  library_.Write(line.substr(copied));
}

/// Counts the character that the text begins with; a control and a byte inside a character are
/// none.
void CharacterCleaner::CountCharacter(std::string_view text) {
  const Utf8Character character = DecodeUtf8(text);
  if (character.size < 2) return;
  std::vector<Occurrences*>& page = by_code_[character.code / kCodesOfPage];
  page.resize(kCodesOfPage);
  Occurrences*& known = page[character.code % kCodesOfPage];
  if (!known) known = &characters_[std::string(text.substr(0, character.size))];
  known->Add(offset_);
}

void CharacterCleaner::ReportFound() {
  for (const auto& [character, found] : characters_) {
    warnings_.Report(WarningKind::kCharacter, found.first, {},
                     NameOf(DecodeUtf8(character).code) + " " + character + " became '" +
                         std::string(character.size(), '?') +
                         "', times: " + std::to_string(found.count));
  }
  for (const auto& [tag, found] : left_out_.ByCount()) {
    warnings_.Report(WarningKind::kLineLeftOut, found.first, {},
                     "lines with the tag " + Quoted(tag) +
                         " were left out, times: " + std::to_string(found.count));
  }
}

/// Counts a line that is left out for the tag, and reports what else goes with it.
void CharacterCleaner::NoteLeftOut(std::string_view line, std::string_view tag) {
  const std::string_view name = TagNameOf(line);
  const bool is_alone = !name.empty() && line.find('=') == line.rfind('=');
  const std::vector<LineTag> tags = is_alone ? std::vector<LineTag>() : TagsOf(AfterHead(line));
  std::string_view shown = is_alone ? name : tag;
  for (const LineTag& other : tags) {
    if (EqualNoCase(other.name, tag)) shown = other.name;  // as it is spelt there
  }
  left_out_.Add(shown, offset_);
  const std::ptrdiff_t open = OpenBraces(line);
  if (open > 0) {
    warnings_.Report(
        WarningKind::kTornValue, offset_, bibitem_,
        {"the line of ", Quoted(shown), " was left out, but the next lines of its value remain"});
  } else if (open < 0) {
    warnings_.Report(
        WarningKind::kTornValue, offset_, bibitem_,
        {"the line of ", Quoted(shown), " was left out together with a '}' that ends the entry"});
  }
  if (open == 0 && TearsComma(line, input_.Bytes().substr(input_.Position()))) {
    warnings_.Report(WarningKind::kTornValue, offset_, bibitem_,
                     {"the line of ", Quoted(shown),
                      " was left out with no comma, or with two: BibTeX can no longer read the "
                      "entry"});
  }
  for (const LineTag& other : tags) {
    if (EqualNoCase(other.name, shown)) continue;
    warnings_.Report(WarningKind::kTextLost, offset_, bibitem_,
                     {"the tag ", Quoted(other.name), " shares a line with ", Quoted(shown),
                      " and was left out with it"});
  }
}

void CharacterCleaner::LogBadByte(char byte, std::size_t column) {
  ++bad_bytes_;
  std::string& note = notes_[static_cast<unsigned char>(byte)];
  if (note.empty()) note = NoteOf(byte);
  log_.Write({log_line_, std::to_string(column), note});
}

int FailInBox(const RunContext& run, std::string_view message, std::string_view caption,
              int result) {
  run.reporter.Box(message, caption);
  return result;
}

}  // namespace

int RunCleanCharacters(const RunContext& run) {
  if (run.first_path.empty()) return kInputNotOpened;
  std::optional<LineStream> input = run.files.OpenLines(run.first_path, ReadMode::kRead);
  if (!input) {
    return FailInBox(run, "Could not open the BibTeX file!", "BibTeX file?", kInputNotOpened);
  }
  const auto log = CreateWithHeader(run, run.first_path, Output::kCharacterLog);
  if (!log) return FailInBox(run, "Could not open the log file!", "Log file?", kFailed);
  const std::string new_path =
      OutputPath(run.first_path, Output::kCharacterLibrary, run.output_directory);
  const auto library = CreateWithHeader(run, run.first_path, Output::kCharacterLibrary);
  if (!library) {
    return FailInBox(run, "Could not open " + new_path + " !", "New BibTeX file?", kFailed);
  }

  FileWarnings warnings = WarningsOf(run, run.first_path, *input);
  NamedKeys keys(input->Bytes(), CountBad);
  ScanLibrary(input->Bytes(),
              {.line_limit = limits::kLongLine,
               .on_entry = [&](const EntryHead& head) { keys.Take(head); }},
              warnings);
  WarnOfLargeOutput(run, log->Path(), keys.Bytes(), kLongKeys);
  CharacterCleaner cleaner(*input, *library, *log, warnings);
  cleaner.Walk();
  log->Write({"\n\n\nAbout ", std::to_string(cleaner.BadBytes()),
              " bad characters in the BibTeX file\n    '", run.first_path,
              "'\ncould be found. The new BibTeX file is stored in\n    '", new_path,
              "'.\nThe bad characters were replaced by a '?'"});
  return CloseOutputs(run, {log.get(), library.get()}) ? kSucceeded : kFailed;
}

}  // namespace tarvel
