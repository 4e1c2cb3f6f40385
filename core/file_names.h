// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace tarvel {

/// The files that the operations write, in the order of `OutputSuffixes`.
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

/// What takes the place of the library's extension in each file's name. ORDER: `Output`.
inline constexpr std::array<std::string_view, 17> OutputSuffixes{
    "_text.txt",    "_journal.log", "_journal.bib",      "_extract.tex",    "_extract.bib",
    "_extract.txt", "_comp.log",    "_comp_missing.bib", "_comp_equal.bib", "_tag.log",
    "_tag.bib",     "_double.log",  "_double.bib",       "_char.log",       "_char.bib",
    "_author.log",  "_author.bib"};

constexpr std::string_view SuffixOf(Output output) {
  return OutputSuffixes[static_cast<std::size_t>(output)];
}

/// The path with everything from its last "." on replaced by `suffix`; nothing when it holds no
/// "." behind its first byte. The last "." of the whole path counts, so a path whose file name has
/// none but whose directory has one is cut inside the directory's name.
std::optional<std::string> ChangeExtension(std::string_view path, std::string_view suffix);

/// The path with `suffix` put before its last "."; nothing when it holds none.
std::optional<std::string> InsertBeforeExtension(std::string_view path, std::string_view suffix);

}  // namespace tarvel
