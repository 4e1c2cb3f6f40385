// SPDX-License-Identifier: MIT
#include "tests/support/plain_extract.h"

#include "app/texts.h"
#include "tests/support/plain_primitives.h"

namespace tarvel::testing {

namespace {

void Scan(const std::string& document, std::vector<std::string>& keys) {
  const auto store = [&](const std::string& key) {
    for (const std::string& known : keys) {
      if (known == key) return;
    }
    keys.push_back(key);
  };
  PlainFile file{document};
  std::string line;
  while (file.Gets(line, 1000)) {
    while (line.find("\\cite{") != std::string::npos) {
      std::string rest = line.substr(line.find("\\cite"));
      std::string list = PlainCopyUntilChar(rest, '{', '}');
      line = "\\done" + rest.substr(rest.find('{'));
      std::size_t comma = 0;
      while ((comma = list.find(',')) != std::string::npos) {
        store(list.substr(0, comma));
        list = list.substr(comma + 1);
      }
      if (!list.empty()) store(list);
    }
  }
}

int Select(const std::string& library, const std::vector<std::string>& keys, std::string& output,
           PlainOutcome& outcome) {
  int count = 0;
  for (const std::string& key : keys) {
    PlainFile file{library};
    std::string line;
    bool found = false;
    while (!found && file.Gets(line, 1000)) {
      if (line.find("{" + key + ",") == std::string::npos) continue;
      if (PlainIsKnownEntry(line)) found = true;
    }
    if (!found) continue;
    count++;
    output += line;
    if (!file.Gets(line, 1000)) {
      return outcome.Fail(
          "Function 'SelectAndWriteBibTeXEntriesIntoNewFile', reading BibTeX file:\nVery strange "
          "=> After @ARTICLE end of file?");
    }
    for (;;) {
      if (PlainIsKnownEntry(line)) break;
      if (line.find("@comment{jabref") != std::string::npos) break;
      output += line;
      if (!file.Gets(line, 1000)) break;
    }
  }
  return count;
}

/// Walks the new library; 1, or 0 when it ends too early.
int Walk(const std::string& library, int found, const Settings& settings, const PlainStyles& styles,
         std::string& tex, int& unsupported) {
  PlainFile file{library};
  PlainValues v;
  std::string line;
  file.Gets(line, 50000);
  int handled = 0;
  while (handled < found) {
    if (!PlainIsKnownEntry(line)) {
      if (!file.Gets(line, 50000)) return 0;
      continue;
    }
    handled++;
    const std::string type = PlainCopyUntilChar(line, '@', '{');
    const std::string key = PlainCopyUntilChar(line, '{', ',');
    v.bibitem = "\\bibitem{" + key + "}";
    line = PlainUpper(line);
    bool supported = false;
    for (const char* marker :
         {"@ARTICLE", "@BOOK", "@PHDTHESIS", "@MASTERTHESIS", "@INCOLLECTION", "@INPROCEEDINGS"}) {
      supported = supported || line.find(marker) != std::string::npos;
    }
    if (!supported) {
      unsupported++;
      tex += "\n\nAttention!\n==========\nThe entry type of the bibitem-key '" + key + "' is '@" +
             type +
             "', which is not supported, so far.\nYou have to enter the bibitem manually into this "
             "file. \n\n\n\n";
      while (file.Gets(line, 50000)) {
        if (PlainIsKnownEntry(line)) break;
        if (line.find("@comment{jabref") != std::string::npos) break;
      }
      continue;
    }
    if (!file.Gets(line, 50000)) return 1;
    if (type != "ARTICLE" && type != "BOOK" && type != "INCOLLECTION" && type != "INPROCEEDINGS" &&
        type != "PHDTHESIS" && type != "MASTERTHESIS") {
      continue;
    }
    PlainReadTags(type, line, file, 50000, false, settings, v);
    if (type == "ARTICLE" && settings.StyleSpringerCompSci) PlainReplaceString(v.journal, ".", "");
    tex += PlainReference(type, "_latex", false, settings, styles, v);
  }
  return 1;
}

}  // namespace

PlainOutcome PlainExtract(const PlainWorld& world, PlainStyles& styles) {
  PlainOutcome outcome;
  std::vector<std::string> keys;
  Scan(world.document, keys);
  std::string& list = outcome.files["_extract.txt"];
  list = std::string(TextFileHeader) + "\n";
  for (const std::string& key : keys) list += key + "\n";

  std::string& library = outcome.files["_extract.bib"];
  library = std::string(BibFileHeader) + "\n";
  const int found = Select(world.library, keys, library, outcome);
  if (found == 0) {
    outcome.Fail(
        "Function Extract()_7 => 'Numentries' is zero? Is the BibTeX file probably empty (0 "
        "Byte)?");
    return outcome;
  }

  std::string& tex = outcome.files["_extract.tex"];
  tex = std::string(TexFileHeader) + "\n";
  if (found < static_cast<int>(keys.size())) {
    const std::string cited = std::to_string(keys.size());
    const std::string written = std::to_string(found);
    outcome.boxes.push_back(
        {cited + " citations could be found in the LaTeX file. However, only " + written +
             " corresponding entries were found in the BibTeX library! Did you choose the correct "
             "files?",
         "Correct files?"});
    tex += "   Note: " + cited + " citations could be found in the LaTeX file.\n   However, only " +
           written +
           " corresponding entries could be found in the BibTeX library!\n   Did you choose the "
           "correct files?\n\n   Here are all entries cited in the LaTeX file that could be found "
           "also in the BibTeX library ... .\n\n\n";
  }
  if (PlainReadStyles(world.styles, styles, outcome) != 1) return outcome;

  int unsupported = 0;
  if (Walk(library, found, world.settings, styles, tex, unsupported) != 1) {
    outcome.Fail("Function Extract()_11 => Could not read the new BibTeX file?");
    return outcome;
  }
  const std::string after =
      " not an ARTICLE, BOOK, INCOLLECTION, PHDTHESIS, MASTERTHESIS, INPROCEEDINGS. Only the "
      "latter entry types are supported.\n\nFor more details see the '_bibitems.tex' file.";
  if (unsupported == 1) {
    outcome.boxes.push_back(
        {"One entry is not saved in the '_bibitems.tex' file, because it is" + after,
         "No support !"});
  } else if (unsupported > 1) {
    outcome.boxes.push_back(
        {std::to_string(unsupported) +
             " entries are not saved in the '_bibitems.tex' file, because they are" + after,
         "No support !"});
  }
  outcome.result = 1;
  return outcome;
}

}  // namespace tarvel::testing
