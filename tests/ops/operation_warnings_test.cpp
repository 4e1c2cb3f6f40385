// SPDX-License-Identifier: MIT
// What whole operations report besides their files, and that reporting it changes nothing.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/hostile_library.h"
#include "tests/support/operation_runs.h"
#include "tests/support/recording_reporter.h"
#include "tests/support/recording_warnings.h"
#include "tests/support/reference_worlds.h"

namespace tarvel::testing {
namespace {

using Lines = std::vector<std::string>;

const OperationRun& RunOf(std::string_view name) {
  const auto runs = OperationRuns();
  return *std::find_if(runs.begin(), runs.end(),
                       [name](const OperationRun& run) { return run.name == name; });
}

/// The files of an operation's run in place of the samples; `beside` is the document of Extract,
/// the second library of Compare, the list of Journals.
RunContext RunOver(const OperationRun& operation, MemoryFiles& files, const std::string& library,
                   const std::string& beside) {
  RunContext run = SampleRun(operation, files);
  files.files["lit.bib"] = library;
  const std::string list = "/program" + std::string(kJournalListFile);
  if (operation.name == "journals" && beside.starts_with("START")) files.files[list] = beside;
  if (files.files.contains("more.bib")) files.files["more.bib"] = beside;
  if (files.files.contains("paper.tex")) files.files["paper.tex"] = beside;
  return run;
}

struct Case {
  std::string_view operation;
  std::string library;
  std::string beside;
  Lines reported;
};

// One of each kind; where two operations report the same kind in their own words, both.
const Case kCases[] = {
    {"extract",
     "@misc{Ice,\n  title = {U},\n}\n@misc{c,\n  title = {@misc{rain,}},\n}\n@misc{ICE,\n  title = "
     "{T},\n}\n",
     "\\begin{document}\n\\cite{ice,rain,c,SNOW}\n",
     {"runs-on lit.bib:4 [c] the entry has no closing brace before the next entry",
      "shared-line lit.bib:5 [rain] the entry does not begin its line: it is not seen, or what "
      "stands before it becomes a part of it",
      "missing-citation paper.tex:2 [ice] the cited key has no entry in the library, which has "
      "'Ice'",
      "missing-citation paper.tex:2 [SNOW] the cited key has no entry in the library"}},
    {"extract",
     "@misc{b,\n  title = {U},\n}\n@misc{a, title = {T}}",
     "\\begin{document}\n\\cite{b,a}\n",
     {"shared-line lit.bib:4 [a] the tag 'title' stands on the first line of its entry and is not "
      "read",
      "ended-early lit.bib:4 [a] the library ends with the first line of the entry: Extract fails "
      "there; put each tag on a line of its own, or run with --prepare"}},
    {"extract",
     "@book{a,\n  author = \"A\",\n  year = {1},\n@online{b,\n}\n@book {c,\n  title = {U},\n}\n",
     "\\citep{a}\n\\cite{a,b, c}\\cite{c}\n",
     {"other-citation paper.tex:1 [] '\\citep' is not read without --cite-commands, only "
      "\"\\cite{\" is",
      "key-with-blank paper.tex:2 [ c] the key has a blank, which is read as a part of it",
      "unbraced-value lit.bib:2 [a] the value of 'author' has no braces around it and is read as "
      "empty",
      "runs-on lit.bib:1 [a] the entry has no closing brace before the next entry",
      "unknown-type lit.bib:4 [b] '@online' is not a known type: the entry is skipped, or read as "
      "a part of the entry before it",
      "blank-in-type lit.bib:6 [c] the type is read as 'BOOK ', with the blank, and is not a known "
      "one",
      "missing-citation paper.tex:2 [b] the cited key has no entry in the library",
      "missing-citation paper.tex:2 [ c] the cited key has no entry in the library",
      "value-missing lit_extract.bib:10 [a] the reference shows nothing for 'title', 'author', "
      "'publisher', 'address'",
      "nothing-printed lit_extract.bib:15 [c] no reference was printed: its type is read as 'BOOK "
      "', which has no reference"}},
    {"extract",
     "@misc{ a,\n  note = {1},\n}\n@misc{a,\n  note = {2},\n}\n",
     "\\cite{a}\n",
     {"broken-head lit.bib:1 [a] Extract took the entry in line 4 for the key, but BibTeX takes "
      "this one: its first line must have a known type and then \"{\", the key and a comma, "
      "without blanks"}},
    {"extract",
     "@book{d,\n  title = {V,\n@book{e,\n  title = {\xFC},\n  year = {1},\n}\n",
     "\\cite{e,d}\n",
     {"open-value lit.bib:2 [d] the value of 'title' does not close before the next entry",
      "bad-bytes lit.bib:4 [e] the line contains bytes that are neither ASCII nor valid UTF-8",
      "value-missing lit_extract.bib:10 [e] the reference shows nothing for 'author', 'publisher', "
      "'address'",
      "carried-over lit_extract.bib:14 [d] shows the year of the earlier entry 'e'",
      "value-missing lit_extract.bib:14 [d] the reference shows nothing for 'author', 'publisher', "
      "'address'"}},
    {"extract",
     "@article{a,\n  title = {" + std::string(1000, 'x') + "},\n}\n",
     "\\cite{a}\n",
     {"long-line lit.bib:2 [] a line of 1014 bytes is read in pieces of 999",
      "value-missing lit_extract.bib:10 [a] the reference shows nothing for 'author', 'journal', "
      "'volume', 'pages', 'year'"}},
    {"text",
     "@article{a,\n  author = {J. Doe},\n  title = {\\foo T},\n  volume = {1}\n}\n"
     "@article{b,\n  author = {J. Doe},\n  title = {T}\n}\n@articles{c,\n}\n",
     "",
     {"unknown-type lit.bib:10 [c] '@ARTICLES' is not a known type",
      "value-missing lit.bib:1 [a] the reference shows nothing for 'journal', 'pages', 'year'",
      "command-left lit.bib:1 [a] '\\foo' is left in the title",
      "carried-over lit.bib:6 [b] shows the volume of the earlier entry 'a'",
      "value-missing lit.bib:6 [b] the reference shows nothing for 'journal', 'pages', 'year'",
      "nothing-printed lit.bib:10 [c] no reference was printed: its type is read as 'ARTICLES', "
      "which has no reference"}},
    {"compare",
     "@articles{a,\n}\n@misc{b,\n}\n",
     "@misc{c,\n}\n@book{C,\n}\n",
     {"no-group lit.bib:1 [a] entries of the type 'ARTICLES' are not compared by their values",
      "unknown-type lit.bib:1 [a] '@ARTICLES' is not a known type",
      "key-twice more.bib:3 [C] the entry in line 1 has the same key"}},
    {"clean-doubles",
     "@misc{a,\n  note = {x},\n}\n@misc{b,\n  note = {y},\n}\n@misc{a,\n  note = {z},\n}\n"
     "@misc{c,\n  note = {w},\n}\n",
     "",
     {"overwritten lit.bib:7 [b] the new entry 'a_a' was written over the kept entry 'b'"}},
    {"clean-authors",
     "@misc{a,\n  author = {Doe, J. and Roe}, year = {1},\n}\n",
     "",
     {"authors-as-they-were lit.bib:2 [a] the author list was left unchanged: 'Roe' has no "
      "comma, but other names have one",
      "text-lost lit.bib:2 [a] what follows the authors was lost: 'year = {1}'"}},
    {"journals",
     "@article{a,\n  journal = {Soft Notes},\n}\n@article{b,\n  journal = {Soft Notes},\n}\n"
     "a journal, of mine\n@article{c,\n  journal = {Hard Notes},\n}\n",
     "",
     {"line-cut lit.bib:7 [b] a line that mentions a journal was cut and got a \"}\": 'a journal, "
      "of mine'",
      "unknown-journal lit.bib:2 [] the journal 'Soft Notes' is not in the list, times: 2",
      "unknown-journal lit.bib:9 [] the journal 'Hard Notes' is not in the list, times: 1"}},
    {"clean-characters",
     "@misc{a,\n  note = {M\xC3\xBCller, J\xC3\xBCrgen \xE2\x82\xAC},\n  doi = {1},\n  url = {u},\n"
     "  doi = {2},\n}\n",
     "",
     {"character lit.bib:2 [] U+00FC \xC3\xBC became '?\?', times: 2",
      "character lit.bib:2 [] U+20AC \xE2\x82\xAC became '?\?\?', times: 1",
      "line-left-out lit.bib:3 [] lines with the tag 'doi' were left out, times: 2",
      "line-left-out lit.bib:4 [] lines with the tag 'url' were left out, times: 1"}},
    {"clean-tags",
     "@misc{a,\n  title = {The homeowner}}",
     "",
     {"entry-dropped lit.bib:1 [a] the entry was dropped as empty, although it has the tag "
      "'title'"}},
    {"clean-tags",
     "Some text\n@misc{a,  \n  note = {x},\n  keywords = {k},\n  keywords = {l},\n  isbn = {1},\n"
     "  stray\n}\nbetween\n@misc{b,\n  owner = {o},\n  timestamp = {t},\n  note = {n},\n}\n"
     "@misc{\n  note = {n},\n}\n",
     "",
     {"broken-head lit.bib:15 [] the key does not stand on the first line of the entry and is not "
      "read; put it there, with a comma after it",
      "text-not-copied lit.bib:1 [] text outside tags was not copied: 'Some text'",
      "text-lost lit.bib:2 [a] the first line does not end with a comma and a line break: its last "
      "two bytes were cut",
      "text-not-copied lit.bib:7 [a] text outside tags was not copied: 'stray'",
      "text-not-copied lit.bib:9 [a] text outside tags was not copied: 'between'",
      "entry-dropped lit.bib:10 [b] the entry was dropped as empty, although it has the tag 'note'",
      "entry-dropped lit.bib:15 [] an entry without a key was dropped",
      "unknown-tag lit.bib:4 [] the tag 'keywords' is never kept and was dropped, times: 2",
      "unknown-tag lit.bib:6 [] the tag 'isbn' is unknown and was dropped, times: 1"}},
    {"text",
     "@inproceedings{a,\n  title = {T}, year = {1},\n  shortauthor = {\\alphabet \\slas},\n"
     "  booktitle = {B},\n  editor = {Moe, A. and Zoe, B.},\n}\n",
     "",
     {"shared-line lit.bib:2 [a] the tag 'year' shares a line with 'title': one of them is not "
      "read, or takes the value of the other",
      "other-tag lit.bib:3 [a] the value of 'author' is read from the line of 'shortauthor'",
      "other-tag lit.bib:2 [a] the value of 'year' is read from the line of 'title', which it "
      "shares",
      "detail-missing lit.bib:1 [a] the reference shows nothing for 'address', 'pages'",
      "command-cut lit.bib:1 [a] only the beginning of '\\alphabet' was replaced in the 'author'",
      "command-left lit.bib:1 [a] '\\slas' is left in the author",
      "raw-editors lit.bib:1 [a] the 'editor' is printed as it is, not in the form of the "
      "style: 'Moe, A. and Zoe, B.'"}},
    {"extract",
     "@article{a,\n  author = {Doe, J.},\n  title = {Structure of {DNA}},\n  journal = {J},\n"
     "  year = {1},\n  note = {a@b.org {X}},\n}\n",
     "\\cite{a}\n",
     {"upper-cased lit.bib:6 [a] the text '@b.org ' in 'note' becomes capitals, as it stands "
      "between an '@' and a brace",
      "detail-missing lit_extract.bib:10 [a] the reference shows nothing for 'volume', 'pages'",
      "unbalanced lit_extract.bib:10 [a] the braces of the 'title' do not match, which stops "
      "LaTeX: 'Structure of {DNA'"}},
    {"extract",
     "@string{nat = {Nature}}\n@string{sci = {Science}}\n@article{a,\n  author = {Doe, J.},\n"
     "  title = {T},\n  journal = NAT,\n  year = {1},\n  volume = {1},\n  pages = {1},\n}\n",
     "\\cite{a}\n",
     {"unbraced-value lit.bib:6 [a] the value of 'journal' has no braces around it and is read as "
      "empty",
      "text-not-copied lit.bib:1 [] entries of the new library use the definition, which is not "
      "copied: '@string{nat = {Nature}}'",
      "value-missing lit_extract.bib:10 [a] the reference shows nothing for 'journal'"}},
    {"compare",
     "@article{a,\n  journal = {J},\n  volume = {1},\n  year = {1},\n  pages = {1},\n"
     "  numpages = {5},\n  title = {A},\n}\n",
     "@article{b,\n  journal = {J},\n  volume = {1},\n  year = {1},\n  pages = {2},\n"
     "  numpages = {5},\n  title = {B},\n}\n",
     {"other-tag lit.bib:6 [a] the value of 'pages' is read from the line of 'numpages'",
      "other-tag more.bib:6 [b] the value of 'pages' is read from the line of 'numpages'",
      "weak-verdict more.bib:1 [b] the entry is taken for the first library's entry 'a', but "
      "'pages' is read from the line of 'numpages'",
      "dropped-differs more.bib:1 [b] the entry is taken for the first library's entry 'a', but "
      "they differ in 'title'; check whether it is another work"}},
    {"clean-doubles",
     "% mine\n@string{s = {x}}\n@misc{a@b,\n  note = {x},\n}\n"
     "@book{a,\n  author = {A},\n  booktitle = {B},\n  year = {1},\n  doi = {1},\n}\n"
     "@book{b,\n  author = {A},\n  booktitle = {B},\n  year = {1},\n  doi = {2},\n}\n"
     "@misc{c,\n  url = {x%\n}},\n  note = {lost},\n}\n@misc{d,\n  note = {y}}\n",
     "",
     {"at-in-key lit.bib:3 [a@b] the key contains an '@', so that no operation sees the entry: its "
      "lines are skipped, or read as a part of the entry before it; remove the '@'",
      "runs-on lit.bib:23 [d] no line that begins with \"}\" ends the entry before the end of the "
      "library",
      "text-not-copied lit.bib:1 [] text outside entries was not copied: '% mine'",
      "text-not-copied lit.bib:2 [] text outside entries was not copied: '@string{s = {x}}'",
      "text-not-copied lit.bib:3 [] text outside entries was not copied: '@misc{a@b,'",
      "weak-verdict lit.bib:12 [b] the entry was dropped as a duplicate of 'a', but 'title' is "
      "read "
      "from the line of 'booktitle'",
      "dropped-differs lit.bib:12 [b] the entry was dropped as a duplicate of 'a', but they differ "
      "in "
      "'doi'; check whether it is another work",
      "cut-entry lit.bib:20 [c] the entry was copied only up to a '}' that begins a line inside a "
      "value; "
      "the rest is not in the new library: 'note'",
      "text-not-copied lit.bib:21 [] text outside entries was not copied: 'note = {lost},'",
      "ended-early lit.bib:23 [d] no line that begins with '}' ends the entry: Clean doubles "
      "fails there; put the last '}' on a line of its own"}},
    {"clean-authors",
     "@misc{a,\n  author = {Plato and Aristotle},\n}\n@misc{b,\n  author = \"Roe, Anna and\n"
     "    Poe, Bob\",\n}\n",
     "",
     {"unbraced-value lit.bib:5 [b] the value of 'author' has no braces around it and is read as "
      "empty",
      "doubtful-name lit.bib:2 [a] check the new author list: 'Plato' has one "
      "word and was paired with another name; 'Aristotle' has one word and was paired with another "
      "name",
      "torn-value lit.bib:5 [b] only the first line of 'author' was replaced, so that BibTeX "
      "cannot read the rest of the entry; put the list in braces"}},
    {"journals",
     "@article{journals/x,\n  title = {T},\n}\n@article{a,\n  journal = prl,\n}\n"
     "@article{b,\n  journal = \"Soft Matter\"\n}\n@article{c,\n  journal = {jutf},\n}\n",
     "",
     {"key-as-tag lit.bib:1 [journals/x] the first line mentions a journal and is taken for its "
      "line: the lines after it may be joined to it, and journals in them are not renamed; rename "
      "the "
      "key",
      "braced-journal lit.bib:5 [a] the macro's name became the value of 'journal': 'prl'",
      "line-cut lit.bib:8 [b] no comma ends the value of 'journal' on its line: the next lines, up "
      "to a '}', became a part of it: '  journal = \"Soft Matter\"'",
      "braced-journal lit.bib:8 [b] the quotes became a part of the value of 'journal': '\"Soft "
      "Matter\"'",
      "unknown-journal lit.bib:1 [] the journal 'journals/x, title = {T}, ' is not in the list, "
      "times: 1",
      "unknown-journal lit.bib:5 [] the journal ' prl' is not in the list, times: 1",
      "unknown-journal lit.bib:8 [] the journal ' \"Soft Matter\" ' is not in the list, times: 1",
      "unknown-journal lit.bib:11 [] the journal 'jutf' is not in the list, times: 1"}},
    {"journals",
     "@article{a,\n  journal = \"Soft,\n   Matter\",\n}\n"
     "@article{b,\n  journal-url = \"x?y=z\",\n}\n",
     "",
     {"line-cut lit.bib:2 [a] the value of 'journal' was cut at its first comma; BibTeX cannot "
      "read what follows: '  journal = \"Soft,'",
      "braced-journal lit.bib:2 [a] the quotes became a part of the value of 'journal': '\"Soft'",
      "line-cut lit.bib:6 [b] the value of 'journal' holds a '=': it was cut there, and the next "
      "lines, up to a '}', became a part of it: '  journal-url = \"x?y=z\",'",
      "braced-journal lit.bib:6 [b] the quotes became a part of the value of 'journal-url': "
      "'\"x?y=z\"'",
      "unknown-journal lit.bib:2 [] the journal ' \"Soft' is not in the list, times: 1",
      "unknown-journal lit.bib:6 [] the journal ' \"x?y= {z\"}, ' is not in the list, times: 1"}},
    {"journals",
     "@article{a,\n  journal = {J. Z.},\n}\n",
     "START\n******* Journal-start *******\nJournal f\xC3\xBCr Z\nJ. Z.\n"
     "******* Variations    *******\n******* Journal-end   *******\n",
     {"non-ascii-name lit.bib:2 [a] the new name 'Journal f\xC3\xBCr Z' has letters that are "
      "not ASCII; the library had none"}},
    {"clean-characters",
     "@misc{a,\n  adsurl = {x%\n},\n  doi = {1}, year = {2},\n  url = {u}}\n",
     "",
     {"torn-value lit.bib:2 [a] the line of 'adsurl' was left out, but the next lines of its value "
      "remain",
      "text-lost lit.bib:4 [a] the tag 'year' shares a line with 'doi' and was left out with it",
      "torn-value lit.bib:5 [a] the line of 'url' was left out together with a '}' that ends "
      "the entry",
      "line-left-out lit.bib:2 [] lines with the tag 'adsurl' were left out, times: 1",
      "line-left-out lit.bib:4 [] lines with the tag 'doi' were left out, times: 1",
      "line-left-out lit.bib:5 [] lines with the tag 'url' were left out, times: 1"}},
    {"clean-tags",
     "@string{s = {x}}\n@misc{a, \n  pages = {1},\n  numpages = {5}, year = {1},\n}\n",
     "",
     {"shared-line lit.bib:4 [a] the tag 'year' shares a line with 'numpages': one of them is not "
      "read, or takes the value of the other",
      "text-not-copied lit.bib:1 [] text outside tags was not copied: '@string{s = {x}}'",
      "broken-head lit.bib:2 [a] the first line does not end with the comma after the key: without "
      "its last two bytes, which Clean tags cuts, BibTeX cannot read the entry; delete what "
      "follows the comma",
      "renamed-tag lit.bib:4 [a] the tag 'numpages' was written as the tag 'pages'",
      "tag-twice lit.bib:4 [a] the entry has the tag 'pages' twice now, from 'pages' and from "
      "'numpages'"}},
    {"clean-tags",
     "@misc{a,\n  year = {1},\n}\n@STRING{s = {x}}\n",
     "",
     {"text-not-copied lit.bib:4 [] no entry follows the definition, and it was not copied: "
      "'@STRING{s = {x}}'"}},
    {"clean-tags",
     "@misc{,\n  title = {U},\n}\ntext\n@STRING{\n  x = \"y\"\n}\n@misc{a,\n  doi = {1} # {2},\n"
     "  title = \"T\",\n}\n@comment{old,\n  year = {1900},\n}\n",
     "",
     {"unbraced-value lit.bib:9 [a] the value of 'doi' continues after a '#': only the part before "
      "it is read",
      "unbraced-value lit.bib:10 [a] the value of 'title' has no braces around it and is read as "
      "empty",
      "stray-tag lit.bib:13 [] the tag 'year' stands outside entries and is taken for one of the "
      "entry before",
      "entry-dropped lit.bib:1 [] an entry without a key was dropped",
      "text-not-copied lit.bib:4 [] text outside tags was not copied: 'text'",
      "text-not-copied lit.bib:5 [] the definition continues on the next lines, which were not "
      "copied, and its log names only this line: '@STRING{'",
      "renamed-tag lit.bib:12 [a] a line of text was written as the tag 'year'"}},
    {"clean-authors",
     "@misc{a,\n  author = {Doe, Jane and Roe, Karl}, note = {x\n  y},\n}\n@misc{b,\n"
     "  author = {Gregor v. Bockmann and {Ana Sof{\\'i}}a Campos and Rajiv \\& Tharam "
     "Dillon},\n}\n",
     "",
     {"torn-value lit.bib:2 [a] a value that begins after the authors was cut off and its next "
      "lines remain: BibTeX cannot read the rest of the entry",
      "text-lost lit.bib:2 [a] what follows the authors was lost: 'note = {x'",
      "doubtful-name lit.bib:6 [b] check the new author list: 'Gregor v. "
      "Bockmann' has another surname now; '{Ana Sof{\\'i}}a Campos' has other initials now; 'Rajiv "
      "\\& Tharam Dillon' lost a word without letters"}},
    {"journals",
     "@string(x = \"My Journal\")\n@string(y = \"Other\")\n@article{a,\n  title = {T},\n}\n}\n",
     "",
     {"line-cut lit.bib:1 [] a line that mentions a journal was cut and got a \"}\": '@string(x = "
      "\"My Journal\")'",
      "line-cut lit.bib:2 [] was joined to a line above that mentions a journal, as no \"}\" ends "
      "the value there: BibTeX cannot read it",
      "line-cut lit.bib:3 [a] was joined to a line above that mentions a journal, as no \"}\" ends "
      "the value there: BibTeX cannot read it"}},
    {"clean-characters",
     "@misc{a,\n  url = {u}\n  , year = {1}\n  , doi = {1},\n  note = {2},\n  doi = {3}\n}\n",
     "",
     {"torn-value lit.bib:2 [a] the line of 'url' was left out with no comma, or with two: "
      "BibTeX can no longer read the entry",
      "torn-value lit.bib:4 [a] the line of 'doi' was left out with no comma, or with two: "
      "BibTeX can no longer read the entry",
      "line-left-out lit.bib:4 [] lines with the tag 'doi' were left out, times: 2",
      "line-left-out lit.bib:2 [] lines with the tag 'url' were left out, times: 1"}},
    {"clean-doubles",
     "@book{a,\n  crossref = {P},\n}\n@book{b,\n  crossref = {A},\n}\n"
     "@book{c,\n  author = {Roe},\n  title = {T},\n  year = {1},\n}\n"
     "@book{c,\n  author = {Roe},\n  title = {T},\n  year = {1},\n} @comment{x}\n",
     "",
     {"text-not-copied lit.bib:16 [] text after a dropped entry was not copied: '@comment{x'",
      "missing-parent lit.bib:1 [a] the 'crossref' of the entry names 'P', which is not in the new "
      "library"}},
    {"clean-characters",
     "@misc{a,\n  title = {T}, Year = {2001}, doi = {10.1/x},\n}\n",
     "",
     {"text-lost lit.bib:2 [a] the tag 'title' shares a line with 'doi' and was left out with it",
      "text-lost lit.bib:2 [a] the tag 'Year' shares a line with 'doi' and was left out with it",
      "line-left-out lit.bib:2 [] lines with the tag 'doi' were left out, times: 1"}},
    {"clean-doubles",
     "@booklet{K_a,\n  title = {2},\n}\n@booklet{k,\n  title = {1},\n}\n"
     "@booklet{k,\n  title = {3},\n}\n@letter{,\n}\n@letter{k,\n}\n@letter{,\n}\n",
     "",
     {"bad-key lit.bib:7 [k_a] the entry in line 1 has the same key in the new library, and BibTeX "
      "ignores one of them; change one of the keys",
      "bad-key lit.bib:12 [k] the entry in line 4 has the same key in the new library, and BibTeX "
      "ignores one of them; change one of the keys"}},
    {"compare",
     "@article{a,\n  author = {Doe, J.},\n  journal = {N},\n  volume = {1},\n  pages = {2},\n"
     "  year = {1},\n}\n",
     "@article{a,\n  author = {Doe, J.},\n  journal = {N},\n  volume = {1},\n  pages = {2},\n"
     "  year = {1}}\n@article{b,\n  author = {Doe, J.},\n  journal = {N},\n  volume = {1},\n"
     "  pages = {2},\n  year = {1},\n}\n",
     {"runs-on more.bib:1 [a] no line that begins with \"}\" ends the entry before the next entry",
      "entry-dropped more.bib:7 [b] the entry was taken for a part of 'a', which does not end "
      "before it, and is not in the new library"}},
    {"compare",
     "@article{a,\n  author = {Doe, J.},\n  journal = {N},\n  volume = {1},\n}\n",
     "@article{a,\n  author = {Doe, J.},\n  journal = {M},\n  volume = {1},\n}\n",
     {"dropped-differs more.bib:1 [a] the entry is taken for the first library's entry 'a', but "
      "they "
      "differ in 'journal'; check whether it is another work"}},
    {"extract",
     "@String{\n  nat = \"Nature\"\n}\n@article{a,\n  author = {Doe, J.},\n  title = {T},\n"
     "  journal = \"The \" # nat,\n  Crossref = {p},\n  volume = {1},\n  pages = {2},\n  year = "
     "{3},\n"
     "}\n",
     "\\cite{a}\n",
     {"unbraced-value lit.bib:7 [a] the value of 'journal' has no braces around it and is read as "
      "empty",
      "unbraced-value lit.bib:7 [a] the value of 'journal' continues after a '#': only the part "
      "before it is read",
      "missing-parent lit.bib:4 [a] the 'crossref' of the entry names 'p', which is not in the new "
      "library",
      "text-not-copied lit.bib:1 [] entries of the new library use the definition, which is not "
      "copied: '@String{'",
      "value-missing lit_extract.bib:10 [a] the reference shows nothing for 'journal'; 'crossref' "
      "is "
      "not followed"}},
    {"clean-tags",
     "@misc{a,\n  doi = {1} % mine\n}\n@misc{b,\n  year =\n    {x}\n} % end\n"
     "@misc{\n  note = {y}}\ntext\n@misc{d,\n}\n",
     "",
     {"unbraced-value lit.bib:5 [b] the value of 'year' does not begin on the line of its name and "
      "is read as empty",
      "broken-head lit.bib:8 [] the key does not stand on the first line of the entry and is not "
      "read; put it there, with a comma after it",
      "text-not-copied lit.bib:2 [a] text after a value was not copied: '% mine'",
      "text-not-copied lit.bib:6 [b] text outside tags was not copied: '{x}'",
      "text-not-copied lit.bib:7 [b] text outside tags was not copied: '} % end'",
      "entry-dropped lit.bib:8 [] an entry without a key was dropped",
      "text-not-copied lit.bib:10 [] text outside tags was not copied: 'text'"}},
    {"clean-doubles",
     "@book{a,\n  author = {A},\n  title = {B},\n  year = {1},\n  doi = {1},\n}\n"
     "@book{b,\n  author = {A},\n  title = {B},\n  year = {1},\n  note = {\\url{x%\n}},\n"
     "  doi = {2}}\n@comment{x}\nand y\n@misc{c,\n  url = {z},\n}\n"
     "@report{d,\n  note = {u}}\ntext\n@misc{e,\n  url = {w},\n}\n",
     "",
     {"runs-on lit.bib:7 [b] no line that begins with \"}\" ends the entry before the next entry",
      "unknown-type lit.bib:19 [d] '@report' is not a known type: the entry is skipped, or read as "
      "a part of the entry before it",
      "dropped-differs lit.bib:7 [b] the entry was dropped as a duplicate of 'a', but they differ "
      "in "
      "'doi'; check whether it is another work",
      "text-not-copied lit.bib:14 [] text after a dropped entry was not copied: '@comment{x}'",
      "entry-dropped lit.bib:16 [c] the entry was taken for a part of 'b', which does not end "
      "before "
      "it, and is not in the new library",
      "text-not-copied lit.bib:19 [] text outside entries was not copied: '@report{d,'",
      "text-not-copied lit.bib:21 [] text outside entries was not copied: 'text'"}},
    {"clean-authors",
     "@misc{a,\n  author = {{\\v S}tefan De Strau{\\ss}},\n}\n",
     "",
     {"doubtful-name lit.bib:2 [a] check the new author list: '{\\v S}tefan "
      "De "
      "Strau{\\ss}' has another surname now"}},
    {"extract",
     "@string{s = {x}}\n@misc{a,\n  note = {T}}\n@report{b,\n  journal = s,\n}\n",
     "\\cite{a}\n\\cite{b}\n",
     {"unknown-type lit.bib:4 [b] '@report' is not a known type: the entry is skipped, or read as "
      "a part of the entry before it",
      "missing-citation paper.tex:2 [b] the cited key has no entry in the library",
      "text-not-copied lit.bib:1 [] entries of the new library use the definition, which is not "
      "copied: '@string{s = {x}}'"}},
    {"clean-tags",
     "mine\n@misc{,\n  note = {y},\n}\ntext\n@misc{d,\n}\n",
     "",
     {"text-not-copied lit.bib:1 [] text outside tags was not copied: 'mine'",
      "entry-dropped lit.bib:2 [] an entry without a key was dropped",
      "text-not-copied lit.bib:5 [] text outside tags was not copied: 'text'"}},
};

Lines Reported(const Case& c) {
  RecordingReporter reporter;
  RecordingWarnings warnings;
  MemoryFiles files;
  RunContext run = RunOver(RunOf(c.operation), files, c.library, c.beside);
  run.warnings = &warnings;
  RunOf(c.operation).run(run);
  return warnings.lines;
}

/// How many of the lines are of the kind.
std::ptrdiff_t CountKind(const Lines& lines, std::string_view kind) {
  return std::count_if(lines.begin(), lines.end(),
                       [kind](const std::string& line) { return line.starts_with(kind); });
}

/// Where a line is left out, commas must still stand between the tags, and one at most at the end.
TEST(OperationWarnings, KnowWhetherALineIsLeftOutWithItsComma) {
  const auto torn = [](const std::string& lines) {
    return CountKind(Reported({"clean-characters", "@misc{a,\n" + lines, "", {}}), "torn-value");
  };
  EXPECT_EQ(torn("  url = {u},\n  year = {1}\n}\n"), 0);
  EXPECT_EQ(torn("  year = {1},\n  url = {u}\n}\n"), 0);
  EXPECT_EQ(torn("  year = {1}\n  , url = {u}\n}\n"), 0);
  EXPECT_EQ(torn("  year = {1}\n  , url = {u},\n}\n"), 0);
  EXPECT_EQ(torn("  year = {1}\n  , url = {u},\n  note = {n}\n}\n"), 1);
  EXPECT_EQ(torn("  url = {u}\n  , year = {1}\n}\n"), 1);
  EXPECT_EQ(torn("  year = {1}\n  , url = {u},\n)\n"), 0);
}

TEST(OperationWarnings, ReportWhatWasPassedOver) {
  for (const Case& c : kCases)
    EXPECT_EQ(Reported(c), c.reported) << c.operation << "\n" << c.library;
}

/// A library of entries as JabRef writes them, without the tags that an operation leaves out.
std::string CleanLibrary(int entries) {
  std::string library;
  for (int i = 0; i < entries; ++i) {
    const std::string n = std::to_string(i);
    library += "@Article{doe" + n + ",\n  author  = {Doe, J. and Roe, K.},\n  title   = {Study " +
               n + " of the {DNA} of ants},\n  journal = {Journal of Physics},\n  year    = {" +
               std::to_string(1900 + i % 120) + "},\n  volume  = {" + n + "},\n  pages   = {" + n +
               "--" + std::to_string(i + 9) + "},\n}\n\n";
  }
  return library;
}

TEST(OperationWarnings, AreNoneWhereNothingIsWrong) {
  const std::string library = CleanLibrary(2000);
  const std::string document = "\\begin{document}\n\\cite{doe1,doe77}\n\\cite{doe1999}\n";
  for (const OperationRun& operation : OperationRuns()) {
    const bool has_document = operation.row.needs == Needs::kDocumentAndLibrary;
    EXPECT_EQ(Reported({operation.name, library, has_document ? document : library, {}}), Lines())
        << operation.name;
  }
}

TEST(OperationWarnings, AreOfEveryKind) {
  // Preparing a library has tests of its own for these, and uncited entries are reported on request
  // only (CitedKeysOfADocument), large files in LargeOutputs.
  std::set<std::string_view> reported{"unread-text", "undefined-string", "misread-key",
                                      "misread-tag", "uncited-entry",    "large-output",
                                      "left-out",    "line-breaks"};
  for (const Case& c : kCases) {
    for (const std::string& line : c.reported) {
      reported.insert(std::string_view(line).substr(0, line.find(' ')));
    }
  }
  for (const WarningRow& kind : kWarningKinds)
    EXPECT_TRUE(reported.contains(kind.name)) << kind.name;
}

/// What a run leaves after and says.
struct Outcome {
  int result = 0;
  std::map<std::string, std::string> files;
  std::string printed;
  std::vector<RecordingReporter::ShownBox> boxes;
  bool operator==(const Outcome&) const = default;
};

Outcome OutcomeOf(const OperationRun& operation, const std::string& library,
                  const std::string& beside, Warnings* warnings) {
  RecordingReporter reporter;
  MemoryFiles files;
  RunContext run = RunOver(operation, files, library, beside);
  run.warnings = warnings;
  Outcome outcome;
  outcome.result = operation.run(run);
  outcome.files = files.files;
  outcome.printed = reporter.printed;
  outcome.boxes = reporter.boxes;
  EXPECT_EQ(reporter.warnings, Lines()) << "nothing is reported but through the warnings";
  return outcome;
}

TEST(OperationWarnings, ChangeNoFileAndNoMessage) {
  HostileLibraries libraries(99);
  WorldMaker worlds(7);
  for (const OperationRun& operation : OperationRuns()) {
    const bool has_document = operation.row.needs == Needs::kDocumentAndLibrary;
    std::size_t reported = 0;
    const int runs = RandomRuns(400);
    for (int i = 0; i < runs; ++i) {
      const std::string library = i % 2 == 0 ? libraries.Next() : worlds.Library();
      const std::string beside = has_document ? worlds.Document() : libraries.Related(library);
      RecordingWarnings warnings;
      const Outcome with = OutcomeOf(operation, library, beside, &warnings);
      ASSERT_EQ(with, OutcomeOf(operation, library, beside, nullptr)) << operation.name << library;
      reported += warnings.lines.size();
    }
    EXPECT_GT(reported, static_cast<std::size_t>(runs) / 2) << operation.name;
  }
}

}  // namespace
}  // namespace tarvel::testing
