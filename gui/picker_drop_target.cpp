// SPDX-License-Identifier: MIT
#include "gui/picker_drop_target.h"

#include <wx/dnd.h>
#include <wx/filename.h>

namespace tarvel {

namespace {

void Pick(wxFilePickerCtrl& picker, const wxString& path) {
  picker.SetPath(path);  // sends no event
  wxFileDirPickerEvent changed(wxEVT_FILEPICKER_CHANGED, &picker, picker.GetId(), path);
  changed.SetEventObject(&picker);
  picker.ProcessWindowEvent(changed);
}

class PickerDropTarget final : public wxFileDropTarget {
 public:
  explicit PickerDropTarget(wxFilePickerCtrl& picker) : picker_(picker) {}

  bool OnDropFiles(wxCoord /*x*/, wxCoord /*y*/, const wxArrayString& files) override {
    if (files.empty() || !wxFileName::FileExists(files[0])) return false;
    // The drop is over before a box may be shown: the other program waits for this answer.
    picker_.CallAfter([&picker = picker_, path = files[0]] { Pick(picker, path); });
    return true;
  }

 private:
  wxFilePickerCtrl& picker_;
};

}  // namespace

void AcceptDroppedFile(wxFilePickerCtrl& picker) {
  // A target of the picker or the dialog is never asked: the button inside comes first.
  picker.GetPickerCtrl()->SetDropTarget(new PickerDropTarget(picker));
}

}  // namespace tarvel
