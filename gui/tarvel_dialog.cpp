// SPDX-License-Identifier: MIT
#include "gui/tarvel_dialog.h"

#include <wx/app.h>
#include <wx/display.h>
#include <wx/filename.h>
#include <wx/stdpaths.h>
#include <wx/utils.h>

#include <array>
#include <typeinfo>

#include "app/globals.h"
#include "app/process.h"
#include "app/reporter.h"
#include "app/run_operation.h"
#include "app/texts.h"
#include "gui/event_queue.h"
#include "gui/files_drop_target.h"
#include "gui/messages_window.h"
#include "gui/tarvel_gui_pref_clean.h"
#include "gui/tarvel_gui_pref_extract.h"
#include "gui/tarvel_gui_pref_journal.h"
#include "gui/tarvel_gui_pref_text.h"
#include "gui/window_icons.h"
#include "gui/wx_text.h"

namespace tarvel {

namespace {

using enum OperationCode;

const Operation& RowOf(OperationCode code) { return *FindOperation(static_cast<int>(code)); }

void ShowHelp(OperationCode code) { ShowBox(RowOf(code).help, TitleText); }

/// The newest window of the kind of `dialog` that is shown besides it; null when there is none.
const wxWindow* NewestOfItsKind(const wxDialog& dialog) {
  for (auto node = wxTopLevelWindows.GetLast(); node; node = node->GetPrevious()) {
    const wxWindow& other = *node->GetData();
    if (other.IsShown() && typeid(other) == typeid(dialog)) return &other;
  }
  return nullptr;
}

/// Shows a preference dialog: the first of its kind where the desktop puts it, a further one a
/// little apart from the newest, so that it is seen to have opened.
void ShowApart(wxDialog& dialog) {
  constexpr int kStep = 24;
  if (const wxWindow* other = NewestOfItsKind(dialog)) {
    const wxRect display = wxDisplay(other).GetClientArea();
    const wxRect apart(other->GetPosition() + dialog.FromDIP(wxSize(kStep, kStep)),
                       other->GetSize());
    dialog.Move(display.Contains(apart) ? apart.GetTopLeft() : display.GetTopLeft());
  }
  dialog.Show(true);
}

/// A further preference dialog of this kind: modeless, without a parent, showing the flags as they
/// are now. It takes the icons of `main`, as a parent's would be.
template <class Dialog>
Dialog& NewPreferences(const Tarvel_Dialog& main) {
  auto* dialog = new Dialog(nullptr);
  dialog->SetIcons(main.GetIcons());
  dialog->ShowFlags();
  return *dialog;
}

}  // namespace

/// A handler that works, and may show boxes. Others do nothing meanwhile.
class Tarvel_Dialog::Busy {
 public:
  explicit Busy(Tarvel_Dialog& dialog) : dialog_(dialog) { dialog_.works_ = true; }
  Busy(const Busy&) = delete;
  Busy& operator=(const Busy&) = delete;
  ~Busy() { dialog_.works_ = false; }

 private:
  Tarvel_Dialog& dialog_;
  const wxBusyCursor cursor_;
};

/// What the dialog looks like while an operation runs: its button and the pickers are disabled.
class Tarvel_Dialog::Work {
 public:
  Work(Tarvel_Dialog& dialog, wxButton& button)
      : busy_(dialog), dialog_(dialog), button_(button), had_focus_(button.HasFocus()) {
    dialog_.files_panel_->Disable();
    DisableAndPaint(button_);
  }
  Work(const Work&) = delete;
  Work& operator=(const Work&) = delete;
  ~Work() {
    dialog_.files_panel_->Enable();
    button_.Enable();
    if (had_focus_) button_.SetFocus();
  }

