// SPDX-License-Identifier: MIT
// Clean tags: writes a library anew in which every entry keeps only the tags that are not marked
// for removal, each in one normal form.
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "app/tags.h"
#include "app/texts.h"
#include "core/name_matcher.h"
#include "core/text_primitives.h"
#include "core/value_reader.h"
#include "ops/entries/entry_record.h"
#include "ops/entries/untagged_lines.h"
#include "ops/large_outputs.h"
#include "ops/operations.h"
#include "warnings/library_scan.h"
#include "warnings/tag_warnings.h"

namespace tarvel {

namespace {

constexpr std::string_view kNoLibrary = "Function Clean_tags_1 => BibTeX file does not exist?";
constexpr std::string_view kNotOpened = "Function Clean_tags_2 => Could not open the BibTeX file?";
constexpr std::string_view kLibraryNotCreated =
    "Function Clean_tags_3 => Could not create a new BibTeX file?";
constexpr std::string_view kLogNotCreated =
    "Function Clean_tags_4 => Could not create the log file?";

constexpr std::string_view kRereadEntries =
    "values that do not close hold other entries, which are written again";

constexpr std::string_view kStringMarker = "@STRING{";

constexpr std::array<std::string_view, kTagCount> kTagNames = [] {
  std::array<std::string_view, kTagCount> names{};
  for (std::size_t i = 0; i < kTagCount; ++i) names[i] = kTagRules[i].name;
  return names;
}();

constexpr std::size_t kFilterSize = [] {
  std::size_t size = 0;
  for (const TagRule& rule : kTagRules) size += rule.in_line_filter ? 1 : 0;
  return size;
}();
static_assert(kFilterSize == 33);

constexpr std::array<std::string_view, kFilterSize> kFilterNames = [] {
  std::array<std::string_view, kFilterSize> names{};
  std::size_t next = 0;
  for (const TagRule& rule : kTagRules) {
    if (rule.in_line_filter) names[next++] = rule.name;
  }
  return names;
}();

// The tags on the two lines of an entry that counts as empty.
constexpr std::array<std::string_view, 1> kOwnerName{"owner"};
constexpr std::array<std::string_view, 1> kTimestampName{"timestamp"};

struct Counters {
  int modified_entries = 0;
  int empty_entries = 0;
  int removed_strings = 0;
};

// A result of 0 ends the run.
enum class TagOutcome { kNothingRemoved = 1, kRemoved = 88 };
enum class StringOutcome { kReadFailed = 0, kNoneOrCopied = 1, kRemoved = 90 };

/// Reads the library and writes the outputs of one run.
class TagCleaner {
 public:
  /// The new files have about `usual_size` bytes where no entry is written again.
  TagCleaner(const RunContext& run, LineStream& input, OutputFile& library, OutputFile& log,
             std::uint64_t usual_size, TagWarnings& warnings)
      : input_(input),
        library_(library),
        log_(log),
        settings_(run.settings),
        warnings_(warnings),
        library_size_(run, library, usual_size, kRereadEntries),
        log_size_(run, log, usual_size, kRereadEntries) {}

  /// Walks the whole library; false when a kept @STRING block runs into the end of the file.
  bool Walk(Counters& counters);

 private:
  bool ReadToHead(Line& line);
  StringOutcome HandleStringLine(Line& line);
  void NoteOtherLine(std::string_view line);
  bool CheckEmptyEntry(std::string_view line);
  TagOutcome SortTags(Line& line);
  std::optional<std::size_t> ReadTag(Line& line, std::string& name);
  void ReadValue(Line& line);
  std::string_view Value(std::string_view line);
  void JoinName(Line& line, std::size_t start);
  void WriteTag(const TagRule& rule, std::string_view value);

