// SPDX-License-Identifier: MIT
#include "tests/support/reference_worlds.h"

#include <cstdint>
#include <limits>

namespace tarvel::testing {

namespace {

using namespace std::string_literals;

const std::vector<std::string> kKeys{"a", "b",        "c", " a",  "a b",
                                     "",  "\xC3\xA9", "B", "a{b", "x\0y"s};

}  // namespace

Treatment ApplyAll(std::string& value, const LaTeXCommands& commands) {
  RowBudget budget(std::numeric_limits<std::uint64_t>::max());
  return ApplyLaTeXCommands(value, commands, budget);
}

std::vector<std::string> DefinitionNames() {
  std::vector<std::string> names;
  for (const char* prefix : {"ACS_", "APS_", "IOP_", "NATURE_", "WILEY_", "SPRINGER_C_"}) {
    for (const char* key :
         {"article_title", "article", "article_title_latex", "article_latex", "book_latex", "book",
          "inpro_latex", "inpro", "phd_latex", "phd", "incol_latex", "incol"}) {
      const std::string name = std::string(prefix) + key;
      if (name != "SPRINGER_C_phd") names.push_back(name);
    }
  }
  return names;
}

std::string StylesFile(const std::function<std::string(const std::string& name)>& format) {
  std::string file = "# a comment; // and no definition\n";
  for (const std::string& name : DefinitionNames()) {
    file += name + " = \"" + format(name) + "\"; // of a test\n";
  }
  return file;
}

std::string MarkerStyles() {
  return StylesFile(
      [](const std::string& name) { return "<" + name + ">%s|%s|%s|%s|%s|%s|%s|%s|%s\\n"; });
}

MemoryFiles FilesOf(const PlainWorld& world) {
  MemoryFiles files;
  files.files[std::string(kDocumentPath)] = world.document;
  files.files[std::string(kLibraryPath)] = world.library;
  files.files[std::string(kStylesPath)] = world.styles;
  files.files[std::string(kCommandsPath)] = world.commands;
  return files;
}

PlainOutcome RunWorld(int (*operation)(const RunContext&), const RunContext& run,
                      MemoryFiles& files) {
  const auto before = files.files;
  RecordingReporter reporter;
  PlainOutcome outcome;
  outcome.result = operation(run);
  outcome.printed = reporter.printed;
  outcome.boxes = reporter.boxes;
  for (const auto& [path, bytes] : files.files) {
    const std::string stem = "/lib/lit";
    if (!before.contains(path)) outcome.files[path.substr(stem.size())] = bytes;
  }
  return outcome;
}

std::string WorldMaker::Pieces(const std::vector<std::string>& pieces, int most) {
  std::string text;
  for (int i = Number(most + 1); i > 0; --i) text += Pick(pieces);
  return text;
}

std::string WorldMaker::Authors() {
  return Pieces(
      {"Doe", "J.",  ", ", ",",      " and ",    " and", "and ", ".", ".-",     "-P.", " ",
       "  ",  "Roe", "K.", "{\\'e}", "\xC3\xA9", "and",  "\t",   "x", ". and ", "\0"s},
      10);
}

std::string WorldMaker::Value() {
  if (Chance(30)) return Authors();
  return Pieces({"A",        "b ",          "{",   "}",           "{{",    "}}",    "-",
                 "--",       "---",         "12",  "\n",          "\n  ",  "\n \n", "title",
                 "Author",   "booktitle",   "@",   "@article{q,", "x@y {", "year",  ".",
                 "..",       "J. C.",       "\\&", "\\'e",        "$",     "ab",    "aab",
                 "\xC3\xBC", "\n\xC3\xBC ", "\0"s, "\r\n",        "%s",    "\\n",   ","},
                6);
}

std::string WorldMaker::TagLine() {
  static const std::vector<std::string> names{
      "author",  "Author", "title",        "Title",      "booktitle", "BookTitle", "BOOKTITLE",
      "journal", "year",   "volume",       "pages",      "publisher", "address",   "editor",
      "school",  "note",   "author-title", "pages year", "abstract",  "Journal",   "editor author"};
  static const std::vector<std::string> ends{"},\n", "},\n", "},\n",   "}\n", "}, ",
                                             "\n",   "}}\n", "},\r\n", "}",   ",\n"};
  static const std::vector<std::string> opens{" = {", " = {", " = {", " = {{", " = \"", " = ", "{"};
  if (Chance(3)) return std::string(static_cast<std::size_t>(985 + Number(30)), 'x') + "title {\n";
  return "  " + Pick(names) + Pick(opens) + Value() + Pick(ends);
}

std::string WorldMaker::Entry() {
  static const std::vector<std::string> types{
      "article",       "ARTICLE",      "book",       "InCollection", "inproceedings",
      "phdthesis",     "masterthesis", "misc",       "booklet",      "mastersthesis",
      "article ",      "articles",     "electronic", "string",       "comment",
      "proceedings",   "conference",   "book",       "article",      "incollection",
      "inproceedings", "phdthesis",    "manual",     "InBook"};
  static const std::vector<std::string> heads{"", "", "", "", "", " ", "}", "x@y ", "note = {"};
  static const std::vector<std::string> closes{"}\n\n", "}\n\n", "}\n", "\n", "}", "", "}\r\n"};
  if (Chance(4)) return "@comment{jabref-meta: groupsversion:3;}\n";
  if (Chance(2)) return "@comment{jabref-entrytype: Article: req[author]}\n@Comment{x@article{b,\n";
  std::string entry = Pick(heads) + "@" + Pick(types) + "{" + Pick(kKeys);
  if (Chance(5)) entry += ", {" + Pick(kKeys);
  entry += Chance(90) ? ",\n" : Chance(50) ? "\n" : ",";
  for (int i = Number(7); i > 0; --i) entry += TagLine();
  return entry + Pick(closes);
}

std::string WorldMaker::Library() {
  std::string library = Chance(30) ? "% text before {all,\n" : "";
  for (int i = Number(7); i > 0; --i) library += Entry();
  return library;
}

std::string WorldMaker::Document() {
  static const std::vector<std::string> pieces{
      "\\cite{",   "\\cite{",     "\\cite{",   "\\cite",      "\\citep{",  "\\cite[p. 3]{",
      "}",         "}",           "}",         ",",           ", ",        "\n",
      "{",         "\\",          "text ",     "a",           "b",         "c",
      " a",        "a b",         "\xC3\xA9",  "B",           "x\0y"s,     "\\cite{}",
      "\\cite{a}", "\\cite{b,a}", "\\cite{c}", "\\cite{a{b}", "\\cite{,}", "\r\n"};
  std::string document = Chance(70) ? "\\cite{a,b,c}\n" : "";
  for (int i = Number(16); i > 0; --i) {
    document += Pick(pieces);
    if (Chance(3)) document += std::string(static_cast<std::size_t>(980 + Number(20)), 'y');
  }
  return document;
}

std::string WorldMaker::Styles() {
  if (Chance(60)) return MarkerStyles();
  std::string file = StylesFile([this](const std::string&) {
    return Pieces(
        {"%s", "%s",  "|",      "%.0s",         "%5s",   "%-4s", "%.2s", "%d",  "%n",     "%",
         "%%", "\\n", "\\n\\n", "\\textbf{%s}", "; // ", "=",    "\"",   "%*s", "%08.1s", "%ls"},
        9);
  });
  if (Chance(10)) file += "APS_book = \"again %s\\n\"; // one too many\n";
  if (Chance(5)) file += "no equals sign; // here\n";
  if (Chance(5)) file.resize(file.size() - static_cast<std::size_t>(Number(200)));
  if (Chance(5)) file += " = \"%s!\"; // every name ends in a blank\n";
  return file;
}

std::string WorldMaker::Commands() {
  std::string file = Chance(90) ? "comment\nSTART\n" : "";
  for (int i = Number(14); i > 0; --i) {
    const std::vector<std::string> texts{"a", "b",    "ab", "aab", "x",        ".", "--",
                                         "-", "\\'e", "{",  "}",   "\\&",      "&", "$",
                                         "J", "D",    "Do", "oe",  "\xC3\xBC", "#"};
    const std::vector<std::string> blanks{" ", "\t", "  ", "\t\t ", " \t"};
    if (Chance(5)) file += "#";
    if (Chance(3)) file += Pick(blanks);
    file += Pieces(texts, 2) + (Chance(90) ? Pick(blanks) : "") + Pieces(texts, 2);
    if (Chance(5)) file += Pick(blanks) + "rest";
    file += Chance(95) ? "\n" : "\r\n";
  }
  if (Chance(10) && !file.empty()) file.pop_back();
  return file;
}

PlainWorld WorldMaker::Make() {
  PlainWorld world{Document(), Library(), Styles(), Commands(), {}};
  Settings& s = world.settings;
  for (const auto flag : kStyleFlags) s.*flag = 0;
  if (!Chance(3)) s.*kStyleFlags[static_cast<std::size_t>(Number(6))] = 1;
  s.PagesRange = Number(2);
  s.PrintTitle = Number(2);
  s.PrintBibitem = Number(2);
  s.UseLaTeXCode = Number(2);
  return world;
}

}  // namespace tarvel::testing
