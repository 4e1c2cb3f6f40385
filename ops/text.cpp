// SPDX-License-Identifier: MIT
// Text: the entries of a library as references of a journal style, in plain text or in LaTeX.
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "core/text_primitives.h"
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
void TreatValues(const Settings& settings, const LaTeXCommands& commands, ReferenceKind kind,
                 EntryValues& values) {
  if (settings.UseLaTeXCode != 0) {
    StripBraces(values[kTitle]);
    StripBraces(values[kBooktitle]);
    return;
  }
  for (const ReferenceValue value : kTexts[static_cast<std::size_t>(kind)]) {
    ApplyLaTeXCommands(values[value], commands);
  }
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

/// The number of entries of the library; nothing when it cannot be opened.
std::optional<int> CountLibrary(const RunContext& run) {
  std::optional<LineStream> library = run.files.OpenLines(run.first_path, ReadMode::kUpdate);
  if (!library) return std::nullopt;
  return CountEntries(*library);
}

}  // namespace

int RunText(const RunContext& run) {
  if (run.first_path.empty()) return Fail(run, kNoLibrary);
  const std::optional<int> entries = CountLibrary(run);
  if (!entries) return Fail(run, kNotOpened);
  std::optional<LineStream> library = run.files.OpenLines(run.first_path, ReadMode::kUpdate);
  if (!library) return Fail(run, kNotReopened);
  const auto output = CreateWithHeader(run, run.first_path, Output::kText);
  if (!output) return Fail(run, kTextNotCreated);

  LaTeXCommands commands;
  if (CreateText_LaTeXArray(run, commands) != kSucceeded) return kFailed;
  if (ReadJournalStyles(run, run.styles) != kSucceeded) return kFailed;

  FileWarnings warnings = WarningsOf(run, run.first_path, *library);
  ScanLibrary(
      library->Bytes(),
      {.line_limit = limits::kShortLine, .read_tags = kReferenceTags, .one_value_a_line = true},
      warnings);
  const bool latex = run.settings.UseLaTeXCode != 0;
  const WalkRules rules{
      .line_limit = limits::kShortLine,
      .strips_titles = false,
      .collapses_dashes = true,
      .is_plain_text = !latex,
      .advice = kAdvice,
      .name_reference = [&](std::string_view key) { return NameReference(run.settings, key); },
      .print =
          [&](const EntryKind& entry, EntryValues& values) {
            TreatValues(run.settings, commands, entry.kind, values);
            return PrintText(run, *output, entry.kind, values);
          },
      .find_cut =
          [&](std::string_view value) {
            return latex ? std::string_view() : commands.FindCut(value);
          }};
  ReferenceWalk walk(*library, *output, run.settings, rules, warnings);
  if (!walk.Run(*entries)) return Fail(run, kLibraryTooShort);
  ReportUnsupported(run.reporter, walk.Unsupported(), kTextName);
  return CloseOutputs(run, {output.get()}) ? kSucceeded : kFailed;
}

}  // namespace tarvel
