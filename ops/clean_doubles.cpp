// SPDX-License-Identifier: MIT
// Clean doubles: writes a library anew in which every item stands once. An entry is compared with
// those already written, and the log explains each that is left out or gets a new key.
#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/text_primitives.h"
#include "ops/citations/key_map.h"
#include "ops/entries/doubles_log_size.h"
#include "ops/entries/entries_by_offset.h"
#include "ops/entries/entry_record.h"
#include "ops/entries/entry_warnings.h"
#include "ops/entries/group_rules.h"
#include "ops/entries/growing_library.h"
#include "ops/entries/kept_entries.h"
#include "ops/entries/library_follower.h"
#include "ops/entries/overlapping_reader.h"
#include "ops/large_outputs.h"
#include "ops/operations.h"
#include "warnings/library_scan.h"
#include "warnings/line_tags.h"
#include "warnings/repeated_keys.h"

namespace tarvel {

namespace {

constexpr std::string_view kNoLibrary =
    "Function Clean_double()_1 => LaTeX file does not exist?";  // sic
constexpr std::string_view kNotOpened =
    "Function Clean_double()_2 => Could not open the BibTeX file?";
constexpr std::string_view kLogNotCreated =
    "Function Clean_double()_3 => Could not open the log file!";
constexpr std::string_view kLibraryNotCreated =
    "Function Clean_double()_4 => Could not create the new BibTeX file!";

constexpr std::string_view kEmptyKeys = "There are empty bibitems!\n";

/// The first earlier entry that decides about an entry, and whether it does by its key.
struct Decision {
  const KeptEntry* by = nullptr;
  bool same_key = false;
};

/// The lines of an entry as they are written.
struct EntryCopy {
  std::string text;
  bool closed = false;     // it ends with a line that begins with "}", not with the input
  bool unchanged = false;  // all but its first line stands in the input as it does here
};

/// An entry of the new library, and where it begins in the input; offsets.
struct WrittenEntry {
  std::size_t head = 0;
  std::size_t end = 0;
  std::size_t source = 0;
};

/// An entry that can be found only under another key.
struct OtherKey {
  std::string old_key;
  std::string new_key;
  bool is_renamed = false;  // not a double of the entry of that key
};

/// Reads the library and writes the outputs of one run.
class DoubleCleaner {
 public:
  /// `append_renamed`: entries under new keys go to the end, not after those with the same key.
  DoubleCleaner(LineStream& input, GrowingLibrary& library, OutputFile& log, Warnings* warnings,
                FileWarnings& input_warnings, bool append_renamed)
      : input_(input),
        library_(library),
        follower_(library),
        log_(log),
        warnings_(warnings),
        input_warnings_(input_warnings),
        append_renamed_(append_renamed) {}

  /// Walks the whole input; false when it ends inside an entry.
  bool Walk();
  /// How many entries were left out or got a new key.
  int NotWritten() const { return not_written_; }

 private:
  Decision Decide(const TypeRule<DoublesRule>& rule, const ComparedValues& values) const;
  ComparedValues EarlierValues(const Decision& decision, const TypeGroup& group) const {
    return follower_.Entries().ValuesOf(*decision.by).ComparedValuesOf(group);
  }
  void LogSameKeys(const TypeRule<DoublesRule>& rule, const KeptEntry* last);
  void LogDouble(const DoublesRule& rule, const ComparedValues& values, const Decision& decision);
  void TakeEntry(std::size_t start);
  void CopyEntry(std::size_t start, bool rename);
  void Rename(Line& head);
  void AppendCopy();
  void InsertCopy(const KeptEntry* after);
  void ForgetFacts(std::size_t begin, std::size_t end);
  void ReportDropped(const Decision& decision, const TypeGroup& group, std::size_t start);
  void ReportAfterEntry(const LibraryRange& lines);
  void ReportPassed(std::string_view line, std::size_t start);
  void ReportEnd(std::size_t start);
  void ReportOverwritten(std::size_t begin, std::size_t end);
  void ReportOrphans();
  void ReportSameKeys();
  void MapKeys();

