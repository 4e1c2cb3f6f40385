// SPDX-License-Identifier: MIT
// Prepare: brings any library that BibTeX reads into the form that all operations read right.
#include "ops/prepare/prepare.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <utility>

#include "app/texts.h"
#include "ops/exempt_tags.h"
#include "ops/prepare/bib_reader.h"
#include "ops/prepare/crossrefs.h"
#include "ops/prepare/entry_former.h"
#include "ops/prepare/guards.h"
#include "ops/prepare/letters.h"
#include "ops/prepare/tag_lines.h"
#include "ops/prepare/tag_words.h"

namespace tarvel {

namespace {

constexpr std::string_view kNoLibrary = "Function Prepare()_1 => BibTeX file does not exist?";
constexpr std::string_view kLogNotCreated =
    "Function Prepare()_4 => Could not create the log file?";
constexpr std::string_view kLibraryNotCreated =
    "Function Prepare()_5 => Could not create a new BibTeX file?";

// The warnings about parents; empty: none. ORDER: CrossReferences::Parent
constexpr std::array<std::string_view, 6> kParentTexts{
    "",
    "",
    "no entry has the key that its 'crossref' gives",
    "its 'crossref' names the entry itself",
    "its chain of parents is too long, or circular",
    "some tags of its parents would make the library too long"};

constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";
constexpr std::size_t kLongestKey = 900;
/// The size of the pieces in which a library is written: they stay in the processor's cache.
constexpr std::size_t kPiece = std::size_t{1} << 17;

/// The text without the headers of files that this program wrote.
std::string_view WithoutHeaders(std::string_view text) {
  const std::string_view header = Trim(BibFileHeader, kBlanks);
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  text = Trim(text, kBlanks);
  while (text.starts_with(header)) {
    text.remove_prefix(header.size());
    text = Trim(text, kBlanks);
  }
  return text;
}

/// One pass over a library.
class Preparer {
 public:
  Preparer(std::string_view bytes, const PrepareOptions& options,
           const std::function<void(const PrepareWarning&)>& warn, const PreparedWriters& writers)
      : bytes_(bytes),
        reader_(bytes, strings_),
        crossrefs_(bytes),
        log_(bytes, warn, writers.log),
        former_(log_, crossrefs_, options.keep_all),
        write_library_(writers.library),
        front_end_(EndOfFrontTexts(bytes)) {}

  Prepared Run();

 private:
  void PassText(std::size_t end);
  void TakeItem();
  void TakeEntry();
  void TakeString();
  void TakePreamble();
  void ReportFault();
  void ReportParent(CrossReferences::Parent parent);
  void ReportKey();
  void WriteEntry();
  std::string TakeFront();
  void WritePiece();

