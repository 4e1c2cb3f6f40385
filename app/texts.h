// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

// The texts that the program shows and writes, all in ASCII. The slips in them ("occured",
// "comparsion", "J abRef", "BibTex", "forJournal", the step "5.:" after "3.:") are part of the
// product's wording: sic.

namespace tarvel {

#define TARVEL_NAME "Tarvel v3.81"
#define TARVEL_MAKER "Veldo Marsk"
#define TARVEL_YEAR "2014"

inline constexpr std::string_view VersionString = TARVEL_NAME;
/// The caption of help, About and the journal-file note.
inline constexpr std::string_view TitleText = TARVEL_NAME " - " TARVEL_MAKER;
inline constexpr std::string_view AboutText =
    TARVEL_NAME " - " TARVEL_MAKER "\n\nMarch " TARVEL_YEAR
                ", Build: 2014-02-15\n\n"
                "https://tarvel.example, tarvel@tarvel.example\n\n"
                "Thanks to all who collect and check journal names.";
/// The title of the main window.
inline constexpr std::string_view DialogTitle = "Tarvel 3.81 - " TARVEL_MAKER ", " TARVEL_YEAR;

// The first lines of new files; a line break follows them.

#define TARVEL_FILE_HEADER(kind)                                                       \
  "#\n\nThis " kind " file has been created by " TARVEL_NAME "\n\n      " TARVEL_MAKER \
  " " TARVEL_YEAR "\n\n#\n\n"

inline constexpr std::string_view LogFileHeader = TARVEL_FILE_HEADER("log");
inline constexpr std::string_view BibFileHeader = TARVEL_FILE_HEADER("BibTeX");
inline constexpr std::string_view TextFileHeader = TARVEL_FILE_HEADER("text");
inline constexpr std::string_view TexFileHeader = TARVEL_FILE_HEADER("TeX");

#undef TARVEL_FILE_HEADER
#undef TARVEL_YEAR
#undef TARVEL_MAKER
#undef TARVEL_NAME

// Boxes. "Done!" is the message and the caption.

inline constexpr std::string_view DoneText = "Done!";
inline constexpr std::string_view NoteTitle = "Note!";
inline constexpr std::string_view CompareNote =
    "Note that a comparsion of large BibTeX libraries may need some time!";
inline constexpr std::string_view DoublesNote =
    "Note that finding doubles in a large BibTeX library may need some time!";
inline constexpr std::string_view TextNote =
    "Note that the author lists need to be in the form:\n\n"
    "Author1, A. C. and Author2, A. B. and ... .\n\n"
    "You can use first function 'Clean authors'.\n\n"
    "Well, I try now to produce an ASCII file ...";

inline constexpr std::string_view ErrorHintText =
    "An error in the function occured! Analyse the error output in a terminal.";

// What the "Help" buttons show, in the order of the rows.

inline constexpr std::string_view ExtractHelp =
    "This function extracts the BibTeX entries, which are linked\n"
    "to citations in a LaTeX file.\n\n\n"
    "1.: Check your BibTeX file for errors.\n"
    "     (Use JabRef for instance.)\n\n"
    "2.: Load your LaTeX file (Load first file)\n\n"
    "3.: Load your BibTeX file (Load second file)\n\n"
    "4.: Choose options in 'Preferences for extract'\n\n"
    "5.: Execute 'Extract'\n\n\n"
    "Three files are created in the last chosen directory\n"
    "1. BibTex file <bibfilename_extract.bib> contains\n"
    "    only the entries linked to the LaTex file.\n"
    "2. ASCII file <bibfilename_extract.txt> containing the\n"
    "    item names\n"
    "3. ASCII file <bibfilename_extract.tex> containing the bibitems\n";

inline constexpr std::string_view CompareHelp =
    "This function compares two BibTeX libraries.\n\n\n"
    "1.: Check your BibTeX file for errors.\n"
    "     (Use JabRef for instance.)\n\n"
    "2.: Load your first BibTeX file (Load first file)\n\n"
    "3.: Load your second BibTeX file (Load second file)\n"
    "     Note that the first file is the master file.\n\n"
    "5.: Execute 'Compare'\n\n\n"
    "Two BibTeX files are created in the last chosen directory\n"
    "1. BibTex file <bibfilename_comp_equal.bib> contains all\n"
    "    entries which were found in both BibTeX files.\n"
    "2. BibTex file <bibfilename_comp_missing.bib> contains\n"
    "    all entries which can be found in the second BibTeX file\n"
    "    but not in the first one.\n"
    "3. A log file is created: <bibfilename_comp.log>\n\n"
    "Note that the first BibTeX file is the master file.";

inline constexpr std::string_view TextHelp =
    "This function converts the BibTeX entries into a normal ASCII\n"
    "text. The journal style depends on the chosen preferences.\n\n\n"
    "1.: Check your BibTeX file for errors.\n"
    "     (Use JabRef for instance.)\n\n"
    "2.: Load your BibTeX file (Load first file)\n\n"
    "3.: Choose options in 'Preferences for extract'\n\n"
    "4.: Execute 'Text'\n\n\n"
    "One file is created in the last chosen directory\n"
    "1. The ASCII file <bibfilename_text.txt> contains\n"
    "    the entries of the BibTeX file in the journal style\n"
    "    specified in the preferences.";

inline constexpr std::string_view JournalsHelp =
    "This function changes the journal names in a BibTeX\n"
    "library. Depending on the chosen preferences, the full\n"
    "names or abbreviations of the journal names are used.\n\n\n"
    "1.: Check your BibTeX file for errors.\n"
    "     (Use JabRef for instance.)\n\n"
    "2.: Load your BibTeX file (Load first file)\n\n"
    "3.: Choose options in 'Preferences forJournal'\n\n"
    "4.: Execute 'Journal'\n\n\n"
    "A new BibTeX file is created in the last chosen directory and\n"
    "is named <bibfilename_journal.bib>. Further, a log\n"
    "file is created: <bibfilename_journal.log>";

inline constexpr std::string_view DoublesHelp =
    "This function removes double entries in a BibTeX library.\n\n\n"
    "1.: Check your BibTeX file for errors.\n"
    "     (Use J abRef for instance.)\n\n"
    "2.: Load your BibTeX file (Load first file)\n\n"
    "3.: Execute 'Clean doubles'\n\n\n"
    "A new BibTeX file is created in the last chosen directory.\n"
    "The file is named <bibfilename_double.bib> and\n"
    "contains no double entries anymore. Further, a log file is\n"
    "created: <bibfilename_double.log>\n";

inline constexpr std::string_view AuthorsHelp =
    "This function corrects the author names in a BibTeX library.\n"
    "The format is:\n\n"
    "       'Brigronugle, E. and Biozarab, A. and Fermi, E.'.\n\n\n"
    "1.: Check your BibTeX file for errors.\n"
    "     (Use JabRef for instance.)\n\n"
    "2.: Load your BibTeX file (Load first file)\n\n"
    "3.: Execute 'Clean authors'\n\n\n"
    "A new BibTeX file is created in the last chosen directory and\n"
    "is named <bibfilename_author.bib>. A log file is created, too:\n"
    "<bibfilename_author.log>\n";

inline constexpr std::string_view CharactersHelp =
    "This function removes strange characters in a BibTeX library.\n\n\n"
    "1.: Check your BibTeX file for errors.\n"
    "     (Use JabRef for instance.)\n\n"
    "2.: Load your BibTeX file (Load first file)\n\n"
    "3.: Execute 'Clean characters'\n\n\n"
    "A new BibTeX file is created in the last chosen directory and\n"
    "is named <bibfilename_char.bib>. Strange\n"
    "characters are replaced by a '?'. With help of the log file\n"
    "<bibfilename_char.log>, the '?'s can be manually replaced\n"
    "by the correct characters.";

inline constexpr std::string_view TagsHelp =
    "This function removes specific tags specified in the preferences.\n\n\n"
    "1.: Check your BibTeX file for errors.\n"
    "     (Use JabRef for instance.)\n\n"
    "2.: Load your BibTeX file (Load first file)\n\n"
    "3.: Choose options in 'Preferences for clean tag'\n\n"
    "4.: Execute 'Clean tags'\n\n\n"
    "A new BibTeX file is created in the last chosen directory and\n"
    "is named <bibfilename_tag.bib>. Further, a log\n"
    "file is created: <bibfilename_tag.log>";

/// What the "Help" button of the Journals preferences shows.
inline constexpr std::string_view JournalFileNote =
    "By default, Tarvel uses the file 'JournalStrings.tvl', which\n"
    "contains all journal names. This file is located in the directory\n"
    "'JournalStrings' of the main directory of Tarvel.\n\n"
    "A user specific Tarvel file can be loaded by choosing\n"
    "a file in the main window  ('Load second file').";

}  // namespace tarvel
