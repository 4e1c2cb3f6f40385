// SPDX-License-Identifier: MIT
// Which values each format receives, for every style, kind and variant, through whole runs.
#include <gtest/gtest.h>

#include "app/globals.h"
#include "ops/operations.h"
#include "tests/support/reference_worlds.h"

namespace tarvel::testing {
namespace {

/// Entries that fill every value buffer with its own mark, then one empty entry of each kind, which
/// is printed with all of them.
constexpr std::string_view kLibrary = R"(@incollection{prime1,
  author = {AUTHOR},
  publisher = {PUBLISHER},
  year = {YEAR},
  address = {ADDRESS},
  title = {TITLE},
  booktitle = {BOOKTITLE},
  editor = {EDITOR},
  pages = {PAGES},
}
@article{prime2,
  journal = {JOURNAL},
  volume = {VOLUME},
}
@phdthesis{prime3,
  school = {SCHOOL},
}
@article{KEY,
}
@book{KEY,
}
@incollection{KEY,
}
@inproceedings{KEY,
}
@phdthesis{KEY,
}
@masterthesis{KEY,
}
)";

struct Row {
  std::string_view kind;
  std::array<std::string_view, 6> values;  // ACS, APS, IOP, Nature, Wiley, Springer
};

// a author, t title, j journal, y year, v volume, p pages, P publisher, A address, e editor,
// b booktitle, s school; the name of the reference is always the first.
constexpr Row kOrders[] = {
    {"article_title", {"atjyvp", "atjvpy", "atjvpy", "atjvpy", "atjyvp", "aytjvp"}},
    {"article", {"ajyvp", "ajvpy", "ajvpy", "ajvpy", "ajyvp", "ayjvp"}},
    {"book", {"atPAy", "taPAy", "aytAP", "atPAy", "atPAy", "aytPA"}},
    {"incol", {"atebPAy", "abePAy", "aytbeAP", "aytbeAP", "abePAyp", "aytbePA"}},
    {"inpro", {"abePAyp", "abePAyp", "aybAep", "aybAep", "abePAy", "aytbePA"}},
    {"phd", {"asy", "asy", "ays", "ays", "aPAy", "aytA"}},
    {"phd", {"asy", "asy", "ays", "ays", "aPAy", "aytA"}},
};

constexpr std::string_view kPrefixes[] = {"ACS_",    "APS_",   "IOP_",
                                          "NATURE_", "WILEY_", "SPRINGER_C_"};
constexpr Flag Settings::*kFlags[] = {&Settings::StyleACS,   &Settings::StyleAPS,
                                      &Settings::StyleIOP,   &Settings::StyleNature,
                                      &Settings::StyleWiley, &Settings::StyleSpringerCompSci};

std::string Spelled(std::string_view letters, const std::string& name) {
  constexpr std::pair<char, std::string_view> words[] = {
      {'a', "AUTHOR"}, {'t', "TITLE"},     {'j', "JOURNAL"},   {'y', "YEAR"},
      {'v', "VOLUME"}, {'p', "PAGES"},     {'P', "PUBLISHER"}, {'A', "ADDRESS"},
      {'e', "EDITOR"}, {'b', "BOOKTITLE"}, {'s', "SCHOOL"}};
  std::string text = name;
  for (const char letter : letters) {
    for (const auto& [code, word] : words) {
      if (code == letter) text.append("|").append(word);
    }
  }
  for (std::size_t bars = letters.size(); bars < 8; ++bars) text += "|";
  return text + "\n";
}

struct Variant {
  int (*operation)(const RunContext&);
  bool latex;
  bool title;
};

/// What the six empty entries print.
std::string Expected(const Variant& variant, std::size_t style) {
  std::string text;
  for (const Row& row : kOrders) {
    if (row.kind == (variant.title ? "article" : "article_title")) continue;
    std::string kind(row.kind);
    const bool extract = variant.operation == &RunExtract;
    if (extract && style == 5 && kind == "incol") kind = "inpro";
    const std::string format =
        std::string(kPrefixes[style]) + kind + (variant.latex ? "_latex" : "");
    if (format == "ACS_phd" || format == "SPRINGER_C_phd") continue;
    const std::string name = extract || variant.latex ? "\\bibitem{KEY}" : "[KEY]";
    text += "<" + format + ">" + Spelled(row.values[style], name);
  }
  return text;
}

/// The printed references, from the first of the empty entries on.
std::string Printed(const std::string& file) {
  const std::size_t name = file.find("KEY");
  return name == std::string::npos ? "" : file.substr(file.rfind('<', name));
}

/// Extract finds an entry by its key, so the keys are made different and equal again.
std::string Numbered(std::string library) {
  char digit = '1';
  for (std::size_t at = library.find("KEY"); at != std::string::npos;
       at = library.find("KEY", at)) {
    library.replace(at, 3, std::string("K") + digit++);
  }
  return library;
}

std::string Unnumbered(std::string file) {
  for (char digit = '1'; digit <= '6'; ++digit) {
    const std::string key = std::string("{K") + digit + "}";
    for (std::size_t at; (at = file.find(key)) != std::string::npos;) {
      file.replace(at, key.size(), "{KEY}");
    }
  }
  return file;
}

TEST(ReferenceValues, AreThoseOfTheStyleInItsOrder) {
  constexpr Variant variants[] = {{&RunExtract, true, true}, {&RunExtract, true, false},
                                  {&RunText, false, true},   {&RunText, false, false},
                                  {&RunText, true, true},    {&RunText, true, false}};
  for (const Variant& variant : variants) {
    for (std::size_t style = 0; style < 6; ++style) {
      const bool extract = variant.operation == &RunExtract;
      PlainWorld world{"\\cite{prime1,prime2,prime3,K1,K2,K3,K4,K5,K6}",
                       std::string(kLibrary),
                       MarkerStyles(),
                       "START\n",
                       {}};
      if (extract) world.library = Numbered(world.library);
      MemoryFiles files = FilesOf(world);
      RunContext run =
          MemoryRun(files, extract ? kDocumentPath : kLibraryPath, extract ? kLibraryPath : "");
      Choose(run.settings, kStyleFlags, kFlags[style]);
      run.settings.PrintBibitem = 1;
      run.settings.UseLaTeXCode = variant.latex ? 1 : 0;
      run.settings.PrintTitle = variant.title ? 1 : 0;
      GlobalJournalStyles = {};
      PlainOutcome outcome = RunWorld(variant.operation, run, files);
      EXPECT_EQ(outcome.result, 1);
      const std::string file = outcome.files[extract ? "_extract.tex" : "_text.txt"];
      EXPECT_EQ(Printed(Unnumbered(file)), Expected(variant, style))
          << (extract ? "Extract" : "Text") << " in style " << kPrefixes[style];
    }
  }
}

TEST(ReferenceValues, ArePrintedByNoStyleWhenNoneIsSelected) {
  for (const bool extract : {true, false}) {
    const PlainWorld world{"\\cite{prime1}", std::string(kLibrary), MarkerStyles(), "START\n", {}};
    MemoryFiles files = FilesOf(world);
    RunContext run =
        MemoryRun(files, extract ? kDocumentPath : kLibraryPath, extract ? kLibraryPath : "");
    run.settings.StyleAPS = 0;
    PlainOutcome outcome = RunWorld(extract ? &RunExtract : &RunText, run, files);
    EXPECT_EQ(outcome.result, 1);
    EXPECT_TRUE(outcome.files[extract ? "_extract.tex" : "_text.txt"].ends_with("\n#\n\n\n"));
  }
}

}  // namespace
}  // namespace tarvel::testing
