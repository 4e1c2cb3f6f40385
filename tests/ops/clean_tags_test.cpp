// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <string>
#include <string_view>

#include "ops/operations.h"
#include "tests/support/memory_files.h"
#include "tests/support/outcome.h"
#include "tests/support/plain_clean_tags.h"
#include "tests/support/recording_reporter.h"

namespace tarvel {
namespace {

using testing::kBibHeader;
using testing::kLogHeader;
using testing::MemoryFiles;
using testing::MemoryRun;
using testing::Outcome;
using testing::OutcomeOf;

Settings KeepAll() {
  Settings settings;
  settings.RemoveTag.fill(0);
  return settings;
}

/// Runs on a library "a.bib".
Outcome Clean(std::string_view input, const Settings& settings = {}) {
  const Outcome outcome =
      OutcomeOf({RunCleanTags, Output::kTagLibrary, Output::kTagLog}, input, settings);
  EXPECT_TRUE(outcome.boxes.empty());
  return outcome;
}

std::string Summary(int modified, int empty, int strings) {
  return "\n\n\nThe tag list of " + std::to_string(modified) +
         " BibTeX entries in the BibTeX file\n    'a.bib'\nwas modified. Furthermore " +
         std::to_string(empty) + " empty entries and " + std::to_string(strings) +
         " '@STRING{' were removed. The path of the new BibTeX file is:\n    'a_tag.bib'\n\n";
}

TEST(CleanTags, KeepsSixTagsAndLogsTheOthersInTheirOwnSpelling) {
  const Outcome outcome = Clean(
      "@article{k,\n author={A},\n  D.O : I;\t= {x},\n  TITLE = {T},\n language = {en},\n"
      "  Keywords = {k},\n  note = {n}\n}\n@misc{l,\n year = {1}\n}\n");
  EXPECT_EQ(outcome.result, 1);
  EXPECT_EQ(outcome.library,
            "@ARTICLE{k,\n  author = {A},\n  title = {{T}}\n}\n\n@MISC{l,\n  year = {1}\n}\n\n");
  EXPECT_EQ(outcome.log,
            "The following tags have been removed from the entry 'k':\nnote\n\n" + Summary(1, 0, 0))
      << "a line that spells its tag with dots does not pass the filter; unknown tags are not "
         "logged";
}

TEST(CleanTags, SqueezesTheNamesItLogs) {
  EXPECT_EQ(
      Clean("@book{k,\n . DOI\t: ;= {x},\n  Note. = {y},\n}\n@book{l,\n}\n").log,
      "The following tags have been removed from the entry 'k':\nDOI, Note\n\n" + Summary(1, 0, 0));
}

TEST(CleanTags, WritesEachTagInItsForm) {
  for (const TagRule& rule : kTagRules) {
    const std::string name(rule.name);
    if (name == "citeseerurl" || name == "yearfiled") continue;     // an earlier row takes them
    const std::string mention = name == "keywords" ? "note" : "x";  // to pass the line filter
    const std::string open = name == "title" ? " = {{" : " = {";
    const std::string close = name == "title" ? "}}" : "}";
    EXPECT_EQ(
        Clean("@misc{k,\n" + name + " = {" + mention + "}\n}\n@misc{l,\n}\n", KeepAll()).library,
        "@MISC{k,\n  " + name + open + mention + close + "\n}\n\n@MISC{l\n}\n\n");
    Settings settings = KeepAll();
    settings.RemoveTag[TagIndex(name)] = 1;
    EXPECT_EQ(Clean("@misc{k,\n" + name + " = {" + mention + "}\n}\n", settings).log,
              "The following tags have been removed from the entry 'k':\n" + name + "\n\n" +
                  Summary(1, 0, 0));
  }
}

struct TagLine {
  std::string line;
  std::string written;  // with every tag kept
  std::string says;
};

TEST(CleanTags, TakesTheFirstRowThatATagsNameContains) {
  const TagLine cases[] = {
      {"title = {T}", ",\n  title = {{T}}", "a title gets a second pair of braces"},
      {"title = {{T}}", ",\n  title = {{T}}", "unless it has one"},
      {"title = {{T} and {U}}", ",\n  title = {{T} and {U}}", "or merely begins with one"},
      {"title = {}", ",\n  title = {{}}", "an empty one gets it"},
      {"booktitle = {B}", ",\n  booktitle = {B}", "booktitle is not title"},
      {"citeseerurl = {u}", ",\n  url = {u}", "citeseerurl is written as url"},
      {"yearfiled = {1}", ",\n  year = {1}", "yearfiled as year"},
      {"annote = {n}", ",\n  note = {n}", "annote as note"},
      {"bookauthor = {A}", ",\n  author = {A}", "bookauthor as author"},
      {"keywords = {k}", "", "a keywords line is dropped although keywords are kept"},
      {"keywords = {my note}", ",\n  keywords = {my note}", "unless it mentions another tag"},
      {"isbn = {1}", "", "an unknown tag is dropped"},
      {"isbn = {a note}", "", "even if its line passes the filter"},
      {"year = 2001", ",\n  year = {}", "a bare value is written empty"},
      {"year = \"2001\"", ",\n  year = {}", "a quoted one too"},
      {"note = \"{a} b\"", ",\n  note = {a}", "braces inside quotes are read"},
      {"Author", ",\n  author = {}", "a line that is only a name"},
      {"note {x} = {y}", ",\n  note = {x}", "the first braces of the line count"},
      {"x = {the author}", "", "a name is what stands before the ="},
      {"year={1}, volume={2}", ",\n  year = {1}", "one tag a line"},
      {"note = {a\n   b\n c}", ",\n  note = {a b c}", "a value over lines is joined"},
      {"note = {a\n\n \t\n b}", ",\n  note = {a b}", "blank lines in it vanish"},
      {"note\n = {a}", ",\n  note = {}", "a name on a line of its own has no value"},
      {"note = {m@x {y}}", ",\n  note = {m@X {y}}", "the head test upper-cases after an @"},
      {"\xc3\xa4note = {\xc3\xa4}", ",\n  note = {\xc3\xa4}", "bytes above 127 pass"},
      {std::string("note = {a\0b}", 12), std::string(",\n  note = {a\0b}", 16), "zeros too"},
      {"note = {a}\r", ",\n  note = {a}", "a CR at the end of a line is dropped with the rest"},
  };
  for (const TagLine& c : cases) {
    const std::string separator = c.written.empty() ? ",\n" : "\n";
    EXPECT_EQ(Clean("@misc{k,\n" + c.line + "\n}\n@misc{l,\n}\n", KeepAll()).library,
              "@MISC{k" + c.written + separator + "}\n\n" + "@MISC{l\n}\n\n")
        << c.says;
  }
}

TEST(CleanTags, EndsAnEntryWithoutTagsWithACommaUnlessItIsTheLast) {
  const Outcome outcome = Clean("@misc{k,\n}\n@misc{l,\n isbn = {1}\n}\n@misc{m,\n}\n");
  EXPECT_EQ(outcome.library, "@MISC{k,\n}\n\n@MISC{l,\n}\n\n@MISC{m\n}\n\n");
  EXPECT_EQ(outcome.log, Summary(0, 0, 0));
}

TEST(CleanTags, CutsTheLastTwoBytesOfEveryHead) {
  EXPECT_EQ(Clean("@misc{key}\n@misc{l,\n}\n").library, "@MISC{key,\n}\n\n@MISC{l\n}\n\n");
  Settings keep_empty;
  keep_empty.RemoveEmptyEntries = 0;
  EXPECT_EQ(Clean("@misc{k,", keep_empty).library, "@MISC{\n}\n\n")
      << "without a line break the key suffers";
  EXPECT_EQ(Clean("@misc{key, year = {1},\n}\n").library, "@MISC{key, year = {1}\n}\n\n")
      << "tags on the head line stay there";
  EXPECT_EQ(Clean("@misc{k,\r\n year = {1}\n").library, "@MISC{k,,\n  year = {1}\n}\n\n");
}

TEST(CleanTags, LogsTheKeyThatIsLeftAfterTheCut) {
  EXPECT_EQ(
      Clean("@misc{key\n note = {1}\n").log,
      "The following tags have been removed from the entry 'ke':\nnote\n\n" + Summary(1, 0, 0));
}

TEST(CleanTags, DropsEmptyEntries) {
  struct Case {
    std::string entry;
    int dropped;
    std::string says;
  };
  const Case cases[] = {
      {"@misc{k,\n owner = {o},\n timestamp = {t},\n}\n", 1, "an owner and a timestamp"},
      {"@misc{k,\n OWNER = {o},\n TimeStamp = {t},\n year = {1}\n}\n", 1,
       "whatever stands after them"},
      {"@misc{k,\n timestamp = {t},\n owner = {o},\n}\n", 0, "only in this order"},
      {"@misc{k,\n owner = {o},\n year = {1},\n timestamp = {t}\n}\n", 0, "and in the first lines"},
      {"@misc{k,\n\n owner = {o},\n timestamp = {t}\n}\n", 0, "an empty line is a line"},
      {"@misc{,\n year = {1}\n}\n", 1, "an entry without a key"},
      {"@misc{\n year = {1}\n}\n", 1, "or with nothing after the brace"},
      {"@misc{ ,\n year = {1}\n}\n", 0, "a blank is a key"},
  };
  for (const Case& c : cases) {
    const Outcome outcome = Clean(c.entry + "@misc{z,\n year = {2}\n}\n");
    EXPECT_EQ(outcome.log.ends_with(" " + std::to_string(c.dropped) +
                                    " empty entries and 0 '@STRING{' were removed. The path of "
                                    "the new BibTeX file is:\n    'a_tag.bib'\n\n"),
              true)
        << c.says;
    EXPECT_EQ(outcome.library.starts_with("@MISC{z"), c.dropped == 1) << c.says;
  }
  EXPECT_EQ(Clean("@misc{k,").log, Summary(0, 1, 0)) << "the file ends where a line is wanted";
  EXPECT_EQ(Clean("@misc{k,\n owner").log, Summary(0, 1, 0));
  Settings settings;
  settings.RemoveEmptyEntries = 0;
  EXPECT_EQ(Clean("@misc{k,\n owner = {o},\n timestamp = {t}\n}\n@misc{,\n}\n", settings).library,
            "@MISC{k,\n}\n\n@MISC{\n}\n\n");
  settings.RemoveEmptyEntries = 2;
  EXPECT_EQ(Clean("@misc{k,\n owner = {o},\n timestamp = {t}\n}\n", settings).library,
            "@MISC{k\n}\n\n")
      << "the flag acts only when it is exactly 1";
}

TEST(CleanTags, RemovesStringLines) {
  const Outcome outcome = Clean(
      "@STRING{jcp = {J. Chem. Phys.}}\n@string{x = {y}}\n  @STRING{a = {b\n c}}\n@misc{k,\n}\n");
  EXPECT_EQ(outcome.result, 1);
  EXPECT_EQ(outcome.log,
            "The following @STRING has been removed:\n    @STRING{jcp = {J. Chem. Phys.}}\n\n\n"
            "The following @STRING has been removed:\n      @STRING{a = {b\n\n\n" +
                Summary(0, 0, 2))
      << "only in capitals, and only the first line of each";
  EXPECT_EQ(outcome.library, "@MISC{k\n}\n\n");
}

TEST(CleanTags, LeavesAStringAfterAnEntryToTheEntry) {
  const Outcome outcome = Clean("@misc{k,\n year = {1}\n}\n@STRING{a = {b}}\n@misc{l,\n}\n");
  EXPECT_EQ(outcome.log, "The following @STRING has been removed:\n    @STRING{a = {b}}\n\n\n" +
                             Summary(0, 0, 1))
      << "the entry's lines are read again, and with them the string";
  EXPECT_EQ(Clean("@misc{k,\n year = {1}\n}\n@STRING{a = {b}}\n").log, Summary(0, 0, 0))
      << "after the last entry nothing is read again";
}

TEST(CleanTags, KeepsStringLinesWithTheirDots) {
  Settings settings;
  settings.RemoveJournalStrings = 0;
  EXPECT_EQ(
      Clean("@STRING{a = {b}}\n@string{c = {d}}\n\n@misc{k,\n year = {1}\n}\n", settings).library,
      "...@STRING{a = {b}}\n... @STRING{c = {d}}\n... \n@MISC{k,\n}\n\n"
      "@MISC{k,\n  year = {1}\n}\n\n")
      << "the head is written once without tags, and then the lines after the string again";
  const Outcome run =
      Clean("@STRING{a = {b}}\n@STRING{c = {d}}\n@misc{k,\n year = {1}\n}\n", settings);
  EXPECT_EQ(run.library,
            "...@STRING{a = {b}}\n... @STRING{c = {d}}\n@MISC{k,\n}\n\n"
            "...@STRING{c = {d}}\n@MISC{k,\n}\n\n"
            "@MISC{k,\n  year = {1}\n}\n\n");
  EXPECT_EQ(run.result, 1);
}

TEST(CleanTags, FailsWhenNoEntryFollowsAKeptString) {
  Settings settings;
  settings.RemoveJournalStrings = 0;
  const Outcome outcome = Clean("@misc{k,\n}\n\n@STRING{a = {b}}\n", settings);
  EXPECT_EQ(outcome.result, 1) << "after the last entry it belongs to that entry";
  const Outcome failed = Clean("@STRING{a = {b}}\nwords\n", settings);
  EXPECT_EQ(failed.result, 0);
  EXPECT_EQ(failed.library, "...@STRING{a = {b}}\n... words\n");
  EXPECT_EQ(failed.log, "") << "no summary";
  EXPECT_EQ(failed.printed, "") << "and no message";
}

TEST(CleanTags, NeverCopiesWhatIsNoEntry) {
  const std::string jabref =
      "@comment{jabref-meta: groupsversion:3;}\n\n@comment{jabref-entrytype: Note: x}\n";
  for (const int flag : {0, 1}) {
    Settings settings;
    settings.RemoveJabRefStructure = flag;
    const Outcome outcome =
        Clean("words\n@PREAMBLE{\"x\"}\n@misc{k,\n year = {1}\n}\nwords\n" + jabref, settings);
    EXPECT_EQ(outcome.library, "@MISC{k,\n  year = {1}\n}\n\n");
    EXPECT_EQ(outcome.log,
              "The following tags have been removed from the entry 'k':\n"
              "@COMMENT{jabref-metagroupsversion3}, @COMMENT{jabref-entrytypeNotex}\n\n" +
                  Summary(1, 0, 0))
        << "what follows an entry is read as its lines";
  }
}

TEST(CleanTags, SkipsBlankLines) {
  const Outcome outcome = Clean("\n\n\n");
  EXPECT_EQ(outcome.library, "");
  EXPECT_EQ(outcome.log, Summary(0, 0, 0));
  EXPECT_EQ(Clean("").log, Summary(0, 0, 0)) << "as it takes an empty file";
}

TEST(CleanTags, WritesATagTwiceThatOccursTwice) {
  EXPECT_EQ(Clean("@misc{k,\nyear = {1},\nyear = {2},\n author = {a}\n}\n").library,
            "@MISC{k,\n  year = {1},\n  year = {2},\n  author = {a}\n}\n\n");
}

TEST(CleanTags, ReadsHeadsInPiecesOf49999Bytes) {
  // The head test of the outer loop sees a piece, that inside an entry up to 499,999 bytes.
  const std::string spaces(49997, ' ');
  EXPECT_EQ(Clean(spaces + "@misc{k,\n year = {1}\n}\n").library, "")
      << "a type word cut by the limit starts no entry";
  EXPECT_EQ(Clean("@misc{a,\n}\n" + spaces + "@misc{k,\n year = {1}\n").library, "@MISC{a,\n}\n\n")
      << "inside an entry it does end the one before";
  EXPECT_EQ(Clean("@misc{a,\n note" + std::string(499994, ' ') + "= {x}\n}\n", KeepAll()).library,
            "@MISC{a,\n  note = {}\n}\n\n")
      << "a tag's line is cut after 499,999 bytes";
  EXPECT_EQ(Clean("@misc{a,\n note=" + std::string(499993, ' ') + "{x}\n}\n", KeepAll()).library,
            "@MISC{a,\n  note = {}\n}\n\n")
      << "the brace is the first byte after the cut";
  EXPECT_EQ(Clean("@misc{a,\n note=" + std::string(499992, ' ') + "{x}\n}\n", KeepAll()).library,
            "@MISC{a,\n  note = {x}\n}\n\n")
      << "the brace is the last byte before it";
}

TEST(CleanTags, TakesValuesOfAnySize) {
  const std::string value(2000000, 'v');
  std::string lines;
  for (std::size_t at = 0; at < value.size(); at += 20000) lines += value.substr(at, 20000) + "\n";
  std::string joined = lines;
  for (char& byte : joined) byte = byte == '\n' ? ' ' : byte;
  joined.pop_back();
  lines.pop_back();
  EXPECT_EQ(Clean("@misc{k,\nnote = {" + lines + "}\n}\n", KeepAll()).library,
            "@MISC{k,\n  note = {" + joined + "}\n}\n\n");
}

TEST(CleanTags, ReportsWhatItCannotOpen) {
  struct Case {
    std::string first;
    std::string broken;
    std::string text;
  };
  const Case cases[] = {
      {"", "", "Function Clean_tags_1 => BibTeX file does not exist?"},
      {"none.bib", "", "Function Clean_tags_2 => Could not open the BibTeX file?"},
      {"a.bib", "a_tag.bib", "Function Clean_tags_3 => Could not create a new BibTeX file?"},
      {"a.bib", "a_tag.log", "Function Clean_tags_4 => Could not create the log file?"},
      {"nodot", "", "Function Clean_tags_3 => Could not create a new BibTeX file?"},
  };
  for (const Case& c : cases) {
    testing::RecordingReporter reporter;
    MemoryFiles files;
    files.files["a.bib"] = "@misc{k,\n}\n";
    files.files["nodot"] = "@misc{k,\n}\n";
    files.not_creatable.insert(c.broken);
    const RunContext run = MemoryRun(files, c.first);
    EXPECT_EQ(RunCleanTags(run), 0);
    EXPECT_EQ(reporter.printed, testing::Printed(c.text));
    EXPECT_TRUE(reporter.boxes.empty());
  }
}

TEST(CleanTags, ReadsAReadOnlyLibrary) {
  testing::RecordingReporter reporter;
  MemoryFiles files;
  files.files["a.bib"] = "@misc{k,\n}\n";
  files.read_only.insert("a.bib");
  EXPECT_EQ(RunCleanTags(MemoryRun(files, "a.bib")), 1);
}

TEST(CleanTags, NeverWritesOverAnInput) {
  testing::RecordingReporter reporter;
  MemoryFiles files;
  files.files["a.bib"] = "@misc{k,\n}\n";
  files.files["a_tag.log"] = "the other picked file";
  EXPECT_EQ(RunCleanTags(MemoryRun(files, "a.bib", "a_tag.log")), 0);
  EXPECT_EQ(files.files["a_tag.log"], "the other picked file");
  EXPECT_EQ(reporter.printed,
            testing::Printed("Function Clean_tags_4 => Could not create the log file?"));
}

TEST(CleanTags, ASecondRunReplacesBothFiles) {
  testing::RecordingReporter reporter;
  MemoryFiles files;
  files.files["a.bib"] = "@misc{k,\n year = {1},\n note = {2}\n}\n@misc{l,\n year = {3}\n}\n";
  ASSERT_EQ(RunCleanTags(MemoryRun(files, "a.bib")), 1);
  files.files["a.bib"] = "@misc{l,\n year = {3}\n}\n";
  ASSERT_EQ(RunCleanTags(MemoryRun(files, "a.bib")), 1);
  EXPECT_EQ(files.files["a_tag.bib"],
            std::string(testing::kBibHeader) + "@MISC{l,\n  year = {3}\n}\n\n");
  EXPECT_EQ(files.files["a_tag.log"], std::string(testing::kLogHeader) + Summary(0, 0, 0));
}

TEST(CleanTags, FailsOnAFullDiskAtEveryByte) {
  MemoryFiles whole;
  whole.files["a.bib"] = "@misc{k,\n year = {1},\n note = {2}\n}\n";
  testing::RecordingReporter reporter;
  ASSERT_EQ(RunCleanTags(MemoryRun(whole, "a.bib")), 1);
  for (const std::string path : {"a_tag.bib", "a_tag.log"}) {
    for (std::size_t room = 0; room < whole.files[path].size(); ++room) {
      MemoryFiles files;
      files.files["a.bib"] = whole.files["a.bib"];
      files.room[path] = room;
      reporter.printed.clear();
      EXPECT_EQ(RunCleanTags(MemoryRun(files, "a.bib")), 0) << path << " " << room;
      EXPECT_EQ(reporter.printed, testing::Printed("Could not write the file '" + path +
                                                   "': No space left on device"));
    }
  }
}

/// How many random libraries: TARVEL_RANDOM_RUNS, or a number that suits every run of the tests.
int RandomRuns() {
  const char* runs = std::getenv("TARVEL_RANDOM_RUNS");
  return runs ? std::atoi(runs) : 4000;
}

/// Cleans the library with settings of chance and holds the files against those of the plain twin.
void ExpectAsPlainTwin(const std::string& input, std::mt19937& random) {
  Settings settings;
  if (random() % 2 == 0) settings.RemoveJournalStrings = 0;
  if (random() % 2 == 0) settings.RemoveEmptyEntries = 0;
  for (Flag& flag : settings.RemoveTag) flag = random() % 3 == 0 ? 1 : 0;
  const auto plain = testing::PlainCleanTags(input, "a.bib", "a_tag.bib", settings);
  const Outcome fast = Clean(input, settings);
  ASSERT_EQ(fast.result, plain.result) << input;
  ASSERT_EQ(std::string(kBibHeader) + fast.library, plain.library) << input;
  ASSERT_EQ(std::string(kLogHeader) + fast.log, plain.log) << input;
}

TEST(CleanTags, AgreesWithItsPlainTwin) {
  std::mt19937 random(11);
  const std::string pieces[] = {"@article{a,\n",
                                "@misc{b,\n",
                                "@Book{,\n",
                                "@inbook{c\n",
                                "@STRING{x = {y}}\n",
                                "@string{z}\n",
                                "}\n",
                                "\n",
                                " author = {A},\n",
                                "title = {T}\n",
                                "title = {{T}}\n",
                                "booktitle={B\n",
                                "  more\n",
                                "end},\n",
                                "owner = {o},\n",
                                "timestamp = {t},\n",
                                "note = 5,\n",
                                "keywords = {a note}\n",
                                "@comment{jabref-meta: x\n",
                                "year = {1",
                                "{",
                                "}",
                                ",",
                                "isbn = {1},\n",
                                "D.O.I: = {x}\n",
                                "\xe4\n",
                                " \t\n",
                                "@",
                                "=",
                                std::string("\0", 1),
                                "\r\n",
                                "doi = {1}, year = {2}\n",
                                "mail@x {y}\n"};
  for (int run = 0; run < RandomRuns(); ++run) {
    std::string input;
    for (auto i = random() % 16; i > 0; --i) input += pieces[random() % std::size(pieces)];
    ExpectAsPlainTwin(input, random);
    if (HasFatalFailure()) return;
  }
}

/// Entries that begin values, lines that end them, and an entry after these: most values hold many
/// entries, and are read again with each of them.
std::string Overlapping(std::mt19937& random) {
  static const std::string long_blanks(1100, ' ');
  static const std::string opening[] = {
      "abstract={\n", "{ abstract = {{\n", "abstract {\n",     "title { x\n",
      "{note\n",      "isbn{ \xe9\n",      "title={\n",        "x{} title\n",
      "year = {{\n",  "doi {\n = {\n",     "author {\n\n",     "x={ title\n",
      "url { = \r\n", "a = {author\n",     "title = {a@b {\n", "note {a@b c{ d\n"};
  static const std::string between[] = {"\n",
                                        " \t\n",
                                        "= x\n",
                                        "\xe4 = y\n",
                                        "\x01\x02 = z\n",
                                        "\xff\xff\n",
                                        "text\n",
                                        "{}\n",
                                        " \t= {\n",
                                        "}\n",
                                        "\x01" + long_blanks + "\n",
                                        long_blanks + "x\n",
                                        "\n" + long_blanks + "\xe4=\n",
                                        "doi = {1},\n"};
  static const std::string closing[] = {"}\n",     "}}\n", "} = q\n", "}, doi = {x}\n",
                                        "\xe9}\n", " }\n", "=}\n",    "\n"};
  const auto any = [&random](const auto& texts) { return texts[random() % std::size(texts)]; };
  const auto rarely = [&random] { return random() % 300 == 0; };
  std::string library;
  const std::size_t entries = 5 + random() % 30;
  for (std::size_t i = 0; i < entries; ++i) {
    library += "@book{k" + std::to_string(i) + ",\n" + any(opening);
    while (random() % 4 == 0) library += any(between);
  }
  if (rarely()) library.append(25000, ' ');
  for (std::size_t i = random() % (3 * entries); i > 0; --i) {
    library += any(closing);
    if (random() % 8 == 0) library += any(between);
    if (rarely()) library.append(25000 + random() % 3, random() % 2 == 0 ? ' ' : 'x');
  }
  return library + "@book{last,\n title={x}\n}\n";
}

TEST(CleanTags, OfValuesThatHoldOtherEntriesAgreesWithItsPlainTwin) {
  std::mt19937 random(12);
  for (int run = 0; run < RandomRuns() / 8 && !HasFatalFailure(); ++run) {
    ExpectAsPlainTwin(Overlapping(random), random);
  }
}

}  // namespace
}  // namespace tarvel
