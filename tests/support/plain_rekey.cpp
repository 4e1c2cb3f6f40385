// SPDX-License-Identifier: MIT
#include "tests/support/plain_rekey.h"

#include <set>
#include <vector>

#include "ops/citations/cite_commands.h"
#include "tests/support/plain_primitives.h"

namespace tarvel::testing {

namespace {

bool Letter(char byte) { return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z'); }
bool Break(char byte) { return byte == '\r' || byte == '\n'; }
bool Gap(char byte) { return byte == ' ' || byte == '\t'; }
bool Blank(char byte) { return Gap(byte) || Break(byte); }

bool IsOf(const std::set<std::string>& names, const std::string& name) {
  return names.count(name) != 0;
}

const std::set<std::string> kVerbatimTexts{
    "verbatim",     "verbatim*",     "Verbatim", "Verbatim*", "BVerbatim", "LVerbatim",
    "SaveVerbatim", "VerbatimOut",   "minted",   "comment",   "luacode",   "luacode*",
    "filecontents", "filecontents*", "sagecode", "pycode",    "lstlisting"};
const std::set<std::string> kVerbatimArguments{"verb", "Verb",      "lstinline", "mintinline",
                                               "url",  "nolinkurl", "path",      "href"};
const std::set<std::string> kFiles{"input", "include", "subfile", "subfileinclude",
                                   "InputIfFileExists"};
const std::set<std::string> kImports{"import",       "subimport",   "inputfrom",
                                     "subinputfrom", "includefrom", "subincludefrom"};
const std::set<std::string> kDefinitions{"newcommand",
                                         "renewcommand",
                                         "providecommand",
                                         "DeclareRobustCommand",
                                         "def",
                                         "gdef",
                                         "edef",
                                         "NewDocumentCommand",
                                         "RenewDocumentCommand",
                                         "DeclareDocumentCommand"};
const std::set<std::string> kNoIf{"iff",        "ifthenelse", "iflanguage", "ifdef",
                                  "ifundef",    "ifcsdef",    "ifcsundef",  "ifstrequal",
                                  "ifstrempty", "ifbool",     "iftoggle",   "ifblank",
                                  "ifdefempty", "ifnumcomp",  "ifboolexpr"};

/// Whether several lists may follow: \cites, \footcitetexts; \shortcites takes one.
bool TakesSeveral(const std::string& name) {
  const bool plural = name.size() > 5 && (name.compare(name.size() - 4, 4, "ites") == 0 ||
                                          name.compare(name.size() - 5, 5, "texts") == 0);
  return (plural && name != "shortcites") || name == "cites" || name == "Cites";
}
bool TakesVolume(const std::string& name) {
  const bool quotes = name.find("cquote") != std::string::npos;
  return PlainContainsNoCase(name, "volcite") || (quotes && (name[0] == 'f' || name[0] == 'h'));
}

bool IsRead(const std::string& name) {
  static const std::set<std::string> known = [] {
    std::set<std::string> names;
    for (const std::string_view command : KnownCiteCommands()) names.emplace(command);
    return names;
  }();
  return IsOf(known, name);
}

class Document {
 public:
  Document(const std::string& bytes, const PlainKeys& keys) : bytes_(bytes), keys_(keys) {}

  PlainRekeyed Read() {
    while (!End()) Next();
    result_.text += bytes_.substr(copied_);
    return result_;
  }

 private:
  bool End() const { return at_ >= bytes_.size(); }
  bool On(char byte) const { return !End() && bytes_[at_] == byte; }
  void Pass() {
    if (!End()) ++at_;
  }
  void PassLine() {
    while (!End() && !Break(bytes_[at_])) ++at_;
  }
  void PassBreak() {
    if (On('\r') && at_ + 1 < bytes_.size() && bytes_[at_ + 1] == '\n') ++at_;
    Pass();
  }
  void PassTo(const std::string& bytes) {
    while (!End() && bytes.find(bytes_[at_]) == std::string::npos) ++at_;
  }

  void Next() {
    if (On('%')) {
      PassLine();
    } else if (On('\\')) {
      Command();
    } else {
      ++at_;
    }
  }

  std::string Name() {
    std::string name;
    while (!End() && (Letter(bytes_[at_]) || On('@'))) name += bytes_[at_++];
    return name;
  }

  void Command() {
    Pass();
    const std::string name = Name();
    if (name.empty()) return Pass();
    if (IsRead(name)) return Citation(name);
    if (IsOf(kVerbatimArguments, name)) return Verbatim(name);
    if (IsOf(kFiles, name)) return File(name);
    if (IsOf(kImports, name)) return Import();
    if (IsOf(kDefinitions, name)) return Definition();
    if (name == "begin" || name == "end") return Environment(name);
    if (name == "iffalse") return Unread();
    if (name == "endinput") at_ = bytes_.size();
  }

  /// "{text}" on one line, without braces and commands in it.
  bool Group(std::string& text) {
    while (!End() && Gap(bytes_[at_])) ++at_;
    if (!On('{')) return false;
    text.clear();
    for (std::size_t i = at_ + 1; i < bytes_.size(); ++i) {
      const char byte = bytes_[i];
      if (byte == '}') {
        at_ = i + 1;
        return true;
      }
      if (byte == '{' || byte == '\\' || Break(byte)) return false;
      text += byte;
    }
    return false;
  }

  void Environment(const std::string& command) {
    std::string name;
    if (!Group(name)) return;
    if (command == "end") {
      if (name == "document") at_ = bytes_.size();
      return;
    }
    if (IsRead(name)) return Citation(name);
    if (!IsOf(kVerbatimTexts, name)) return;
    const std::string last = "\\end{" + name + "}";
    while (!End() && bytes_.compare(at_, last.size(), last) != 0) ++at_;
    for (std::size_t i = 0; i < last.size(); ++i) Pass();
  }

  void Verbatim(const std::string& name) {
    if (On('*')) ++at_;
    if (On('[') && name != "verb") {
      PassTo("]\r\n");
      if (On(']')) ++at_;
    }
    std::string language;
    if (name == "mintinline") Group(language);
    if (On('{')) return BracesOnLine();
    if (End() || Letter(bytes_[at_]) || Blank(bytes_[at_])) return;
    const char delimiter = bytes_[at_++];
    while (!End() && !Break(bytes_[at_]) && !On(delimiter)) ++at_;
    if (On(delimiter)) ++at_;
  }

  void BracesOnLine() {
    int depth = 0;
    while (!End() && !Break(bytes_[at_])) {
      if (On('{')) ++depth;
      if (On('}')) --depth;
      ++at_;
      if (depth == 0) return;
    }
  }

  void File(const std::string& command) {
    Space();
    std::string name;
    if (!Group(name) && command == "input") PassTo(" \t\r\n%\\{}");
  }

  void Import() {
    std::string group;
    Space();
    Group(group);
    Space();
    Group(group);
  }

  /// The name of the macro that is defined is no citation.
  void Definition() {
    if (On('*')) ++at_;
    Space();
    if (On('{')) ++at_;
    Space();
    if (!On('\\')) return;
    ++at_;
    Name();
  }

  /// "\iffalse" to its "\else" or "\fi".
  void Unread() {
    int depth = 1;
    while (!End() && depth > 0) {
      if (On('%')) {
        PassLine();
        continue;
      }
      if (!On('\\')) {
        ++at_;
        continue;
      }
      ++at_;
      const std::string name = Name();
      if (name.empty()) Pass();
      if (name == "fi" || (name == "else" && depth == 1)) --depth;
      if (name.compare(0, 2, "if") == 0 && !IsOf(kNoIf, name)) ++depth;
    }
  }

  /// Whether the line before here holds blanks only.
  bool LineIsEmpty() const {
    std::size_t start = at_;
    while (start > 0 && Gap(bytes_[start - 1])) --start;
    return start > 0 && Break(bytes_[start - 1]);
  }

  /// Blanks, line breaks and comments up to an empty line.
  void Space() {
    while (!End()) {
      if (On('%')) {
        PassLine();
        PassBreak();
      } else if (Break(bytes_[at_])) {
        if (LineIsEmpty()) return;
        PassBreak();
      } else if (Gap(bytes_[at_])) {
        ++at_;
      } else {
        return;
      }
    }
  }

  void Citation(const std::string& name) {
    if (On('*')) ++at_;
    if (!TakesSeveral(name)) {
      List(TakesVolume(name));
      return;
    }
    Optional('(', ')');
    while (List(TakesVolume(name))) {
      const std::size_t after = at_;
      Space();
      if (!On('[') && !On('{')) {
        at_ = after;
        return;
      }
    }
  }

  bool List(bool volume) {
    Optional('<', '>');
    Optional('[', ']');
    if (volume) {
      if (!On('{')) return false;
      Argument('{', '}');
      Optional('[', ']');
    }
    return On('{') && Keys();
  }

  void Optional(char open, char close) {
    Space();
    while (On(open)) {
      Argument(open, close);
      Space();
    }
  }

  /// One argument. Citations in it are read, unless it lies 50 arguments deep.
  void Argument(char open, char close) {
    ++depth_;
    int braces = 0;
    Pass();
    while (!End()) {
      if (braces == 0 && On(close)) {
        Pass();
        break;
      }
      if (braces == 0 && On('}') && open != '{') break;
      if (On('{')) ++braces;
      if (On('}')) --braces;
      if (On('\\') && depth_ >= 50) {
        Pass();
        Pass();
      } else {
        Next();
      }
    }
    --depth_;
  }

  struct Key {
    std::string text;
    std::size_t begin = 0, end = 0;
  };

  bool Keys() {
    std::vector<Key> keys(1);
    Pass();
    for (;;) {
      if (End() || On('\\') || On('{')) return false;
      if (On('}')) break;
      if (On('%') || Blank(bytes_[at_])) {
        const bool comment = On('%');
        const std::size_t before = at_;
        Space();
        if (at_ == before || (!End() && Break(bytes_[at_]))) return false;
        if (!comment && !keys.back().text.empty()) keys.back().text += ' ';
        continue;
      }
      if (On(',')) {
        keys.emplace_back();
      } else {
        if (keys.back().text.empty()) keys.back().begin = at_;
        keys.back().text += bytes_[at_];
        keys.back().end = at_ + 1;
      }
      ++at_;
    }
    Pass();
    for (Key& key : keys) Replace(key);
    return true;
  }

  void Replace(Key& key) {
    while (!key.text.empty() && Blank(key.text.back())) key.text.pop_back();
    if (key.text.empty() || key.text.find('#') != std::string::npos) return;
    const auto found = keys_.find(key.text);
    if (found == keys_.end()) return;
    result_.text += bytes_.substr(copied_, key.begin - copied_) + found->second;
    copied_ = key.end;
    ++result_.replaced;
  }

  const std::string& bytes_;
  const PlainKeys& keys_;
  std::size_t at_ = 0;
  std::size_t copied_ = 0;
  int depth_ = 0;
  PlainRekeyed result_;
};

/// A field of a key map without its escapes; false when one of them is none or nothing is left.
bool Unescaped(const std::string& field, std::string& text) {
  const std::string digits = "0123456789abcdef";
  for (std::size_t i = 0; i < field.size(); ++i) {
    if (field[i] != '\\') {
      text += field[i];
      continue;
    }
    if (++i == field.size()) return false;
    if (field[i] == 'n') {
      text += '\n';
    } else if (field[i] == 't') {
      text += '\t';
    } else if (field[i] == 'r') {
      text += '\r';
    } else if (field[i] == '\\') {
      text += '\\';
    } else if (field[i] == 'x' && i + 2 < field.size()) {
      const std::size_t high = digits.find(field[i + 1]);
      const std::size_t low = digits.find(field[i + 2]);
      if (high == std::string::npos || low == std::string::npos) return false;
      text += static_cast<char>(static_cast<unsigned char>(16 * high + low));
      i += 2;
    } else {
      return false;
    }
  }
  return !text.empty();
}

}  // namespace

std::optional<PlainKeys> PlainReadKeyMap(const std::string& bytes) {
  PlainKeys keys;
  std::string line;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (bytes[i] != '\n') line += bytes[i];
    if (bytes[i] != '\n' && i + 1 < bytes.size()) continue;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    const std::size_t tab = line.find('\t');
    if (tab == std::string::npos || tab != line.rfind('\t')) return std::nullopt;
    std::string old_key;
    std::string new_key;
    if (!Unescaped(line.substr(0, tab), old_key) || !Unescaped(line.substr(tab + 1), new_key)) {
      return std::nullopt;
    }
    for (const char byte : new_key) {
      for (const char bad : {'{', '}', ',', '%', '#', '\\', '~'}) {
        if (byte == bad) return std::nullopt;
      }
    }
    keys.emplace(old_key, new_key);
    line.clear();
  }
  return keys;
}

PlainRekeyed PlainRekey(const std::string& document, const PlainKeys& keys) {
  return Document(document, keys).Read();
}

}  // namespace tarvel::testing
