// SPDX-License-Identifier: MIT
#include "gui/base/file_picker.h"

#include <gtk/gtk.h>

#include <memory>

#include "gui/base/widgets.h"
#include "gui/wx_text.h"

namespace tarvel {

namespace {

/// Describes the widgets inside a picker's button, which have the focus and are read aloud. The
/// toolkit describes only the frame around them.
void DescribeInside(GtkWidget* widget, gpointer purpose) {
  atk_object_set_description(gtk_widget_get_accessible(widget), static_cast<const char*>(purpose));
}

}  // namespace

std::string ChosenPath(GtkWidget* chooser) {
  const std::unique_ptr<char, void (*)(gpointer)> path(
      gtk_file_chooser_get_filename(GTK_FILE_CHOOSER(chooser)), g_free);
  return path ? path.get() : "";
}

/// The button of the picker, with access to the dialog that it opens.
class FilePicker::Button final : public wxFileButton {
 public:
  using wxFileButton::wxFileButton;
  GtkWidget* Dialog() const { return m_dialog->GetHandle(); }
};

FilePicker::FilePicker(wxWindow* parent, std::string_view purpose) {
  Create(parent, wxID_ANY, wxString(), ToWx("Select a file"), ToWx("*.*"), wxDefaultPosition,
         wxDefaultSize, wxFLP_OPEN | wxFLP_FILE_MUST_EXIST);
  Describe(*this, purpose);
  GtkWidget* const button = button_->GetHandle();
  std::string description(purpose);
  gtk_container_forall(GTK_CONTAINER(button), DescribeInside, description.data());
  // It would take a dropped file by itself and show its name, without an event.
  gtk_drag_dest_unset(button);
}

wxFileDirPickerWidgetBase* FilePicker::CreatePicker(wxWindow* parent, const wxString& path,
                                                    const wxString& message,
                                                    const wxString& wildcard) {
  button_ = new Button(parent, wxID_ANY, wxString(), path, message, wildcard, wxDefaultPosition,
                       wxDefaultSize, GetPickerStyle(GetWindowStyle()));
  return button_;
}

std::string FilePicker::Path() const {
  // The event comes while the dialog is still open, and the button takes the file only afterwards.
  const bool open = gtk_widget_get_visible(button_->Dialog()) != FALSE;
  return ChosenPath(open ? button_->Dialog() : button_->GetHandle());
}

void FilePicker::Show(const std::string& path) {
  gtk_file_chooser_set_filename(GTK_FILE_CHOOSER(button_->GetHandle()), path.c_str());
}

void FilePicker::OpenIn(const std::string& directory) {
  gtk_file_chooser_set_current_folder(GTK_FILE_CHOOSER(button_->GetHandle()), directory.c_str());
}

}  // namespace tarvel
