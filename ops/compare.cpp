// SPDX-License-Identifier: MIT
// Compare: says which entries of the second library the first has, and copies those that it lacks
// and its counterparts of those that it has.
#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/text_primitives.h"
#include "ops/entries/compare_libraries.h"
#include "ops/entries/entry_warnings.h"
#include "ops/entries/group_rules.h"
#include "ops/large_outputs.h"
#include "ops/operations.h"
#include "warnings/repeated_keys.h"

namespace tarvel {

namespace {

// ORDER: the numbers in the texts count the points of failure, in the order of the run.
enum class Failure {
  kNoFirst,
  kNoSecond,
  kFirstNotOpened,
  kSecondNotOpened,
  kLogNotCreated,
  kMissingNotCreated,
  kEqualNotCreated,
};
constexpr std::array<std::string_view, 7> kFailures{
    "Function Compare()_1, file_address_01 => First BibTeX file does not exist?",
    "Function Compare()_2, file_address_02 => Second BibTeX file does not exist?",
    "Function Compare()_3 => Could not open the first BibTeX file!",
    "Function Compare()_4 => Could not open the second BibTeX file!",
    "Function Compare()_5, Could not open the log file!",
    "Function Compare()_6 => Could not open the BibTeX file !",
    "Function Compare()_7 => Could not open the BibTeX file !"};

/// About the bytes of a verdict in the log, without keys and values.
constexpr std::uint64_t kVerdictSize = 100;

/// The key of the entry that begins at `start`, as it stands in the library.
std::string_view KeyAt(const LineStream& library, std::size_t start) {
  return CopyUntilChar(library.Bytes().substr(start, limits::kPairLine - 1), '{', ',');
}

int FailAt(const RunContext& run, Failure failure) {
  return Fail(run, kFailures[static_cast<std::size_t>(failure)]);
}

struct Counters {
  int exact = 0;
  int probable = 0;
  int missing = 0;
};

/// Reads the libraries and writes the log of one run.
class Comparison {
 public:
  Comparison(const RunContext& run, LineStream& first, LineStream& second, OutputFile& log,
             OutputFile& missing, OutputFile& equal)
      : run_(run),
        first_stream_(first),
        second_stream_(second),
        first_warnings_(WarningsOf(run, run.first_path, first)),
        second_warnings_(WarningsOf(run, run.second_path, second)),
        first_(first, ReportFirst()),
        second_(second),
        log_(log),
        missing_(missing),
        equal_(equal) {}

  /// Compares every entry of the second library with the first one.
  Counters Walk();

 private:
  const KnownEntry* FindCounterpart();
  const Verdict& Judge(const Matches::Match& match, const ComparedValues& values) const;
  void Log(const KnownEntry& known, const Verdict& verdict, const ComparedValues& values);
  void Count(Counted counted);
  FirstLibrary::OnEntry ReportFirst();
  void ReportSecond();
  const KeptEntryFacts& FactsOf(const KnownEntry& known);
  void ReportEqual(const KnownEntry& known, const Verdict& verdict, bool same_key);
  void ReportCut(const LineStream& library, const LibraryRange& copied, FileWarnings& warnings);

