// SPDX-License-Identifier: MIT
#include "gui/message_box.h"

#include <gtk/gtk.h>
#include <wx/cursor.h>
#include <wx/display.h>
#include <wx/msgdlg.h>
#include <wx/translation.h>
#include <wx/utils.h>

#include <string>

#include "gui/base/widgets.h"
#include "gui/event_queue.h"
#include "gui/wx_text.h"

namespace tarvel {

namespace {

/// Puts the busy cursor away while a box waits for its user, and back afterwards.
class BusyCursorPause {
 public:
  BusyCursorPause() {
    for (; wxIsBusy(); ++depth_) wxEndBusyCursor();
  }
  BusyCursorPause(const BusyCursorPause&) = delete;
  BusyCursorPause& operator=(const BusyCursorPause&) = delete;
  ~BusyCursorPause() {
    for (; depth_ > 0; --depth_) wxBeginBusyCursor();
  }

 private:
  int depth_ = 0;
};

constexpr int kSmallestLetters = 50;  // per cent of what they are elsewhere
constexpr int kStep = 5;

/// A style for message boxes, as long as it lives.
class BoxStyle {
 public:
  BoxStyle() {
    gtk_style_context_add_provider_for_screen(gdk_screen_get_default(), GTK_STYLE_PROVIDER(style_),
                                              GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
  }
  BoxStyle(const BoxStyle&) = delete;
  BoxStyle& operator=(const BoxStyle&) = delete;
  ~BoxStyle() {
    gtk_style_context_remove_provider_for_screen(gdk_screen_get_default(),
                                                 GTK_STYLE_PROVIDER(style_));
    g_object_unref(style_);
  }

  /// Makes boxes at least so wide, and their letters so large in per cent.
  void Set(int width, int letters) {
    const std::string css = "messagedialog box.dialog-vbox { min-width: " + std::to_string(width) +
                            "px; } messagedialog label { font-size: " + std::to_string(letters) +
                            "%; } messagedialog button label { font-size: 100%; }";
    gtk_css_provider_load_from_data(style_, css.c_str(), -1, nullptr);
  }

 private:
  GtkCssProvider* style_ = gtk_css_provider_new();
};

/// How high a box with this text would be.
int HeightOfBox(const wxWindow& owner, const wxString& message) {
  GtkWidget* const box =
      gtk_message_dialog_new(GTK_WINDOW(owner.GetHandle()), GTK_DIALOG_MODAL, GTK_MESSAGE_INFO,
                             GTK_BUTTONS_OK, "%s", static_cast<const char*>(message.utf8_str()));
  gtk_widget_show_all(gtk_dialog_get_content_area(GTK_DIALOG(box)));
  int height = 0;
  gtk_widget_get_preferred_height(box, nullptr, &height);
  gtk_widget_destroy(box);
  return height;
}

/// How high a box may be, for its title bar to fit the display too.
int RoomFor(const wxWindow& owner) {
  GdkWindow* const window = gtk_widget_get_window(owner.GetHandle());
  GdkRectangle frame{};
  if (window) gdk_window_get_frame_extents(window, &frame);
  const int title_bar = window ? frame.height - gdk_window_get_height(window) : 0;
  return wxDisplay(&owner).GetClientArea().height - title_bar;
}

/// Makes the box wide enough for its caption and low enough for the display.
void Fit(BoxStyle& style, const wxWindow& owner, const wxString& message, const wxString& caption) {
  const int width = TitleBarWidth(owner, caption);
  const int room = RoomFor(owner);
  for (int letters = 100; letters >= kSmallestLetters; letters -= kStep) {
    style.Set(width, letters);
    if (HeightOfBox(owner, message) <= room) return;
  }
}

}  // namespace

void ShowMessageBox(wxWindow* owner, std::string_view message, std::string_view caption) {
  if (wxIsBusy()) DiscardInput();
  const BusyCursorPause pause;
  const wxString text = ToWx(message);
  const wxString title = wxGetTranslation(ToWx(caption));
  BoxStyle style;
  if (owner) Fit(style, *owner, text, title);
  wxMessageBox(text, title, wxOK | wxCENTRE, owner);
}

}  // namespace tarvel
