// SPDX-License-Identifier: MIT
#include "tests/support/plain_references.h"

#include <algorithm>

#include "tests/support/plain_primitives.h"

namespace tarvel::testing {

namespace {

void PlainReplaceAll(std::string& text, const std::string& what, const std::string& by) {
  std::string out;
  std::size_t i = 0;
  while (i < text.size()) {
    if (text.compare(i, what.size(), what) == 0) {
      out += by;
      i += what.size();
    } else {
      out += text[i++];
    }
  }
  text = out;
}

std::string LastFirst(const std::string& name) {
  std::string last;
  std::string first;
  bool after_comma = false;
  for (std::size_t i = 0; i < name.size(); i++) {
    if (!after_comma && name[i] == ',') {
      after_comma = true;
      while (i + 1 < name.size() && name[i + 1] == ' ') i++;
    } else if (after_comma) {
      first += name[i];
    } else {
      last += name[i];
    }
  }
  return after_comma ? first + " " + last : name;
}

/// Every name of a format, and what a key is looked for in.
std::vector<std::pair<std::string, std::string>> BuiltInNames() {
  std::vector<std::pair<std::string, std::string>> names;
  for (const char* prefix : {"ACS_", "APS_", "IOP_", "NATURE_", "WILEY_", "SPRINGER_C_"}) {
    for (const char* word :
         {"article_title", "article", "article_title_latex", "article_latex", "book_latex", "book",
          "inpro_latex", "inpro", "phd_latex", "phd", "incol_latex", "incol"}) {
      const std::string name = std::string(prefix) + word;
      const bool no_blank = name == "ACS_phd" || name == "SPRINGER_C_phd";
      names.emplace_back(name, no_blank ? name : name + " ");
    }
  }
  return names;
}

}  // namespace

std::string PlainPrefix(const Settings& s) {
  if (s.StyleACS) return "ACS_";
  if (s.StyleAPS) return "APS_";
  if (s.StyleIOP) return "IOP_";
  if (s.StyleNature) return "NATURE_";
  if (s.StyleWiley) return "WILEY_";
  if (s.StyleSpringerCompSci) return "SPRINGER_C_";
  return "";
}

std::string PlainAuthors(const std::string& list, const Settings& s) {
  std::string out = list;
  if (s.StyleAPS || s.StyleWiley) {
    std::vector<std::string> names{""};
    for (std::size_t i = 0; i < list.size();) {
      if (list.compare(i, 5, " and ") == 0) {
        names.emplace_back();
        i += 5;
      } else {
        names.back() += list[i++];
      }
    }
    out = LastFirst(names[0]);
    for (std::size_t n = 1; n < names.size(); n++) out += ", " + LastFirst(names[n]);
    const bool has_comma = list.find(',') != std::string::npos;
    if (s.StyleAPS && names.size() > 1 && has_comma) {
      for (std::size_t i = out.size(); i-- > 0;) {
        if (out.compare(i, 2, ", ") != 0) continue;
        out = out.substr(0, i) + " and " + out.substr(i + 2);
        break;
      }
    }
    return out;
  }
  if (s.StyleIOP) {
    out = "";
    for (std::size_t i = 0; i < list.size(); i++) {
      const char next = i + 1 < list.size() ? list[i + 1] : '\0';
      const bool at_end = i + 1 == list.size();
      if (list[i] == ',' || list[i] == '.') {
        if (at_end || (next != '-' && next != ' ')) out += ' ';
      } else {
        out += list[i];
      }
    }
    PlainReplaceAll(out, " and", ",");
    for (std::size_t i = out.size(); i-- > 0;) {
      if (out[i] != ',') continue;
      return out.substr(0, i) + " and" + out.substr(i + 1);
    }
    return out;
  }
  if (s.StyleNature) {
    PlainReplaceAll(out, " and", ",");
    int commas = 0;
    for (std::size_t i = out.size(); i-- > 0;) {
      if (out[i] == ',' && ++commas == 2) return out.substr(0, i) + " \\&" + out.substr(i + 1);
    }
    return out;
  }
  if (s.StyleACS) {
    PlainReplaceAll(out, " and", ";");
    return out;
  }
  if (s.StyleSpringerCompSci) {
    out = "";
    bool after_period = false;
    for (std::size_t i = 0; i < list.size();) {
      const bool was_period = after_period;
      after_period = false;
      if (list[i] == '.' && i + 1 == list.size()) {
        i += 1;
      } else if (list[i] == '.' && (list[i + 1] == '-' || list[i + 1] == ' ')) {
        i += 2;
        after_period = true;
      } else if (was_period && list.compare(i, 4, "and ") == 0) {
        out += ",";
        i += 3;
      } else if (list.compare(i, 4, " and") == 0) {
        out += ",";
        i += 4;
      } else if (list.compare(i, 2, ", ") == 0) {
        out += " ";
        i += 2;
      } else {
        out += list[i++];
      }
    }
    return out;
  }
  return "";
}

std::string PlainFormat(const std::string& format, const std::vector<std::string>& values) {
  std::string out;
  std::size_t next = 0;
  const auto at = [&](std::size_t i) { return i < format.size() ? format[i] : '\0'; };
  const auto digit = [&](std::size_t i) { return at(i) >= '0' && at(i) <= '9'; };
  for (std::size_t i = 0; i < format.size(); i++) {
    if (format[i] != '%') {
      out += format[i];
      continue;
    }
    if (at(i + 1) == '%') {
      out += '%';
      i++;
      continue;
    }
    std::size_t end = i + 1;
    bool left = false;
    for (; at(end) == '-' || at(end) == '+' || at(end) == ' ' || at(end) == '#' || at(end) == '0' ||
           at(end) == '\'';
         end++) {
      left = left || at(end) == '-';
    }
    // Numbers that are too large for anything stay as large as one may be.
    const auto number = [&] {
      std::size_t value = 0;
      for (; digit(end); end++) {
        value = std::min<std::size_t>(value * 10 + static_cast<std::size_t>(at(end) - '0'), 999999);
      }
      return value;
    };
    const std::size_t width = number();
    const bool has_precision = at(end) == '.';
    std::size_t precision = 0;
    if (has_precision) {
      end++;
      precision = number();
    }
    // A field of more than 10,000 bytes is none.
    if (at(end) != 's' || width > 10000) {
      out += '%';
      continue;
    }
    i = end;
    if (next == values.size()) continue;
    std::string value = values[next++];
    if (has_precision) value = value.substr(0, precision);
    const std::string padding(width - std::min(width, value.size()), ' ');
    value = left ? value + padding : padding + value;
    out += value;
  }
  return out;
}

int PlainReadStyles(const std::string& bytes, PlainStyles& styles, PlainOutcome& outcome) {
  static const std::vector<std::pair<std::string, std::string>> kNames = BuiltInNames();
  PlainFile file{bytes};
  std::string line;
  int count = 0;
  while (file.Gets(line, 1000)) {
    const std::size_t mark = line.find("; // ");
    if (mark == std::string::npos) continue;
    if (line[0] == '#' || line[0] == '/') continue;
    const std::string key = line.substr(0, line.find(' ') + 1);
    const std::size_t equals = line.find('=');
    if (equals == std::string::npos) {
      return outcome.Fail(
          "ReadJournalStyles()_3 => the config file 'Journal_styles_....tvl' seems to be corrupt. "
          "No '; // ' and '='?");
    }
    std::string value;
    for (std::size_t i = equals + 3; i + 1 < mark; i++) value += line[i];
    PlainReplaceString(value, "\\n", "\n");
    PlainReplaceString(value, "\\n", "\n");
    for (const auto& [name, built_in] : kNames) {
      if (built_in.find(key) != std::string::npos) styles[name] = value;
    }
    count++;
  }
  if (count == 71) return 1;
  return outcome.Fail(
      "ReadJournalStyles()_4 => We need 60 entries in the config file 'Journal_styles_....tvl', "
      "but we have " +
      std::to_string(count + 1) + " entries\n");
}

void PlainReadTags(const std::string& type, std::string& line, PlainFile& file, std::size_t limit,
                   bool for_text, const Settings& settings, PlainValues& v) {
  const auto has = [&](const char* name) { return PlainContainsNoCase(line, name); };
  const auto read = [&](std::string& value) { PlainReadFieldValue(line, file, value); };
  const auto read_names = [&](std::string& value) {
    read(value);
    value = PlainAuthors(value, settings);
  };
  const auto strip_title = [&] {
    if (!for_text) PlainStripBraces(v.title);
  };
  const auto read_pages = [&] {
    read(v.pages);
    if (!settings.PagesRange) {
      v.pages = v.pages.substr(0, v.pages.find('-'));
    } else if (for_text) {
      PlainCollapseDoubledChar(v.pages, '-');
    }
  };
  for (;;) {
    if (PlainIsKnownEntry(line)) return;
    if (line.find("@comment{jabref") != std::string::npos) return;
    if (type == "ARTICLE") {
      if (has("author")) read_names(v.author);
      if (has("Journal")) read(v.journal);
      if (has("year")) read(v.year);
      if (has("volume")) read(v.volume);
      if (has("title")) {
        read(v.title);
        strip_title();
      }
      if (has("pages")) read_pages();
    } else if (type == "BOOK") {
      if (has("author")) read_names(v.author);
      if (has("publisher")) read(v.publisher);
      if (has("year")) read(v.year);
      if (has("address")) read(v.address);
      if (has("title")) {
        read(v.title);
        strip_title();
      }
    } else if (type == "INCOLLECTION") {
      if (has("author")) read_names(v.author);
      if (has("publisher")) read(v.publisher);
      if (has("year")) read(v.year);
      if (has("address")) read(v.address);
      if (has("title") && !has("booktitle")) {
        read(v.title);
        strip_title();
      }
      if (has("booktitle")) {
        read(v.booktitle);
        strip_title();
      }
      if (has("editor")) read_names(v.editor);
      if (has("pages")) read_pages();
    } else if (type == "INPROCEEDINGS") {
      if (has("author")) read_names(v.author);
      if (has("title") && line.find("booktitle") == std::string::npos) read(v.title);
      if (has("booktitle")) {
        read(v.booktitle);
        strip_title();
      }
      if (has("year")) read(v.year);
      if (has("editor")) read(v.editor);
      if (has("address")) read(v.address);
      if (has("pages")) read_pages();
    } else {
      if (has("author")) read_names(v.author);
      if (has("year")) read(v.year);
      if (has("school")) read(v.school);
      if (has("title")) {
        read(v.title);
        strip_title();
      }
    }
    if (!file.Gets(line, limit)) return;
  }
}

std::string PlainReference(const std::string& type, const std::string& suffix, bool for_text,
                           const Settings& settings, const PlainStyles& styles,
                           const PlainValues& v) {
  const std::string S = PlainPrefix(settings);
  std::string key;
  std::vector<std::string> list;
  const bool acs = S == "ACS_", aps = S == "APS_", iop = S == "IOP_", nature = S == "NATURE_",
             wiley = S == "WILEY_", springer = S == "SPRINGER_C_";
  if (S.empty()) return "";
  if (type == "ARTICLE" && settings.PrintTitle) {
    key = "article_title";
    if (acs || wiley) list = {v.bibitem, v.author, v.title, v.journal, v.year, v.volume, v.pages};
    if (aps || iop || nature)
      list = {v.bibitem, v.author, v.title, v.journal, v.volume, v.pages, v.year};
    if (springer) list = {v.bibitem, v.author, v.year, v.title, v.journal, v.volume, v.pages};
  } else if (type == "ARTICLE") {
    key = "article";
    if (acs || wiley) list = {v.bibitem, v.author, v.journal, v.year, v.volume, v.pages};
    if (aps || iop || nature) list = {v.bibitem, v.author, v.journal, v.volume, v.pages, v.year};
    if (springer) list = {v.bibitem, v.author, v.year, v.journal, v.volume, v.pages};
  } else if (type == "BOOK") {
    key = "book";
    if (acs || nature || wiley)
      list = {v.bibitem, v.author, v.title, v.publisher, v.address, v.year};
    if (aps) list = {v.bibitem, v.title, v.author, v.publisher, v.address, v.year};
    if (iop) list = {v.bibitem, v.author, v.year, v.title, v.address, v.publisher};
    if (springer) list = {v.bibitem, v.author, v.year, v.title, v.publisher, v.address};
  } else if (type == "INCOLLECTION") {
    key = springer && !for_text ? "inpro" : "incol";
    if (acs)
      list = {v.bibitem, v.author, v.title, v.editor, v.booktitle, v.publisher, v.address, v.year};
    if (aps) list = {v.bibitem, v.author, v.booktitle, v.editor, v.publisher, v.address, v.year};
    if (iop || nature)
      list = {v.bibitem, v.author, v.year, v.title, v.booktitle, v.editor, v.address, v.publisher};
    if (wiley)
      list = {v.bibitem, v.author, v.booktitle, v.editor, v.publisher, v.address, v.year, v.pages};
    if (springer)
      list = {v.bibitem, v.author, v.year, v.title, v.booktitle, v.editor, v.publisher, v.address};
  } else if (type == "INPROCEEDINGS") {
    key = "inpro";
    if (acs || aps)
      list = {v.bibitem, v.author, v.booktitle, v.editor, v.publisher, v.address, v.year, v.pages};
    if (iop || nature)
      list = {v.bibitem, v.author, v.year, v.booktitle, v.address, v.editor, v.pages};
    if (wiley) list = {v.bibitem, v.author, v.booktitle, v.editor, v.publisher, v.address, v.year};
    if (springer)
      list = {v.bibitem, v.author, v.year, v.title, v.booktitle, v.editor, v.publisher, v.address};
  } else {
    key = "phd";
    if (acs || aps) list = {v.bibitem, v.author, v.school, v.year};
    if (iop || nature) list = {v.bibitem, v.author, v.year, v.school};
    if (wiley) list = {v.bibitem, v.author, v.publisher, v.address, v.year};
    if (springer) list = {v.bibitem, v.author, v.year, v.title, v.address};
  }
  const auto format = styles.find(S + key + suffix);
  return format == styles.end() ? "" : PlainFormat(format->second, list);
}

}  // namespace tarvel::testing
