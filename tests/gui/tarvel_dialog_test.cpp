// SPDX-License-Identifier: MIT
#include <wx/dnd.h>
#include <wx/stattext.h>
#include <wx/uiaction.h>
#include <wx/validate.h>

#include <algorithm>
#include <filesystem>

#include "app/globals.h"
#include "app/operations.h"
#include "app/reporter.h"
#include "app/run_operation.h"
#include "app/settings.h"
#include "app/texts.h"
#include "core/file_names.h"
#include "core/reports.h"
#include "tests/gui/gui_support.h"

namespace tarvel::testing {

namespace {

using Boxes = std::vector<BoxRecorder::ShownBox>;
using Texts = std::vector<std::string>;

constexpr const char* kTitle = "Tarvel v3.81 - Veldo Marsk";
constexpr const char* kErrorHint =
    "An error in the function occured! Analyse the error output in a terminal.";
constexpr const char* kLatex = "\\begin{document}\n\\cite{doe2001}\n\\end{document}\n";
constexpr const char* kWindowsLibrary = "@ARTICLE{a,\r\n  title = {T}\r\n}\r\n";

struct RowPromise {
  const char* description;
  const char* button;
  bool preferences;
  const char* nothing_picked_caption;
  const char* nothing_picked_message;
  const char* note;  // empty for none
  const char* error_caption;
};

constexpr const char* kLoadBib = "Load BibTeX file";
constexpr const char* kLoadFirstBib = "Please, load a BibTeX file (first file)";

const RowPromise kRows[] = {
    {"Extract bibitems", "Extract", true, "Load LaTeX file",
     "Please, load a LaTeX file (first file)", "", "Error in function 'Extract'!"},
    {"Compare two libraries", "Compare", false, kLoadBib, kLoadFirstBib,
     "Note that a comparsion of large BibTeX libraries may need some time!",
     "Error in function 'Compare'!"},
    {"Create text file", "Text", true, kLoadBib, kLoadFirstBib,
     "Note that the author lists need to be in the form:\n\nAuthor1, A. C. and Author2, A. B. and "
     "... .\n\nYou can use first function 'Clean authors'.\n\nWell, I try now to produce an ASCII "
     "file ...",
     "Error in function 'Text'!"},
    {"Change journal names", "Journals", true, kLoadBib, kLoadFirstBib, "",
     "Error in function 'Journals'!"},
    {"Remove double entries", "Clean doubles", false, kLoadBib, kLoadFirstBib,
     "Note that finding doubles in a large BibTeX library may need some time!",
     "Error in function 'Clean doubles'!"},
    {"Correct author names", "Clean authors", false, kLoadBib, kLoadFirstBib, "",
     "Error in function 'Clean authors'!"},
    {"Find bad characters", "Clean characters", false, kLoadBib, kLoadFirstBib, "",
     "Error in function 'Clean characters'!"},
    {"Remove tags", "Clean tags", true, kLoadBib, kLoadFirstBib, "",
     "Error in function 'Clean tags'!"},
};

static_assert(std::size(kRows) == kOperations.size(),
              "each row of kOperations needs its promise here");

Boxes NoteThen(const RowPromise& row, BoxRecorder::ShownBox last) {
  Boxes boxes;
  if (*row.note) boxes.push_back({"Note!", row.note});
  boxes.push_back(std::move(last));
  return boxes;
}

}  // namespace

// --- What is shown

TEST_F(MainDialogTest, HasItsTitleAndTheDefaultStyle) {
  EXPECT_EQ(Utf8(dialog->GetTitle()), "Tarvel 3.81 - Veldo Marsk, 2014");
  EXPECT_EQ(dialog->GetWindowStyle() & ~long{wxTAB_TRAVERSAL}, long{wxDEFAULT_DIALOG_STYLE});
  EXPECT_EQ(dialog->GetParent(), nullptr);
}

TEST_F(MainDialogTest, ShowsItsWidgetsInOrder) {
  Texts expected{"panel", "label Load first file", "picker", "label Load second file", "picker",
                 "panel"};
  for (const RowPromise& row : kRows) {
    expected.insert(expected.end(), {"label " + std::string(row.description), "button Help",
                                     "button " + std::string(row.button)});
    if (row.preferences) expected.emplace_back("button Preferences");
  }
  expected.insert(expected.end(), {"panel", "button &About", "button &Quit"});
  EXPECT_EQ(DescribedWidgets(*dialog), expected);
}

TEST_F(MainDialogTest, HasBoldLabelsOfTheNormalSize) {
  for (const wxWindow* widget : Widgets(*dialog)) {
    const bool label = dynamic_cast<const wxStaticText*>(widget);
    EXPECT_EQ(widget->GetFont().GetWeight() == wxFONTWEIGHT_BOLD, label) << Described(*widget);
    EXPECT_EQ(widget->GetFont().GetPointSize(), dialog->GetFont().GetPointSize());
  }
}

TEST_F(MainDialogTest, StandsInColumnsAndRows) {
  Settle(100);
  int row_top = 0;
  int help_left = -1, button_left = -1, preferences_left = -1;
  int rows = 0;
  std::vector<int> steps;
  for (const RowPromise& row : kRows) {
    const std::string name = row.button;
    const wxPoint help = Find(*dialog, "button Help", "Help for " + name).GetScreenPosition();
    const wxPoint button = Find(*dialog, "button " + name).GetScreenPosition();
    EXPECT_EQ(help.y, button.y) << name;
    EXPECT_LT(help.x, button.x);
    if (rows++ > 0) {
      EXPECT_EQ(help.x, help_left);
      EXPECT_EQ(button.x, button_left);
      steps.push_back(button.y - row_top);
    }
    help_left = help.x;
    button_left = button.x;
    row_top = button.y;
    if (!row.preferences) continue;
    const wxPoint preferences =
        Find(*dialog, "button Preferences", "Preferences for " + name).GetScreenPosition();
    EXPECT_EQ(preferences.y, button.y) << name;
    if (preferences_left >= 0) {
      EXPECT_EQ(preferences.x, preferences_left);
    }
    preferences_left = preferences.x;
  }
  // One space parts the first four rows from the last four.
  for (std::size_t i = 0; i < steps.size(); ++i) {
    if (i == 3) continue;
    EXPECT_EQ(steps[i], steps[0]);
    EXPECT_GT(steps[3], steps[i]);
  }
}

TEST_F(MainDialogTest, HasASpacerOfTwentyPixelsAboveItsLastLine) {
  Settle(100);
  const wxRect operations = Find(*dialog, "label Remove tags").GetParent()->GetScreenRect();
  const wxRect buttons = Find(*dialog, "button &Quit").GetParent()->GetScreenRect();
  EXPECT_EQ(buttons.y - (operations.y + operations.height), 20);
}

TEST_F(MainDialogTest, NamesEveryControlOnce) {
  std::vector<std::string> names;
  for (wxWindow* widget : Widgets(*dialog)) {
    if (Described(*widget).starts_with("button") || Described(*widget) == "picker") {
      names.push_back(Utf8(widget->GetName()));
      EXPECT_TRUE(widget->IsEnabled());
    }
  }
  EXPECT_EQ(names.size(), 24u);
  std::sort(names.begin(), names.end());
  EXPECT_EQ(std::adjacent_find(names.begin(), names.end()), names.end());
  EXPECT_EQ(Utf8(Find(*dialog, "button Help", "Help for Extract").GetToolTipText()),
            "Help for Extract");
  EXPECT_EQ(Utf8(Find(*dialog, "button Preferences", "Preferences for Text").GetToolTipText()),
            "Preferences for Text");
}

TEST_F(MainDialogTest, TheInitialisationEventReachesTheToolkit) {
  // The toolkit answers it by filling controls from their validators.
  static int filled = 0;
  class CountingValidator final : public wxValidator {
   public:
    wxObject* Clone() const override { return new CountingValidator; }
    bool TransferToWindow() override { return ++filled > 0; }
  };
  Find(*dialog, "button &Quit").SetValidator(CountingValidator());
  dialog->InitDialog();
  EXPECT_EQ(filled, 1);
}

/// The table's row, its help and its preferences lead to what they name; without a picked file the
/// operation itself does not run.
TEST_F(MainDialogTest, ServesEachRowOfTheOperationTable) {
  for (const Operation& row : kOperations) {
    recorder.boxes.clear();
    Find(*dialog, "label " + std::string(row.description));
    PressButton(*dialog, "Help", "Help for " + std::string(row.button));
    ASSERT_EQ(recorder.boxes.size(), 1U) << row.button;
    EXPECT_EQ(recorder.boxes[0].message, row.help);
    PressButton(*dialog, row.button);
    ASSERT_EQ(recorder.boxes.size(), 2U) << row.button;
    EXPECT_TRUE(recorder.boxes[1].message.starts_with("Please, load a ")) << row.button;
    if (!row.has_preferences) continue;
    const std::size_t before = wxTopLevelWindows.GetCount();
    PressButton(*dialog, "Preferences", "Preferences for " + std::string(row.button));
    EXPECT_EQ(wxTopLevelWindows.GetCount(), before + 1) << row.button;
  }
}

// --- Help and About

TEST_F(MainDialogTest, HelpButtonsShowTheTextOfTheirRow) {
  Boxes expected;
  for (const Operation& row : kOperations) {
    PressButton(*dialog, "Help", "Help for " + std::string(row.button));
    expected.push_back({kTitle, std::string(row.help)});
  }
  EXPECT_EQ(recorder.boxes, expected);
  EXPECT_EQ(recorder.styles, std::vector<long>(8, wxOK | wxCENTRE));
}

TEST_F(MainDialogTest, AboutShowsTheVersion) {
  PressButton(*dialog, "&About");
  ASSERT_EQ(recorder.boxes.size(), 1u);
  EXPECT_EQ(recorder.boxes[0].caption, kTitle);
  const std::string& text = recorder.boxes[0].message;
  const std::string start = "Tarvel v3.81 - Veldo Marsk\n\nMarch 2014, Build: 2014-02-15\n\n";
  EXPECT_EQ(text.substr(0, start.size()), start);
  const std::string rest = text.substr(start.size());  // a contact line and a line of thanks
  const std::size_t gap = rest.find("\n\n");
  ASSERT_NE(gap, std::string::npos);
  EXPECT_NE(rest.substr(0, gap).find(", "), std::string::npos);
  EXPECT_EQ(rest.find('\n', gap + 2), std::string::npos);
  EXPECT_GT(rest.size(), gap + 2);
}

// --- The pickers

TEST_F(MainDialogTest, PickersOpenExistingFilesAndHaveNoTextField) {
  for (const char* name : {"Load first file", "Load second file"}) {
    wxFilePickerCtrl& picker = Picker(name);
    EXPECT_TRUE(picker.HasFlag(wxFLP_OPEN));
    EXPECT_TRUE(picker.HasFlag(wxFLP_FILE_MUST_EXIST));
    EXPECT_FALSE(picker.HasTextCtrl());
    EXPECT_EQ(picker.GetPath(), wxString());
  }
}

TEST_F(MainDialogTest, PickersAskForAnyFile) {
  /// Looks into the button of a picker.
  struct Button : wxFileButton {
    static std::string Message(const wxControl& control) {
      return Utf8(dynamic_cast<const wxFileButton&>(control).*(&Button::m_message));
    }
    static std::string Wildcard(const wxControl& control) {
      return Utf8(dynamic_cast<const wxFileButton&>(control).*(&Button::m_wildcard));
    }
  };
  for (const char* name : {"Load first file", "Load second file"}) {
    EXPECT_EQ(Button::Message(*Picker(name).GetPickerCtrl()), "Select a file");
    EXPECT_EQ(Button::Wildcard(*Picker(name).GetPickerCtrl()), "*.*");
  }
}

TEST_F(MainDialogTest, EachPickerFillsItsOwnPath) {
  const std::string first = NewFile("one.bib", kLibrary);
  const std::string second = NewFile("two.bib", kLibrary);
  Pick(Picker("Load first file"), wxString::FromUTF8(first));
  EXPECT_EQ(FirstFilePath.Get(), first);
  EXPECT_EQ(SecondFilePath.Get(), "");
  Pick(Picker("Load second file"), wxString::FromUTF8(second));
  EXPECT_EQ(FirstFilePath.Get(), first);
  EXPECT_EQ(SecondFilePath.Get(), second);
  EXPECT_EQ(recorder.boxes, Boxes{});
}

TEST_F(MainDialogTest, AFileOfAnotherSystemIsReplacedByItsCopy) {
  struct {
    const char* picker;
    const char* bytes;
    const char* system;
    PathBuffer& buffer;
  } const rows[] = {
      {"Load first file", kWindowsLibrary, "Windows", FirstFilePath},
      {"Load second file", "@ARTICLE{a,\r}\r", "Mac", SecondFilePath},
  };
  for (const auto& row : rows) {
    recorder.boxes.clear();
    const std::string path = NewFile(std::string(row.system) + ".bib", row.bytes);
    Pick(Picker(row.picker), wxString::FromUTF8(path));
    EXPECT_EQ(row.buffer.Get(), directory / (std::string(row.system) + "_linux.bib"));
    EXPECT_EQ(Utf8(Picker(row.picker).GetPath()), path) << "the picker shows what was picked";
    EXPECT_EQ(ReadDiskFile(row.buffer.Get()).find('\r'), std::string::npos);
    EXPECT_EQ(recorder.boxes,
              (Boxes{{"File conversion",
                      "It seems that the file was created by a different operating system (" +
                          std::string(row.system) +
                          "). Tarvel created a new Linux file for security."}}));
  }
}

TEST_F(MainDialogTest, APickThatCannotBeOpenedIsToldAndKept) {
  const std::string gone = directory / "gone.bib";
  Pick(Picker("Load first file"), wxString::FromUTF8(gone));
  EXPECT_EQ(recorder.boxes, (Boxes{{"File ?", "Could not open the file!"}}));
  EXPECT_EQ(FirstFilePath.Get(), gone);
}

TEST_F(MainDialogTest, APickOfNothingIsTold) {
  Pick(Picker("Load second file"), wxString());
  EXPECT_EQ(recorder.boxes, (Boxes{{"File ?", "File ?"}}));
  EXPECT_EQ(SecondFilePath.Get(), "");
}

TEST_F(MainDialogTest, NamesBeyondAsciiArePickedByTheirBytes) {
  // As the toolkit gives it; other names than these come from the file dialog itself, which
  // tests/gui/real/picking.py opens.
  const std::string path = NewFile("caf\xC3\xA9.bib", kLibrary);
  Pick(Picker("Load first file"), wxString::FromUTF8(path));
  EXPECT_EQ(FirstFilePath.Get(), path);
  EXPECT_EQ(recorder.boxes, Boxes{});
}

TEST_F(MainDialogTest, APathOfAThousandBytesIsTakenWhole) {
  const std::string longest = "/" + std::string(999, 'a');
  Pick(Picker("Load first file"), wxString::FromUTF8(longest));
  EXPECT_EQ(FirstFilePath.Get(), longest);
}

// --- Dropped files. Real drags: tests/gui/real/drops.py

class DropTest : public MainDialogTest {
 protected:
  wxWindow& Panel() { return *Picker("Load first file").GetParent(); }
  wxDropTarget& Target() {
    if (!Panel().GetDropTarget()) throw std::runtime_error("no drop target");
    return *Panel().GetDropTarget();
  }
  wxPoint On(std::string_view picker) { return Picker(picker).GetRect().GetPosition(); }
};

TEST_F(DropTest, ADropIsWelcomeUnlessABoxIsOpen) {
  Settle(100);
  wxPoint place = On("Load first file");
  EXPECT_EQ(Target().OnEnter(place.x, place.y, wxDragMove), wxDragCopy) << "a file stays";
  EXPECT_EQ(Target().OnDragOver(place.x, place.y, wxDragLink), wxDragCopy);
  EXPECT_TRUE(Target().OnDrop(place.x, place.y));
}

TEST_F(DropTest, NoneIsWelcomeWhileAnOperationIsUp) {
  FirstFilePath.Set(NewFile("lit.bib", kLibrary));
  std::vector<bool> welcome;
  recorder.at_box = [&] {
    welcome.push_back(Target().OnDrop(1, 1));
    welcome.push_back(Target().OnDragOver(1, 1, wxDragCopy) == wxDragCopy);
  };
  PressButton(*dialog, "Clean doubles");
  Pick(Picker("Load second file"), wxString::FromUTF8(NewFile("win.bib", kWindowsLibrary)));
  EXPECT_EQ(recorder.boxes.size(), 3u);
  EXPECT_EQ(welcome, std::vector<bool>(6, false));
  EXPECT_TRUE(Target().OnDrop(1, 1));
}

// --- The operation buttons

TEST_F(MainDialogTest, WithoutAPickedFileOnlyTheCheckSpeaks) {
  for (const RowPromise& row : kRows) {
    recorder.boxes.clear();
    PressButton(*dialog, row.button);
    EXPECT_EQ(recorder.boxes, (Boxes{{row.nothing_picked_caption, row.nothing_picked_message}}))
        << row.button;
  }
  EXPECT_FALSE(wxIsBusy());
}

TEST_F(MainDialogTest, WithoutASecondFileOnlyTheCheckSpeaks) {
  FirstFilePath.Set(NewFile("lit.bib", kLibrary));
  PressButton(*dialog, "Compare");
  GlobalSettings.UseOwnJournalFile = 1;
  PressButton(*dialog, "Journals");
  FirstFilePath.Set(NewFile("paper.tex", kLatex));
  PressButton(*dialog, "Extract");
  EXPECT_EQ(recorder.boxes,
            (Boxes{{"Load BibTeX file", "Please, load a BibTeX file (second file)"},
                   {"Load Tarvel file", "Please, load a Tarvel file (second file)"},
                   {"Load BibTeX file", "Please, load a BibTeX file (second file)"}}));
}

TEST_F(MainDialogTest, CleanTagsWritesItsFilesAndSaysDone) {
  Pick(Picker("Load first file"), wxString::FromUTF8(NewFile("lit.bib", kLibrary)));
  PressButton(*dialog, "Clean tags");
  EXPECT_EQ(recorder.boxes, (Boxes{{"Done!", "Done!"}}));
  const std::string cleaned = ReadDiskFile(directory / "lit_tag.bib");
  EXPECT_NE(cleaned.find("author = {Doe, J.}"), std::string::npos);
  EXPECT_EQ(cleaned.find("doi"), std::string::npos) << "a doi goes with untouched preferences";
  EXPECT_EQ(ReadDiskFile(directory / "lit.bib"), kLibrary);
}

TEST_F(MainDialogTest, ASecondCleanTagsReplacesTheFilesOfTheFirst) {
  const std::string library = NewFile("lit.bib", kLibrary);
  FirstFilePath.Set(library);
  PressButton(*dialog, "Clean tags");
  const std::string log = ReadDiskFile(directory / "lit_tag.log");
  // A shorter library: nothing of the longer files may be left after the new ones.
  NewFile("lit.bib", "@MISC{m,\n  note = {N}\n}\n");
  PressButton(*dialog, "Clean tags");
  const std::string second = ReadDiskFile(directory / "lit_tag.bib");
  EXPECT_TRUE(second.ends_with("\n@MISC{m,\n}\n\n") || second.ends_with("\n@MISC{m\n}\n\n"))
      << second;
  EXPECT_EQ(second.find("doe2001"), std::string::npos);
  EXPECT_EQ(ReadDiskFile(directory / "lit_tag.log").find("doe2001"), std::string::npos);
  NewFile("lit.bib", kLibrary);
  PressButton(*dialog, "Clean tags");
  EXPECT_EQ(ReadDiskFile(directory / "lit_tag.log"), log) << "the same library, the same log";
  EXPECT_EQ(recorder.boxes, Boxes(3, {"Done!", "Done!"}));
}

/// Every button whose operation cannot create its files.
TEST_F(MainDialogTest, AFailedOperationShowsTheErrorBoxOfItsRow) {
  const std::string library = NewFile("lit.bib", kLibrary);
  const std::string document = NewFile("lit.tex", kLatex);
  for (const std::string_view suffix : OutputSuffixes) {
    std::filesystem::create_directory(directory / ("lit" + std::string(suffix)));
  }
  for (const RowPromise& row : kRows) {
    recorder.boxes.clear();
    const bool extract = std::string_view(row.button) == "Extract";
    FirstFilePath.Set(extract ? document : library);
    SecondFilePath.Set(library);
    ::testing::internal::CaptureStdout();
    PressButton(*dialog, row.button);
    const std::string printed = ::testing::internal::GetCapturedStdout();
    if (std::string_view(row.button) == "Clean characters") {  // reports its failures in boxes
      EXPECT_EQ(printed, "");
      EXPECT_EQ(recorder.boxes,
                (std::vector<BoxRecorder::ShownBox>{{"Log file?", "Could not open the log file!"},
                                                    {row.error_caption, kErrorHint}}));
      continue;
    }
    EXPECT_TRUE(printed.starts_with("Attention, an error occured!\nError: ")) << printed;
    EXPECT_EQ(recorder.boxes, NoteThen(row, {row.error_caption, kErrorHint})) << row.button;
  }
}

TEST_F(MainDialogTest, OnlyAResultOfExactlyOneIsSuccess) {
  static int result = 0;
  FirstFilePath.Set(NewFile("lit.bib", kLibrary));
  for (const RowPromise& promise : kRows) {
    Operation operation = kOperations[static_cast<std::size_t>(&promise - kRows)];
    operation.needs = Needs::kLibrary;
    operation.run = [] { return result; };
    SecondFilePath.Set(FirstFilePath.Get());
    if (operation.code == OperationCode::kExtract) FirstFilePath.Set(NewFile("a.tex", kLatex));
    for (const int value : {0, 1, 2, -1, 88, 90, 2999}) {
      recorder.boxes.clear();
      result = value;
      EXPECT_EQ(RunOperation(operation), value);
      EXPECT_EQ(recorder.boxes, value == 1 ? NoteThen(promise, {"Done!", "Done!"})
                                           : NoteThen(promise, {promise.error_caption, kErrorHint}))
          << promise.button << " " << value;
    }
    FirstFilePath.Set(SecondFilePath.Get());
  }
}

TEST_F(MainDialogTest, TheNoteComesBeforeTheRunWhichWaitsForIt) {
  FirstFilePath.Set(NewFile("lit.bib", kLibrary));
  recorder.at_box = [this] {
    if (recorder.boxes.size() > 1) return;
    EXPECT_FALSE(std::filesystem::exists(directory / "lit_double.log"));
    std::filesystem::remove(FirstFilePath.Get());
  };
  ::testing::internal::CaptureStdout();
  PressButton(*dialog, "Clean doubles");
  ::testing::internal::GetCapturedStdout();
  EXPECT_EQ(
      recorder.boxes,
      (Boxes{{"Note!", "Note that finding doubles in a large BibTeX library may need some time!"},
             {"Error in function 'Clean doubles'!", kErrorHint}}));
}

TEST_F(MainDialogTest, NoBoxOfAnOperationStandsUnderTheBusyCursor) {
  FirstFilePath.Set(NewFile("lit.bib", kLibrary));
  ::testing::internal::CaptureStdout();
  PressButton(*dialog, "Clean tags");
  PressButton(*dialog, "Clean doubles");
  ::testing::internal::GetCapturedStdout();
  EXPECT_EQ(recorder.busy, std::vector<bool>(3, false));
  EXPECT_FALSE(wxIsBusy());
}

TEST_F(MainDialogTest, AnOperationRunsUnderTheBusyCursor) {
  /// Looks at the cursor whenever the operation prints.
  class CursorReporter final : public Reporter {
   public:
    CursorReporter() { InstallReporter(*this); }
    int Print(std::string_view /*text*/) override {
      busy.push_back(wxIsBusy());
      return 0;
    }
    void Box(std::string_view /*message*/, std::string_view /*caption*/) override {}
    void Warn(std::string_view /*text*/) override {}
    std::vector<bool> busy;
  };
  static CursorReporter reporter;  // outlives the dialog
  FirstFilePath.Set(NewFile("lit.bib", kLibrary));
  std::filesystem::create_directory(directory / "lit_tag.bib");
  std::filesystem::create_directory(directory / "lit_tag.log");
  PressButton(*dialog, "Clean tags");
  EXPECT_EQ(reporter.busy, std::vector<bool>{true});
  EXPECT_FALSE(wxIsBusy());
}

// --- The end

TEST_F(MainDialogTest, ClosingAndQuitBothEndTheProgramAlsoWithAPreferenceDialogOpen) {
  const char* const title = "Tarvel 3.81 - Veldo Marsk, 2014";
  OpenPreferences("Extract", "Preferences for 'Extract'");
  PressButton(*dialog, "&Quit");
  EXPECT_EQ(OpenDialogs(title).size(), 0u);
  EXPECT_EQ(App().ended_loops, 1);

  EXPECT_TRUE(App().Tarvel_App::OnInit());
  ASSERT_EQ(OpenDialogs(title).size(), 1u);
  OpenDialogs(title)[0]->Close();
  EXPECT_EQ(OpenDialogs(title).size(), 0u);
  EXPECT_EQ(App().ended_loops, 2);
  EXPECT_EQ(OpenDialogs("Preferences for 'Extract'").size(), 1u);
}

TEST_F(GuiTest, TheApplicationStartsWithTheMainDialog) {
  EXPECT_TRUE(App().Tarvel_App::OnInit());
  const auto open = OpenDialogs("Tarvel 3.81 - Veldo Marsk, 2014");
  ASSERT_EQ(open.size(), 1u);
  EXPECT_FALSE(open[0]->IsModal());
  EXPECT_EQ(open[0]->GetParent(), nullptr);
  EXPECT_EQ(App().GetTopWindow(), open[0]);
  PressButton(*open[0], "Clean tags");
  EXPECT_EQ(recorder.boxes.size(), 1u);
}

// --- The real mouse and keyboard

TEST_F(MainDialogTest, ARealClickPressesAButton) {
  Settle(300);
  const wxWindow& help = Find(*dialog, "button Help", "Help for Clean tags");
  wxUIActionSimulator mouse;
  mouse.MouseMove(help.GetScreenPosition() + help.GetSize() / 2);
  Settle(50);
  mouse.MouseClick();
  for (int i = 0; i < 100 && recorder.boxes.empty(); ++i) Settle(20);
  ASSERT_EQ(recorder.boxes.size(), 1u);
  EXPECT_EQ(recorder.boxes[0].message, TagsHelp);
}

TEST_F(MainDialogTest, TheKeyboardReachesEveryButtonInVisualOrder) {
  dialog->Raise();
  Settle(300);
  Find(*dialog, "button Help", "Help for Extract").SetFocus();
  Settle(50);
  Texts reached;
  wxUIActionSimulator keyboard;
  for (int i = 0; i < 22; ++i) {
    const wxWindow* focus = wxWindow::FindFocus();
    reached.push_back(focus ? Utf8(focus->GetName()) : "nothing");
    keyboard.Char(WXK_TAB);
    for (int wait = 0; wait < 50 && wxWindow::FindFocus() == focus; ++wait) Settle(10);
  }
  Texts expected;
  for (const RowPromise& row : kRows) {
    const std::string name = row.button;
    expected.insert(expected.end(), {"Help for " + name, name});
    if (row.preferences) expected.push_back("Preferences for " + name);
  }
  expected.insert(expected.end(), {"About", "Quit"});
  EXPECT_EQ(reached, expected);
}

}  // namespace tarvel::testing
