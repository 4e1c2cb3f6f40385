// SPDX-License-Identifier: MIT
#pragma once

#include <wx/filepicker.h>

#include <string>
#include <string_view>

namespace tarvel {

/// The path that this file chooser of GTK stands at, by its bytes; empty for none.
std::string ChosenPath(GtkWidget* chooser);

/// A picker for an existing file. The toolkit's own gives the name of a file only where it is
/// UTF-8; this one gives the bytes of any name.
class FilePicker final : public wxFilePickerCtrl {
 public:
  /// `purpose` becomes the tooltip and the description that a screen reader reads; the name that it
  /// reads is that of the file.
  FilePicker(wxWindow* parent, std::string_view purpose);

  /// The path of the file that the picker shows, or that its open dialog is just handing over;
  /// empty for none.
  std::string Path() const;
  /// Shows this file, as if it had been picked, but sends no event.
  void Show(const std::string& path);
  /// Lets the dialog open in this directory, as long as no file is picked.
  void OpenIn(const std::string& directory);

 private:
  class Button;

  wxFileDirPickerWidgetBase* CreatePicker(wxWindow* parent, const wxString& path,
                                          const wxString& message,
                                          const wxString& wildcard) override;

  Button* button_ = nullptr;
};

}  // namespace tarvel
