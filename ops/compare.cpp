// SPDX-License-Identifier: MIT
// Compare: tells which entries of the second library the first has, and copies those that it lacks
// and its counterparts of those that it has.
#include <algorithm>
#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/texts.h"
#include "core/hash_index.h"
#include "core/text_primitives.h"
#include "ops/compare_libraries.h"
#include "ops/group_rules.h"
#include "ops/operations.h"

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

int FailAt(Failure failure) { return Fail(kFailures[static_cast<std::size_t>(failure)]); }

struct Counters {
  int exact = 0;
  int probable = 0;
  int missing = 0;
};

/// The files of one run and what walks them.
class Comparison {
 public:
  Comparison(LineStream& first, LineStream& second, OutputFile& log, OutputFile& missing,
             OutputFile& equal)
      : first_(first), second_(second), log_(log), missing_(missing), equal_(equal) {}

  /// Holds every entry of the second library against the first.
  Counters Walk();

 private:
  const KnownEntry* FindCounterpart();
  const Verdict& Judge(const Matches::Match& match, const ComparedValues& values) const;
  void Tell(const KnownEntry& known, const Verdict& verdict, const ComparedValues& values);
  void Count(Counted counted);

  FirstLibrary first_;
  SecondLibrary second_;
  OutputFile& log_;
  OutputFile& missing_;
  OutputFile& equal_;
  Counters counters_;
};

Counters Comparison::Walk() {
  while (second_.Next()) {
    if (const KnownEntry* counterpart = FindCounterpart()) {
      first_.Copy(*counterpart, equal_);
    } else if (second_.Copy(missing_)) {
      log_.Write({"----    - Missing entry: ", second_.Entry().key, "\n\n"});
      ++counters_.missing;
    }
  }
  return counters_;
}

/// Tells every verdict about the current entry up to the one that stops; gives the first library's
/// entry of that one, or null when none stops.
const KnownEntry* Comparison::FindCounterpart() {
  Matches matches = first_.Find(second_.Entry());
  while (const auto match = matches.Next()) {
    const KnownEntry& known = *match->entry;
    // The group is that of the first library's entry, whatever the type of the other.
    const ComparedValues values = Compared(known.rule->group, second_.Entry());
    const Verdict& verdict = Judge(*match, values);
    Tell(known, verdict, values);
    Count(verdict.counted);
    if (verdict.stops) return &known;
  }
  return nullptr;
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

void Comparison::Tell(const KnownEntry& known, const Verdict& verdict,
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

/// The entries of one library by their keys, the case of letters aside.
class EntryKeys {
 public:
  /// Room for `expected` entries; more are fine.
  explicit EntryKeys(std::size_t expected) : index_(expected) { entries_.reserve(expected); }

  /// Adds an entry; gives the place of an earlier one with the same key, if there is one.
  std::optional<std::size_t> Add(std::string_view key, std::size_t place) {
    const std::size_t hash = HashOf(key);
    const auto is_same = [&](std::size_t i) { return EqualsNoCase(entries_[i].key, key); };
    if (const auto earlier = index_.Find(hash, is_same)) return entries_[*earlier].place;
    if (entries_.size() == index_.Room()) MakeRoom();
    index_.Put(hash, entries_.size(), is_same);
    entries_.push_back({key, place});
    return std::nullopt;
  }

 private:
  struct Entry {
    std::string_view key;
    std::size_t place;
  };

  std::size_t HashOf(std::string_view key) {
    upper_ = key;
    StringToUpper(upper_);
    return std::hash<std::string_view>()(upper_);
  }

  void MakeRoom() {
    index_ = HashIndex(2 * entries_.size() + 1);
    for (std::size_t i = 0; i < entries_.size(); ++i) {
      index_.Put(HashOf(entries_[i].key), i, [](std::size_t /*other*/) { return false; });
    }
  }

  static bool EqualsNoCase(std::string_view one, std::string_view other) {
    return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                      [](char a, char b) { return ToUpper(a) == ToUpper(b); });
  }

  HashIndex index_;
  std::vector<Entry> entries_;
  std::string upper_;
};

/// Warns of what is odd about one of the libraries.
void WarnOfLibrary(const RunContext& run, const std::string& path, const LineStream& library) {
  FileWarnings warnings = WarningsOf(run, path, library);
  if (!warnings.Wanted()) return;
  std::optional<EntryKeys> keys;
  LineNumbers numbers(library.Bytes());
  ScanRules rules{limits::kPairLine, kCompareTagNames, true};
  rules.before_entries = [&](std::size_t most) {
    // Where more "@" stand than this, few of them start an entry.
    constexpr std::size_t kShortEntry = 32;
    keys.emplace(std::min(most, library.Bytes().size() / kShortEntry));
  };
  rules.on_entry = [&](std::string_view type, std::string_view key, std::size_t offset) {
    if (!CompareRuleFor(type).rule) {
      warnings.Report(WarningKind::kNoGroup, offset, key,
                      std::string("the type '").append(type).append("' is compared with none"));
    }
    const auto earlier = keys->Add(key, offset);
    if (!earlier || warnings.ReportNumber(WarningKind::kKeyTwice)) return;
    warnings.Report(WarningKind::kKeyTwice, offset, key,
                    "the key stands in line " + std::to_string(numbers.At(*earlier)) + " already");
  };
  ScanLibrary(library.Bytes(), rules, warnings);
}

std::unique_ptr<OutputFile> CreateBeside(const RunContext& run, Output output) {
  return CreateOutput(run, OutputPath(run.first_path, output), CreateMode::kWrite);
}

}  // namespace

int RunCompare(const RunContext& run) {
  if (run.first_path.empty()) return FailAt(Failure::kNoFirst);
  if (run.second_path.empty()) return FailAt(Failure::kNoSecond);
  std::optional<LineStream> first = run.files.OpenLines(run.first_path, ReadMode::kUpdate);
  if (!first) return FailAt(Failure::kFirstNotOpened);
  std::optional<LineStream> second = run.files.OpenLines(run.second_path, ReadMode::kUpdate);
  if (!second) return FailAt(Failure::kSecondNotOpened);

  const auto log = CreateBeside(run, Output::kCompareLog);
  if (!log) return FailAt(Failure::kLogNotCreated);
  log->Write({LogFileHeader, "\n"});
  const auto missing = CreateBeside(run, Output::kCompareMissing);
  if (!missing) return FailAt(Failure::kMissingNotCreated);
  const auto equal = CreateBeside(run, Output::kCompareEqual);
  if (!equal) return FailAt(Failure::kEqualNotCreated);
  missing->Write({BibFileHeader, "\n"});
  equal->Write({BibFileHeader, "\n"});

  WarnOfLibrary(run, run.first_path, *first);
  WarnOfLibrary(run, run.second_path, *second);
  const Counters counters = Comparison(*first, *second, *log, *missing, *equal).Walk();
  WriteSummary(*log, counters, run, missing->Path(), equal->Path());
  return CloseOutputs({log.get(), missing.get(), equal.get()}) ? kSucceeded : kFailed;
}

}  // namespace tarvel
