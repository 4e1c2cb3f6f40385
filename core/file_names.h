// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "core/output_file.h"

namespace tarvel {

/// The files that the operations write. ORDER: `kOutputRows`.
enum class Output {
  kText,
  kJournalLog,
  kJournalLibrary,
  kExtractTex,
  kExtractLibrary,
  kExtractKeys,
  kCompareLog,
  kCompareMissing,
  kCompareEqual,
  kTagLog,
  kTagLibrary,
  kDoubleLog,
  kDoubleLibrary,
  kCharacterLog,
  kCharacterLibrary,
  kAuthorLog,
  kAuthorLibrary,
};

/// How a file is named and created.
struct OutputRow {
  std::string_view suffix;  // takes the place of the library's extension
  CreateMode mode;
};

/// ORDER: `Output`
inline constexpr auto kOutputRows = std::to_array<OutputRow>({
    {"_text.txt", CreateMode::kWrite},
    {"_journal.log", CreateMode::kWrite},
    {"_journal.bib", CreateMode::kWriteRead},
    {"_extract.tex", CreateMode::kWrite},
    {"_extract.bib", CreateMode::kWrite},
    {"_extract.txt", CreateMode::kWrite},
    {"_comp.log", CreateMode::kWrite},
    {"_comp_missing.bib", CreateMode::kWrite},
    {"_comp_equal.bib", CreateMode::kWrite},
    {"_tag.log", CreateMode::kWrite},
    {"_tag.bib", CreateMode::kWriteRead},
    {"_double.log", CreateMode::kWrite},
    {"_double.bib", CreateMode::kWriteRead},
    {"_char.log", CreateMode::kWriteRead},
    {"_char.bib", CreateMode::kWriteRead},
    {"_author.log", CreateMode::kWriteRead},
    {"_author.bib", CreateMode::kWriteRead},
});

/// The suffixes alone. ORDER: `Output`
inline constexpr auto OutputSuffixes = [] {
  std::array<std::string_view, kOutputRows.size()> suffixes{};
  for (std::size_t i = 0; i < suffixes.size(); ++i) suffixes[i] = kOutputRows[i].suffix;
  return suffixes;
}();

/// Whether `kOutputRows` has a row for `output`.
constexpr bool HasRow(Output output) {
  return static_cast<std::size_t>(output) < kOutputRows.size();
}

constexpr std::string_view SuffixOf(Output output) {
  return kOutputRows[static_cast<std::size_t>(output)].suffix;
}

constexpr CreateMode ModeOf(Output output) {
  return kOutputRows[static_cast<std::size_t>(output)].mode;
}

/// Where the configuration files stand below the program directory.
inline constexpr std::string_view kStylesFile = "/JournalStyles/Journal_styles_linux.tvl";
inline constexpr std::string_view kLaTeXCommandsFile = "/LaTeXCommands/LaTeXCommands_linux.tvl";
inline constexpr std::string_view kJournalListFile = "/JournalStrings/JournalStrings.tvl";

/// The path with everything from its last "." on replaced by `suffix`; nothing when it holds no
/// "." after its first byte. The last "." of the whole path counts, so a path whose file name has
/// none but whose directory has one is cut inside the directory's name.
std::optional<std::string> ChangeExtension(std::string_view path, std::string_view suffix);

/// The path of the file with the same name in `directory`; the path itself when that is empty.
std::string InDirectory(std::string_view path, std::string_view directory);

/// The path with `suffix` put before its last "."; nothing when it holds none.
std::optional<std::string> InsertBeforeExtension(std::string_view path, std::string_view suffix);

}  // namespace tarvel