  const RunContext& run_;
  LineStream& first_stream_;
  LineStream& second_stream_;
  FileWarnings first_warnings_;
  FileWarnings second_warnings_;
  std::size_t swallowed_ = 0;  // up to where entries within equal ones are reported
  std::map<std::size_t, KeptEntryFacts> facts_;  // by offset: of entries that others equal
  FirstLibrary first_;
  SecondLibrary second_;
  OutputFile& log_;
  OutputFile& missing_;
  OutputFile& equal_;
  GrowingOutput copies_{run_, equal_, first_stream_.Bytes().size(),
                        "an entry is copied once for each entry that equals it"};
  Counters counters_;
};

Counters Comparison::Walk() {
  while (second_.Next()) {
    ReportSecond();
    if (const KnownEntry* counterpart = FindCounterpart()) {
      first_.Copy(*counterpart, equal_);
      copies_.Look(second_.Start(), second_stream_.Bytes().size());
      ReportCut(first_stream_, {counterpart->start, first_stream_.Position()}, first_warnings_);
    } else if (second_.Copy(missing_)) {
      log_.Write({"----    - Missing entry: ", second_.Entry().key, "\n\n"});
      ++counters_.missing;
      const std::size_t end = second_stream_.Position();
      ReportCut(second_stream_, {second_.Start(), end}, second_warnings_);
    }
  }
  return counters_;
}

/// Logs every verdict about the current entry up to the one that stops; returns the first library's
/// entry of that one, or null when none stops.
const KnownEntry* Comparison::FindCounterpart() {
  Matches matches = first_.Find(second_.Entry());
  while (const auto match = matches.Next()) {
    const KnownEntry& known = *match->entry;
    // The group is that of the first library's entry, whatever the type of the other.
    const ComparedValues values = ComparedValuesOf(known.rule->group, second_.Entry());
    const Verdict& verdict = Judge(*match, values);
    Log(known, verdict, values);
    Count(verdict.counted);
    if (!verdict.stops) continue;
    ReportEqual(known, verdict, match->same_key);
    return &known;
  }
  return nullptr;
}

/// What reports values of the first library that are those of other tags.
FirstLibrary::OnEntry Comparison::ReportFirst() {
  if (!first_warnings_.Wanted()) return {};
  return [this](const TypeGroup& group, const EntryRecord& entry, std::size_t start) {
    ReportMisread(MisreadValues(group, entry, first_stream_.Bytes()), KeyAt(first_stream_, start),
                  first_warnings_);
  };
}

/// The same for the current entry of the second library.
void Comparison::ReportSecond() {
  const TypeRule<CompareRule> type = CompareRuleFor(second_.Entry().type);
  if (!second_warnings_.Wanted() || !type.rule) return;
  ReportMisread(MisreadValues(type.rule->group, second_.Entry(), second_stream_.Bytes()),
                KeyAt(second_stream_, second_.Start()), second_warnings_);
}

const KeptEntryFacts& Comparison::FactsOf(const KnownEntry& known) {
  const auto found = facts_.find(known.start);
  if (found != facts_.end()) return found->second;
  const std::string_view bytes = first_stream_.Bytes();
  const std::size_t size = EntryTextAt(bytes, first_.LinesOf(known)).size() + 2;  // with "\n}"
  return facts_.try_emplace(known.start, bytes.substr(known.start, size)).first->second;
}

/// Reports what makes it doubtful that the current entry is the one of the first library. Where
/// they have the same key, the verdict does not rest on the values alone.
void Comparison::ReportEqual(const KnownEntry& known, const Verdict& verdict, bool same_key) {
  if (!second_warnings_.Wanted()) return;
  const std::string_view bytes = second_stream_.Bytes();
  const std::size_t start = second_.Start();
  const LibraryRange read{start, second_stream_.Position()};
  const std::string_view lines = bytes.substr(start, read.end - start);
  const std::string_view known_bytes = first_stream_.Bytes();
  const std::vector<Misread> misread = MisreadValues(known.rule->group, second_.Entry(), bytes);
  const bool compared = &verdict != &known.rule->missing && (!same_key || misread.empty());
  const EqualEntries equal{.key = KeyAt(second_stream_, start),
                           .other = KeyAt(first_stream_, known.start),
                           .offset = start,
                           .verdict = "is taken for the first library's entry"};
  std::vector<std::string_view> differing;
  if (!AreCopies(lines, known_bytes.substr(known.start))) {
    const KeptEntryFacts& facts = FactsOf(known);
    ReportUnread(equal, facts.UnreadOf(lines), second_warnings_);
    differing = facts.DifferingTags(EntryTextAt(bytes, read), compared);
  }
  ReportVerdict(equal, same_key ? std::vector<Misread>() : misread, differing, second_warnings_);
  ReportSwallowed(bytes, read, equal.key, swallowed_, second_warnings_);
}

const Verdict& Comparison::Judge(const Matches::Match& match, const ComparedValues& values) const {
  const CompareRule& rule = *match.entry->rule;
  if (!match.same_key) return rule.probable;
  switch (JudgeContent(match.entry->compared, values)) {
    case Content::kTagMissing:
      return rule.missing;
    case Content::kEqual:
      return rule.exact;
    case Content::kDifferent:
      break;
  }
  return rule.differs;
}

void Comparison::Log(const KnownEntry& known, const Verdict& verdict,
                     const ComparedValues& values) {
  const std::string_view key = second_.Entry().key;
  if (verdict.headline.starts_with("%s")) {
    WriteFormat(log_, verdict.headline, {known.type, known.key, key});
  } else {
    WriteFormat(log_, verdict.headline, {known.key, key});
  }
  WriteDetails(log_, known.rule->group, known.compared, values);
  WriteFormat(log_, verdict.closing, {equal_.Path()});
}

/// Reports the lines of `copied` when they end inside a value.
void Comparison::ReportCut(const LineStream& library, const LibraryRange& copied,
                           FileWarnings& warnings) {
  if (!warnings.Wanted()) return;
  const std::string_view bytes = library.Bytes();
  const std::string_view text = bytes.substr(copied.begin, copied.end - copied.begin);
  ReportCutEntry(bytes, {text, copied.end}, warnings);
}

void Comparison::Count(Counted counted) {
  if (counted == Counted::kExact) ++counters_.exact;
  if (counted == Counted::kProbable) ++counters_.probable;
}

void WriteSummary(OutputFile& log, const Counters& counters, const RunContext& run,
                  const std::string& missing, const std::string& equal) {
  log.Write({"\n\n\n", std::to_string(counters.missing),
             " BibTeX entries from the BibTeX file\n    '", run.second_path,
             "'\ndo not appear in the BibTeX file\n    '", run.first_path,
             "'.\nThey are stored in the new BibTeX file\n    '", missing,
             "'.\nFurthemore, ",  // sic
             std::to_string(counters.exact), " and ", std::to_string(counters.probable),
             " entries of both BibTeX libraries were exactly or probably the same, respectively. "
             "They are all stored in the new BibTeX file\n    '",
             equal, "'."});
}

/// Reports what is odd about one of the libraries; returns the keys that occur again in it.
KeyUses ReportLibrary(const RunContext& run, const std::string& path, const LineStream& library) {
  FileWarnings warnings = WarningsOf(run, path, library);
  if (!warnings.Wanted()) return {};
  RepeatedKeys keys(library.Bytes(), warnings);
  const NameMatcher tags(kCompareTagNames);
  ScanRules rules{.line_limit = limits::kPairLine,
                  .read_tags = &tags,
                  .needs_closing_line = true,
                  .one_value_a_line = true,
                  .upper_cases = false};
  rules.on_entry = [&](const EntryHead& head) {
    if (!CompareRuleFor(head.type).rule) {
      warnings.Report(WarningKind::kNoGroup, head.offset, head.key,
                      std::string("entries of the type '")
                          .append(head.type)
                          .append("' are not compared by their values"));
    }
    keys.Check(head);
  };
  ScanLibrary(library.Bytes(), rules, warnings);
  return keys.Uses();
}

/// An upper limit for the bytes of the verdicts about keys that occur more than once in both
/// libraries: each entry is compared with every other entry of its key.
std::uint64_t BytesOfVerdicts(const KeyUses& first, const KeyUses& second) {
  std::uint64_t bytes = 0;
  for (const auto& [key, use] : first) {
    const auto found = second.find(key);
    if (found == second.end()) continue;
    const KeyUse& other = found->second;
    bytes += use.entries * other.entries * kVerdictSize + use.entries * other.bytes +
             use.bytes * other.entries;
  }
  return bytes;
}

}  // namespace

int RunCompare(const RunContext& run) {
  if (run.first_path.empty()) return FailAt(run, Failure::kNoFirst);
  if (run.second_path.empty()) return FailAt(run, Failure::kNoSecond);
  std::optional<LineStream> first = OpenForUpdate(run, run.first_path);
  if (!first) return FailAt(run, Failure::kFirstNotOpened);
  std::optional<LineStream> second = OpenForUpdate(run, run.second_path);
  if (!second) return FailAt(run, Failure::kSecondNotOpened);

  const auto log = CreateWithHeader(run, run.first_path, Output::kCompareLog);
  if (!log) return FailAt(run, Failure::kLogNotCreated);
  const auto missing = CreateOutput(run, run.first_path, Output::kCompareMissing);
  if (!missing) return FailAt(run, Failure::kMissingNotCreated);
  const auto equal = CreateOutput(run, run.first_path, Output::kCompareEqual);
  if (!equal) return FailAt(run, Failure::kEqualNotCreated);
  // Headers only now: without the last file, the one before it stays empty.
  missing->Write(HeaderOf(missing->Path()));
  equal->Write(HeaderOf(equal->Path()));

  const KeyUses first_keys = ReportLibrary(run, run.first_path, *first);
  const KeyUses second_keys = ReportLibrary(run, run.second_path, *second);
  WarnOfLargeOutput(run, log->Path(), BytesOfVerdicts(first_keys, second_keys),
                    "each entry is compared with every other entry of its key");
  const Counters counters = Comparison(run, *first, *second, *log, *missing, *equal).Walk();
  WriteSummary(*log, counters, run, missing->Path(), equal->Path());
  return CloseOutputs(run, {log.get(), missing.get(), equal.get()}) ? kSucceeded : kFailed;
}

}  // namespace tarvel
