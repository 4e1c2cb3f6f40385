// SPDX-License-Identifier: MIT
#pragma once

#include <string>

// The texts that the program shows and writes. All are ASCII byte strings, built before the
// programs start; the dialog converts those that it shows.

namespace tarvel {

extern const std::string VersionString;  // "Tarvel v3.81"
extern const std::string TitleText;      // the caption of help, About and the journal-file note
extern const std::string AboutText;
extern const std::string DialogTitle;  // of the main window

// The first lines of new files; the writer adds a line break.
extern const std::string LogFileHeader;
extern const std::string BibFileHeader;
extern const std::string TextFileHeader;
extern const std::string TexFileHeader;

extern const std::string DoneText;  // message and caption
extern const std::string CompareNote;
extern const std::string DoublesNote;
extern const std::string TextNote;
extern const std::string NoteTitle;
extern const std::string ErrorHintText;
extern const std::string JournalFileNote;  // of the Journals preferences

// What the "Help" buttons show, in the order of the rows.
extern const std::string ExtractHelp;
extern const std::string CompareHelp;
extern const std::string TextHelp;
extern const std::string JournalsHelp;
extern const std::string DoublesHelp;
extern const std::string AuthorsHelp;
extern const std::string CharactersHelp;
extern const std::string TagsHelp;

}  // namespace tarvel