 private:
  const Busy busy_;
  Tarvel_Dialog& dialog_;
  wxButton& button_;
  bool had_focus_;
};

Tarvel_Dialog::Tarvel_Dialog(wxWindow* parent) : GUIDialog(parent, wxID_ANY, ToWx(DialogTitle)) {
  SetIcons(WindowIcons(wxFileName(wxStandardPaths::Get().GetExecutablePath()).GetPath()));
  Bind(wxEVT_CHAR_HOOK, &Tarvel_Dialog::OnKey, this);
  files_panel_->SetDropTarget(new FilesDropTarget(
      [this] { return TakesFiles(); },
      [this](wxPoint place, const std::string& path) { return TakeDropped(place, path); }));
}

void Tarvel_Dialog::EndProgram() {
  if (works_ || IsModalWindowOpen()) return;  // the handler that waits needs the dialog
  Destroy();
  // The loop would go on for the sake of an open preference dialog.
  wxTheApp->ExitMainLoop();
}

void Tarvel_Dialog::OnClose(wxCloseEvent&) { EndProgram(); }

// --- Picked files

void Tarvel_Dialog::TakePick(PathBuffer& buffer, const FilePicker& picker, FilePicker& other) {
  const std::string path = picker.Path();
  if (!path.empty() && other.Path().empty()) {
    const std::string_view directory = DirectoryOf(path);
    other.OpenIn(directory.empty() ? "/" : std::string(directory));
  }
  {
    const Busy busy(*this);
    PickFile(buffer, path);
  }
  ShowKeptMessages(picker.GetName().utf8_string());
}

void Tarvel_Dialog::OnFirstFileChanged(wxFileDirPickerEvent&) {
  TakePick(FirstFilePath, *first_file_picker_, *second_file_picker_);
}
void Tarvel_Dialog::OnSecondFileChanged(wxFileDirPickerEvent&) {
  TakePick(SecondFilePath, *second_file_picker_, *first_file_picker_);
}

bool Tarvel_Dialog::TakesFiles() const { return !works_ && !IsModalWindowOpen(); }

FilePicker* Tarvel_Dialog::PickerAt(wxPoint place) const {
  const std::array pickers{first_file_picker_, second_file_picker_};
  for (FilePicker* picker : pickers) {
    const wxRect row = picker->GetRect();
    if (place.y >= row.GetTop() && place.y <= row.GetBottom()) return picker;
  }
  for (FilePicker* picker : pickers) {
    if (picker->Path().empty()) return picker;
  }
  return nullptr;
}

bool Tarvel_Dialog::TakeDropped(wxPoint place, const std::string& path) {
  FilePicker* const picker = PickerAt(place);
  if (!picker) return false;
  // The other program waits for the end of the drop, and a pick may show a box.
  CallAfter([this, picker, path] {
    if (!TakesFiles()) return;
    picker->Show(path);
    wxFileDirPickerEvent picked(wxEVT_FILEPICKER_CHANGED, picker, picker->GetId(), wxString());
    picker->ProcessWindowEvent(picked);
  });
  return true;
}

// --- Help

void Tarvel_Dialog::OnKey(wxKeyEvent& event) {
  const wxWindow* const focus = FindFocus();
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    const Row& row = rows_[i];
    const bool here =
        focus && (focus == row.help || focus == row.operation || focus == row.preferences);
    if (here && event.GetKeyCode() == WXK_F1) return ShowHelp(kOperations[i].code);
  }
  event.Skip();
}

void Tarvel_Dialog::OnHelpExtract(wxCommandEvent&) { ShowHelp(kExtract); }
void Tarvel_Dialog::OnHelpCompare(wxCommandEvent&) { ShowHelp(kCompare); }
void Tarvel_Dialog::OnHelpText(wxCommandEvent&) { ShowHelp(kText); }
void Tarvel_Dialog::OnHelpJournals(wxCommandEvent&) { ShowHelp(kJournals); }
void Tarvel_Dialog::OnHelpCleanDoubles(wxCommandEvent&) { ShowHelp(kCleanDoubles); }
void Tarvel_Dialog::OnHelpCleanAuthors(wxCommandEvent&) { ShowHelp(kCleanAuthors); }
void Tarvel_Dialog::OnHelpCleanCharacters(wxCommandEvent&) { ShowHelp(kCleanCharacters); }
void Tarvel_Dialog::OnHelpCleanTags(wxCommandEvent&) { ShowHelp(kCleanTags); }

// --- Operations

void Tarvel_Dialog::RunRow(OperationCode code) {
  if (works_) return;
  const Operation& operation = RowOf(code);
  const Work work(*this,
                  *rows_[static_cast<std::size_t>(&operation - kOperations.data())].operation);
  RunOperation(operation);
  ShowKeptMessages(operation.button);
}

void Tarvel_Dialog::OnExtract(wxCommandEvent&) { RunRow(kExtract); }
void Tarvel_Dialog::OnCompare(wxCommandEvent&) { RunRow(kCompare); }
void Tarvel_Dialog::OnText(wxCommandEvent&) { RunRow(kText); }
void Tarvel_Dialog::OnJournals(wxCommandEvent&) { RunRow(kJournals); }
void Tarvel_Dialog::OnCleanDoubles(wxCommandEvent&) { RunRow(kCleanDoubles); }
void Tarvel_Dialog::OnCleanAuthors(wxCommandEvent&) { RunRow(kCleanAuthors); }
void Tarvel_Dialog::OnCleanCharacters(wxCommandEvent&) { RunRow(kCleanCharacters); }
void Tarvel_Dialog::OnCleanTags(wxCommandEvent&) { RunRow(kCleanTags); }

// --- Preferences

void Tarvel_Dialog::OnPreferencesExtract(wxCommandEvent&) {
  ShowApart(NewPreferences<Tarvel_GUI_Pref_Extract>(*this));
}
void Tarvel_Dialog::OnPreferencesText(wxCommandEvent&) {
  ShowApart(NewPreferences<Tarvel_GUI_Pref_Text>(*this));
}
void Tarvel_Dialog::OnPreferencesJournals(wxCommandEvent&) {
  ShowApart(NewPreferences<Tarvel_GUI_Pref_Journal>(*this));
}
void Tarvel_Dialog::OnPreferencesCleanTags(wxCommandEvent&) {
  CleanPrefDialog = &NewPreferences<Tarvel_GUI_Pref_Clean>(*this);
  ShowApart(*CleanPrefDialog);
}

void Tarvel_Dialog::OnAbout(wxCommandEvent&) { ShowBox(AboutText, TitleText); }
void Tarvel_Dialog::OnQuit(wxCommandEvent&) { EndProgram(); }

}  // namespace tarvel
