// SPDX-License-Identifier: MIT
#pragma once

#include <array>

// The texts that users know, word for word and slip for slip, written down a second time: a change
// of one of them in the program must be a decision.

namespace tarvel::testing {

struct HelpText {
  const char* operation;
  const char* text;
};

inline constexpr auto kHelpTexts = std::to_array<HelpText>({
    {"Extract",
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
     "3. ASCII file <bibfilename_extract.tex> containing the bibitems\n"},
    {"Compare",
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
     "Note that the first BibTeX file is the master file."},
    {"Text",
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
     "    specified in the preferences."},
    {"Journals",
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
     "file is created: <bibfilename_journal.log>"},
    {"Clean doubles",
     "This function removes double entries in a BibTeX library.\n\n\n"
     "1.: Check your BibTeX file for errors.\n"
     "     (Use J abRef for instance.)\n\n"
     "2.: Load your BibTeX file (Load first file)\n\n"
     "3.: Execute 'Clean doubles'\n\n\n"
     "A new BibTeX file is created in the last chosen directory.\n"
     "The file is named <bibfilename_double.bib> and\n"
     "contains no double entries anymore. Further, a log file is\n"
     "created: <bibfilename_double.log>\n"},
    {"Clean authors",
     "This function corrects the author names in a BibTeX library.\n"
     "The format is:\n\n"
     "       'Brigronugle, E. and Biozarab, A. and Fermi, E.'.\n\n\n"
     "1.: Check your BibTeX file for errors.\n"
     "     (Use JabRef for instance.)\n\n"
     "2.: Load your BibTeX file (Load first file)\n\n"
     "3.: Execute 'Clean authors'\n\n\n"
     "A new BibTeX file is created in the last chosen directory and\n"
     "is named <bibfilename_author.bib>. A log file is created, too:\n"
     "<bibfilename_author.log>\n"},
    {"Clean characters",
     "This function removes strange characters in a BibTeX library.\n\n\n"
     "1.: Check your BibTeX file for errors.\n"
     "     (Use JabRef for instance.)\n\n"
     "2.: Load your BibTeX file (Load first file)\n\n"
     "3.: Execute 'Clean characters'\n\n\n"
     "A new BibTeX file is created in the last chosen directory and\n"
     "is named <bibfilename_char.bib>. Strange\n"
     "characters are replaced by a '?'. With help of the log file\n"
     "<bibfilename_char.log>, the '?'s can be manually replaced\n"
     "by the correct characters."},
    {"Clean tags",
     "This function removes specific tags specified in the preferences.\n\n\n"
     "1.: Check your BibTeX file for errors.\n"
     "     (Use JabRef for instance.)\n\n"
     "2.: Load your BibTeX file (Load first file)\n\n"
     "3.: Choose options in 'Preferences for clean tag'\n\n"
     "4.: Execute 'Clean tags'\n\n\n"
     "A new BibTeX file is created in the last chosen directory and\n"
     "is named <bibfilename_tag.bib>. Further, a log\n"
     "file is created: <bibfilename_tag.log>"},
});

inline constexpr const char* kJournalFileText =
    "By default, Tarvel uses the file 'JournalStrings.tvl', which\n"
    "contains all journal names. This file is located in the directory\n"
    "'JournalStrings' of the main directory of Tarvel.\n\n"
    "A user specific Tarvel file can be loaded by choosing\n"
    "a file in the main window  ('Load second file').";

}  // namespace tarvel::testing
