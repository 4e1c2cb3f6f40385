// SPDX-License-Identifier: MIT
#include "ops/citations/document_reader.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tarvel {
namespace {

using Words = std::vector<std::string>;

/// What a document asks for, in its order: keys, "command:file", "?command".
Words Read(std::string_view document, const Words& commands = {"all"}) {
  Words found;
  DocumentObserver observer;
  observer.on_key = [&](const KeyInDocument& key) {
    EXPECT_LT(key.begin, key.end);
    EXPECT_LE(key.end, document.size());
    found.push_back(key.text);
  };
  observer.on_file = [&](std::string_view command, std::string_view name, std::size_t) {
    found.push_back(std::string(command) + ":" + std::string(name));
  };
  observer.on_other = [&](std::string_view command, std::size_t offset) {
    EXPECT_EQ(document.substr(offset, command.size() + 1), "\\" + std::string(command));
    found.push_back("?" + std::string(command));
  };
  ReadDocument(document, CiteCommands(commands), observer);
  return found;
}

TEST(ReadDocument, TakesListsWithStarsAndOptionalArguments) {
  EXPECT_EQ(Read("\\cite{a}"), Words{"a"});
  EXPECT_EQ(Read("\\cite{a,b} \\cite {c}"), (Words{"a", "b", "c"}));
  EXPECT_EQ(Read("\\citet*[see][p.~3]{a}"), Words{"a"});
  EXPECT_EQ(Read("\\citep[see][]{a , b,\tc}"), (Words{"a", "b", "c"}));
  EXPECT_EQ(Read("\\cite[{]}]{a}"), Words{"a"});
  EXPECT_EQ(Read("\\cite[\\S 3]{a}"), Words{"a"});
  EXPECT_EQ(Read("\\cite<2->{a}"), Words{"a"});
  EXPECT_EQ(Read("\\nocite{*}"), Words{"*"});
  EXPECT_EQ(Read("\\cite{a b}"), Words{"a b"});
  EXPECT_EQ(Read("\\cite{,a,,b,}"), (Words{"a", "b"}));
}

TEST(ReadDocument, TakesSeveralListsAndVolumes) {
  EXPECT_EQ(Read("\\autocites{a}{b}"), (Words{"a", "b"}));
  EXPECT_EQ(Read("\\parencites(see)(and more)[1]{a,c}[][2]{b} text {d}"), (Words{"a", "c", "b"}));
  EXPECT_EQ(Read("\\textcites\n  {a}%\n  [p. 1]\n  {b}\n\n{c}"), (Words{"a", "b"}));
  EXPECT_EQ(Read("\\volcite[see]{2}[p. 3]{a}"), Words{"a"});
  EXPECT_EQ(Read("\\Volcites(x){1}{a}[y]{2}[z]{b}"), (Words{"a", "b"}));
  EXPECT_EQ(Read("\\citet{a}{b}"), Words{"a"}) << "one list only";
}

TEST(ReadDocument, GoesOverLineBreaksAndComments) {
  EXPECT_EQ(Read("\\cite\n[see]\n{a,\n b}"), (Words{"a", "b"}));
  EXPECT_EQ(Read("\\cite{a,% \\cite{x}\r\n   b%\r\n}"), (Words{"a", "b"}));
  EXPECT_EQ(Read("\\cite% why\n  {a}"), Words{"a"});
  EXPECT_EQ(Read("\\cite{lo%\n  ng}"), Words{"long"}) << "a comment swallows the line break";
  EXPECT_EQ(Read("% \\cite{x}\n\\cite{a}"), Words{"a"});
  EXPECT_EQ(Read("100\\% \\cite{a} % \\cite{x}\r\\cite{b}"), (Words{"a", "b"}));
  EXPECT_EQ(Read("\\\\% \\cite{x}"), Words{});
  EXPECT_EQ(Read("\\cite{a\n\nb} \\cite{c}"), Words{"c"}) << "an empty line ends what is open";
  EXPECT_EQ(Read("\\cite%\n\n{x}"), Words{}) << "also below a comment";
}

TEST(ReadDocument, PassesOverWhatIsVerbatim) {
  EXPECT_EQ(Read("\\verb|\\cite{x}| \\cite{a}"), Words{"a"});
  EXPECT_EQ(Read("\\verb*+\\cite{x}+\\cite{a}"), Words{"a"});
  EXPECT_EQ(Read("\\verb|\\cite{x}\n\\cite{a}"), Words{"a"}) << "at most to the end of the line";
  EXPECT_EQ(Read("\\begin{verbatim}\n\\cite{x}\\end{verbatim*}\n\\end{verbatim}\\cite{a}"),
            Words{"a"});
  EXPECT_EQ(Read("\\begin{lstlisting}[a=b]\n% \\cite{x}\n\\end{lstlisting}\\cite{a}"), Words{"a"});
  EXPECT_EQ(Read("\\lstinline[language=C]{x % y} \\cite{a}"), Words{"a"});
  EXPECT_EQ(Read("\\mintinline{c}|%| \\cite{a}"), Words{"a"});
  EXPECT_EQ(Read("\\url{http://x/%20y} \\cite{a}"), Words{"a"});
  EXPECT_EQ(Read("\\href{http://x/%20}{\\cite{a}}"), Words{"a"});
  EXPECT_EQ(Read("\\begin{comment}\\cite{x}\\end{comment}\\cite{a}"), Words{"a"});
  EXPECT_EQ(Read("\\begin{verbatim} \\cite{x}"), Words{});
}

TEST(ReadDocument, EndsWhereLaTeXEnds) {
  EXPECT_EQ(Read("\\cite{a}\\end{document}\\cite{x}"), Words{"a"});
  EXPECT_EQ(Read("\\cite{a}\\endinput \\cite{x}"), Words{"a"});
  EXPECT_EQ(Read("\\iffalse \\cite{x}\\ifx ab \\else\\cite{x}\\fi % \\fi\n\\fi\\cite{a}"),
            Words{"a"});
  EXPECT_EQ(Read("\\iffalse $x \\iff y$ \\cite{x}\\else\\cite{a}\\fi\\cite{b}"), (Words{"a", "b"}));
}

TEST(ReadDocument, NamesMacrosThatCiteTheirArgument) {
  const Words x{"?x"};
  EXPECT_EQ(Read("\\newcommand*{\\x}[2]{\\cite[#1]{#2} \\citet{#2}}"), x) << "once";
  EXPECT_EQ(Read("\\def\\x#1{\\cite{#1}}"), x);
  EXPECT_EQ(Read("\\NewDocumentCommand { \\x }{m}{\\cite{#1}}"), x);
  EXPECT_EQ(Read("\\providecommand\n\\x[1]{\\cite{#1}}"), x);
  EXPECT_EQ(Read("\\newcommand{\\x}[1]{\\cite{#1}}", {"x"}), Words{}) << "it is read";
  EXPECT_EQ(Read("\\newcommand{\\x}{\\cite{a}}"), Words{"a"});
  EXPECT_EQ(Read("\\newcommand{\\mycite}[1]{#1}\\mycite{a}"), Words{"?mycite"});
  EXPECT_EQ(Read("\\newcommand{\\x}{y}\\newenvironment{z}[1]{\\cite{#1}}{}"), x);
  EXPECT_EQ(Read("\\cite{#1}\\newcommand"), Words{});
}

TEST(ReadDocument, TakesQuotationsThatCite) {
  EXPECT_EQ(Read("\\textcquote[see][p. 3]{a}[.]{text}\\blockcquote{b}{text}"), (Words{"a", "b"}));
  EXPECT_EQ(Read("\\foreigntextcquote{german}[3]{a}{text}"), Words{"a"});
  EXPECT_EQ(Read("\\begin{displaycquote}[3]{a} text\\end{displaycquote} {b}"), Words{"a"});
  EXPECT_EQ(Read("\\begin{hyphendisplaycquote}{german}[3]{a}"), Words{"a"});
  EXPECT_EQ(Read("\\textcquote{a}", {}), Words{"?textcquote"});
  EXPECT_EQ(Read("\\begin{displaycquote}{a}", {}), Words{"?begin{displaycquote}"});
}

TEST(ReadDocument, TakesNoKeysOfMacros) {
  EXPECT_EQ(Read("\\newcommand{\\x}[1]{\\cite{#1,a}}"), (Words{"?x", "a"}));
  EXPECT_EQ(Read("\\cite{\\key}\\cite{a}"), Words{"a"});
  EXPECT_EQ(Read("\\cite{{x}} \\cite{a} \\cite"), Words{"a"});
  EXPECT_EQ(Read("\\cite{x"), Words{});
  EXPECT_EQ(Read("\\cite[x \\cite{a} {"), Words{"a"}) << "an argument that never ends";
}

TEST(ReadDocument, FindsCitationsInArguments) {
  EXPECT_EQ(Read("\\footnote{\\cite{a}} {\\cite{b}}"), (Words{"a", "b"}));
  EXPECT_EQ(Read("\\citep[see also \\citealt{a}]{b}"), (Words{"a", "b"}));
  EXPECT_EQ(Read("\\citetext{\\citealp{a}; \\citealp{b}}"), (Words{"a", "b"}));
}

TEST(ReadDocument, ReadsTheNamedCommandsOnly) {
  EXPECT_EQ(Read("\\citep{x}\\cite{a}", {}), (Words{"?citep", "a"}));
  EXPECT_EQ(Read("\\citep{a}\\citet{x}\\mycite{b}", {"citep", "mycite"}),
            (Words{"a", "?citet", "b"}));
  EXPECT_EQ(Read("\\mycite{x}\\citep{a}\\citestyle{y}"), (Words{"?mycite", "a"}));
  EXPECT_EQ(Read("\\autocites{a}{b}", {"autocites"}), (Words{"a", "b"}));
}

TEST(ReadDocument, NamesIncludedFiles) {
  EXPECT_EQ(Read("\\input{a}\\include{b/c}\\subfile{d.tex}\\input e.tex\\cite{x}%\\input{y}"),
            (Words{"input:a", "include:b/c", "subfile:d.tex", "input:e.tex", "x"}));
  EXPECT_EQ(Read("\\import{a/}{b}\\subimport { a/ } { b.tex }\\includefrom{a/}%\n{b}"),
            (Words{"import:a/b", "subimport:a/b.tex", "includefrom:a/b"}));
  EXPECT_EQ(Read("\\import{a}\\import{}{b}\\import{#1}{b}\\import{a/}{#1}"), Words{"import:b"});
  EXPECT_EQ(Read("\\newcommand\\x[1]{\\input{#1}}\\input{}\\includegraphics{z}"), Words{});
}

TEST(ReadDocument, IsLinear) {
  for (const std::string_view piece :
       {"\\cite[", "\\cite{", "\\cites(", "\\begin{", "\\verb|", "\\volcite{", "\\iffalse",
        "\\lstinline[", "\\input ", "\\cites{a}", "\\cite[\\cite{a}", "\\url{", "%", "\\"}) {
    std::string document;
    while (document.size() < 2000000) document += piece;
    Read(document);
  }
}

}  // namespace
}  // namespace tarvel