  LineStream& input_;
  GrowingLibrary& library_;
  LibraryFollower follower_;
  OutputFile& log_;
  Warnings* warnings_;
  FileWarnings& input_warnings_;
  const bool append_renamed_;
  std::size_t head_ = 0;  // where the entry begins that is being written
  OverlappingReader reader_{TagReader(kDoublesTags)};
  EntryCopy copy_;
  EntriesByOffset<WrittenEntry> written_;        // those that are still whole
  std::map<std::size_t, KeptEntryFacts> facts_;  // by offset: of entries that have doubles
  char rename_letter_ = 'a';
  std::vector<OtherKey> other_keys_;
  KeysAnyCase bad_keys_;                                       // of entries under new keys
  std::vector<std::pair<std::string, std::size_t>> children_;  // parents and heads of the entries
  std::size_t swallowed_ = 0;      // up to where entries within dropped ones are reported
  bool in_text_ = false;           // the line before was outside entries, and reported
  std::ptrdiff_t text_depth_ = 0;  // of the braces that are open there
  int not_written_ = 0;
};

bool DoubleCleaner::Walk() {
  // JabRef's "@comment{jabref" starts no entry: looking for one upper-cases the marker.
  std::size_t start = 0;
  for (Line line; ReadLine(input_, limits::kPairLine, line); start = input_.Position()) {
    if (!IsKnownEntry(line)) {
      ReportPassed(input_.Bytes().substr(start, line.Text().size()), start);
      continue;
    }
    in_text_ = false;
    if (reader_.Read(input_, line.Text()) == EntryLineEnd::kReadFailed) {
      ReportEnd(start);
      MapKeys();
      return false;
    }
    TakeEntry(start);
  }
  ReportOrphans();
  ReportSameKeys();
  MapKeys();
  return true;
}

/// Leaves the entry out or writes it: at the end, or under a new key after the entry that has the
/// same one.
void DoubleCleaner::TakeEntry(std::size_t start) {
  const TypeRule<DoublesRule> rule = DoublesRuleFor(reader_.Entry().type);
  const ComparedValues values =
      rule.rule ? ComparedValuesOf(rule.rule->group, reader_.Entry()) : ComparedValues();
  const Decision decision = Decide(rule, values);
  LogSameKeys(rule, decision.by);
  if (rule.rule && input_warnings_.Wanted()) {
    ReportMisread(MisreadValues(rule.rule->group, reader_.Entry(), input_.Bytes()),
                  reader_.Entry().key, input_warnings_);
  }
  if (!decision.by) {
    CopyEntry(start, false);
    AppendCopy();
    return;
  }
  const TypeGroup& group = rule.rule->group;
  const ComparedValues earlier = EarlierValues(decision, group);
  if (!decision.same_key || values == earlier) {
    LogDouble(*rule.rule, values, decision);
    ReportDropped(decision, group, start);
    other_keys_.push_back({reader_.Entry().key, std::string(decision.by->Key())});
    ++not_written_;
    return;
  }
  WriteFormat(log_, kDoublesConflictHeadline, {reader_.Entry().key, decision.by->Key()});
  WriteDetails(log_, group, values, earlier);
  CopyEntry(start, true);
  InsertCopy(append_renamed_ ? nullptr : decision.by);
}

/// Finds the first entry of the new library, in its order, that stops the search: one with the same
/// key and all compared tags, or one of the same type with equal tags.
Decision DoubleCleaner::Decide(const TypeRule<DoublesRule>& rule,
                               const ComparedValues& values) const {
  if (!rule.rule || !values.Complete()) return {};
  const KeptEntry* equal = follower_.Entries().FirstEqual(rule, values);
  if (reader_.Entry().key.empty()) return {equal, false};
  const KeptEntry* same = follower_.Entries().FirstComplete(reader_.Entry().key, *rule.rule);
  if (!same || (equal && equal->head < same->head)) return {equal, false};
  return {same, true};
}

/// Logs what is said of every entry with the same key that is met in the search, up to the last.
void DoubleCleaner::LogSameKeys(const TypeRule<DoublesRule>& rule, const KeptEntry* last) {
  if (!log_.IsKept()) return;  // this part can grow with the square of the library
  const bool notes_key = rule.rule && !rule.rule->same_key_note.empty();
  if (!reader_.Entry().key.empty() && !notes_key) return;
  const std::string_view format =
      reader_.Entry().key.empty() ? kEmptyKeys : rule.rule->same_key_note;
  const std::size_t after = last ? last->head + 1 : library_.Size();
  const std::size_t count = follower_.Entries().CountWithKey(reader_.Entry().key, after);
  for (std::size_t i = 0; i < count; ++i) {
    WriteFormat(log_, format, {reader_.Entry().key, reader_.Entry().key});
  }
}

void DoubleCleaner::LogDouble(const DoublesRule& rule, const ComparedValues& values,
                              const Decision& decision) {
  const std::string& key = reader_.Entry().key;
  const std::string_view earlier = decision.by->Key();
  WriteFormat(log_, decision.same_key ? kDoublesExactHeadline : rule.probable, {key, earlier});
  WriteDetails(log_, rule.group, values, EarlierValues(decision, rule.group));
  if (decision.same_key || rule.closing_keys == ClosingKeys::kNone) {
    log_.Write(kDoublesExactClosing);
  } else if (rule.closing_keys == ClosingKeys::kLaterThenEarlier) {
    WriteFormat(log_, rule.closing, {key, earlier});
  } else {
    WriteFormat(log_, rule.closing, {earlier, key});
  }
}

/// Copies the entry's lines from the input, which is then read on after them. An entry that was
/// read up to a later "}" line is copied up to the first one all the same.
void DoubleCleaner::CopyEntry(std::size_t start, bool rename) {
  copy_ = {std::move(copy_.text), false, true};
  copy_.text.clear();
  head_ = start;
  input_.SetPosition(start);
  Line line;
  while (!copy_.closed) {
    const auto piece = input_.ReadLine(limits::kPairLine);
    if (!piece) break;
    line.Set(*piece);
    IsKnownEntry(line);  // upper-cases the type word
    if (copy_.text.empty()) {
      if (rename) Rename(line);
    } else if (line.Text().data() != piece->data()) {
      copy_.unchanged = false;
    }
    copy_.text.append(line.Text());
    copy_.closed = line.Text().front() == '}';
  }
  if (!input_warnings_.Wanted()) return;
  if (const auto parent = ParentOf(copy_.text)) children_.emplace_back(*parent, start);
  if (!copy_.closed) return;
  ReportCutEntry(input_.Bytes(), {copy_.text, input_.Position()}, input_warnings_);
}

/// Gives the entry a new key. The letters are not limited to the alphabet: after 'z' come the
/// next bytes.
void DoubleCleaner::Rename(Line& head) {
  const std::string key = reader_.Entry().key + "_" + rename_letter_;
  WriteFormat(log_, "     New name for bibitem No.1: from %s to %s\n\n",
              {reader_.Entry().key, key});
  other_keys_.push_back({reader_.Entry().key, key, true});
  if (rename_letter_ < 'a' || rename_letter_ > 'z') {
    bad_keys_.Add(key);
    input_warnings_.Report(WarningKind::kBadKey, head_, key,
                           "the new key ends with a byte that is not a letter, as the letters to "
                           "'z' were given to other entries; change it");
  }
  ReplaceBetween(head.Edit(), key, '{', ',');
  rename_letter_ = static_cast<char>(static_cast<unsigned char>(rename_letter_) + 1);
  ++not_written_;
}

void DoubleCleaner::AppendCopy() {
  const std::size_t begin = library_.Size();
  if (copy_.closed && copy_.unchanged && reader_.ClosedAt(input_.Position())) {
    follower_.Append(copy_.text, reader_.Entry());
  } else {
    follower_.Append(copy_.closed ? copy_.text + "\n" : copy_.text);
  }
  written_.Add({begin, begin + copy_.text.size(), head_});
}

/// Writes the copy after an entry, or at the end. Where others follow, it replaces them byte by
/// byte.
void DoubleCleaner::InsertCopy(const KeptEntry* after) {
  const std::size_t position = after ? after->end : library_.Size();
  const std::string text = copy_.closed ? copy_.text + "\n" : copy_.text;
  ReportOverwritten(position, position + text.size());
  ForgetFacts(position, position + text.size());
  if (after) {
    follower_.WriteAfter(after->head, text);
  } else {
    follower_.Append(text);
  }
  written_.Add({position, position + copy_.text.size(), head_});
}

/// Forgets what is known of entries of which bytes from `begin` to `end` will be replaced.
void DoubleCleaner::ForgetFacts(std::size_t begin, std::size_t end) {
  auto first = facts_.lower_bound(begin);
  if (first != facts_.begin()) --first;  // it may reach into the bytes
  facts_.erase(first, facts_.lower_bound(end));
}

/// Reports what makes it doubtful that the dropped entry, which begins at `start`, is a double.
void DoubleCleaner::ReportDropped(const Decision& decision, const TypeGroup& group,
                                  std::size_t start) {
  if (!input_warnings_.Wanted()) return;
  const KeptEntry& kept = *decision.by;
  const EqualEntries equal{.key = reader_.Entry().key,
                           .other = kept.Key(),
                           .offset = start,
                           .verdict = "was dropped as a duplicate of"};
  const std::string_view bytes = input_.Bytes();
  const std::string_view kept_text = library_.Bytes().substr(kept.head, kept.end - kept.head);
  const LibraryRange read{start, input_.Position()};
  const std::string_view lines = bytes.substr(start, read.end - start);
  const std::string_view dropped = EntryTextAt(bytes, read);
  const std::vector<Misread> misread = MisreadValues(group, reader_.Entry(), bytes);
  const bool copies = AreCopies(lines, kept_text);
  if (copies && dropped.find("\n}") == std::string_view::npos) {
    ReportVerdict(equal, misread, {}, input_warnings_);
  } else {
    // The copy may go on after the line at which the kept entry was cut.
    const KeptEntryFacts& facts = facts_.try_emplace(kept.head, kept_text).first->second;
    ReportVerdict(equal, misread, facts.DifferingTags(dropped), input_warnings_);
    if (!copies) ReportUnread(equal, facts.UnreadOf(lines), input_warnings_);
  }
  ReportSwallowed(bytes, read, reader_.Entry().key, swallowed_, input_warnings_);
  ReportAfterEntry(read);
}

/// Reports text on the last line of a dropped entry.
void DoubleCleaner::ReportAfterEntry(const LibraryRange& lines) {
  const std::string_view bytes = input_.Bytes();
  const std::size_t begin = LineBegin(bytes, lines.begin, lines.end - 1);
  if (bytes[begin] != '}') return;
  const std::string_view text = Trim(LineAt(bytes.substr(0, lines.end), begin), "}, \t\r\n");
  if (text.empty()) return;
  input_warnings_.Report(WarningKind::kTextNotCopied, begin, {},
                         "text after a dropped entry was not copied: " + Quoted(text));
}

/// Reports a line outside entries, of a text of several lines the first.
void DoubleCleaner::ReportPassed(std::string_view line, std::size_t start) {
  if (!input_warnings_.Wanted()) return;
  const std::string_view text = Trim(line, kBlanks);
  const bool starts_own = text.starts_with('@') || text.starts_with('}');
  if (starts_own) text_depth_ = 0;
  const bool is_command = text_depth_ > 0 || text.starts_with('@');
  text_depth_ += OpenBraces(text);
  const bool says_nothing = IsFileHeader(Trim(text, "}),"));
  const bool begins = !says_nothing && (starts_own || !in_text_);
  if (begins && !input_warnings_.ReportNumber(WarningKind::kTextNotCopied)) {
    input_warnings_.Report(WarningKind::kTextNotCopied, start, {},
                           "text outside entries was not copied: " + Quoted(text));
  }
  in_text_ = !says_nothing && !(is_command && text_depth_ <= 0);  // what follows a command is new
}

/// Reports why the run ends with the entry that begins at `start`.
void DoubleCleaner::ReportEnd(std::size_t start) {
  input_warnings_.Report(WarningKind::kEndedEarly, start, reader_.Entry().key,
                         "no line that begins with '}' ends the entry: Clean doubles fails there; "
                         "put the last '}' on a line of its own");
}

/// Reports every entry of which the copy will replace a byte; of each only once.
void DoubleCleaner::ReportOverwritten(std::size_t begin, std::size_t end) {
  const auto key_of = [](std::string_view text) {
    return std::string(CopyUntilChar(text.substr(0, limits::kPairLine - 1), '{', ','));
  };
  std::vector<WrittenEntry> replaced;
  written_.Remove(written_.HeadOfEntryAt(begin), end,
                  [&](const WrittenEntry& entry) { replaced.push_back(entry); });
  std::sort(replaced.begin(), replaced.end(),
            [](const auto& one, const auto& other) { return one.head < other.head; });
  for (const WrittenEntry& entry : replaced) {
    const std::string kept = key_of(library_.Bytes().substr(entry.head, entry.end - entry.head));
    std::string what =
        "the new entry '" + key_of(copy_.text) + "' was written over the kept entry '" + kept + "'";
    if (kept.empty()) {
      // No key says which one it is.
      what += " of line " + std::to_string(input_warnings_.LineOf(entry.source));
    }
    input_warnings_.Report(WarningKind::kOverwritten, head_, kept, what);
  }
}

/// Reports the copied entries whose parent was not copied.
void DoubleCleaner::ReportOrphans() {
  if (children_.empty()) return;
  KeysAnyCase keys;
  const std::string_view library = library_.Bytes();
  for (std::size_t at = 0; at < library.size();) {
    const std::string_view text = LineAt(library, at);
    at += text.size() + 1;
    if (!text.starts_with('@')) continue;
    keys.Add(CopyUntilChar(text, '{', ','));
  }
  for (const auto& [parent, head] : children_) {
    if (!keys.Has(parent)) {
      ReportMissingParent(LineAt(input_.Bytes(), head), head, parent, input_warnings_);
    }
  }
}

/// Reports the entries of the new library whose keys others have, too.
void DoubleCleaner::ReportSameKeys() {
  if (!input_warnings_.Wanted()) return;
  const std::string_view library = library_.Bytes();
  KeyOffsets keys(library);
  written_.ForEach(0, library.size(), [&](const WrittenEntry& entry) {
    const std::string_view key = CopyUntilChar(LineAt(library, entry.head), '{', ',');
    if (key.empty()) return;
    const auto earlier = keys.FindOrAdd(key);
    if (!earlier) return;
    const std::size_t line =
        input_warnings_.LineOf(written_.Find(LineBegin(library, 0, *earlier))->source);
    bad_keys_.Add(key);
    input_warnings_.Report(WarningKind::kBadKey, entry.source, key,
                           {"the entry in line ", std::to_string(line),
                            " has the same key in the new library, and BibTeX ignores one of "
                            "them; change one of the keys"});
  });
}

/// Reports what documents must cite from now on. A key that leads to another entry, or that LaTeX
/// cannot read, would be worse than the old one.
void DoubleCleaner::MapKeys() {
  if (!warnings_) return;
  for (const OtherKey& key : other_keys_) {
    const bool is_bad = key.is_renamed && bad_keys_.Has(key.new_key);
    if (key.old_key == key.new_key || is_bad || !CanBeCited(key.new_key)) continue;
    warnings_->MapKey(key.old_key, key.new_key);
  }
}

/// Reports what is odd about the library, and when the log may become large.
void ReportLibrary(const RunContext& run, const std::string& log, std::string_view library,
                   FileWarnings& warnings) {
  std::uint64_t keyless = 0;
  DoublesLogSize size;
  const NameMatcher tags(kDoublesTagNames);
  ScanLibrary(library,
              {.line_limit = limits::kPairLine,
               .read_tags = &tags,
               .needs_closing_line = true,
               .one_value_a_line = true,
               .on_entry =
                   [&](const EntryHead& head) {
                     keyless += head.key.empty() ? 1U : 0U;
                     size.Take(head);
                   }},
              warnings);
  WarnOfLargeOutput(run, log, keyless * keyless / 2 * kEmptyKeys.size(),
                    std::to_string(keyless) + " entries without a key");
  WarnOfLargeOutput(run, log, size.Bytes(library.size()),
                    "each entry is compared with every other entry of its key");
}

void WriteSummary(OutputFile& log, int not_written, const std::string& input,
                  const std::string& library) {
  log.Write({"\n\n\n", std::to_string(not_written), " BibTeX entries from the BibTeX file\n    '",
             input, "'\nwere not written into the new BibTeX file\n    '", library, "'."});
}

}  // namespace

int RunCleanDoubles(const RunContext& run) {
  if (run.first_path.empty()) return Fail(run, kNoLibrary);
  std::optional<LineStream> input = run.files.OpenLines(run.first_path, ReadMode::kRead);
  if (!input) return Fail(run, kNotOpened);

  const auto log = CreateWithHeader(run, run.first_path, Output::kDoubleLog);
  if (!log) return Fail(run, kLogNotCreated);
  const auto file = CreateOutput(run, run.first_path, Output::kDoubleLibrary);
  if (!file) return Fail(run, kLibraryNotCreated);

  // An entry takes a byte more in the new library than in the old one, at most three.
  constexpr std::size_t kSpare = 32;
  const std::string header = HeaderOf(file->Path());
  GrowingLibrary library(header,
                         header.size() + input->Bytes().size() + input->Bytes().size() / kSpare);
  FileWarnings warnings = WarningsOf(run, run.first_path, *input);
  ReportLibrary(run, log->Path(), input->Bytes(), warnings);
  DoubleCleaner cleaner(*input, library, *log, run.warnings, warnings,
                        run.settings.AppendRenamed != 0);
  const bool reached_end = cleaner.Walk();
  if (reached_end) WriteSummary(*log, cleaner.NotWritten(), run.first_path, file->Path());
  file->Write(library.Bytes());
  const bool arrived = CloseOutputs(run, {log.get(), file.get()});
  return reached_end && arrived ? kSucceeded : kFailed;
}

}  // namespace tarvel
