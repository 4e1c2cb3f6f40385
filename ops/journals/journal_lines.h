// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "app/settings.h"
#include "core/line_stream.h"
#include "core/output_file.h"
#include "ops/journals/journal_table.h"
#include "warnings/warnings.h"

namespace tarvel {

/// Whether the line, its blanks and tabs taken out, contains "journal" in any letter case.
bool MentionsJournal(std::string_view line);

/// Turns a quoted or bare value into a braced one: every "=" becomes "= {", and from the first ","
/// on (without one: after the line's last byte, its line break included) stands "},\n". A line
/// with a brace is left as it is; one without an "=" is not.
void BraceJournalValue(Line& line);

/// Copies the library and renames the journals that the table knows, to their abbreviations or
/// their full names as the settings say; logs every renaming and their number. With neither kind
/// of name chosen the lines of known journals are left out. Lines of at most 4,999 bytes are read.
/// Warns of names that are not in the table and of lines that are cut.
void RenameJournals(LineStream& input, OutputFile& library, OutputFile& log,
                    const JournalTable& journals, const Settings& settings, FileWarnings& warnings);

}  // namespace tarvel
