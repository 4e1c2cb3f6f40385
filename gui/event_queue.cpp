// SPDX-License-Identifier: MIT
#include "gui/event_queue.h"

#include <gtk/gtk.h>
#include <wx/evtloop.h>
#include <wx/stopwatch.h>
#include <wx/utils.h>

namespace tarvel {

namespace {

constexpr long kLongestPaint = 200;  // milliseconds

void SetTrue(GdkFrameClock* /*clock*/, gpointer flag) { *static_cast<bool*>(flag) = true; }

bool IsInput(const GdkEvent& event) {
  switch (event.type) {
    case GDK_KEY_PRESS:
    case GDK_KEY_RELEASE:
    case GDK_BUTTON_PRESS:
    case GDK_2BUTTON_PRESS:
    case GDK_3BUTTON_PRESS:
    case GDK_BUTTON_RELEASE:
    case GDK_TOUCH_BEGIN:
    case GDK_TOUCH_END:
      return true;
    default:
      return false;
  }
}

/// Lets state changes show at once. The theme would lead over to them within a few frames, and the
/// first of them looks as before.
class AnimationPause {
 public:
  AnimationPause() {
    g_object_get(settings_, kName, &enabled_, nullptr);
    g_object_set(settings_, kName, FALSE, nullptr);
  }
  AnimationPause(const AnimationPause&) = delete;
  AnimationPause& operator=(const AnimationPause&) = delete;
  ~AnimationPause() { g_object_set(settings_, kName, enabled_, nullptr); }

 private:
  static constexpr const char* kName = "gtk-enable-animations";
  GtkSettings* settings_ = gtk_settings_get_default();
  gboolean enabled_ = FALSE;
};

}  // namespace

bool IsModalWindowOpen() { return gtk_grab_get_current() != nullptr; }

void DisableAndPaint(wxWindow& window) {
  const AnimationPause no_animation;
  window.Disable();
  GdkFrameClock* const clock = gtk_widget_get_frame_clock(window.GetHandle());
  if (!clock) return;  // not shown
  bool painted = false;
  const gulong connection = g_signal_connect(clock, "after-paint", G_CALLBACK(SetTrue), &painted);
  for (const wxStopWatch watch; !painted && watch.Time() < kLongestPaint; wxMilliSleep(1)) {
    wxEventLoopBase::GetActive()->YieldFor(wxEVT_CATEGORY_UI);
  }
  g_signal_handler_disconnect(clock, connection);
  gdk_display_flush(gdk_display_get_default());
}

void DiscardInput() {
  gdk_display_sync(gdk_display_get_default());  // what has happened is in the queue then
  while (GdkEvent* event = gdk_event_get()) {
    if (!IsInput(*event)) gtk_main_do_event(event);
    gdk_event_free(event);
  }
}

}  // namespace tarvel
