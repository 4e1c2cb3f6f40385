// SPDX-License-Identifier: MIT
#pragma once

#include <wx/frame.h>
#include <wx/textctrl.h>

#include <string>
#include <string_view>

namespace tarvel {

/// How bad a message is. ORDER: the worst first.
enum class MessageRank { kFailure, kWarning, kRemark };

/// Shows what the runs have printed, in a program that was started without a terminal: nobody would
/// see it otherwise.
class MessagesWindow final : public wxFrame {
 public:
  MessagesWindow();

  /// Adds the messages of a run, whose name becomes their heading, and shows the window, without
  /// the focus, if it is hidden.
  void Add(std::string_view run, std::string_view messages);

 private:
  void OnCopy(wxCommandEvent& event);
  void OnSave(wxCommandEvent& event);
  void OnClose(wxCloseEvent& event);
  void OnKey(wxKeyEvent& event);

  wxTextCtrl* text_ = nullptr;
  std::string bytes_;  // all that is shown
};

/// Keeps a message, one line or several, for the end of the run that is under way. Does nothing in
/// a program that was started in a terminal.
void KeepMessage(MessageRank rank, std::string_view message);

/// Adds the messages kept since the last call to the window "Messages", the worst first. It is made
/// when there is the first one.
void ShowKeptMessages(std::string_view run);

}  // namespace tarvel
