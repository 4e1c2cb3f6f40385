// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "ops/journal_styles.h"
#include "ops/references/latex_commands.h"
#include "tests/support/memory_files.h"
#include "tests/support/plain_references.h"

// Inputs for the tests of Extract and Text: style files, and random documents, libraries and
// command tables of the kind that breaks assumptions.

namespace tarvel::testing {

inline constexpr std::string_view kDocumentPath = "/paper/paper.tex";
inline constexpr std::string_view kLibraryPath = "/lib/lit.bib";
inline constexpr std::string_view kStylesPath = "/program/JournalStyles/Journal_styles_linux.tvl";
inline constexpr std::string_view kCommandsPath = "/program/LaTeXCommands/LaTeXCommands_linux.tvl";

/// Applies all rows to the value, however much they look at.
Treatment ApplyAll(std::string& value, const LaTeXCommands& commands);

/// The names of the 71 definitions that a style file has: all but the plain thesis of
/// Springer_Comp_Sci.
std::vector<std::string> DefinitionNames();

/// A style file that defines every name by `format(name)`.
std::string StylesFile(const std::function<std::string(const std::string& name)>& format);

/// A style file in which every reference is its format's name and up to nine values with "|"
/// between: "<APS_book>a|b|c|d|e|f|||\n". A value too many would show.
std::string MarkerStyles();

/// The files of a world, in memory.
MemoryFiles FilesOf(const PlainWorld& world);

/// The files, boxes, terminal texts and result of a run of the product over a world.
PlainOutcome RunWorld(int (*operation)(const RunContext&), const RunContext& run,
                      MemoryFiles& files);

/// Random inputs, the same for the same seed.
class WorldMaker {
 public:
  explicit WorldMaker(unsigned seed) : random_(seed) {}
  PlainWorld Make();
  std::string Library();
  std::string Document();
  std::string Styles();
  std::string Commands();
  std::string Authors();
  /// A random text of up to `most` of the pieces.
  std::string Pieces(const std::vector<std::string>& pieces, int most);
  bool Chance(int percent) { return Number(100) < percent; }
  int Number(int below) { return static_cast<int>(random_() % static_cast<unsigned>(below)); }
  const std::string& Pick(const std::vector<std::string>& from) {
    return from[static_cast<std::size_t>(Number(static_cast<int>(from.size())))];
  }

 private:
  std::string Entry();
  std::string TagLine();
  std::string Value();

  std::mt19937 random_;
};

}  // namespace tarvel::testing