  std::string_view bytes_;
  BibStrings strings_;
  BibReader reader_;
  CrossReferences crossrefs_;
  PrepareLog log_;
  EntryFormer former_;
  BibItem item_;
  std::size_t passed_ = 0;                  // up to where all is written or logged
  std::optional<std::size_t> unread_from_;  // where an item begins that could not be read
  std::string preambles_;
  std::string unseen_;  // entries that no operation sees
  std::function<void(std::string_view)> write_library_;
  std::size_t front_end_;  // after this offset nothing begins that stands in front
  Prepared prepared_;
};

Prepared Preparer::Run() {
  std::string& library = prepared_.library;
  library.reserve(std::min(front_end_ + 2 * kPiece, bytes_.size()));
  while (reader_.Next(item_)) {
    PassText(item_.begin);
    TakeItem();
    passed_ = item_.end;
  }
  PassText(bytes_.size());
  library.insert(0, TakeFront());
  prepared_.log = std::move(log_.Text());
  prepared_.left_out = log_.LeftOut();
  return std::move(prepared_);
}

/// Logs what stands between two items; after one that could not be read, all from its beginning.
void Preparer::PassText(std::size_t end) {
  if (unread_from_) {
    const std::string_view lines = bytes_.substr(*unread_from_, end - *unread_from_);
    log_.SayText("this could not be read to its end", *unread_from_, Trim(lines, kBlanks));
    unread_from_.reset();
    return;
  }
  const std::string_view text = WithoutHeaders(bytes_.substr(passed_, end - passed_));
  if (text.empty()) return;
  const auto offset = static_cast<std::size_t>(text.data() - bytes_.data());
  log_.SayText("text outside entries was left out", offset, text);
  log_.Warn(WarningKind::kTextNotCopied, offset,
            "text outside entries was not copied: " +
                Quoted(Trim(text.substr(0, text.find('\n')), kBlanks)));
}

void Preparer::TakeItem() {
  log_.StartEntry(item_.key, item_.begin);
  if (item_.kind == BibItem::Kind::kEntry) TakeEntry();
  if (item_.kind == BibItem::Kind::kString) TakeString();
  if (item_.kind == BibItem::Kind::kPreamble) TakePreamble();
  for (const std::string_view name : item_.undefined) {
    log_.Warn(WarningKind::kUndefinedString, item_.begin,
              "the string " + Quoted(name) +
                  " is not defined before this line: its name is used as the value");
  }
  ReportFault();
  log_.EndEntry();
}

void Preparer::ReportFault() {
  if (item_.fault.empty()) return;
  ++prepared_.unread;
  log_.Warn(WarningKind::kUnreadText, item_.fault_offset, item_.fault + "; the text is in the log");
  unread_from_ = item_.begin;
}

void Preparer::TakeString() {
  if (item_.tags.empty()) return;
  const BibTag& string = item_.tags.front();
  log_.SayText(
      "the string '" + std::string(string.name) + "' was replaced by its text where it is used",
      item_.begin, string.value);
}

/// A preamble may stand in front of all entries, where no operation looks for one, unless it would
/// be changed there.
void Preparer::TakePreamble() {
  if (item_.tags.empty()) return;
  const std::string_view text = item_.tags.front().value;
  const bool stands = text.find('@') == std::string_view::npos &&
                      !FindHarm(text, FactsOf(text), kJournalBit).Any() &&
                      FitOf({}, text) != LineFit::kTooLong;
  if (stands) {
    AppendPreamble(preambles_, text);
    return;
  }
  log_.SayText("the preamble was left out", item_.begin, text);
  log_.Warn(WarningKind::kTextNotCopied, item_.begin,
            "the preamble was left out, as operations would change it; it is in the log");
}

void Preparer::TakeEntry() {
  if (!item_.IsWritten()) {
    if (item_.fault.empty()) item_.fault_offset = item_.begin;
    if (item_.fault.empty()) item_.fault = "the key holds a \"}\"";
    return;
  }
  const std::size_t own = item_.tags.size();
  ReportParent(crossrefs_.Inherit(item_));
  former_.Form(item_, own);
  ReportKey();
  WriteEntry();
}

/// Warns of a "crossref" by which the entry does not get all tags, and of an "xdata".
void Preparer::ReportParent(CrossReferences::Parent parent) {
  const std::string_view text = kParentTexts[static_cast<std::size_t>(parent)];
  if (!text.empty()) log_.Warn(WarningKind::kMissingParent, item_.begin, text);
  for (const BibTag& tag : item_.tags) {
    if (!EqualNoCase(tag.name, "xdata")) continue;
    log_.Warn(
        WarningKind::kMissingParent, item_.begin,
        "its 'xdata' is not followed: copy the tags of " + Quoted(tag.value) + " into the entry");
  }
}

/// Warns of a key that makes operations misread the entry's first line: no form cures that.
void Preparer::ReportKey() {
  const std::string_view key = item_.key;
  std::string text;
  if (key.empty()) text = "the entry has no key: Clean tags drops it";
  if (key.find('@') != std::string_view::npos) {
    text =
        "its key contains an \"@\": no operation sees the entry, and it was moved to the beginning";
  } else if (FindHarm(key, FactsOf(key), kJournalBit).words != 0) {
    text =
        "its key contains 'journal': Journals would join the lines of the entry and leave its "
        "journal unchanged";
  } else if (FindExemptTag("{" + std::string(key))) {
    text = "with its key, the first line looks like a tag that Clean characters leaves out";
  } else if (key.size() > kLongestKey) {
    text = "its key is too long for a line";
  }
  if (!text.empty()) log_.Warn(WarningKind::kMisreadKey, item_.begin, text + "; change the key");
}

/// An entry that no operation sees is written before all others, or its tags would be read as
/// those of the one before.
void Preparer::WriteEntry() {
  const bool is_seen = item_.key.find('@') == std::string_view::npos;
  std::string& library = is_seen ? prepared_.library : unseen_;
  library.append("@").append(former_.Type()).append("{").append(item_.key).append(",\n");
  for (const FormedTag& tag : former_.Tags()) AppendTag(library, *tag.known, tag.value);
  if (!former_.Tags().empty()) library.erase(library.size() - 2, 1);  // the comma after the last
  library.append("}\n\n");
  ++prepared_.entries;
  WritePiece();
}

/// What stands before all entries that operations see; once.
std::string Preparer::TakeFront() {
  if (!preambles_.empty()) preambles_ += "\n";
  return std::exchange(preambles_, {}).append(std::exchange(unseen_, {}));
}

void Preparer::WritePiece() {
  std::string& library = prepared_.library;
  if (library.size() < kPiece || !write_library_ || item_.begin <= front_end_) return;
  write_library_(TakeFront());
  write_library_(library);
  library.clear();
}

/// A new file, created when there is something to write: a library without an entry gets none.
class NewFile {
 public:
  NewFile(const RunContext& run, std::string path) : run_(run), path_(std::move(path)) {}

