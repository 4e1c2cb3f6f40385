// SPDX-License-Identifier: MIT
// Extract: the entries that a LaTeX document cites, as a list of keys, a library of their own and a
// file of references.
#include "ops/extract.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <set>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "core/byte_finder.h"
#include "core/keyed_hash.h"
#include "core/text_primitives.h"
#include "ops/citations/cited_keys.h"
#include "ops/entries/entry_warnings.h"
#include "ops/entries/passed_heads.h"
#include "ops/large_outputs.h"
#include "ops/operations.h"
#include "ops/references/reference_walk.h"
#include "warnings/library_scan.h"
#include "warnings/line_tags.h"

namespace tarvel {

namespace {

constexpr std::string_view kNoDocument =
    "Function Extract()_1, initialization => LaTeX file does not exist?";
constexpr std::string_view kNoLibrary =
    "Function Extract()_2, initialization => BibTeX file does not exist?";
constexpr std::string_view kDocumentNotOpened =
    "Function Extract()_3 => Could not open the LaTeX file?";
constexpr std::string_view kKeysNotCreated = "Function Extract()_4 => Could not create item file?";
constexpr std::string_view kLibraryNotOpened =
    "Function Extract()_5 => Could not open the BibTeX file?";
constexpr std::string_view kLibraryNotCreated =
    "Function Extract()_6 => Could not create a new BibTeX file?";
constexpr std::string_view kNothingFound =
    "Function Extract()_7 => 'Numentries' is zero? Is the BibTeX file probably empty (0 Byte)?";
constexpr std::string_view kNewLibraryNotOpened =
    "Function Extract()_8 => Could not open the new BibTeX file?";
constexpr std::string_view kReferencesNotCreated =
    "Function Extract()_9 => Could not open the bibitem file?";
constexpr std::string_view kNoHeader =
    "Function Extract()_10 => Could not read the new BibTeX file?";
constexpr std::string_view kLibraryTooShort =
    "Function Extract()_11 => Could not read the new BibTeX file?";
constexpr std::string_view kLibraryEndsWithHead =
    "Function 'SelectAndWriteBibTeXEntriesIntoNewFile', reading BibTeX file:\n"
    "Very strange => After @ARTICLE end of file?";

constexpr std::string_view kCite = "\\cite";
constexpr std::string_view kCiteBrace = "\\cite{";
constexpr std::string_view kAdvice = "You have to enter the bibitem manually into this file. ";
constexpr std::string_view kReferencesName = "_bibitems.tex";  // sic: the file ends in _extract.tex

/// Copies the entry at the stream's position; false when the library ends with its head.
bool CopyEntry(OutputFile& output, LineStream& library) {
  Line line;
  ReadLine(library, limits::kShortLine, line);
  IsKnownEntry(line);  // upper-cases the type word, as in every line that is copied
  output.Write(line.Text());
  if (!ReadLine(library, limits::kShortLine, line)) return false;
  while (!IsKnownEntry(line)) {
    output.Write(line.Text());
    if (!ReadLine(library, limits::kShortLine, line)) break;
  }
  return true;
}

/// Reports, in a box and in the file of references, that keys have no entry.
void ReportMissing(const RunContext& run, OutputFile& references, std::size_t cited, int found) {
  const std::string citations = std::to_string(cited);
  const std::string entries = std::to_string(found);
  ReportError(run.reporter,
              citations + " citations could be found in the LaTeX file. However, only " + entries +
                  " corresponding entries were found in the BibTeX library! Did you choose the "
                  "correct files?",
              "Correct files?", kReportInBox);
  references.Write({"   Note: ", citations,
                    " citations could be found in the LaTeX file.\n   However, only ", entries,
                    " corresponding entries could be found in the BibTeX library!\n   Did you "
                    "choose the correct files?\n\n   Here are all entries cited in the LaTeX file "
                    "that could be found also in the BibTeX library ... .\n\n\n"});
}

std::vector<ReferenceValue> PrintExtracted(const RunContext& run, OutputFile& references,
                                           const EntryKind& entry, EntryValues& values) {
  const std::optional<JournalStyle> style = SelectedStyle(run.settings);
  if (!style) return {};
  const bool springer = *style == JournalStyle::kSpringerCompSci;
  ReferenceKind kind = entry.kind;
  if (kind == ReferenceKind::kArticle) {
    if (springer) ReplaceString(values[ReferenceValue::kJournal], ".", "");
    if (run.settings.PrintTitle != 0) kind = ReferenceKind::kArticleTitle;
  }
  if (kind == ReferenceKind::kIncol && springer) kind = ReferenceKind::kInpro;
  return PrintReference(references, run.styles.Format(*style, StyleKeyFor(kind, true)),
                        ValueOrder(kind, *style), values);
}

/// Writes the list of keys; 0 after a `PrintError` when that fails.
int WriteKeys(const RunContext& run, const std::vector<std::string>& keys) {
  const auto list = CreateWithHeader(run, run.second_path, Output::kExtractKeys);
  if (!list) return Fail(run, kKeysNotCreated);
  for (const std::string& key : keys) list->Write({key, "\n"});
  return CloseOutputs(run, {list.get()}) ? kSucceeded : kFailed;
}

/// The macros that the entries of a text use, in capitals: values, or parts of them, that stand in
/// neither braces nor quotes.
void AddMacros(std::string_view entry, std::set<std::string>& macros) {
  ByteFinder<ByteRange::One('{'), ByteRange::One('}'), ByteRange::One('"'), ByteRange::One('='),
             ByteRange::One('#')>
      stops(entry);
  int depth = 0;
  bool in_quotes = false;
  for (std::size_t at = stops.Find(entry.find(','), entry.size()); at < entry.size();
       at = stops.Find(at + 1, entry.size())) {
    const char byte = entry[at];
    if (byte == '{') ++depth;
    if (byte == '}') --depth;
    if (byte == '"' && depth <= 0) in_quotes = !in_quotes;
    if ((byte != '=' && byte != '#') || in_quotes || depth > 0) continue;
    const std::size_t begin = std::min(entry.find_first_not_of(kBlanks, at + 1), entry.size());
    if (begin == entry.size() || !IsLetter(entry[begin])) continue;
    const std::size_t end = std::min(entry.find_first_of(" \t\r\n#,})=", begin), entry.size());
    macros.insert(InCapitals(entry.substr(begin, end - begin)));
  }
}

/// Reports the definitions of macros that the new library uses but does not contain.
void ReportDefinitions(std::string_view library, const std::set<std::string>& macros,
                       FileWarnings& warnings) {
  constexpr std::string_view kString = "@string";
  constexpr std::size_t kLongestName = 200;
  for (std::size_t at = 0; !macros.empty() && at < library.size();) {
    const std::string_view line = LineAt(library, at);
    // BibTeX passes over what stands before the "@".
    const std::size_t begin = std::min(line.find('@'), line.size());
    const std::string_view text = Trim(line.substr(begin), kBlanks);
    if (EqualNoCase(text.substr(0, kString.size()), kString)) {
      // The name may stand on the next line.
      const std::string_view command = library.substr(at + begin, kLongestName);
      const std::size_t opening = std::min(command.find_first_of("{("), command.size() - 1);
      const std::string_view definition = Trim(command.substr(opening + 1), kBlanks);
      const std::size_t name_size =
          std::min(definition.find_first_of(" \t\r\n="), definition.size());
      if (macros.contains(InCapitals(definition.substr(0, name_size)))) {
        warnings.Report(
            WarningKind::kTextNotCopied, at, {},
            "entries of the new library use the definition, which is not copied: " + Quoted(text));
      }
    }
    at += line.size() + 1;
  }
}

/// Reports entries that BibTeX takes for cited keys, and Extract does not.
void ReportPassedHeads(std::string_view library, const std::vector<std::string>& keys,
                       const CitedEntries& entries, FileWarnings& warnings) {
  FindPassedHeads(library, keys, entries, [&](const PassedHead& passed) {
    warnings.Report(
        WarningKind::kBrokenHead, passed.head, passed.key,
        {"Extract took the entry in line ", std::to_string(warnings.LineOf(passed.taken)),
         " for the key, but BibTeX takes this one: its first line must have a known type and then "
         "\"{\", the key and a comma, without blanks"});
  });
}

using KeyMapInCapitals = std::unordered_map<std::string, std::string, KeyedStringHash>;

/// Keys of the library that differ only in their case from a cited key without an entry, by that
/// key in capitals. BibTeX finds such an entry, and warns; Extract does not find it.
KeyMapInCapitals KeysInOtherCase(std::string_view library, const std::vector<std::string>& keys,
                                 const CitedEntries& entries) {
  KeyMapInCapitals others;
  for (std::size_t i = 0; i < keys.size(); ++i) {
    if (!entries.Head(i)) others.emplace(InCapitals(keys[i]), std::string());
  }
  for (std::size_t at = library.find('@'); !others.empty() && at != std::string_view::npos;
       at = library.find('@', at + 1)) {
    if (at > 0 && library[at - 1] != '\n') continue;
    const std::string_view key = CopyUntilChar(LineAt(library, at), '{', ',');
    const auto other = others.find(InCapitals(key));
    if (other != others.end() && other->second.empty()) other->second = key;
  }
  return others;
}

/// Writes the library of the cited entries; returns their number, 0 after a `PrintError`.
int WriteLibrary(const RunContext& run, const std::vector<std::string>& keys,
                 const std::function<void(std::size_t, std::string_view)>& on_missing) {
  std::optional<LineStream> library = OpenForUpdate(run, run.second_path);
  if (!library) return Fail(run, kLibraryNotOpened);
  const auto output = CreateWithHeader(run, run.second_path, Output::kExtractLibrary);
  if (!output) return Fail(run, kLibraryNotCreated);
  FileWarnings warnings = WarningsOf(run, run.second_path, *library);
  ValueCounts counts;
  const NameMatcher tags(kReferenceTags);
  const ScanRules rules{.line_limit = limits::kShortLine,
                        .read_tags = &tags,
                        .one_value_a_line = true,
                        .stray_tags = &tags};
  std::set<std::string> macros;
  KeysAnyCase copied;
  std::vector<std::pair<std::string_view, LibraryRange>> children;  // parents and their entries
  SelectionObserver observer;
  KeyMapInCapitals other_case;
  if (warnings.Wanted()) {
    observer.on_missing = [&](std::size_t key) {
      on_missing(key, other_case[InCapitals(keys[key])]);
    };
    observer.on_found = [&](const CitedEntries& entries) {
      for (std::size_t i = 0; i < keys.size(); ++i) {
        if (entries.Head(i)) copied.Add(keys[i]);
      }
      ReportPassedHeads(library->Bytes(), keys, entries, warnings);
      other_case = KeysInOtherCase(library->Bytes(), keys, entries);
    };
    observer.on_end = [&](std::size_t key, std::size_t head) {
      warnings.Report(WarningKind::kEndedEarly, head, keys[key],
                      "the library ends with the first line of the entry: Extract fails there; put "
                      "each tag on a line of its own, or run with --prepare");
    };
    observer.on_range = [&](const LibraryRange& range) {
      const ValueCounts of_entry = ScanRange(library->Bytes(), range, rules, warnings);
      counts += of_entry;
      const std::string_view text = library->Bytes().substr(range.begin, range.end - range.begin);
      if (const auto parent = ParentOf(text)) children.emplace_back(*parent, range);
      // The values of an entry of an unknown type are not counted.
      std::string head(LineAt(text, 0));
      const bool has_others = text.find("\n@") != std::string_view::npos;
      if (of_entry.unbraced != 0 || has_others || !IsKnownEntry(head)) {
        AddMacros(text, macros);
      }
    };
  }
  const int found =
      SelectAndWriteBibTeXEntriesIntoNewFile(run.reporter, *output, *library, keys, observer);
  ReportValues(counts, warnings);
  for (const auto& [parent, range] : children) {
    if (copied.Has(parent)) continue;
    ReportMissingParent(library->Bytes().substr(range.begin), range.begin, parent, warnings);
  }
  ReportDefinitions(library->Bytes(), macros, warnings);
  if (found == 0) PrintError(run.reporter, kNothingFound);
  return CloseOutputs(run, {output.get()}) ? found : 0;
}

/// Writes the references of the new library, which holds `found` entries for `cited` keys.
int WriteReferences(const RunContext& run, std::size_t cited, int found) {
  const std::string source =
      OutputPath(run.second_path, Output::kExtractLibrary, run.output_directory);
  std::optional<LineStream> library = OpenForUpdate(run, source);
  if (!library) return Fail(run, kNewLibraryNotOpened);
  const auto references = CreateWithHeader(run, run.second_path, Output::kExtractTex);
  if (!references) return Fail(run, kReferencesNotCreated);
  if (static_cast<std::size_t>(found) < cited) ReportMissing(run, *references, cited, found);
  if (ReadJournalStyles(run, run.styles) != kSucceeded) return kFailed;

  FileWarnings warnings = WarningsOf(run, source, *library);
  GrowingOutput size(run, *references, 4 * library->Bytes().size(), kLongValues);
  const WalkRules rules{
      .line_limit = limits::kLongLine,
      .strips_titles = true,
      .collapses_dashes = false,
      .is_plain_text = false,
      .advice = kAdvice,
      .name_reference =
          [](std::string_view key) { return std::string("\\bibitem{").append(key).append("}"); },
      .print = [&](const EntryKind& entry,
                   EntryValues& values) { return PrintExtracted(run, *references, entry, values); },
      .size = &size};
  ReferenceWalk walk(*library, *references, run.settings, rules, warnings);
  if (!walk.ReadNext()) return Fail(run, kNoHeader);
  if (!walk.Run(found)) return Fail(run, kLibraryTooShort);
  ReportUnsupported(run.reporter, walk.Unsupported(), kReferencesName);
  return CloseOutputs(run, {references.get()}) ? kSucceeded : kFailed;
}

}  // namespace

int ScanCitations(LineStream& document, std::vector<std::string>& keys,
                  std::vector<std::size_t>* offsets) {
  std::unordered_set<std::string, KeyedStringHash> known(keys.begin(), keys.end());
  const auto store = [&](const std::string& key) {
    if (!known.insert(key).second) return;
    keys.push_back(key);
    if (offsets) offsets->push_back(document.Position() - 1);
  };
  while (const auto text = document.ReadLine(limits::kShortLine)) {
    if (text->find(kCiteBrace) == std::string_view::npos) continue;
    std::string line(*text);
    while (line.find(kCiteBrace) != std::string::npos) {
      line.erase(0, line.find(kCite));
      std::string list(CopyUntilChar(line, '{', '}'));
      ReplaceBetween(line, "done", '\\', '{');
      while (list.find(',') != std::string::npos) store(SplitAtComma(list));
      if (!list.empty()) store(list);
    }
  }
  return static_cast<int>(keys.size());
}

int SelectAndWriteBibTeXEntriesIntoNewFile(Reporter& reporter, OutputFile& output,
                                           LineStream& library,
                                           const std::vector<std::string>& keys,
                                           const SelectionObserver& observer) {
  CitedEntries entries(keys);
  entries.Find(library, observer.on_range);
  if (observer.on_found) observer.on_found(entries);
  int found = 0;
  for (std::size_t i = 0; i < keys.size(); ++i) {
    const std::optional<std::size_t> head = entries.Head(i);
    if (!head) {
      if (observer.on_missing) observer.on_missing(i);
      continue;
    }
    library.SetPosition(*head);
    if (!CopyEntry(output, library)) {
      if (observer.on_end) observer.on_end(i, *head);
      PrintError(reporter, kLibraryEndsWithHead);
      return 0;
    }
    ++found;
  }
  return found;
}

int RunExtract(const RunContext& run) {
  if (run.first_path.empty()) return Fail(run, kNoDocument);
  if (run.second_path.empty()) return Fail(run, kNoLibrary);
  std::optional<LineStream> document = OpenForUpdate(run, run.first_path);
  if (!document) return Fail(run, kDocumentNotOpened);
  CitedKeys cited(run);
  if (run.citations.LikeLaTeX()) {
    cited.ReadLikeLaTeX(std::move(*document));
  } else {
    cited.ReadPlainly(std::move(*document), ScanCitations);
  }
  if (cited.NeedsLibrary()) {
    std::optional<LineStream> library = OpenForUpdate(run, run.second_path);
    if (!library) return Fail(run, kLibraryNotOpened);
    cited.ReadLibrary(std::move(*library));
  }
  if (cited.Keys().empty()) cited.ReportNone();
  if (WriteKeys(run, cited.Keys()) != kSucceeded) return kFailed;
  const auto report = [&](std::size_t key, std::string_view other_case) {
    std::string text = "the cited key has no entry in the library";
    if (!other_case.empty() && other_case != cited.Keys()[key])
      text.append(", which has ").append(Quoted(other_case));
    cited.Report(WarningKind::kMissingCitation, key, text);
  };
  const int found = WriteLibrary(run, cited.Keys(), report);
  if (found == 0) return kFailed;
  return WriteReferences(run, cited.Keys().size(), found);
}

}  // namespace tarvel
