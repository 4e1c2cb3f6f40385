// SPDX-License-Identifier: MIT
#include "tests/support/operation_runs.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include "app/globals.h"
#include "app/texts.h"
#include "ops/operations.h"

namespace tarvel::testing {

namespace {

struct OperationBody {
  OperationCode code;
  int (*run)(const RunContext& run);
};

constexpr std::string_view kCommands =
    "comment\nSTART\n\\\"a\t\xc3\xa4\n{\\\"o}\t\xc3\xb6\n\\alpha alpha\n#\\beta beta\n\\emph{ \n"
    "{ \n} \n$ \n\\& &\n";

std::string ReadSource(const std::string& name) {
  std::ifstream file(TARVEL_SOURCE_DIR "/" + name, std::ios::binary);
  if (!file.is_open()) std::abort();
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

const std::string_view kSampleLibrary =
    "% a library\n"
    "@STRING{jp = {J. Phys.}}\n\n"
    "@article{one,\n  author = {Anna Berg and Carl De Haan},\n  title = {{On {Alpha} and\n"
    "   beta}},\n  journal = {Journal of Physics},\n  year = {2001},\n  volume = {12},\n"
    "  pages = {34--56},\n  doi = {10.1/2},\n  abstract = {caf\xc3\xa9}\n}\n\n"
    "@ARTICLE{two,\n  author = {Berg, A. and Haan, C.},\n  title = {Second},\n"
    "  journal = {J. Phys.},\n  year = {2002},\n  volume = {13},\n  pages = {7}\n}\n\n"
    "@book{three,\n  author = {D. Elm},\n  title = {A {B}ook},\n  publisher = {P},\n"
    "  address = {Q},\n  year = {1999}\n}\n\n"
    "@article{one,\n  author = {Anna Berg and Carl De Haan},\n  title = {{On {Alpha} and\n"
    "   beta}},\n  journal = {Journal of Physics},\n  year = {2001},\n  volume = {12},\n"
    "  pages = {34--56}\n}\n\n"
    "@article{two,\n  author = {Fir, G.},\n  title = {Other},\n  journal = {None},\n"
    "  year = {2003},\n  volume = {1},\n  pages = {2}\n}\n\n"
    "@inproceedings{four,\n  author = {H. Ivy},\n  title = {Talk},\n  booktitle = {Proc},\n"
    "  year = {2004}\n}\n\n"
    "@misc{five,\n  owner = {me},\n  timestamp = {2004}\n}\n\n"
    "@phdthesis{six,\n  author = {J. Kay},\n  title = {Thesis},\n  school = {S},\n"
    "  year = {2005}\n}\n";

const std::string_view kSampleOther =
    "@article{uno,\n  author = {Berg, A. and Haan, C.},\n  title = {Second},\n"
    "  journal = {J. Phys.},\n  year = {2002},\n  volume = {13},\n  pages = {7}\n}\n\n"
    "@book{three,\n  author = {D. Elm},\n  title = {A {B}ook},\n  publisher = {P},\n"
    "  address = {Q},\n  year = {1999}\n}\n\n"
    "@book{new,\n  author = {L. Moss},\n  title = {New},\n  publisher = {R},\n"
    "  year = {2006}\n}\n";

const std::string_view kSampleDocument =
    "\\documentclass{article}\n\\begin{document}\nSee \\cite{one,three} and \\cite{ghost} and\n"
    "\\cite{four}\\cite{six}.\n\\end{document}\n";

const std::string_view kSampleJournals =
    "comment\nSTART\n\n******* Journal-start *******\nJournal of Physics\nJ. Phys.\n"
    "******* Variations    *******\nJ Phys\nPhysics Journal\n******* Journal-end   *******\n\n"
    "******* Journal-start *******\nActa Zero\nA. Z.\n******* Variations    *******\n"
    "******* Journal-end   *******\n";

std::span<const OperationRun> OperationRuns() {
  using enum OperationCode;
  // ORDER: kOperations
  static constexpr auto kBodies =
      std::to_array<OperationBody>({{kExtract, RunExtract},
                                    {kCompare, RunCompare},
                                    {kText, RunText},
                                    {kJournals, RunJournals},
                                    {kCleanDoubles, RunCleanDoubles},
                                    {kCleanAuthors, RunCleanAuthors},
                                    {kCleanCharacters, RunCleanCharacters},
                                    {kCleanTags, RunCleanTags}});
  static_assert(std::equal(kBodies.begin(), kBodies.end(), kOperations.begin(), kOperations.end(),
                           [](const OperationBody& body, const Operation& row) {
                             return body.code == row.code;
                           }),
                "each row of kOperations needs its function here, in the same order");
  static const auto kRuns = [] {
    std::vector<OperationRun> runs;
    for (std::size_t i = 0; i < kBodies.size(); ++i) {
      runs.push_back({kOperations[i].batch_name, kBodies[i].run, kOperations[i]});
    }
    return runs;
  }();
  return kRuns;
}

std::string TestName(std::string_view word) {
  std::string name(word);
  std::erase(name, '-');
  return name;
}

const std::string& LibraryOf(const OperationRun& operation, const RunContext& run) {
  return operation.row.named_after == Picker::kSecond ? run.second_path : run.first_path;
}

std::vector<std::string> OutputPaths(const OperationRun& operation, const RunContext& run) {
  std::vector<std::string> paths;
  for (const Output output : operation.row.outputs) {
    paths.push_back(OutputPath(LibraryOf(operation, run), output));
  }
  return paths;
}

std::string_view HeaderOf(std::string_view path) {
  if (path.ends_with(".log")) return LogFileHeader;
  if (path.ends_with(".bib")) return BibFileHeader;
  if (path.ends_with(".txt")) return TextFileHeader;
  if (path.ends_with(".tex")) return TexFileHeader;
  std::abort();
}

void AddConfiguration(MemoryFiles& files) {
  static const std::string styles = ReadSource("data" + std::string(kStylesFile));
  files.files["/program" + std::string(kStylesFile)] = styles;
  files.files["/program" + std::string(kLaTeXCommandsFile)] = kCommands;
  files.files["/program" + std::string(kJournalListFile)] = kSampleJournals;
}

RunContext SampleRun(const OperationRun& operation, MemoryFiles& files) {
  AddConfiguration(files);
  files.files["lit.bib"] = kSampleLibrary;
  switch (operation.row.needs) {
    case Needs::kTwoLibraries:
      files.files["more.bib"] = kSampleOther;
      return MemoryRun(files, "lit.bib", "more.bib");
    case Needs::kDocumentAndLibrary:
      files.files["paper.tex"] = kSampleDocument;
      return MemoryRun(files, "paper.tex", "lit.bib");
    default:
      return MemoryRun(files, "lit.bib");
  }
}

}  // namespace tarvel::testing
