// SPDX-License-Identifier: MIT
#include "gui/input_checks.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/globals.h"
#include "app/settings.h"
#include "tests/support/disk_files.h"
#include "tests/support/recording_reporter.h"

namespace tarvel {
namespace {

using testing::TemporaryDirectory;

class InputChecks : public ::testing::Test {
 protected:
  ~InputChecks() override {
    FirstFilePath.Set("");
    SecondFilePath.Set("");
    GlobalSettings = Settings();
  }
  std::string File(const std::string& name, std::string_view bytes) {
    testing::WriteDiskFile(directory_ / name, bytes);
    return directory_ / name;
  }
  /// The result and the boxes of a check.
  void Expect(int code, int result,
              const std::vector<testing::RecordingReporter::ShownBox>& boxes) {
    testing::RecordingReporter reporter;
    EXPECT_EQ(CheckInputFiles(code), result) << code;
    EXPECT_EQ(reporter.boxes.size(), boxes.size()) << code;
    for (std::size_t i = 0; i < std::min(boxes.size(), reporter.boxes.size()); ++i) {
      EXPECT_EQ(reporter.boxes[i].caption, boxes[i].caption) << code;
      EXPECT_EQ(reporter.boxes[i].message, boxes[i].message) << code;
    }
    EXPECT_EQ(reporter.printed, "");
  }

