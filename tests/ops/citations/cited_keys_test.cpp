// SPDX-License-Identifier: MIT
#include "ops/citations/cited_keys.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ops/operations.h"
#include "tests/support/memory_files.h"
#include "tests/support/recording_warnings.h"

namespace tarvel {
namespace {

using testing::MemoryFiles;
using Keys = std::vector<std::string>;

class CitedKeysOfADocument : public ::testing::Test {
 protected:
  CitedKeysOfADocument() : run_(testing::MemoryRun(files_, "d/paper.tex", "lit.bib")) {
    run_.citations = {.commands = {"all"}, .follow = true, .directory = "d/"};
  }
  Keys Read(std::string_view document) {
    files_.files["d/paper.tex"] = document;
    CitedKeys cited(run_);
    cited.ReadLikeLaTeX(LineStream(document));
    if (cited.NeedsLibrary()) cited.ReadLibrary(LineStream(std::string_view(library_)));
    return cited.Keys();
  }

  MemoryFiles files_;
  RunContext run_;
  std::string library_ = "@misc{a,\n}\n@misc{b,\n}\n@nothing{x,\n}\n@misc{c\n}\n@misc{b,\n}\n";
};

TEST_F(CitedKeysOfADocument, ComeOnceInTheDocumentsOrder) {
  files_.files["d/one.tex"] = "\\cite{b}\\input{sub/two}";
  files_.files["d/sub/two.tex"] = "\\cite{c}\\input{three}\\input{paper}";
  files_.files["d/sub/three.tex"] = "\\cite{d}";
  EXPECT_EQ(Read("\\cite{a,b}\\cite{a}"), (Keys{"a", "b"}));
  EXPECT_EQ(Read("\\cite{a}\\input{one}\\cite{e,d}\\include{one}\\input{paper.tex}"),
            (Keys{"a", "b", "c", "d", "e"}));
  files_.files["d/four"] = "\\cite{f}";
  EXPECT_EQ(Read("\\input{four}"), Keys{"f"});
  files_.files["d/four.tex"] = "\\cite{g}";
  EXPECT_EQ(Read("\\InputIfFileExists{four}{}{}"), Keys{"g"});
  EXPECT_EQ(Read("\\input{four}"), Keys{"g"}) << "LaTeX looks for this name first";
  EXPECT_EQ(Read("\\includestandalone[mode=tex, width=2cm]{four}"), Keys{"g"});
  EXPECT_EQ(Read("\\import{sub/}{two}"), (Keys{"c", "d"})) << "what it includes stands beside it";
  run_.citations.follow = false;
  EXPECT_EQ(Read("\\cite{a}\\input{one}\\cite{e}"), (Keys{"a", "e"}));
}

TEST_F(CitedKeysOfADocument, AreAllOfTheLibraryOnRequest) {
  EXPECT_EQ(Read("\\nocite{*}\\cite{b}"), (Keys{"b", "a"})) << "cited ones first";
  EXPECT_EQ(Read("\\cite{b}"), Keys{"b"});
}

TEST_F(CitedKeysOfADocument, WarnOfWhatIsMissing) {
  testing::RecordingWarnings warnings;
  run_.warnings = &warnings;
  run_.citations.report_uncited = true;
  EXPECT_EQ(Read("\\cite{b}\n\\input{gone}\\mycite{x}"), Keys{"b"});
  EXPECT_EQ(warnings.lines,
            (Keys{"other-citation d/paper.tex:2 [] the file 'gone' of '\\input' was not found, and "
                  "its citations are missing",
                  "other-citation d/paper.tex:2 [] '\\mycite' is not read; add it to the list of "
                  "--cite-commands",
                  "uncited-entry lit.bib:1 [a] the document does not cite the entry"}));
}

TEST_F(CitedKeysOfADocument, LeaveTheParentsOfCitedEntriesOutOfTheUncitedOnes) {
  library_ =
      "@misc{child,\n crossref = {Parent},\n}\n"
      "@misc{other,\n crossref = {Parent2},\n}\n@misc{other,\n}\n"
      "@book{parent,\n crossref = {Series},\n}\n"
      "@misc{parent2,\n}\n"
      "@book{series,\n crossref = {parent},\n}";
  testing::RecordingWarnings warnings;
  run_.warnings = &warnings;
  run_.citations.report_uncited = true;
  EXPECT_EQ(Read("\\cite{child}"), Keys{"child"});
  EXPECT_EQ(warnings.lines,
            (Keys{"uncited-entry lit.bib:4 [other] the document does not cite the entry",
                  "uncited-entry lit.bib:12 [parent2] the document does not cite the entry"}));
}

TEST_F(CitedKeysOfADocument, WarnOfCitationsInFilesThatAreNotFollowed) {
  testing::RecordingWarnings warnings;
  run_.warnings = &warnings;
  run_.citations.follow = false;
  files_.files["d/style.tex"] = "\\usepackage{cite} We are excited.\n";
  files_.files["d/middle.tex"] = "\\input{deep}\n\\input{middle}";
  files_.files["d/deep.tex"] = "\\cite{z} \\cite{y}\n";
  files_.files["d/other.tex"] = "\\mycite{z}\n";
  EXPECT_EQ(Read("\\input{style}\n\\input{middle}\n\\include{other}\n\\input{gone}"), Keys());
  EXPECT_EQ(warnings.lines,
            (Keys{"other-citation d/middle.tex:1 [] the citations in the file 'deep' of '\\input' "
                  "are not read; tarvel-batch reads them with --follow",
                  "other-citation d/paper.tex:3 [] the citations in the file 'other' of "
                  "'\\include' are not read; tarvel-batch reads them with --follow"}));
}

TEST_F(CitedKeysOfADocument, WarnOfADocumentThatCitesNothing) {
  testing::RecordingWarnings warnings;
  run_.warnings = &warnings;
  files_.files["d/paper.tex"] = "\\begin{document}\n\\end{document}\n";
  files_.files["lit.bib"] = library_;
  EXPECT_EQ(RunExtract(run_), 0);
  EXPECT_EQ(warnings.lines, (Keys{"other-citation d/paper.tex:0 [] no citation was read from the "
                                  "document: there is nothing to extract"}));
}

TEST_F(CitedKeysOfADocument, AreNotReportedAsUncitedHoweverTheyWereRead) {
  testing::RecordingWarnings warnings;
  run_.warnings = &warnings;
  CitedKeys cited(run_);
  cited.ReadPlainly(
      LineStream(std::string_view("\\cite{b}")),
      [](LineStream&, std::vector<std::string>& keys, std::vector<std::size_t>* offsets) {
        keys = {"b"};
        offsets->push_back(0);
        return 1;
      });
  cited.ReadLibrary(LineStream(std::string_view(library_)));
  EXPECT_EQ(warnings.Of(WarningKind::kUncitedEntry),
            Keys{"uncited-entry lit.bib:1 [a] the document does not cite the entry"});
}

}  // namespace
}  // namespace tarvel
