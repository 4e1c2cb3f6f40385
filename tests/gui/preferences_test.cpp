// SPDX-License-Identifier: MIT
#include <wx/radiobut.h>
#include <wx/stattext.h>
#include <wx/uiaction.h>

#include <array>
#include <set>

#include "app/globals.h"
#include "app/settings.h"
#include "app/texts.h"
#include "gui/tarvel_gui_pref_clean.h"
#include "tests/gui/gui_support.h"

namespace tarvel::testing {

namespace {

using Boxes = std::vector<BoxRecorder::ShownBox>;
using Texts = std::vector<std::string>;

constexpr const char* kExtractTitle = "Preferences for 'Extract'";
constexpr const char* kTextTitle = "Preferences for 'Text'";
constexpr const char* kJournalsTitle = "Preferences for 'Journals'";
constexpr const char* kCleanTitle = "Preferences for Clean tags'";

const std::pair<const char*, Flag Settings::*> kStyles[] = {
    {"American Physical Society", &Settings::StyleAPS},
    {"American Chemical Society", &Settings::StyleACS},
    {"Institute of Physics", &Settings::StyleIOP},
    {"Nature", &Settings::StyleNature},
    {"Wiley", &Settings::StyleWiley},
    {"Springer_Comp_Sci", &Settings::StyleSpringerCompSci},
};

const std::pair<const char*, const char*> kTagBoxes[] = {
    {"Author", "author"},
    {"Title", "title"},
    {"Journal", "journal"},
    {"Year", "year"},
    {"Volume", "volume"},
    {"Pages", "pages"},
    {"Month", "month"},
    {"Abstract", "abstract"},
    {"Notes", "note"},
    {"Owner", "owner"},
    {"Timestamp", "timestamp"},
    {"URL", "url"},
    {"Comment", "comment"},
    {"Eid", "eid"},
    {"Number", "number"},
    {"Keywords", "keywords"},
    {"Crossref", "crossref"},
    {"Review", "review"},
    {"DOI", "doi"},
    {"File", "file"},
    {"Editor", "editor"},
    {"Publisher", "publisher"},
    {"Address", "address"},
    {"Edition", "edition"},
    {"School", "school"},
    {"Series", "series"},
    {"Citeseerurl", "citeseerurl"},
    {"Type", "type"},
    {"Booktitle", "booktitle"},
    {"Chapter", "chapter"},
    {"Nationality", "nationality"},
    {"Yearfiled", "yearfiled"},
    {"Organization", "organization"},
    {"Institution", "institution"},
};

const std::pair<const char*, Flag Settings::*> kCleanOptions[] = {
    {"Remove empty entries (recommended)", &Settings::RemoveEmptyEntries},
    {"Remove journal strings", &Settings::RemoveJournalStrings},
    {"Remove JabRef structure", &Settings::RemoveJabRefStructure},
};

Flag& TagFlag(const char* tag) { return GlobalSettings.RemoveTag.at(TagIndex(tag)); }

/// The labels of all check boxes of the Clean-tags dialog.
Texts CleanBoxes() {
  Texts labels;
  for (const auto& [label, tag] : kTagBoxes) labels.emplace_back(label);
  for (const auto& [label, flag] : kCleanOptions) labels.emplace_back(label);
  return labels;
}

int SetCleanFlags() {
  int set = 0;
  for (const auto& [label, tag] : kTagBoxes) set += TagFlag(tag);
  for (const auto& [label, flag] : kCleanOptions) set += GlobalSettings.*flag;
  return set;
}

int TickedBoxes(const wxDialog& dialog) {
  int ticked = 0;
  for (const std::string& label : CleanBoxes()) ticked += IsTicked(dialog, label) ? 1 : 0;
  return ticked;
}

}  // namespace

class PreferencesTest : public MainDialogTest {
 protected:
  wxDialog& Extract() { return OpenPreferences("Extract", kExtractTitle); }
  wxDialog& Text() { return OpenPreferences("Text", kTextTitle); }
  wxDialog& Journals() { return OpenPreferences("Journals", kJournalsTitle); }
  wxDialog& CleanTags() { return OpenPreferences("Clean tags", kCleanTitle); }
};

// --- What is shown

TEST_F(PreferencesTest, ShowTheirControlsInOrder) {
  const Texts shared{"label Journal Style",
                     "radio American Physical Society",
                     "radio American Chemical Society",
                     "radio Institute of Physics",
                     "radio Nature",
                     "radio Wiley",
                     "radio Springer_Comp_Sci",
                     "label Options",
                     "radio Range of pages",
                     "radio Only first page",
                     "check Title "};
  Texts extract = shared;
  extract.emplace_back("button Done");
  EXPECT_EQ(DescribedWidgets(Extract()), extract);

  Texts text = shared;
  text.insert(text.end(), {"check Print name of bibitem?", "check Use LaTeX code?", "button Done"});
  EXPECT_EQ(DescribedWidgets(Text()), text);

  EXPECT_EQ(DescribedWidgets(Journals()),
            (Texts{"label Journal Style", "radio Abbreviation", "radio Full names", "label Options",
                   "check Load own .tvl file", "button Help", "button Done"}));

  Texts clean{"label Remove tags"};
  for (const auto& [label, tag] : kTagBoxes) clean.push_back("check " + std::string(label));
  clean.emplace_back("label Options");
  for (const auto& [label, flag] : kCleanOptions) clean.push_back("check " + std::string(label));
  clean.insert(clean.end(), {"button Select all", "button Unselect all", "button Done"});
  EXPECT_EQ(DescribedWidgets(CleanTags()), clean);
}

TEST_F(PreferencesTest, AreModelessAndIndependentWithTheDefaultStyle) {
  for (wxDialog* opened : {&Extract(), &Text(), &Journals(), &CleanTags()}) {
    EXPECT_EQ(opened->GetParent(), nullptr);
    EXPECT_FALSE(opened->IsModal());
    EXPECT_EQ(opened->GetWindowStyle() & ~long{wxTAB_TRAVERSAL}, long{wxDEFAULT_DIALOG_STYLE});
  }
  EXPECT_TRUE(dialog->IsEnabled());
}

TEST_F(PreferencesTest, TheButtonOpensAFurtherDialogEachTime) {
  Text();
  Text();
  EXPECT_EQ(OpenDialogs(kTextTitle).size(), 2u);
}

TEST_F(PreferencesTest, TheTagsStandInColumnsOfSix) {
  const wxDialog& clean = CleanTags();
  Settle(100);
  std::set<int> lefts;
  wxPoint before;
  for (std::size_t i = 0; i < std::size(kTagBoxes); ++i) {
    const wxPoint at = Find(clean, std::string("check ") + kTagBoxes[i].first).GetScreenPosition();
    lefts.insert(at.x);
    if (i > 0) {
      EXPECT_EQ(at.y > before.y, i % 6 != 0) << kTagBoxes[i].first;
      EXPECT_EQ(at.x > before.x, i % 6 == 0) << kTagBoxes[i].first;
    }
    before = at;
  }
  EXPECT_EQ(lefts.size(), 6u);
}

TEST_F(PreferencesTest, EachDialogStandsFromTopToBottom) {
  for (wxDialog* opened : {&Extract(), &Text(), &Journals()}) {
    Settle(100);
    int bottom = -1;
    for (const wxWindow* widget : Widgets(*opened)) {
      if (Described(*widget).starts_with("button")) continue;  // these share a line
      EXPECT_GT(widget->GetScreenPosition().y, bottom) << Described(*widget);
      bottom = widget->GetScreenPosition().y;
    }
    EXPECT_GT(Find(*opened, "button Done").GetScreenPosition().y, bottom);
  }
}

TEST_F(PreferencesTest, NamesSayWhatAControlDoes) {
  EXPECT_EQ(Utf8(Find(CleanTags(), "check URL").GetToolTipText()), "Remove tag: URL");
  EXPECT_EQ(Utf8(Find(Journals(), "button Help").GetToolTipText()),
            "Help for the journal-name list");
}

// --- At start

TEST_F(PreferencesTest, ShowTheDefaults) {
  for (wxDialog* opened : {&Extract(), &Text()}) {
    for (const auto& [label, flag] : kStyles) {
      EXPECT_EQ(IsChosen(*opened, label), flag == &Settings::StyleAPS) << label;
    }
    EXPECT_FALSE(IsChosen(*opened, "Range of pages"));
    EXPECT_FALSE(IsChosen(*opened, "Only first page"));
    EXPECT_TRUE(IsTicked(*opened, "Title "));
  }
  EXPECT_FALSE(IsTicked(Text(), "Print name of bibitem?"));
  EXPECT_FALSE(IsTicked(Text(), "Use LaTeX code?"));
  const wxDialog& journals = Journals();
  EXPECT_FALSE(IsChosen(journals, "Abbreviation"));
  EXPECT_TRUE(IsChosen(journals, "Full names"));
  EXPECT_FALSE(IsTicked(journals, "Load own .tvl file"));
  const wxDialog& clean = CleanTags();
  const std::set<std::string> kept{"Author", "Title", "Journal", "Year", "Volume", "Pages"};
  for (const std::string& label : CleanBoxes()) {
    EXPECT_EQ(IsTicked(clean, label), !kept.contains(label)) << label;
  }
}

TEST_F(PreferencesTest, OpeningADialogChangesNoFlag) {
  for (wxDialog* opened : {&Extract(), &Text(), &Journals(), &CleanTags()}) {
    Settle(50);
    PressButton(*opened, "Done");
  }
  const Settings fresh;
  for (const auto& [label, flag] : kStyles) EXPECT_EQ(GlobalSettings.*flag, fresh.*flag) << label;
  EXPECT_EQ(GlobalSettings.PagesRange, 0);
  EXPECT_EQ(GlobalSettings.PagesFirstOnly, 0);
  EXPECT_EQ(GlobalSettings.JournalAbbreviated, 0);
  EXPECT_EQ(GlobalSettings.JournalFullNames, 1);
  EXPECT_EQ(GlobalSettings.RemoveTag, fresh.RemoveTag);
}

// --- Radio buttons

TEST_F(PreferencesTest, AStyleClearsAllOthersInBothDialogs) {
  for (wxDialog* opened : {&Extract(), &Text()}) {
    for (const auto& [chosen, chosen_flag] : kStyles) {
      ChooseRadio(*opened, chosen);
      for (const auto& [label, flag] : kStyles) {
        EXPECT_EQ(GlobalSettings.*flag, flag == chosen_flag ? 1 : 0) << chosen << ": " << label;
        EXPECT_EQ(IsChosen(*opened, label), flag == chosen_flag) << chosen << ": " << label;
      }
    }
    EXPECT_EQ(GlobalSettings.PagesRange + GlobalSettings.PagesFirstOnly, 0);
    EXPECT_FALSE(IsChosen(*opened, "Only first page")) << "the pages are a group of their own";
  }
}

TEST_F(PreferencesTest, ThePagesClearEachOtherInBothDialogs) {
  for (wxDialog* opened : {&Extract(), &Text()}) {
    ChooseRadio(*opened, "Range of pages");
    EXPECT_EQ(GlobalSettings.PagesRange, 1);
    EXPECT_EQ(GlobalSettings.PagesFirstOnly, 0);
    ChooseRadio(*opened, "Only first page");
    EXPECT_EQ(GlobalSettings.PagesRange, 0);
    EXPECT_EQ(GlobalSettings.PagesFirstOnly, 1);
    EXPECT_FALSE(IsChosen(*opened, "Range of pages"));
    EXPECT_EQ(GlobalSettings.StyleAPS, 1);
    EXPECT_TRUE(IsChosen(*opened, "American Physical Society"));
  }
}

TEST_F(PreferencesTest, TheJournalNamesClearEachOther) {
  const wxDialog& journals = Journals();
  ChooseRadio(journals, "Abbreviation");
  EXPECT_EQ(GlobalSettings.JournalAbbreviated, 1);
  EXPECT_EQ(GlobalSettings.JournalFullNames, 0);
  ChooseRadio(journals, "Full names");
  EXPECT_EQ(GlobalSettings.JournalAbbreviated, 0);
  EXPECT_EQ(GlobalSettings.JournalFullNames, 1);
}

// --- Check boxes

TEST_F(PreferencesTest, ACheckBoxWritesItsFlagAtOnce) {
  wxDialog& extract = Extract();
  wxDialog& text = Text();
  wxDialog& journals = Journals();
  struct {
    wxDialog& dialog;
    const char* label;
    Flag Settings::*flag;
  } const rows[] = {
      {extract, "Title ", &Settings::PrintTitle},
      {text, "Title ", &Settings::PrintTitle},
      {text, "Print name of bibitem?", &Settings::PrintBibitem},
      {text, "Use LaTeX code?", &Settings::UseLaTeXCode},
      {journals, "Load own .tvl file", &Settings::UseOwnJournalFile},
  };
  for (const auto& row : rows) {
    for (const bool checked : {false, true, false}) {
      Tick(row.dialog, row.label, checked);
      EXPECT_EQ(GlobalSettings.*row.flag, checked ? 1 : 0) << row.label;
    }
  }
}

TEST_F(PreferencesTest, EachTagBoxWritesItsOwnFlagOnly) {
  const wxDialog& clean = CleanTags();
  PressButton(clean, "Unselect all");
  for (const auto& [label, tag] : kTagBoxes) {
    Tick(clean, label, true);
    EXPECT_EQ(TagFlag(tag), 1) << label;
    EXPECT_EQ(SetCleanFlags(), 1) << label;
    Tick(clean, label, false);
    EXPECT_EQ(SetCleanFlags(), 0) << label;
  }
  for (const auto& [label, flag] : kCleanOptions) {
    Tick(clean, label, true);
    EXPECT_EQ(GlobalSettings.*flag, 1) << label;
    EXPECT_EQ(SetCleanFlags(), 1) << label;
    Tick(clean, label, false);
  }
}

TEST_F(PreferencesTest, EachTagBoxShowsItsOwnFlag) {
  for (const auto& [shown, tag] : kTagBoxes) {
    GlobalSettings.RemoveTag.fill(0);
    TagFlag(tag) = 1;
    wxDialog& clean = CleanTags();
    for (const auto& [label, other] : kTagBoxes) EXPECT_EQ(IsTicked(clean, label), label == shown);
    PressButton(clean, "Done");
    Settle();
  }
}

// --- Flags outlive their dialogs

TEST_F(PreferencesTest, AStyleChosenInOneDialogIsSeenByTheOther) {
  wxDialog& extract = Extract();
  ChooseRadio(extract, "Wiley");
  PressButton(extract, "Done");
  Settle();
  wxDialog& text = Text();
  EXPECT_TRUE(IsChosen(text, "Wiley"));
  ChooseRadio(text, "Nature");
  Tick(text, "Title ", false);
  ChooseRadio(text, "Range of pages");
  wxDialog& again = Extract();
  EXPECT_TRUE(IsChosen(again, "Nature"));
  EXPECT_FALSE(IsChosen(again, "Wiley"));
  EXPECT_TRUE(IsChosen(again, "Range of pages"));
  EXPECT_FALSE(IsTicked(again, "Title "));
}

TEST_F(PreferencesTest, TwoOpenDialogsDoNotRefreshEachOther) {
  wxDialog& older = Extract();
  wxDialog& newer = Extract();
  ChooseRadio(newer, "Nature");
  Tick(newer, "Title ", false);
  EXPECT_TRUE(IsChosen(older, "American Physical Society"));
  EXPECT_TRUE(IsTicked(older, "Title "));
  ChooseRadio(older, "Wiley");
  EXPECT_EQ(GlobalSettings.StyleWiley, 1);
  EXPECT_EQ(GlobalSettings.StyleNature, 0);
  EXPECT_TRUE(IsChosen(newer, "Nature"));
}

TEST_F(PreferencesTest, AFlagThatIsNotZeroShowsAsOn) {
  GlobalSettings.PrintTitle = 5;
  GlobalSettings.PagesFirstOnly = -1;
  const wxDialog& extract = Extract();
  EXPECT_TRUE(IsTicked(extract, "Title "));
  EXPECT_TRUE(IsChosen(extract, "Only first page"));
}

// --- Select all, Unselect all

TEST_F(PreferencesTest, SelectAllAndUnselectAllMeanAll37) {
  const wxDialog& clean = CleanTags();
  PressButton(clean, "Select all");
  EXPECT_EQ(SetCleanFlags(), 37);
  EXPECT_EQ(TickedBoxes(clean), 37);
  PressButton(clean, "Unselect all");
  EXPECT_EQ(SetCleanFlags(), 0) << "the recommended option too";
  EXPECT_EQ(TickedBoxes(clean), 0);
}

TEST_F(PreferencesTest, SelectAllChangesNoOtherFlag) {
  PressButton(CleanTags(), "Select all");
  const Settings fresh;
  EXPECT_EQ(GlobalSettings.PagesRange, fresh.PagesRange);
  EXPECT_EQ(GlobalSettings.UseOwnJournalFile, fresh.UseOwnJournalFile);
  EXPECT_EQ(GlobalSettings.UseLaTeXCode, fresh.UseLaTeXCode);
}

TEST_F(PreferencesTest, SelectAllInTheOlderOfTwoDialogsRefreshesTheNewer) {
  wxDialog& older = CleanTags();
  PressButton(*dialog, "Preferences", "Preferences for Clean tags");
  wxDialog& newer = *CleanPrefDialog;
  ASSERT_NE(&newer, &older);
  PressButton(older, "Select all");
  EXPECT_EQ(TickedBoxes(newer), 37);
  EXPECT_EQ(TickedBoxes(older), 31) << "the older one shows what it showed";
  PressButton(newer, "Unselect all");
  EXPECT_EQ(TickedBoxes(newer), 0);
  EXPECT_EQ(TickedBoxes(older), 31);
}

TEST_F(PreferencesTest, SelectAllRefreshesTheNewestDialogThatIsStillOpen) {
  std::vector<wxDialog*> dialogs{&CleanTags()};
  for (int i = 0; i < 2; ++i) {
    PressButton(*dialog, "Preferences", "Preferences for Clean tags");
    dialogs.push_back(CleanPrefDialog);
  }
  PressButton(*dialogs[2], "Done");  // it lives on until the toolkit is idle
  EXPECT_EQ(CleanPrefDialog, dialogs[1]);
  PressButton(*dialogs[0], "Select all");
  EXPECT_EQ(TickedBoxes(*dialogs[1]), 37);
  EXPECT_EQ(TickedBoxes(*dialogs[0]), 31);
  Settle();
  EXPECT_EQ(CleanPrefDialog, dialogs[1]);
  dialogs[1]->Close();
  PressButton(*dialogs[0], "Unselect all");
  EXPECT_EQ(SetCleanFlags(), 0);
  EXPECT_EQ(TickedBoxes(*dialogs[0]), 0) << "the last one shows what is set";
  PressButton(*dialogs[0], "Done");
  EXPECT_EQ(CleanPrefDialog, nullptr);
}

TEST_F(PreferencesTest, TheEndOfTheOlderDialogLeavesTheNewerOneNamed) {
  wxDialog& older = CleanTags();
  PressButton(*dialog, "Preferences", "Preferences for Clean tags");
  const auto* const newer = CleanPrefDialog;
  PressButton(older, "Done");
  Settle();
  EXPECT_EQ(CleanPrefDialog, newer);
}

TEST_F(PreferencesTest, UntouchedCleanTagsKeepsSixTags) {
  std::string library = "@ARTICLE{a";
  for (const auto& [label, tag] : kTagBoxes) library += std::string(",\n  ") + tag + " = {x}";
  FirstFilePath.Set(NewFile("lit.bib", library + "\n}\n\n"));
  PressButton(*dialog, "Clean tags");
  const std::string cleaned = ReadDiskFile(directory / "lit_tag.bib");
  const std::set<std::string> kept{"author", "title", "journal", "year", "volume", "pages"};
  for (const auto& [label, tag] : kTagBoxes) {
    const bool found = cleaned.find(std::string("  ") + tag + " = {") != std::string::npos;
    EXPECT_EQ(found, kept.contains(tag)) << tag << "\n" << cleaned;
  }
}

TEST_F(PreferencesTest, AfterUnselectAllCleanTagsRemovesNothing) {
  constexpr const char* library =
      "@STRING{jcp = {J. Chem. Phys.}}\n\n"
      "@ARTICLE{a,\n  author = {A},\n  doi = {1},\n  url = {u}\n}\n\n"
      "@BOOK{empty,\n  owner = {me},\n  timestamp = {2001}\n}\n\n";
  FirstFilePath.Set(NewFile("lit.bib", library));
  // Kept by the preferences that were touched, and by those only.
  for (const bool unselected : {false, true}) {
    if (unselected) PressButton(CleanTags(), "Unselect all");
    PressButton(*dialog, "Clean tags");
    const std::string cleaned = ReadDiskFile(directory / "lit_tag.bib");
    EXPECT_NE(cleaned.find("author = {A}"), std::string::npos) << cleaned;
    for (const char* kept : {"@STRING", "doi = {1}", "url = {u}", "@BOOK{empty", "timestamp"}) {
      EXPECT_EQ(cleaned.find(kept) != std::string::npos, unselected) << kept << "\n" << cleaned;
    }
  }
}

TEST_F(PreferencesTest, TheJabRefOptionChangesNothingEitherWay) {
  FirstFilePath.Set(NewFile("lit.bib", kLibrary));
  Texts results;
  for (const bool ticked : {true, false}) {
    Tick(CleanTags(), "Remove JabRef structure", ticked);
    PressButton(*dialog, "Clean tags");
    results.push_back(ReadDiskFile(directory / "lit_tag.bib"));
  }
  EXPECT_EQ(results[0], results[1]);
}

// --- Buttons

TEST_F(PreferencesTest, TheHelpOfTheJournalsNamesTheirFile) {
  PressButton(Journals(), "Help");
  EXPECT_EQ(recorder.boxes, (Boxes{{"Tarvel v3.81 - Veldo Marsk", std::string(JournalFileNote)}}));
}

TEST_F(PreferencesTest, DoneAndTheCloseButtonDestroyTheirDialogOnly) {
  const std::array titles{kExtractTitle, kTextTitle, kJournalsTitle, kCleanTitle};
  for (const bool by_button : {true, false}) {
    const std::array<wxDialog*, 4> opened{&Extract(), &Text(), &Journals(), &CleanTags()};
    for (wxDialog* one : opened) {
      if (by_button) {
        PressButton(*one, "Done");
      } else {
        one->Close();
      }
      EXPECT_TRUE(wxPendingDelete.Member(one));
    }
    Settle();
    for (const char* title : titles) EXPECT_EQ(OpenDialogs(title).size(), 0u) << title;
    EXPECT_EQ(CleanPrefDialog, nullptr);
    EXPECT_EQ(wxTopLevelWindows.size(), 1u);
  }
  EXPECT_EQ(App().ended_loops, 0);
}

// --- The real mouse and keyboard

TEST_F(PreferencesTest, ARealClickOnARadioButtonChoosesIt) {
  const wxDialog& extract = Extract();
  Settle(300);
  wxUIActionSimulator mouse;
  const auto click = [&](const char* described, const Flag& flag) {
    const wxWindow& widget = Find(extract, described);
    mouse.MouseMove(widget.GetScreenPosition() + widget.GetSize() / 2);
    Settle(50);
    mouse.MouseClick();
    const Flag before = flag;
    for (int i = 0; i < 100 && flag == before; ++i) Settle(10);
  };
  click("radio Nature", GlobalSettings.StyleNature);
  EXPECT_EQ(GlobalSettings.StyleNature, 1);
  EXPECT_EQ(GlobalSettings.StyleAPS, 0);
  click("radio Range of pages", GlobalSettings.PagesRange);
  EXPECT_EQ(GlobalSettings.PagesRange, 1);
  click("radio Only first page", GlobalSettings.PagesFirstOnly);
  EXPECT_EQ(GlobalSettings.PagesFirstOnly, 1);
  EXPECT_EQ(GlobalSettings.PagesRange, 0);
  click("check Title ", GlobalSettings.PrintTitle);
  EXPECT_EQ(GlobalSettings.PrintTitle, 0);
}

TEST_F(PreferencesTest, TheKeyboardReachesThePagesAlthoughNoneIsChosen) {
  wxDialog& extract = Extract();
  extract.Raise();
  Settle(300);
  Find(extract, "radio American Physical Society").SetFocus();
  Settle(50);
  wxUIActionSimulator keyboard;
  const auto press = [&](int key) {
    const wxWindow* const before = wxWindow::FindFocus();
    keyboard.Char(key);
    for (int i = 0; i < 50 && wxWindow::FindFocus() == before; ++i) Settle(10);
    const wxWindow* const after = wxWindow::FindFocus();
    return after ? Described(*after) : std::string("nothing");
  };
  EXPECT_EQ(press(WXK_TAB), "radio Range of pages");
  EXPECT_EQ(GlobalSettings.PagesRange, 0) << "to pass through is not to choose";
  keyboard.Char(WXK_SPACE);
  for (int i = 0; i < 50 && GlobalSettings.PagesRange == 0; ++i) Settle(10);
  EXPECT_EQ(GlobalSettings.PagesRange, 1);
  EXPECT_EQ(press(WXK_TAB), "check Title ");
  EXPECT_EQ(press(WXK_TAB), "button Done");
}

}  // namespace tarvel::testing