  LineStream& input_;
  OutputFile& library_;
  OutputFile& log_;
  const Settings& settings_;
  TagWarnings& warnings_;
  const NameMatcher filter_{kFilterNames};
  const NameMatcher tags_{kTagNames};
  const NameMatcher owner_{kOwnerName};
  const NameMatcher timestamp_{kTimestampName};
  LongValues long_values_;       // entries are read again where a head stands among their tags
  FieldValue value_;             // of the tag that was read last
  std::size_t in_capitals_ = 0;  // bytes of it that are to be taken from its line instead
  GrowingOutput library_size_;
  GrowingOutput log_size_;
  UntaggedLines untagged_;
};

/// Puts the text without every blank, tab, '.', ':' and ';' into `name`.
void SqueezeTagName(std::string_view text, std::string& name) {
  name.resize(text.size());
  const auto end = std::remove_copy_if(text.begin(), text.end(), name.begin(),
                                       [](char byte) { return IsByteOf(byte, " \t.:;"); });
  name.resize(static_cast<std::size_t>(end - name.begin()));
}

bool TagCleaner::Walk(Counters& counters) {
  for (Line line; ReadToHead(line);) {
    library_size_.Look(input_.Position(), input_.Bytes().size());
    log_size_.Look(input_.Position(), input_.Bytes().size());
    const StringOutcome string = HandleStringLine(line);
    if (string == StringOutcome::kReadFailed) return false;
    if (string == StringOutcome::kRemoved) ++counters.removed_strings;
    if (!IsKnownEntry(line)) {
      NoteOtherLine(line.Text());
    } else if (!CheckEmptyEntry(line.Text())) {
      ++counters.empty_entries;
    } else if (SortTags(line) == TagOutcome::kRemoved) {
      ++counters.modified_entries;
    }
  }
  return true;
}

/// Reads the next line with an "@", as strings and heads have one; false at the end.
bool TagCleaner::ReadToHead(Line& line) {
  const std::size_t from = input_.Position();
  const bool found = ReadLineWith(input_, '@', limits::kLongLine, line);
  const std::size_t end = input_.Position() - (found ? line.Text().size() : 0);
  warnings_.NoteSkippedOutside(input_.Bytes().substr(from, end - from), from);
  return found;
}

/// Removes a line that defines a string, or copies it and everything up to the next entry. In that
/// case `line` holds the entry's head afterwards while the input stands after the string's line:
/// the caller goes on with both.
StringOutcome TagCleaner::HandleStringLine(Line& line) {
  if (line.Text().find(kStringMarker) == std::string_view::npos) {
    return StringOutcome::kNoneOrCopied;
  }
  if (settings_.RemoveJournalStrings != 0) {
    log_.Write({"The following @STRING has been removed:\n    ", line.Text(), "\n\n"});
    warnings_.NoteRemovedString(line.Text(), input_.Position() - 1);
    return StringOutcome::kRemoved;
  }
  library_.Write({"...", line.Text()});
  const std::size_t after_line = input_.Position();
  while (ReadLine(input_, limits::kLongLine, line)) {
    if (IsKnownEntry(line)) {
      input_.SetPosition(after_line);
      return StringOutcome::kNoneOrCopied;
    }
    library_.Write({"... ", line.Text()});
  }
  return StringOutcome::kReadFailed;
}

/// Passes over a line with an "@" that is no head.
void TagCleaner::NoteOtherLine(std::string_view line) {
  const std::size_t start = input_.Position() - line.size();
  warnings_.NoteSkippedOutside(input_.Bytes().substr(start, line.size()), start);
}

/// False when the entry whose head `line` is must be dropped: it has no key, or its next two lines,
/// as far as the library has them, mention an owner and a timestamp, whatever follows them.
bool TagCleaner::CheckEmptyEntry(std::string_view line) {
  if (settings_.RemoveEmptyEntries != 1) return true;
  const std::size_t after_line = input_.Position();
  const std::string_view key = CopyUntilChar(line, '{', ',');
  if (key.empty()) {
    warnings_.NoteDroppedWithoutKey(input_.Bytes(), after_line - 1);
    return false;
  }
  for (const NameMatcher* name : {&owner_, &timestamp_}) {
    const auto next = input_.ReadLine(limits::kLongLine);
    if (!next) break;
    if (!name->Any(*next)) {
      input_.SetPosition(after_line);
      return true;
    }
  }
  warnings_.NoteDroppedAsEmpty(key, after_line - 1, input_.Bytes(), input_.Position());
  return false;
}

/// Writes the entry whose head `line` is, with the tags that are kept, and logs those that are not.
TagOutcome TagCleaner::SortTags(Line& line) {
  warnings_.StartEntry(line.Text(), input_.Position() - 1);
  std::string& head = line.Edit();
  head.resize(head.size() - 2);  // the "," and the line break, in a library of the usual form
  library_.Write(head);
  const std::string key(CopyUntilChar(head, '{', ','));

  const std::size_t after_head = input_.Position();
  std::string name;
  std::string removed;
  bool wrote_tag = false;
  bool at_next_head = false;
  bool passed_lines = false;  // by a value that went on in them
  untagged_.Start(after_head);
  while (!at_next_head && ReadLine(input_, limits::kTagLine, line)) {
    const std::size_t line_end = input_.Position();
    const std::size_t line_begin = line_end - line.Text().size();
    bool writes = false;  // else the line need not be read again
    if (IsKnownEntry(line)) {
      at_next_head = true;
      untagged_.End(line_begin);
    } else if (const auto tag = ReadTag(line, name)) {
      const bool removes = settings_.RemoveTag[*tag] != 0;
      warnings_.NoteTag(line.Text(), kTagRules[*tag].name, !removes, line_end - 1);
      if (removes) {
        removed.append(name).append(", ");
      } else {
        WriteTag(kTagRules[*tag], Value(line.Text()));
        wrote_tag = true;
      }
      writes = library_.IsKept();
    }
    if (writes) {
      untagged_.End(line_begin);
      untagged_.Start(input_.Position());
    } else if (input_.Position() != line_end) {
      untagged_.Pass(line_begin, input_.Position());
    }
    // The pieces of a line that was read in part may be other ones this time.
    const std::size_t next = input_.Position();
    passed_lines = passed_lines || next != line_end;
    if (passed_lines && input_.Bytes()[next - 1] == '\n') {
      input_.SetPosition(untagged_.SkipFrom(next));
    }
  }
  library_.Write(wrote_tag || !at_next_head ? "\n" : ",\n");
  library_.Write("}\n\n");
  warnings_.EndEntry(at_next_head);
  if (at_next_head) input_.SetPosition(after_head);  // the caller reads over the lines again

  if (removed.empty()) return TagOutcome::kNothingRemoved;
  if (removed.size() > 2) removed.resize(removed.size() - 2);
  log_.Write(
      {"The following tags have been removed from the entry '", key, "':\n", removed, "\n\n"});
  return TagOutcome::kRemoved;
}

/// Reads the tag of a line after a head: the row of `kTagRules` that serves it, its name as it
/// stands there, squeezed, and into `value_` its value. Nothing for a line that holds no known tag.
std::optional<std::size_t> TagCleaner::ReadTag(Line& line, std::string& name) {
  const std::size_t offset = input_.Position() - 1;
  if (!filter_.Any(line.Text())) {
    const std::size_t size = line.Text().size();
    warnings_.NoteSkipped(input_.Bytes().substr(offset + 1 - size, size), offset);
    return std::nullopt;
  }
  ReadValue(line);
  warnings_.NoteAfterValue(line.Text(), value_.Text(), input_.Position() - 1);
  SqueezeTagName(CopyUntilChar(line.Text(), '='), name);
  const int tag = tags_.First(name);
  if (tag < 0) {
    warnings_.NoteSkippedTag(line.Text(), offset);
    return std::nullopt;
  }
  return static_cast<std::size_t>(tag);
}

/// Reads the line's value. One that goes on after the line is looked up among long values; only the
/// tag's name is then joined to the line.
void TagCleaner::ReadValue(Line& line) {
  in_capitals_ = 0;
  const std::string_view text = line.Text();
  const std::size_t brace = text.find('{');
  if (brace == std::string_view::npos) return value_.SetView({});
  int depth = 1;
  const std::size_t end = FindValueStop(text, brace + 1, depth);
  if (depth == 0) return value_.SetView(text.substr(brace + 1, end - brace - 1));
  const std::size_t start = input_.Position();
  const std::string_view in_file = input_.Bytes().substr(start - text.size(), text.size());
  if (const auto found = long_values_.LookUp(in_file, input_)) {
    value_.SetView(*found);
    if (text.data() != in_file.data()) in_capitals_ = end - brace - 1;
    return JoinName(line, start);
  }
  ReadFieldValue(line, input_, value_.SetJoined());
  long_values_.CountRead(input_.Position() - start);
}

/// The value that was read. What stands on its first line can differ from the file: there, words
/// after an "@" that is no head were put in capitals.
std::string_view TagCleaner::Value(std::string_view line) {
  if (in_capitals_ > 0) {
    const std::string_view rest = value_.Text().substr(in_capitals_);
    value_.SetJoined().assign(line, line.find('{') + 1, in_capitals_).append(rest);
    in_capitals_ = 0;
  }
  return value_.Text();
}

/// Joins lines from `start` on to the one before, up to the "=" that ends the tag's name or to the
/// end of the value, after which the input stands.
void TagCleaner::JoinName(Line& line, std::size_t start) {
  const std::size_t end = input_.Position();
  input_.SetPosition(start);
  std::size_t from = 0;  // no "=" stands before it
  while (line.Text().find('=', from) == std::string_view::npos && input_.Position() < end) {
    from = ContinueLine(line, input_, line.Text().size() - 1, limits::kContinuation);
  }
  input_.SetPosition(end);
}

void TagCleaner::WriteTag(const TagRule& rule, std::string_view value) {
  const bool doubled = rule.doubles_braces && !value.starts_with('{');
  library_.Write({",\n  ", rule.name, doubled ? " = {{" : " = {", value, doubled ? "}}" : "}"});
}

void WriteSummary(OutputFile& log, const Counters& counters, const std::string& input,
                  const std::string& library) {
  log.Write({"\n\n\nThe tag list of ", std::to_string(counters.modified_entries),
             " BibTeX entries in the BibTeX file\n    '", input, "'\nwas modified. Furthermore ",
             std::to_string(counters.empty_entries), " empty entries and ",
             std::to_string(counters.removed_strings),
             " '@STRING{' were removed. The path of the new BibTeX file is:\n    '", library,
             "'\n\n"});
}

}  // namespace

int RunCleanTags(const RunContext& run) {
  if (run.first_path.empty()) return Fail(run, kNoLibrary);
  std::optional<LineStream> input = run.files.OpenLines(run.first_path, ReadMode::kRead);
  if (!input) return Fail(run, kNotOpened);

  const auto library = CreateWithHeader(run, run.first_path, Output::kTagLibrary);
  if (!library) return Fail(run, kLibraryNotCreated);
  const auto log = CreateWithHeader(run, run.first_path, Output::kTagLog);
  if (!log) return Fail(run, kLogNotCreated);

  FileWarnings file_warnings = WarningsOf(run, run.first_path, *input);
  KeptStrings strings(input->Bytes(), kStringMarker);
  const NameMatcher filter(kFilterNames);
  ScanRules rules{.line_limit = limits::kLongLine,
                  .read_tags = &filter,
                  .one_value_a_line = true,
                  .takes_all_tags = true,
                  .stray_tags = &filter};
  if (run.settings.RemoveJournalStrings == 0) {
    rules.on_entry = [&](const EntryHead& head) { strings.AddUpTo(head.offset); };
  }
  ScanLibrary(input->Bytes(), rules, file_warnings);
  WarnOfLargeOutput(run, library->Path(), strings.Bytes(),
                    "each @string definition is copied together with everything that follows it");
  TagWarnings warnings(file_warnings);
  Counters counters;
  const bool whole =
      TagCleaner(run, *input, *library, *log, input->Bytes().size() + strings.Bytes(), warnings)
          .Walk(counters);
  warnings.ReportTags();
  if (!whole) {
    file_warnings.Report(WarningKind::kEndedEarly, input->Bytes().size(), {},
                         "no entry follows the last '@STRING{': Clean tags fails there; "
                         "put an entry after the definitions, or let them be removed");
    (void)CloseOutputs(run, {library.get(), log.get()});  // the run has failed, whatever arrives
    return kFailed;
  }
  WriteSummary(*log, counters, run.first_path, library->Path());
  return CloseOutputs(run, {library.get(), log.get()}) ? kSucceeded : kFailed;
}

}  // namespace tarvel
