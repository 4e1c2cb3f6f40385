// SPDX-License-Identifier: MIT
#pragma once

#include <wx/iconbndl.h>

namespace tarvel {

/// The program's icon in all sizes, for title bars and the task switcher. `program_directory` holds
/// the executable: of a package or an unpacked archive, or of the build tree. Sizes that are
/// missing or cannot be read are left out without a word: no icon is worth a message.
wxIconBundle WindowIcons(const wxString& program_directory);

}  // namespace tarvel
