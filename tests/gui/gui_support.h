// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>
#include <wx/dialog.h>
#include <wx/filepicker.h>
#include <wx/modalhook.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "app/tarvel_app.h"
#include "tests/support/memory_files.h"

namespace tarvel::testing {

/// The program's own application object; its event loop is the tests.
class TestApp : public Tarvel_App {
 public:
  bool OnInit() override { return true; }
  int OnRun() override;
  void ExitMainLoop() override { ++ended_loops; }

  int ended_loops = 0;
};

TestApp& App();

/// Answers every message box with OK before it is shown, and records it.
class BoxRecorder final : public wxModalDialogHook {
 public:
  struct ShownBox {
    std::string caption;
    std::string message;
    bool operator==(const ShownBox&) const = default;
  };

  BoxRecorder() { Register(); }
  std::vector<ShownBox> boxes;
  std::vector<long> styles;
  std::vector<bool> busy;        // whether the busy cursor was shown over the box
  std::function<void()> at_box;  // what happens while a box is open

 protected:
  int Enter(wxDialog* dialog) override;
};

std::ostream& operator<<(std::ostream& out, const BoxRecorder::ShownBox& box);

std::string Utf8(const wxString& text);

/// A widget as a reader of the screen sees it: "label Remove tags", "button Help", "radio Nature",
/// "check Title ", "picker", "panel".
std::string Described(const wxWindow& widget);

/// All widgets that can be seen inside `parent`, each followed by its own, in the order of the
/// keyboard.
std::vector<wxWindow*> Widgets(const wxWindow& parent);
std::vector<std::string> DescribedWidgets(const wxWindow& parent);

/// The widget of this kind with this label, or, when several have the label, with this name.
wxWindow& Find(const wxWindow& parent, std::string_view described, std::string_view name = {});

/// The open dialogs with this title that are not about to go, oldest first.
std::vector<wxDialog*> OpenDialogs(std::string_view title);

// What a user does, as the events that the toolkit sends for it.
void Press(wxWindow& button);
void PressButton(const wxWindow& parent, std::string_view label, std::string_view name = {});
void ChooseRadio(const wxWindow& parent, std::string_view label);
void Tick(const wxWindow& parent, std::string_view label, bool checked);
void Pick(wxFilePickerCtrl& picker, const wxString& path);

bool IsChosen(const wxWindow& parent, std::string_view label);
bool IsTicked(const wxWindow& parent, std::string_view label);

/// Handles events for a while; whatever is about to go is gone then.
void Settle(int milliseconds = 0);

/// A test with the settings and paths of a fresh start, an empty directory and a recorder; destroys
/// every dialog that it leaves open.
class GuiTest : public ::testing::Test {
 protected:
  GuiTest();
  ~GuiTest() override;

  /// Writes a file into the directory and gives its path.
  std::string NewFile(std::string_view name, std::string_view bytes);

  TemporaryDirectory directory;
  BoxRecorder recorder;
};

/// A test with the main dialog open.
class MainDialogTest : public GuiTest {
 protected:
  MainDialogTest();

  wxFilePickerCtrl& Picker(std::string_view name);
  /// Presses the "Preferences" button of this operation and gives the dialog that opens.
  wxDialog& OpenPreferences(std::string_view operation, std::string_view title);

  wxDialog* dialog;
};

inline constexpr const char* kLibrary =
    "@ARTICLE{doe2001,\n  author = {Doe, J.},\n  title = {A title},\n  doi = {10.1/2}\n}\n\n";

}  // namespace tarvel::testing
