// SPDX-License-Identifier: MIT
// Journals: writes a library anew in which every journal that a list knows has its full name or its
// abbreviation.
#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "core/text_primitives.h"
#include "ops/journals/journal_lines.h"
#include "ops/journals/journal_table.h"
#include "ops/large_outputs.h"
#include "ops/operations.h"
#include "warnings/library_scan.h"

namespace tarvel {

namespace {

constexpr std::string_view kNotOpened =
    "Function JournalStrings()_1: Could not open the BibTeX file!";
constexpr std::string_view kListNotOpened =
    "Function JournalStrings()_2: Could not open the '.tvl' file !\n";
constexpr std::string_view kLogNotCreated =
    "Function JournalStrings()_3: Could not open the log file!";
constexpr std::string_view kLibraryNotCreated =
    "Function JournalStrings()_4: Could not create the BibTeX file!";

// ORDER: JournalListFault. The list's old names ('.bs') and the doubled "file" stay: sic.
constexpr std::array<std::string_view, 5> kListFaults{
    "", "Function JournalStrings()_5: There is no 'START' in the file '.bs' file!",
    "Function JournalStrings()_6: Cannot read journal name in the file 'JournalStrings.bs' file!",
    "Function JournalStrings()_7: Cannot read the abbreviation of the journal name in the file "
    "'JournalStrings.bs' file!",
    "Function JournalStrings()_8: There is no 'variations' string in the file 'JournalStrings.bs' "
    "file!"};

constexpr std::size_t kNameColumn = 70;  // bytes, to which a name is filled up from the left

std::string ListPath(const RunContext& run) {
  if (run.settings.UseOwnJournalFile != 0) return run.second_path;
  return run.program_directory().append(kJournalListFile);
}

void WriteJournalList(OutputFile& log, const JournalTable& journals) {
  // One more than there are: readers of the log have always known this count so.
  log.Write({"There are ", std::to_string(journals.Journals().size() + 1),
             " journal names listed in the 'JournalStrings.bs' file:\n"});
  const std::string fill(kNameColumn, ' ');
  for (const Journal& journal : journals.Journals()) {
    const std::string_view name = journal.abbreviation;
    const std::string_view before =
        std::string_view(fill).substr(std::min(name.size(), kNameColumn));
    log.Write({"Journal name: ", before, name,
               ", number of variations: ", std::to_string(journal.variations), "\n"});
  }
  log.Write("\n\n");
}

}  // namespace

int RunJournals(const RunContext& run) {
  std::optional<LineStream> input = run.files.OpenLines(run.first_path, ReadMode::kRead);
  if (!input) return Fail(run, kNotOpened, kInputNotOpened);
  std::optional<LineStream> list = run.files.OpenLines(ListPath(run), ReadMode::kRead);
  if (!list) return Fail(run, kListNotOpened);

  const auto log = CreateWithHeader(run, run.first_path, Output::kJournalLog);
  if (!log) return Fail(run, kLogNotCreated);
  const auto library = CreateWithHeader(run, run.first_path, Output::kJournalLibrary);
  if (!library) return Fail(run, kLibraryNotCreated);

  JournalTable journals(std::move(*list));
  const JournalListFault fault = journals.Read();
  if (fault != JournalListFault::kNone) {
    Fail(run, kListFaults[static_cast<std::size_t>(fault)]);
    (void)CloseOutputs(run, {log.get(), library.get()});  // the run has failed, whatever arrives
    return kFailed;
  }

  log->Write("Here are all Journal names which have been renamed:\n\n\n");
  FileWarnings warnings = WarningsOf(run, run.first_path, *input);
  constexpr std::array kStrayTags{std::string_view("journal")};
  const NameMatcher tags(kStrayTags);
  NamedKeys keys(input->Bytes(), [](std::string_view entry) { return CountByte(entry, '\n'); });
  ScanLibrary(input->Bytes(),
              {.line_limit = limits::kPairLine,
               .stray_tags = &tags,
               .on_entry = [&](const EntryHead& head) { keys.Take(head); }},
              warnings);
  WarnOfLargeOutput(run, log->Path(), keys.Bytes(), kLongKeys);
  RenameJournals(*input, *library, *log, journals, run.settings, warnings);
  log->Write({"The changed journal names are stored in a new BibTeX library:\n", library->Path(),
              "\n\n\n\n"});
  WriteJournalList(*log, journals);
  return CloseOutputs(run, {log.get(), library.get()}) ? kSucceeded : kFailed;
}

}  // namespace tarvel