  void Write(std::string_view text) {
    if (!is_created_) Create();
    if (file_) file_->Write(text);
  }
  /// Null when it could not be created.
  OutputFile* File() { return file_.get(); }

 private:
  void Create() {
    is_created_ = true;
    file_ = CreateOrReport(run_, run_.first_path, path_, CreateMode::kWrite);
    if (file_) file_->Write(HeaderOf(file_->Path()));
  }

  const RunContext& run_;
  std::string path_;
  std::unique_ptr<OutputFile> file_;
  bool is_created_ = false;
};

void WriteSummary(OutputFile& log, const Prepared& prepared, const std::string& input,
                  const std::string& library) {
  log.Write({"\n\n\n", std::to_string(prepared.entries),
             " BibTeX entries from the BibTeX file\n    '", input,
             "'\nwere rewritten in the form that all operations read.\nTags that were left out: ",
             std::to_string(prepared.left_out),
             ". Texts that could not be read: ", std::to_string(prepared.unread),
             ".\nThe new BibTeX file is stored in\n    '", library, "'."});
}

}  // namespace

Prepared PrepareLibrary(std::string_view bytes, const PrepareOptions& options,
                        const std::function<void(const PrepareWarning&)>& warn,
                        const PreparedWriters& writers) {
  return Preparer(bytes, options, warn, writers).Run();
}

std::string PreparedPath(const std::string& library, const std::string& directory) {
  return OutputPath(library, "_prepared.bib", directory);
}

std::string PreparedLogPath(const std::string& library, const std::string& directory) {
  return OutputPath(library, "_prepared.log", directory);
}

int RunPrepare(const RunContext& run, const PrepareOptions& options) {
  if (run.first_path.empty()) return Fail(run, kNoLibrary);
  std::optional<LineStream> input = run.files.OpenLines(run.first_path, ReadMode::kRead);
  const std::string name = EscapeControls("'" + run.first_path + "'");
  if (!input)
    return Fail(run, "Could not read the library " + name + ReasonNotRead(run.first_path));
  FileWarnings warnings = WarningsOf(run, run.first_path, *input);
  const auto warn = [&](const PrepareWarning& warning) {
    warnings.Report(warning.kind, warning.offset, warning.key, warning.text);
  };
  NewFile log(run, PreparedLogPath(run.first_path, run.output_directory));
  NewFile library(run, PreparedPath(run.first_path, run.output_directory));
  const Prepared prepared =
      PrepareLibrary(input->Bytes(), options, warn,
                     {.library = [&library](std::string_view text) { library.Write(text); },
                      .log = [&log](std::string_view text) { log.Write(text); }});
  if (prepared.entries == 0 && prepared.unread == 0) {
    WarnOfUtf16(run.reporter, run.first_path, input->Bytes());
    return Fail(run, "There is no BibTeX entry in the file " + name);
  }

  log.Write(prepared.log);
  if (!log.File()) return Fail(run, kLogNotCreated);
  library.Write(prepared.library);
  if (!library.File()) return Fail(run, kLibraryNotCreated);
  WriteSummary(*log.File(), prepared, run.first_path, library.File()->Path());
  return CloseOutputs(run, {library.File(), log.File()}) ? kSucceeded : kFailed;
}

}  // namespace tarvel
