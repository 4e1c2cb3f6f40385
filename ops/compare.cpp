// SPDX-License-Identifier: MIT
// Compare: tells which entries of the second library the first has, and copies those that it lacks
// and its counterparts of those that it has.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/hash_index.h"
#include "core/library_scan.h"
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

int FailAt(const RunContext& run, Failure failure) {
  return Fail(run, kFailures[static_cast<std::size_t>(failure)]);
}

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

/// A hash of the key in which the case of letters does not count.
std::size_t HashNoCase(std::string_view key) {
  constexpr std::uint64_t kLowerCase = 0x2020202020202020U;
  constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15U;
  constexpr std::size_t kWord = sizeof(std::uint64_t);
  std::uint64_t hash = key.size();
  const auto mix = [&](std::uint64_t word) {
    hash = (hash ^ (word | kLowerCase)) * kFactor;
    hash ^= hash >> 32U;
  };
  std::uint64_t word = 0;
  for (; key.size() >= kWord; key.remove_prefix(kWord)) {
    std::memcpy(&word, key.data(), kWord);
    mix(word);
  }
  word = 0;
  for (const char byte : key) word = word << 8U | static_cast<unsigned char>(byte);
  mix(word);
  return (hash * kFactor) ^ (hash >> 29U);
}

/// The keys of one library, the case of letters aside. Each is kept as its place only.
class EntryKeys {
 public:
  /// Room for `expected` keys; more are fine. `library`, its bytes, must outlive this.
  EntryKeys(std::string_view library, std::size_t expected)
      : library_(library), places_(expected) {}

  /// The hash of a key, for `Add`; brings near what that will look at first.
  std::size_t BringNear(std::string_view key) const {
    const std::size_t hash = HashNoCase(key);
    places_.Prefetch(hash);
    return hash;
  }
  /// Adds a key, which is a part of the library, and its hash; gives the place of the first that is
  /// the same, if there is one.
  std::optional<std::size_t> Add(std::string_view key, std::size_t hash) {
    const auto place = static_cast<std::size_t>(key.data() - library_.data());
    const auto is_same = [&](std::size_t other) { return IsKey(other, key); };
    if (count_ == places_.Room()) {
      places_.MakeRoom([this](std::size_t other) { return HashNoCase(KeyAt(other)); });
    }
    const auto earlier = places_.FindOrPut(hash, place, is_same);
    if (!earlier) ++count_;
    return earlier;
  }

 private:
  std::string_view KeyAt(std::size_t place) const {
    const std::string_view line = library_.substr(place, library_.find('\n', place) - place);
    return line.substr(0, line.find(','));
  }
  bool IsKey(std::size_t place, std::string_view key) const {
    const std::string_view other = KeyAt(place);
    return std::equal(key.begin(), key.end(), other.begin(), other.end(),
                      [](char a, char b) { return ToUpper(a) == ToUpper(b); });
  }

  std::string_view library_;
  HashIndex places_;
  std::size_t count_ = 0;
};

/// Warns of what is odd about one of the libraries.
void WarnOfLibrary(const RunContext& run, const std::string& path, const LineStream& library) {
  FileWarnings warnings = WarningsOf(run, path, library);
  if (!warnings.Wanted()) return;
  std::optional<EntryKeys> keys;
  ScanRules rules{limits::kPairLine, kCompareTagNames, true};
  rules.before_entries = [&](std::size_t most) {
    // Where more "@" stand than this, few of them start an entry.
    constexpr std::size_t kShortEntry = 32;
    keys.emplace(library.Bytes(), std::min(most, library.Bytes().size() / kShortEntry));
  };
  const auto tell = [&](const EntryHead& head, std::size_t hash) {
    if (!CompareRuleFor(head.type).rule) {
      warnings.Report(
          WarningKind::kNoGroup, head.offset, head.key,
          std::string("the type '").append(head.type).append("' is compared with none"));
    }
    const auto earlier = keys->Add(head.key, hash);
    if (!earlier || warnings.ReportNumber(WarningKind::kKeyTwice)) return;
    warnings.Report(
        WarningKind::kKeyTwice, head.offset, head.key,
        "the key stands in line " + std::to_string(warnings.LineOf(*earlier)) + " already");
  };
  std::vector<std::size_t> hashes;
  rules.on_entries = [&](std::span<const EntryHead> heads) {
    hashes.clear();
    for (const EntryHead& head : heads) hashes.push_back(keys->BringNear(head.key));
    for (std::size_t i = 0; i < heads.size(); ++i) tell(heads[i], hashes[i]);
  };
  ScanLibrary(library.Bytes(), rules, warnings);
}

}  // namespace

int RunCompare(const RunContext& run) {
  if (run.first_path.empty()) return FailAt(run, Failure::kNoFirst);
  if (run.second_path.empty()) return FailAt(run, Failure::kNoSecond);
  std::optional<LineStream> first = run.files.OpenLines(run.first_path, ReadMode::kUpdate);
  if (!first) return FailAt(run, Failure::kFirstNotOpened);
  std::optional<LineStream> second = run.files.OpenLines(run.second_path, ReadMode::kUpdate);
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

  WarnOfLibrary(run, run.first_path, *first);
  WarnOfLibrary(run, run.second_path, *second);
  const Counters counters = Comparison(*first, *second, *log, *missing, *equal).Walk();
  WriteSummary(*log, counters, run, missing->Path(), equal->Path());
  return CloseOutputs(run, {log.get(), missing.get(), equal.get()}) ? kSucceeded : kFailed;
}

}  // namespace tarvel
