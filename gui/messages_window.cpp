// SPDX-License-Identifier: MIT
#include "gui/messages_window.h"

#include <gtk/gtk.h>
#include <unistd.h>
#include <wx/app.h>
#include <wx/button.h>
#include <wx/clipbrd.h>
#include <wx/dataobj.h>
#include <wx/filedlg.h>
#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/weakref.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

#include "app/globals.h"
#include "app/process.h"
#include "core/run_files.h"
#include "gui/base/file_picker.h"
#include "gui/message_box.h"
#include "gui/wx_text.h"

namespace tarvel {

namespace {

constexpr std::string_view kTitle = "Messages";
constexpr int kColumns = 90;
constexpr int kLines = 20;

std::vector<std::pair<MessageRank, std::string>> kept_messages;
wxWeakRef<MessagesWindow> messages_window;

bool HasTerminal() {
  static const bool has_terminal = isatty(STDOUT_FILENO) != 0 || isatty(STDERR_FILENO) != 0;
  return has_terminal;
}

/// The text stands in a frame for its scroll bars, and that has no name to read.
void NameForScreenReaders(const wxTextCtrl& text) {
  GtkWidget* const inner = gtk_bin_get_child(GTK_BIN(text.GetHandle()));
  atk_object_set_name(gtk_widget_get_accessible(inner), std::string(kTitle).c_str());
}

/// Shows the text from `position` on, as far as there are lines after it. (`ShowPosition` scrolls
/// no further than to show this one line, which then is the last.)
void ScrollToTop(const wxTextCtrl& text, long position) {
  auto* const view = GTK_TEXT_VIEW(gtk_bin_get_child(GTK_BIN(text.GetHandle())));
  GtkTextBuffer* const buffer = gtk_text_view_get_buffer(view);
  GtkTextIter start;
  gtk_text_buffer_get_iter_at_offset(buffer, &start, static_cast<gint>(position));
  constexpr const char* kName = "start";
  GtkTextMark* mark = gtk_text_buffer_get_mark(buffer, kName);
  if (mark) {
    gtk_text_buffer_move_mark(buffer, mark, &start);
  } else {
    mark = gtk_text_buffer_create_mark(buffer, kName, &start, TRUE);
  }
  gtk_text_view_scroll_to_mark(view, mark, 0, TRUE, 0, 0);  // may be done later, by the mark
}

/// Writes the file as a whole or not at all; returns the reason, or nothing on success.
std::string WriteFile(const std::string& path, std::string_view bytes) {
  RunFiles files(RealFileSystem());
  const std::unique_ptr<ByteSink> file = files.CreateSink(path, CreateMode::kWrite);
  if (!file) return "Could not create the file '" + path + "': " + std::strerror(errno);
  std::string error = file->Write(bytes);
  if (error.empty()) error = file->Close();
  return error.empty() ? files.Publish() : "Could not write the file '" + path + "': " + error;
}

}  // namespace

MessagesWindow::MessagesWindow() : wxFrame(nullptr, wxID_ANY, ToWx(kTitle)) {
  if (const auto* main = wxDynamicCast(wxTheApp->GetTopWindow(), wxTopLevelWindow)) {
    SetIcons(main->GetIcons());
  }
  auto* panel = new wxPanel(this);
  text_ = new wxTextCtrl(panel, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize,
                         wxTE_MULTILINE | wxTE_READONLY);
  text_->SetFont(wxFont(wxFontInfo(GetFont().GetPointSize()).Family(wxFONTFAMILY_TELETYPE)));
  NameForScreenReaders(*text_);
  text_->SetInitialSize(text_->GetSizeFromTextSize(
      wxSize(kColumns * text_->GetCharWidth(), kLines * text_->GetCharHeight())));

  auto* buttons = new wxBoxSizer(wxHORIZONTAL);
  const auto add = [&](wxWindowID id, std::string_view label) {
    auto* button = new wxButton(panel, id, ToWx(label));
    buttons->Add(button, wxSizerFlags().Border(wxLEFT));
    return button;
  };
  add(wxID_COPY, "Copy all")->Bind(wxEVT_BUTTON, &MessagesWindow::OnCopy, this);
  add(wxID_SAVEAS, "Save as ...")->Bind(wxEVT_BUTTON, &MessagesWindow::OnSave, this);
  add(wxID_CLOSE, "Close")->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { Close(); });

  auto* parts = new wxBoxSizer(wxVERTICAL);
  parts->Add(text_, wxSizerFlags(1).Expand().DoubleBorder(wxALL));
  parts->Add(buttons, wxSizerFlags().Right().DoubleBorder(wxLEFT | wxRIGHT | wxBOTTOM));
  panel->SetSizer(parts);
  auto* whole = new wxBoxSizer(wxVERTICAL);
  whole->Add(panel, wxSizerFlags(1).Expand());
  SetSizerAndFit(whole);
  Bind(wxEVT_CLOSE_WINDOW, &MessagesWindow::OnClose, this);
  Bind(wxEVT_CHAR_HOOK, &MessagesWindow::OnKey, this);
}

void MessagesWindow::Add(std::string_view run, std::string_view messages) {
  std::string bytes = bytes_.empty() ? "" : "\n";
  const std::size_t heading = bytes.size();
  bytes.append(run).append(":\n").append(messages);
  const long start = text_->GetLastPosition() + static_cast<long>(heading);
  bytes_ += bytes;
  text_->AppendText(ToWx(bytes));
  text_->SetInsertionPoint(start);  // a screen reader reads on from there
  // Until it is looked at. Attention for a few seconds takes a timer that outlives the window.
  if (IsShown()) RequestUserAttention(wxUSER_ATTENTION_ERROR);
  ShowWithoutActivating();
  ScrollToTop(*text_, start);
}

void MessagesWindow::OnCopy(wxCommandEvent& /*event*/) {
  wxClipboardLocker open;
  if (!open) return;
  wxTheClipboard->SetData(new wxTextDataObject(text_->GetValue()));
  wxTheClipboard->Flush();  // it stays there when the program ends
}

void MessagesWindow::OnSave(wxCommandEvent& /*event*/) {
  constexpr std::string_view kSave = "Save messages";
  wxFileDialog dialog(this, ToWx(kSave), wxString(), ToWx("messages.txt"), ToWx("*"),
                      wxFD_SAVE | wxFD_OVERWRITE_PROMPT);
  if (dialog.ShowModal() != wxID_OK) return;
  const std::string reason = WriteFile(ChosenPath(dialog.GetHandle()), bytes_);
  if (!reason.empty()) ShowMessageBox(this, reason, kSave);
}

void MessagesWindow::OnClose(wxCloseEvent& event) {
  if (event.CanVeto()) {
    event.Veto();
    Hide();
  } else {
    Destroy();
  }
}

void MessagesWindow::OnKey(wxKeyEvent& event) {
  if (event.GetKeyCode() == WXK_ESCAPE) {
    Close();
  } else {
    event.Skip();
  }
}

void KeepMessage(MessageRank rank, std::string_view message) {
  if (!HasTerminal()) kept_messages.emplace_back(rank, message);
}

void ShowKeptMessages(std::string_view run) {
  if (kept_messages.empty()) return;
  std::ranges::stable_sort(kept_messages, {}, &std::pair<MessageRank, std::string>::first);
  std::string messages;
  for (const auto& [rank, message] : std::exchange(kept_messages, {})) messages += message;
  if (!messages_window) messages_window = new MessagesWindow;
  messages_window->Add(run, messages);
}

}  // namespace tarvel
