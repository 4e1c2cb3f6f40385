// SPDX-License-Identifier: MIT
#include "warnings/citation_warnings.h"

#include <gtest/gtest.h>

#include "tests/support/recording_warnings.h"

namespace tarvel::testing {
namespace {

using Lines = std::vector<std::string>;

Lines Citations(std::string_view document) {
  RecordingWarnings to;
  FileWarnings warnings(&to, "p", document);
  ReportCitations(document, warnings);
  return to.lines;
}

Lines One(const std::string& what) { return {"other-citation p:1 [] " + what}; }

TEST(ReportCitations, SaysNothingOfWhatIsReadAsItStands) {
  for (const std::string_view document :
       {"", "\\cite{a,b}\n", "x \\cite{a} y \\cite{b}\n", "\\cite{a} % \\cite is a command\n",
        "100 \\% \\cite{a}\n", "\\section{cite}\n", "% \\citep{a}\n", "\\begin{a}\\nothing\\"}) {
    EXPECT_EQ(Citations(document), Lines()) << document;
  }
}

TEST(ReportCitations, NamesOtherCommandsThatCite) {
  EXPECT_EQ(Citations("\\citep{a}\n"),
            One("'\\citep' is not read without --cite-commands, only \"\\cite{\" is"));
  EXPECT_EQ(Citations("\\cite[1]{a}\n"),
            One("'\\cite' is not read without --cite-commands, only \"\\cite{\" is"));
  EXPECT_EQ(Citations("\\cite*{a}\n"),
            One("'\\cite*' is not read without --cite-commands, only \"\\cite{\" is"));
  EXPECT_EQ(Citations("\\Textcite{a}\n"),
            One("'\\Textcite' is not read without --cite-commands, only \"\\cite{\" is"));
  EXPECT_EQ(Citations("\\nocite{a}\n"),
            One("'\\nocite' is not read without --cite-commands, only \"\\cite{\" is"));
  EXPECT_EQ(Citations("\\setcitestyle{square}\\citestyle{x}\n"), Lines()) << "these cite nothing";
  EXPECT_EQ(Citations("\\cite{a} \\citep{b}\n"),
            One("'\\citep' is not read without --cite-commands, only \"\\cite{\" is"));
}

/// As long as a "\cite{" is left on its line, the first command that begins with "\cite" is read.
TEST(ReportCitations, KnowsThatACiteFurtherOnMakesEarlierOnesRead) {
  EXPECT_EQ(Citations("\\citep{a} \\cite{b}\n"), Lines());
  EXPECT_EQ(Citations("\\nocite{a} \\cite{b}\n"),
            One("'\\nocite' is not read without --cite-commands, only \"\\cite{\" is"));
  EXPECT_EQ(Citations("\\citep{a}\n\\cite{b}\n"),
            One("'\\citep' is not read without --cite-commands, only \"\\cite{\" is"))
      << "only on the same line";
}

TEST(ReportCitations, NamesWhatIsReadInACommentOrInPart) {
  EXPECT_EQ(Citations("x % \\cite{a}\n"), One("'\\cite' is in a comment, but is read"));
  EXPECT_EQ(Citations("\\\\% \\cite{a}\n"), One("'\\cite' is in a comment, but is read"))
      << "the backslash before the \"%\" is the second of a line break";
  EXPECT_EQ(Citations("\\cite{a,\nb}\n"), One("'\\cite' is read only to the end of its line"));
  EXPECT_EQ(Citations("\\cites{a}{b} \\cite{c}\n"),
            One("'\\cites' is read only to the end of its first list"));
}

TEST(ReportCitations, GivesTheLineOfEach) {
  EXPECT_EQ(Citations("\n\\citep{a}\n\n\\citet{b}"),
            (Lines{"other-citation p:2 [] '\\citep' is not read without --cite-commands, only "
                   "\"\\cite{\" is",
                   "other-citation p:4 [] '\\citet' is not read without --cite-commands, only "
                   "\"\\cite{\" is"}));
}

/// Lines are read in pieces of 999 bytes, and each piece is a line of its own.
TEST(ReportCitations, LooksAtLinesInTheirPieces) {
  const std::string blanks(994, ' ');
  EXPECT_EQ(Citations(blanks + "\\cite{a}\n"),
            One("'\\cite' is not read without --cite-commands, only \"\\cite{\" is"))
      << "the brace stands in the next piece";
  EXPECT_EQ(Citations(blanks.substr(3) + "\\cite{a}\n"), Lines());
}

TEST(ReportCitations, DoesNothingForNobody) {
  FileWarnings warnings(nullptr, "p", "\\citep{a}");
  ReportCitations("\\citep{a}", warnings);
}

TEST(ReportKeys, NamesThoseWithBlanks) {
  RecordingWarnings to;
  FileWarnings warnings(&to, "p", "one\ntwo\nthree\n");
  ReportKeys({"a", " b", "c d", "e\t", ""}, {0, 0, 4, 9, 9}, warnings);
  EXPECT_EQ(to.lines,
            (Lines{"key-with-blank p:1 [ b] the key has a blank, which is read as a part of it",
                   "key-with-blank p:2 [c d] the key has a blank, which is read as a part of it",
                   "key-with-blank p:3 [e\t] the key has a blank, which is read as a part of it"}));
}

TEST(LooksLikeCitation, GoesByTheName) {
  EXPECT_TRUE(LooksLikeCitation("mycite"));
  EXPECT_TRUE(LooksLikeCitation("Citeonline"));
  EXPECT_FALSE(LooksLikeCitation("citestyle"));
  EXPECT_FALSE(LooksLikeCitation("see"));
}

}  // namespace
}  // namespace tarvel::testing
