// SPDX-License-Identifier: MIT
#include "gui/base/widgets.h"

#include "gui/wx_text.h"

namespace tarvel {

void Describe(wxWindow& widget, std::string_view what) {
  widget.SetName(ToWx(what));
  widget.SetToolTip(ToWx(what));
}

wxButton* NewButton(wxWindow* parent, std::string_view label, std::string_view verb,
                    std::string_view object) {
  auto* button = new wxButton(parent, wxID_ANY, ToWx(label));
  if (verb.empty()) {
    button->SetName(ToWx(object));
  } else {
    Describe(*button, std::string(verb).append(object));
  }
  return button;
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
