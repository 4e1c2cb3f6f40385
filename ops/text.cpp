// SPDX-License-Identifier: MIT
// Text: the entries of a library as references of a journal style, in plain text or in LaTeX.
#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/text_primitives.h"
#include "ops/large_outputs.h"
#include "ops/operations.h"
#include "ops/references/latex_commands.h"
#include "ops/references/reference_walk.h"
#include "warnings/library_scan.h"

namespace tarvel {

namespace {

constexpr std::string_view kNoLibrary =
    "Function CreateText()_1, initialization => BibTeX file does not exist?";
constexpr std::string_view kNotOpened =
    "Function CreateText()_2 => Could not open the BibTeX file?";
constexpr std::string_view kNotReopened =
    "Function CreateText()_3 => Could not open the BibTeX file? Very strange ... .";
constexpr std::string_view kTextNotCreated =
    "Function CreateText()_4 => Could not create a new text file?";
constexpr std::string_view kLibraryTooShort =  // sic: the library is not a new one
    "Function Text()_5 => Could not read the new BibTeX file?";
constexpr std::string_view kValueTooLong =
    "Function CreateText()_6 => The rows of 'LaTeXCommands.tvl' make a value longer than "
    "1,000,000 bytes!";
constexpr std::string_view kChangedTooOften =
    "Function CreateText()_7 => The rows of 'LaTeXCommands.tvl' change the values too often!";

/// Steps of `RowBudget` that each byte of the library allows. Real libraries need at most five.
constexpr std::uint64_t kStepsForAByte = 200;

constexpr std::string_view kAdvice = "You have to type the entry yourself. ";
constexpr std::string_view kTextName = "_text.txt";

using enum ReferenceValue;
constexpr std::array kArticleTexts{kAuthor, kTitle, kJournal};
constexpr std::array kBookTexts{kAuthor, kTitle, kPublisher, kAddress};
constexpr std::array kIncolTexts{kAuthor, kTitle, kBooktitle, kEditor, kPublisher, kAddress};
constexpr std::array kInproTexts{kAuthor, kTitle, kBooktitle, kEditor, kAddress};
constexpr std::array kThesisTexts{kAuthor, kTitle, kSchool};

// The values of a kind of entry that may hold LaTeX commands. ORDER: ReferenceKind
constexpr std::array<std::span<const ReferenceValue>, 6> kTexts{
    kArticleTexts, kArticleTexts, kBookTexts, kIncolTexts, kInproTexts, kThesisTexts};

std::string NameReference(const Settings& settings, std::string_view key) {
  if (settings.PrintBibitem == 0) return {};
  const bool latex = settings.UseLaTeXCode != 0;
  return std::string(latex ? "\\bibitem{" : "[").append(key).append(latex ? "}" : "]");
}

/// Makes the values ready to be printed. They stay so: what an entry takes over from the one before
/// it is treated once more.
Treatment TreatValues(const Settings& settings, const LaTeXCommands& commands, RowBudget& budget,
                      ReferenceKind kind, EntryValues& values) {
  if (settings.UseLaTeXCode != 0) {
    StripBraces(values[kTitle]);
    StripBraces(values[kBooktitle]);
    return Treatment::kDone;
  }
  for (const ReferenceValue value : kTexts[static_cast<std::size_t>(kind)]) {
    const Treatment treatment = ApplyLaTeXCommands(values[value], commands, budget);
    if (treatment != Treatment::kDone) return treatment;
  }
  return Treatment::kDone;
}

std::vector<ReferenceValue> PrintText(const RunContext& run, OutputFile& output, ReferenceKind kind,
                                      const EntryValues& values) {
  const std::optional<JournalStyle> style = SelectedStyle(run.settings);
  if (!style) return {};
  if (kind == ReferenceKind::kArticle && run.settings.PrintTitle != 0) {
    kind = ReferenceKind::kArticleTitle;
  }
  const StyleKey key = StyleKeyFor(kind, run.settings.UseLaTeXCode != 0);
  return PrintReference(output, run.styles.Format(*style, key), ValueOrder(kind, *style), values);
}

}  // namespace

int RunText(const RunContext& run) {
  if (run.first_path.empty()) return Fail(run, kNoLibrary);
  std::optional<LineStream> library = OpenForUpdate(run, run.first_path);
  if (!library) return Fail(run, kNotOpened);
  const int entries = CountEntries(*library);
  // What was read to count the entries serves the walk, too.
  if (!run.files.OpenSource(run.first_path, ReadMode::kUpdate)) return Fail(run, kNotReopened);
  library->SetPosition(0);
  const auto output = CreateWithHeader(run, run.first_path, Output::kText);
  if (!output) return Fail(run, kTextNotCreated);

  LaTeXCommands commands;
  if (CreateText_LaTeXArray(run, commands) != kSucceeded) return kFailed;
  if (ReadJournalStyles(run, run.styles) != kSucceeded) return kFailed;

  FileWarnings warnings = WarningsOf(run, run.first_path, *library);
  const NameMatcher tags(kReferenceTags);
  ScanLibrary(library->Bytes(),
              {.line_limit = limits::kShortLine,
               .read_tags = &tags,
               .one_value_a_line = true,
               .stray_tags = &tags},
              warnings);
  const bool latex = run.settings.UseLaTeXCode != 0;
  Treatment treatment = Treatment::kDone;
  const std::uint64_t steps = run.row_steps + kStepsForAByte * library->Bytes().size();
  RowBudget budget(steps);
  RowBudget warning_budget(steps / 4);  // what is printed does not depend on warnings
  GrowingOutput size(run, *output, 4 * library->Bytes().size(), kLongValues);
  const WalkRules rules{
      .line_limit = limits::kShortLine,
      .strips_titles = false,
      .collapses_dashes = true,
      .is_plain_text = !latex,
      .advice = kAdvice,
      .name_reference = [&](std::string_view key) { return NameReference(run.settings, key); },
      .print =
          [&](const EntryKind& entry, EntryValues& values) {
            if (treatment == Treatment::kDone) {
              treatment = TreatValues(run.settings, commands, budget, entry.kind, values);
            }
            if (treatment != Treatment::kDone) return std::vector<ReferenceValue>();
            return PrintText(run, *output, entry.kind, values);
          },
      .find_cut =
          [&](std::string_view value) {
            return latex ? std::string_view() : commands.FindCut(value, warning_budget);
          },
      .size = &size};
  ReferenceWalk walk(*library, *output, run.settings, rules, warnings);
  if (!walk.Run(entries)) return Fail(run, kLibraryTooShort);
  if (treatment == Treatment::kTooLong) return Fail(run, kValueTooLong);
  if (treatment == Treatment::kTooOften) return Fail(run, kChangedTooOften);
  ReportUnsupported(run.reporter, walk.Unsupported(), kTextName);
  return CloseOutputs(run, {output.get()}) ? kSucceeded : kFailed;
}

}  // namespace tarvel
