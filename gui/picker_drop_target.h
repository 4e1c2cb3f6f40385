// SPDX-License-Identifier: MIT
#pragma once

#include <wx/filepicker.h>

namespace tarvel {

/// Lets a file that is dropped on `picker` be picked, as if it had been chosen in the file dialog.
/// Of several files the first counts; a directory is refused.
///
/// Without this the button itself takes the drop and shows the file's name, but nobody is told.
void AcceptDroppedFile(wxFilePickerCtrl& picker);

}  // namespace tarvel
