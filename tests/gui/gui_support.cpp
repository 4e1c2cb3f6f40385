// SPDX-License-Identifier: MIT
#include "tests/gui/gui_support.h"

#include <wx/app.h>
#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/evtloop.h>
#include <wx/msgdlg.h>
#include <wx/panel.h>
#include <wx/radiobut.h>
#include <wx/stattext.h>
#include <wx/utils.h>

#include "app/globals.h"
#include "app/reporter.h"
#include "app/settings.h"
#include "core/reports.h"
#include "gui/tarvel_dialog.h"

namespace tarvel::testing {

namespace {

template <class Widget>
const Widget* As(const wxWindow& widget) {
  return dynamic_cast<const Widget*>(&widget);
}

}  // namespace

int TestApp::OnRun() {
  SetExitOnFrameDelete(false);
  wxEventLoop loop;
  const wxEventLoopActivator active(&loop);
  return RUN_ALL_TESTS();
}

TestApp& App() { return *static_cast<TestApp*>(wxTheApp); }

std::string Utf8(const wxString& text) { return text.ToStdString(wxConvUTF8); }

int BoxRecorder::Enter(wxDialog* dialog) {
  const auto* box = dynamic_cast<wxMessageDialog*>(dialog);
  if (!box) return wxID_NONE;
  EXPECT_EQ(box->GetExtendedMessage(), wxString());
  boxes.push_back({Utf8(box->GetTitle()), Utf8(box->GetMessage())});
  // The toolkit adds an icon, which GTK does not show.
  styles.push_back(box->GetMessageDialogStyle() & ~long{wxICON_MASK});
  busy.push_back(wxIsBusy());
  if (at_box) at_box();
  return wxID_OK;
}

std::ostream& operator<<(std::ostream& out, const BoxRecorder::ShownBox& box) {
  return out << "[" << box.caption << "] " << box.message;
}

std::string Described(const wxWindow& widget) {
  const std::string label = Utf8(widget.GetLabel());
  if (As<wxPanel>(widget)) return "panel";
  if (As<wxFilePickerCtrl>(widget)) return "picker";
  if (As<wxStaticText>(widget)) return "label " + label;
  if (As<wxRadioButton>(widget)) return "radio " + label;
  if (As<wxCheckBox>(widget)) return "check " + label;
  if (As<wxButton>(widget)) return "button " + label;
  return "other " + label;
}

std::vector<wxWindow*> Widgets(const wxWindow& parent) {
  std::vector<wxWindow*> widgets;
  for (wxWindow* child : parent.GetChildren()) {
    if (!child->IsShown() || child->IsTopLevel()) continue;
    widgets.push_back(child);
    if (As<wxFilePickerCtrl>(*child)) continue;
    const auto inner = Widgets(*child);
    widgets.insert(widgets.end(), inner.begin(), inner.end());
  }
  return widgets;
}

std::vector<std::string> DescribedWidgets(const wxWindow& parent) {
  std::vector<std::string> described;
  for (const wxWindow* widget : Widgets(parent)) described.push_back(Described(*widget));
  return described;
}

wxWindow& Find(const wxWindow& parent, std::string_view described, std::string_view name) {
  for (wxWindow* widget : Widgets(parent)) {
    if (Described(*widget) != described) continue;
    if (name.empty() || Utf8(widget->GetName()) == name) return *widget;
  }
  throw std::runtime_error("no such widget: " + std::string(described).append(" ").append(name));
}

std::vector<wxDialog*> OpenDialogs(std::string_view title) {
  std::vector<wxDialog*> dialogs;
  for (wxWindow* window : wxTopLevelWindows) {
    auto* dialog = dynamic_cast<wxDialog*>(window);
    const bool open = dialog && dialog->IsShown() && !wxPendingDelete.Member(dialog);
    if (open && Utf8(dialog->GetTitle()) == title) dialogs.push_back(dialog);
  }
  return dialogs;
}

void Press(wxWindow& button) {
  wxCommandEvent event(wxEVT_BUTTON, button.GetId());
  event.SetEventObject(&button);
  EXPECT_TRUE(button.ProcessWindowEvent(event)) << "nobody listens to " << Described(button);
}

void PressButton(const wxWindow& parent, std::string_view label, std::string_view name) {
  Press(Find(parent, "button " + std::string(label), name));
}

void ChooseRadio(const wxWindow& parent, std::string_view label) {
  auto& radio = dynamic_cast<wxRadioButton&>(Find(parent, "radio " + std::string(label)));
  radio.SetValue(true);
  wxCommandEvent event(wxEVT_RADIOBUTTON, radio.GetId());
  event.SetEventObject(&radio);
  event.SetInt(1);
  EXPECT_TRUE(radio.ProcessWindowEvent(event));
}

void Tick(const wxWindow& parent, std::string_view label, bool checked) {
  auto& box = dynamic_cast<wxCheckBox&>(Find(parent, "check " + std::string(label)));
  box.SetValue(checked);
  wxCommandEvent event(wxEVT_CHECKBOX, box.GetId());
  event.SetEventObject(&box);
  event.SetInt(checked ? 1 : 0);
  EXPECT_TRUE(box.ProcessWindowEvent(event));
}

void Pick(wxFilePickerCtrl& picker, const wxString& path) {
  picker.SetPath(path);
  wxFileDirPickerEvent event(wxEVT_FILEPICKER_CHANGED, &picker, picker.GetId(), path);
  EXPECT_TRUE(picker.ProcessWindowEvent(event));
}

bool IsChosen(const wxWindow& parent, std::string_view label) {
  return dynamic_cast<wxRadioButton&>(Find(parent, "radio " + std::string(label))).GetValue();
}

bool IsTicked(const wxWindow& parent, std::string_view label) {
  return dynamic_cast<wxCheckBox&>(Find(parent, "check " + std::string(label))).GetValue();
}

void Settle(int milliseconds) {
  constexpr int kStep = 10;
  for (int waited = 0;; waited += kStep) {
    wxYield();
    wxTheApp->ProcessPendingEvents();
    wxTheApp->ProcessIdle();
    if (waited >= milliseconds) return;
    wxMilliSleep(kStep);
  }
}

GuiTest::GuiTest() {
  static WxReporter reporter;
  InstallReporter(reporter);
  GlobalSettings = Settings();
  FirstFilePath.Set("");
  SecondFilePath.Set("");
  App().ended_loops = 0;
}

GuiTest::~GuiTest() {
  for (wxWindow* window : wxTopLevelWindows) window->Destroy();
  Settle();
  EXPECT_TRUE(wxTopLevelWindows.empty());
}

std::string GuiTest::NewFile(std::string_view name, std::string_view bytes) {
  const std::string path = directory / name;
  WriteDiskFile(path, bytes);
  return path;
}

MainDialogTest::MainDialogTest() : dialog(new Tarvel_Dialog(nullptr)) { dialog->Show(true); }

wxFilePickerCtrl& MainDialogTest::Picker(std::string_view name) {
  return dynamic_cast<wxFilePickerCtrl&>(Find(*dialog, "picker", name));
}

wxDialog& MainDialogTest::OpenPreferences(std::string_view operation, std::string_view title) {
  PressButton(*dialog, "Preferences", "Preferences for " + std::string(operation));
  const auto open = OpenDialogs(title);
  if (open.empty()) throw std::runtime_error("no dialog titled " + std::string(title));
  return *open.back();
}

}  // namespace tarvel::testing
