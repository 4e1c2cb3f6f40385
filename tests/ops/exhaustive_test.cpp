// SPDX-License-Identifier: MIT
// Every file of a few tokens, through every operation: the result must be that of the plain twin,
// to the byte. The tokens are those that the operation looks for.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "app/globals.h"
#include "core/file_names.h"
#include "ops/operations.h"
#include "tests/support/memory_files.h"
#include "tests/support/plain_clean_authors.h"
#include "tests/support/plain_clean_characters.h"
#include "tests/support/plain_clean_doubles.h"
#include "tests/support/plain_clean_tags.h"
#include "tests/support/plain_compare.h"
#include "tests/support/plain_extract.h"
#include "tests/support/plain_journals.h"
#include "tests/support/plain_text.h"
#include "tests/support/recording_reporter.h"
#include "tests/support/reference_worlds.h"

namespace tarvel::testing {
namespace {

using Tokens = std::vector<std::string_view>;

/// The most tokens of a file: `usual`, and TARVEL_EXHAUSTIVE_TOKENS from the environment on top.
/// One more token takes about ten times as long.
std::size_t MostTokens(std::size_t usual) {
  const char* more = std::getenv("TARVEL_EXHAUSTIVE_TOKENS");
  return usual + static_cast<std::size_t>(more ? std::atoi(more) : 0);
}

/// Calls `judge` with every file of up to `most` of the tokens, the shortest first, until one
/// fails.
template <typename Judge>
void ForEachFile(const Tokens& tokens, std::size_t most, const Judge& judge) {
  std::size_t files = 0;
  for (std::size_t size = 0; size <= most; ++size) {
    std::vector<std::size_t> chosen(size, 0);
    for (bool more = true; more;) {
      std::string file;
      for (const std::size_t token : chosen) file += tokens[token];
      judge(file);
      if (::testing::Test::HasFatalFailure()) return;
      ++files;
      more = false;
      for (std::size_t i = size; i > 0 && !more; --i) {
        more = ++chosen[i - 1] < tokens.size();
        if (!more) chosen[i - 1] = 0;
      }
    }
  }
  std::size_t expected = 0;
  for (std::size_t size = 0, power = 1; size <= most; ++size, power *= tokens.size()) {
    expected += power;
  }
  EXPECT_EQ(files, expected);
  ::testing::Test::RecordProperty("files", std::to_string(files));
}

class AllShortFiles : public ::testing::Test {
  RecordingReporter reporter_;
};

TEST_F(AllShortFiles, CleanCharacters) {
  const Tokens tokens{"@book{k,", "@comment{jabref", "owner", "=", "{", "}", "\n", "\xc3", "\x7f",
                      "\t"};
  int bad = 0;
  ForEachFile(tokens, MostTokens(5), [&](const std::string& file) {
    MemoryFiles files;
    files.files["a.bib"] = file;
    ASSERT_EQ(RunCleanCharacters(MemoryRun(files, "a.bib")), 1) << file;
    const PlainCharacters plain = PlainCleanCharacters(file, "a.bib", "a_char.bib");
    ASSERT_EQ(files.files["a_char.bib"], plain.library) << file;
    ASSERT_EQ(files.files["a_char.log"], plain.log) << file;
    bad += plain.log.find("could be found. <-") != std::string::npos ? 1 : 0;
  });
  EXPECT_GT(bad, 100);
}

TEST_F(AllShortFiles, CleanTags) {
  const Tokens tokens{"@book{k,\n", "@STRING{s}\n", "author = ", "owner={",
                      "timestamp",  "title=",       "{",         "}",
                      ",",          "\n",           "x"};
  Settings keeps_empty;
  keeps_empty.RemoveEmptyEntries = 0;
  keeps_empty.RemoveJournalStrings = 0;
  const Settings removes;
  int logged = 0;
  ForEachFile(tokens, MostTokens(4), [&](const std::string& file) {
    for (const Settings& settings : {removes, keeps_empty}) {
      MemoryFiles files;
      files.files["a.bib"] = file;
      RunContext run = MemoryRun(files, "a.bib");
      run.settings = settings;
      const int result = RunCleanTags(run);
      const PlainCleanTagsResult plain = PlainCleanTags(file, "a.bib", "a_tag.bib", settings);
      ASSERT_EQ(result, plain.result) << file;
      ASSERT_EQ(files.files["a_tag.bib"], plain.library) << file;
      ASSERT_EQ(files.files["a_tag.log"], plain.log) << file;
      logged += plain.log.find("following tags") != std::string::npos ? 1 : 0;
    }
  });
  EXPECT_GT(logged, 100);
}

TEST_F(AllShortFiles, CleanAuthors) {
  const Tokens tokens{"@book{k,\n", "author = {", "}", "{",   "Smith, J", "A B",
                      " and ",      "et al",      ",", "\\ ", "\n",       "#"};
  int changed = 0;
  ForEachFile(tokens, MostTokens(4), [&](const std::string& file) {
    MemoryFiles files;
    files.files["a.bib"] = file;
    ASSERT_EQ(RunCleanAuthors(MemoryRun(files, "a.bib")), 1) << file;
    const PlainAuthorFiles plain = PlainCleanAuthors(file, "a.bib", "a_author.bib");
    ASSERT_EQ(files.files["a_author.bib"], plain.library) << file;
    ASSERT_EQ(files.files["a_author.log"], plain.log) << file;
    changed += plain.log.find("Function flags") != std::string::npos ? 1 : 0;
  });
  EXPECT_GT(changed, 100);
}

TEST_F(AllShortFiles, CleanDoubles) {
  const Tokens tokens{"@misc{k,\nnote={N}\n",
                      "@misc{j,\nnote={N}\n",
                      "@misc{k,\n",
                      "@other{k,\n",
                      "@letter{k,",
                      "note={",
                      "M}\n",
                      "}\n",
                      "}",
                      "@comment{jabref"};
  int doubles = 0;
  ForEachFile(tokens, MostTokens(5), [&](const std::string& file) {
    MemoryFiles files;
    files.files["a.bib"] = file;
    const int result = RunCleanDoubles(MemoryRun(files, "a.bib"));
    const DoublesOutcome plain = PlainCleanDoubles(file, "a.bib", "a_double.bib");
    ASSERT_EQ(result, plain.result) << file;
    ASSERT_EQ(files.files["a_double.bib"], plain.library) << file;
    ASSERT_EQ(files.files["a_double.log"], plain.log) << file;
    doubles += plain.log.find("same") != std::string::npos ? 1 : 0;
  });
  EXPECT_GT(doubles, 100);
}

void ExpectComparedAlike(const std::string& first, const std::string& second, int& same) {
  MemoryFiles files;
  files.files = {{"a.bib", first}, {"b.bib", second}};
  ASSERT_EQ(RunCompare(MemoryRun(files, "a.bib", "b.bib")), 1) << first << "\n=====\n" << second;
  const ComparedFiles plain = PlainCompare("a.bib", first, "b.bib", second);
  const ComparedFiles fast{files.files["a_comp.log"], files.files["a_comp_missing.bib"],
                           files.files["a_comp_equal.bib"]};
  ASSERT_EQ(fast.log, plain.log) << first << "\n=====\n" << second;
  ASSERT_EQ(fast.missing, plain.missing) << first << "\n=====\n" << second;
  ASSERT_EQ(fast.equal, plain.equal) << first << "\n=====\n" << second;
  same += plain.log.find("same") != std::string::npos ? 1 : 0;
}

TEST_F(AllShortFiles, Compare) {
  const Tokens tokens{"@book{k,\n", "@book{j,\n",      "@other{k,\n", "@letter{", "author = {A}\n",
                      "year = {1",  "@comment{jabref", "}",           "\n",       ","};
  const std::string other =
      "@book{k,\nauthor = {A}\n}\n@other{k,\n}\n@book{i,\nauthor = {A}\nyear = {1}\n}\n";
  int same = 0;
  ForEachFile(tokens, MostTokens(4), [&](const std::string& file) {
    ExpectComparedAlike(file, other, same);
    ExpectComparedAlike(other, file, same);
    ExpectComparedAlike(file, file, same);
  });
  EXPECT_GT(same, 100);
}

TEST_F(AllShortFiles, Journals) {
  const Tokens tokens{"@book{k,\n", "journal", "=", "={", "}", "PRB", "J. C. P.", "\n", ",", "\t"};
  const std::string list =
      "START\n******* Journal-start *******\nPhysics B\nPRB\n******* Variations    *******\n"
      "J C P\n\tB\n******* Journal-end   *******\n";
  Settings abbreviates;
  abbreviates.JournalAbbreviated = 1;
  int renamed = 0;
  ForEachFile(tokens, MostTokens(4), [&](const std::string& file) {
    for (const Settings& settings : {Settings{}, abbreviates}) {
      MemoryFiles files;
      files.files["a.bib"] = file;
      files.files["/program" + std::string(kJournalListFile)] = list;
      RunContext run = MemoryRun(files, "a.bib");
      run.settings = settings;
      const int result = RunJournals(run);
      const PlainJournals plain = PlainRunJournals(file, list, settings, "a_journal.bib", 5);
      ASSERT_EQ(result, plain.result) << file;
      ASSERT_EQ(files.files["a_journal.bib"], plain.library) << file;
      ASSERT_EQ(files.files["a_journal.log"], plain.log) << file;
      renamed += plain.log.find("has been renamed to") != std::string::npos ? 1 : 0;
    }
  });
  EXPECT_GT(renamed, 20);
}

/// The plain formats of the last run stay, as the program's do.
class AllShortReferences : public ::testing::Test {
 protected:
  AllShortReferences() {
    GlobalJournalStyles = {};
    world_.styles = MarkerStyles();
    world_.commands = "START\n\\alpha a\n";
    world_.document = "\\begin{document}\\cite{k,j}\n";
  }

