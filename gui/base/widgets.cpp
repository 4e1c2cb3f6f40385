// SPDX-License-Identifier: MIT
#include "gui/base/widgets.h"

#include <gtk/gtk.h>
#include <wx/display.h>
#include <wx/sizer.h>

#include "gui/wx_text.h"

namespace tarvel {

void Describe(wxWindow& widget, std::string_view what) {
  widget.SetName(ToWx(what));
  widget.SetToolTip(ToWx(what));
}

wxButton* NewButton(wxWindow* parent, std::string_view label, std::string_view prefix,
                    std::string_view subject) {
  auto* button = new wxButton(parent, wxID_ANY, ToWx(label));
  if (prefix.empty()) {
    button->SetName(ToWx(subject));
  } else {
    Describe(*button, std::string(prefix).append(subject));
  }
  return button;
}

void StandAlone(wxDialog& dialog) {
  gtk_window_set_type_hint(GTK_WINDOW(dialog.GetHandle()), GDK_WINDOW_TYPE_HINT_NORMAL);
}

int Gap(const wxWindow& window) {
  // With the usual gaps and a title bar the main dialog takes about 550.
  constexpr int kLow = 600;
  constexpr int kSmallGap = 2;
  const int height = wxDisplay(&window).GetClientArea().height;
  return height < window.FromDIP(kLow) ? kSmallGap : wxSizerFlags::GetDefaultBorder();
}

int TitleBarWidth(const wxWindow& window, const wxString& title) {
  constexpr int kButtons = 4;
  int width = 0;
  int height = 0;
  const wxFont bold = window.GetFont().Bold();
  window.GetTextExtent(title, &width, &height, nullptr, nullptr, &bold);
  return width + kButtons * 2 * height;
}

}  // namespace tarvel
