// SPDX-License-Identifier: MIT
#include "tests/support/plain_text.h"

#include "app/texts.h"
#include "tests/support/plain_primitives.h"

namespace tarvel::testing {

PlainRows PlainReadCommands(const std::string& bytes) {
  PlainRows rows;
  PlainFile file{bytes};
  std::string line;
  while (file.Gets(line, 1000)) {
    if (line.find("START") != std::string::npos) break;
  }
  while (file.Gets(line, 1000)) {
    line.pop_back();
    std::size_t i = 0;
    std::string command;
    std::string replacement;
    while (i < line.size() && line[i] != '\t' && line[i] != ' ') command += line[i++];
    while (i < line.size() && (line[i] == '\t' || line[i] == ' ')) i++;
    while (i < line.size() && line[i] != ' ') replacement += line[i++];
    rows.emplace_back(command, replacement);
  }
  return rows;
}

void PlainApply(std::string& value, const PlainRows& rows) {
  for (const auto& [command, replacement] : rows) {
    if (command.empty() || command[0] == '#') continue;
    if (value.find(command) == std::string::npos) continue;
    PlainReplaceString(value, command, replacement);
  }
}

namespace {

std::string Cut(const std::string& line, char start, char stop) {
  const std::size_t begin = line.find(start);
  if (begin == std::string::npos) return "";
  const std::string rest = line.substr(begin + 1);
  const char stops[] = {stop, '\n', '\0'};
  return rest.substr(0, rest.find_first_of(stops, 0, 2));
}

void Treat(const std::string& type, const Settings& settings, const PlainRows& rows,
           PlainValues& v) {
  if (settings.UseLaTeXCode) {
    PlainStripBraces(v.title);
    PlainStripBraces(v.booktitle);
    return;
  }
  PlainApply(v.author, rows);
  PlainApply(v.title, rows);
  if (type == "ARTICLE") PlainApply(v.journal, rows);
  if (type == "INCOLLECTION" || type == "INPROCEEDINGS") {
    PlainApply(v.booktitle, rows);
    PlainApply(v.editor, rows);
  }
  if (type == "BOOK" || type == "INCOLLECTION") PlainApply(v.publisher, rows);
  if (type == "BOOK" || type == "INCOLLECTION" || type == "INPROCEEDINGS") {
    PlainApply(v.address, rows);
  }
  if (type == "PHDTHESIS" || type == "MASTERTHESIS") PlainApply(v.school, rows);
}

int Walk(const PlainWorld& world, int entries, const PlainStyles& styles, const PlainRows& rows,
         std::string& text, int& unsupported) {
  PlainFile file{world.library};
  const Settings& settings = world.settings;
  PlainValues v;
  std::string line;
  for (int i = 0; i < entries; i++) {
    while (!PlainIsKnownEntry(line)) {
      if (!file.Gets(line, 1000)) return 0;
    }
    const std::string type = Cut(line, '@', '{');
    const std::string key = Cut(line, '{', ',');
    line = PlainUpper(line);
    const auto holds = [&](const char* marker) { return line.find(marker) != std::string::npos; };
    if (!holds("@ARTICLE") && !holds("@BOOK") && !holds("@PHDTHESIS") && !holds("@MASTERTHESIS") &&
        !holds("@INCOLLECTION") && !holds("@INPROCEEDINGS")) {
      text += "\n\nAttention!\n==========\nThe entry type of the bibitem-key '" + key + "' is '@" +
              type +
              "', which is not supported, so far.\nYou have to type the entry yourself. \n\n\n\n";
      unsupported++;
      while (file.Gets(line, 1000)) {
        if (PlainIsKnownEntry(line)) break;
        if (line.find("@comment{jabref") != std::string::npos) break;
      }
      continue;
    }
    if (!file.Gets(line, 1000)) return 1;
    v.bibitem = "";
    if (settings.PrintBibitem && settings.UseLaTeXCode) v.bibitem = "\\bibitem{" + key + "}";
    if (settings.PrintBibitem && !settings.UseLaTeXCode) v.bibitem = "[" + key + "]";
    if (type != "ARTICLE" && type != "BOOK" && type != "INCOLLECTION" && type != "INPROCEEDINGS" &&
        type != "PHDTHESIS" && type != "MASTERTHESIS") {
      continue;
    }
    PlainReadTags(type, line, file, 1000, true, settings, v);
    Treat(type, settings, rows, v);
    text += PlainReference(type, settings.UseLaTeXCode ? "_latex" : "", true, settings, styles, v);
  }
  return 1;
}

}  // namespace

PlainOutcome PlainText(const PlainWorld& world, PlainStyles& styles) {
  PlainOutcome outcome;
  PlainFile count{world.library};
  std::string line;
  int entries = 0;
  while (count.Gets(line, 1000)) entries += PlainIsKnownEntry(line) ? 1 : 0;

  std::string& text = outcome.files["_text.txt"];
  text = std::string(TextFileHeader) + "\n";
  const PlainRows rows = PlainReadCommands(world.commands);
  if (PlainReadStyles(world.styles, styles, outcome) != 1) return outcome;
  int unsupported = 0;
  if (Walk(world, entries, styles, rows, text, unsupported) != 1) {
    outcome.Fail("Function Text()_5 => Could not read the new BibTeX file?");
    return outcome;
  }
  const std::string after =
      " not an ARTICLE, BOOK, INCOLLECTION, PHDTHESIS, MASTERTHESIS, INPROCEEDINGS. Only the "
      "latter entry types are supported.\n\nFor more details see the '_text.txt' file.";
  if (unsupported == 1) {
    outcome.boxes.push_back(
        {"One entry is not saved in the '_text.txt' file, because it is" + after, "No support !"});
  } else if (unsupported > 1) {
    outcome.boxes.push_back(
        {std::to_string(unsupported) +
             " entries are not saved in the '_text.txt' file, because they are" + after,
         "No support !"});
  }
  outcome.result = 1;
  return outcome;
}

}  // namespace tarvel::testing