  void ExpectExtracted() {
    MemoryFiles files = FilesOf(world_);
    ExpectSame(PlainExtract(world_, styles_), files, &RunExtract,
               MemoryRun(files, kDocumentPath, kLibraryPath));
  }
  void ExpectText() {
    MemoryFiles files = FilesOf(world_);
    ExpectSame(PlainText(world_, styles_), files, &RunText, MemoryRun(files, kLibraryPath));
  }

  PlainWorld world_;
  int printed_ = 0;  // how many runs printed a reference

 private:
  void ExpectSame(const PlainOutcome& plain, MemoryFiles& files,
                  int (*operation)(const RunContext&), RunContext run) {
    run.settings = world_.settings;
    const PlainOutcome fast = RunWorld(operation, run, files);
    const std::string input = world_.document + "\n=====\n" + world_.library;
    ASSERT_EQ(fast.result, plain.result) << input;
    ASSERT_EQ(fast.files, plain.files) << input;
    ASSERT_EQ(fast.printed, plain.printed) << input;
    ASSERT_EQ(fast.boxes, plain.boxes) << input;
    for (const auto& [suffix, bytes] : plain.files) {
      printed_ += bytes.find('|') != std::string::npos ? 1 : 0;
    }
  }

  PlainStyles styles_;
};

const Tokens kReferenceTokens{"@book{k,\n", "@article{j,\n",
                              "@misc{k,",   "author = {A B}\n",
                              "title = {{", "pages={",
                              "1--2}",      "@comment{jabref",
                              "}",          "\n"};

TEST_F(AllShortReferences, ExtractFromALibrary) {
  ForEachFile(kReferenceTokens, MostTokens(4), [&](const std::string& library) {
    world_.library = library;
    ExpectExtracted();
  });
  EXPECT_GT(printed_, 100);
}

TEST_F(AllShortReferences, ExtractForADocument) {
  const Tokens tokens{"\\cite{", "k", "j", ",", "}", "\n", "\\cite", "{", " ", "%"};
  world_.library = "@book{k,\nauthor = {A B}\n}\n@article{j,\nyear = {1}\n}\n@misc{ k,\n}\n";
  ForEachFile(tokens, MostTokens(4), [&](const std::string& document) {
    world_.document = document;
    ExpectExtracted();
  });
  EXPECT_GT(printed_, 10);
}

TEST_F(AllShortReferences, Text) {
  ForEachFile(kReferenceTokens, MostTokens(4), [&](const std::string& library) {
    world_.library = library;
    ExpectText();
  });
  EXPECT_GT(printed_, 100);
}

}  // namespace
}  // namespace tarvel::testing