  TemporaryDirectory directory_;
  const std::string library_ = File("lit.bib", "% words\n@article{a,\n}\n");
  const std::string document_ = File("paper.tex", "\\begin{document}\n");
  const std::string list_ = File("own.tvl", "START\n******* Journal-start *******\n");
  const std::string neither_ = File("words.txt", "nothing of the kind @ all\n");
  const std::string missing_ = directory_ / "missing.bib";
};

constexpr int kOneLibrary[] = {9000, 9001, 9002, 9003, 9006};

TEST_F(InputChecks, ReportAFirstLibraryThatIsNotPicked) {
  for (const int code : {9000, 9001, 9002, 9003, 9004, 9006, 9007}) {
    Expect(code, 0, {{"Please, load a BibTeX file (first file)", "Load BibTeX file"}});
  }
}

TEST_F(InputChecks, SayWhyALibraryInUtf16IsNone) {
  const std::string library("@\0a\0{\0k\0,\0\n\0", 12);
  for (const std::string mark : {"\xFF\xFE", "\xFE\xFF"}) {
    testing::RecordingReporter reporter;
    const std::string path = File("wide.bib", mark + library);
    FirstFilePath.Set(path);
    EXPECT_EQ(CheckInputFiles(9002), 0);
    EXPECT_EQ(reporter.warnings, std::vector<std::string>{
                                     "warning: the file '" + path +
                                     "' is in UTF-16; convert it with 'iconv -f UTF-16 -t UTF-8'"});
  }
  testing::RecordingReporter reporter;
  FirstFilePath.Set(neither_);
  EXPECT_EQ(CheckInputFiles(9002), 0);
  EXPECT_EQ(reporter.warnings, std::vector<std::string>());
}

TEST_F(InputChecks, ReportAFirstLibraryThatIsNoLibrary) {
  for (const int code : {9000, 9001, 9002, 9003, 9004, 9006, 9007}) {
    for (const std::string& path : {missing_, directory_ / ""}) {
      FirstFilePath.Set(path);
      Expect(code, 0, {{"Could not open the BibTeX file (first file)!", "BibTeX file ?"}});
    }
    FirstFilePath.Set(neither_);
    Expect(code, 0, {{"The first file does not seem to be a BibTeX file!", "BibTeX file ?"}});
  }
}

TEST_F(InputChecks, LetOneLibraryPass) {
  FirstFilePath.Set(library_);
  for (const int code : kOneLibrary) Expect(code, 1, {});
}

TEST_F(InputChecks, AskCompareForASecondLibrary) {
  FirstFilePath.Set(library_);
  Expect(9004, 0, {{"Please, load a BibTeX file (second file)", "Load BibTeX file"}});
  SecondFilePath.Set(missing_);
  Expect(9004, 0, {{"Could not open the BibTeX file (second file)!", "BibTeX file ?"}});
  SecondFilePath.Set(neither_);
  Expect(9004, 0, {{"The second file does not seem to be a BibTeX file!", "BibTeX file ?"}});
  SecondFilePath.Set(library_);
  Expect(9004, 1, {});
  FirstFilePath.Set(neither_);
  Expect(9004, 0, {{"The first file does not seem to be a BibTeX file!", "BibTeX file ?"}});
}

TEST_F(InputChecks, AskExtractForADocumentAndALibrary) {
  Expect(9005, 0, {{"Please, load a LaTeX file (first file)", "Load LaTeX file"}});
  FirstFilePath.Set(missing_);
  Expect(9005, 0, {{"Could not open the LaTeX file (first file)!", "LaTeX file ?"}});
  FirstFilePath.Set(library_);
  Expect(9005, 0, {{"The first file does not seem to be a LaTeX file!", "LaTeX file ?"}});
  FirstFilePath.Set(document_);
  Expect(9005, 0, {{"Please, load a BibTeX file (second file)", "Load BibTeX file"}});
  SecondFilePath.Set(missing_);
  Expect(9005, 0, {{"Could not open the BibTeX file (second file)!", "BibTeX file ?"}});
  SecondFilePath.Set(neither_);
  Expect(9005, 0, {{"The second file does not seem to be a BibTeX file!", "BibTeX file ?"}});
  SecondFilePath.Set(library_);
  Expect(9005, 1, {});
}

TEST_F(InputChecks, TakeEitherMarkerForADocument) {
  SecondFilePath.Set(library_);
  FirstFilePath.Set(File("end.tex", "words\n\\end{document}\n"));
  Expect(9005, 1, {});
  FirstFilePath.Set(File("case.tex", "\\BEGIN{document}\n"));
  Expect(9005, 0, {{"The first file does not seem to be a LaTeX file!", "LaTeX file ?"}});
}

TEST_F(InputChecks, LookAtAnOwnJournalListOnlyWhenItIsAskedFor) {
  FirstFilePath.Set(library_);
  SecondFilePath.Set(missing_);
  Expect(9007, 1, {});
  GlobalSettings.UseOwnJournalFile = 1;
  Expect(9007, 0, {{"Could not open the Tarvel file (second file)!", "Tarvel file ?"}});
  SecondFilePath.Set("");
  Expect(9007, 0, {{"Please, load a Tarvel file (second file)", "Load Tarvel file"}});
  SecondFilePath.Set(library_);
  Expect(9007, 0, {{"The second file does not seem to be a Tarvel file!", "Tarvel file ?"}});
  SecondFilePath.Set(list_);
  Expect(9007, 1, {});
}

TEST_F(InputChecks, LetAnyOtherCodePass) {
  for (const int code : {0, 1, 8999, 9008, -1}) Expect(code, 1, {});
}

TEST_F(InputChecks, FindAnEntryHoweverLate) {
  std::string bytes;
  for (int line = 1; line < 5000; ++line) bytes += "just words\n";
  FirstFilePath.Set(File("late.bib", bytes + "@inbook{a,\n"));
  Expect(9003, 1, {});
  FirstFilePath.Set(File("far.bib", std::string(3 << 20, '\n') + "@inbook{a,\n"));
  Expect(9003, 1, {});
}

TEST_F(InputChecks, ReadLinesInPiecesOf999Bytes) {
  FirstFilePath.Set(File("cut.bib", std::string(996, 'x') + "@book{a,\n"));
  Expect(9003, 0, {{"The first file does not seem to be a BibTeX file!", "BibTeX file ?"}});
  FirstFilePath.Set(File("whole.bib", std::string(999, 'x') + "@book{a,\n"));
  Expect(9003, 1, {});
}

TEST_F(InputChecks, RefuseEmptyAndBinaryFiles) {
  const std::vector<testing::RecordingReporter::ShownBox> no_library{
      {"The first file does not seem to be a BibTeX file!", "BibTeX file ?"}};
  FirstFilePath.Set(File("empty.bib", ""));
  Expect(9003, 0, no_library);
  std::string garbage;
  for (int i = 0; i < 100000; ++i) garbage += static_cast<char>(i * 7919 >> 3);
  FirstFilePath.Set(File("garbage.bib", garbage));
  Expect(9003, 0, no_library);
}

}  // namespace
}  // namespace tarvel
