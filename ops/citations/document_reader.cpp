// SPDX-License-Identifier: MIT
#include "ops/citations/document_reader.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "core/ascii.h"
#include "warnings/citation_warnings.h"

namespace tarvel {

namespace {

constexpr std::string_view kLineBreaks = "\r\n";
constexpr std::size_t kNone = std::string_view::npos;
/// Citations may stand in the optional argument of another. Deeper ones are not searched for there.
constexpr int kDeepest = 50;

template <std::size_t N>
bool Holds(const std::array<std::string_view, N>& names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

constexpr auto kVerbatimEnvironments = std::to_array<std::string_view>(
    {"verbatim", "verbatim*", "Verbatim", "Verbatim*", "BVerbatim", "LVerbatim", "SaveVerbatim",
     "VerbatimOut", "lstlisting", "minted", "comment", "filecontents", "filecontents*", "luacode",
     "luacode*", "sagecode", "pycode"});
/// Commands whose argument stands between two equal characters, or in braces.
constexpr auto kVerbatimCommands = std::to_array<std::string_view>(
    {"verb", "Verb", "lstinline", "mintinline", "url", "nolinkurl", "path", "href"});
constexpr auto kFileCommands = std::to_array<std::string_view>(
    {"input", "include", "subfile", "subfileinclude", "includestandalone", "InputIfFileExists"});
/// Commands with two arguments: the directory, with its "/", and the name of a file in it.
constexpr auto kImportCommands = std::to_array<std::string_view>(
    {"import", "subimport", "inputfrom", "subinputfrom", "includefrom", "subincludefrom"});
/// Commands that define the macro after them.
constexpr auto kDefinitions = std::to_array<std::string_view>(
    {"newcommand", "renewcommand", "providecommand", "DeclareRobustCommand", "def", "gdef", "edef",
     "NewDocumentCommand", "RenewDocumentCommand", "DeclareDocumentCommand"});
/// Commands that begin with "if" and have no "\fi".
constexpr auto kNoConditionals = std::to_array<std::string_view>(
    {"iff", "ifthenelse", "iflanguage", "ifdef", "ifundef", "ifcsdef", "ifcsundef", "ifstrequal",
     "ifstrempty", "ifbool", "iftoggle", "ifblank", "ifdefempty", "ifnumcomp", "ifboolexpr"});

class DocumentReader {
 public:
  DocumentReader(std::string_view text, const CiteCommands& commands,
                 const DocumentObserver& observer)
      : text_(text), commands_(commands), observer_(observer) {}

  void Read() {
    while (at_ < text_.size()) Step();
  }

 private:
  /// Skips text up to the next "%" or "\", and what that begins.
  void Step() {
    at_ = std::min(text_.find_first_of("%\\", at_), text_.size());
    if (at_ < text_.size()) TakeSpecial();
  }
  void TakeSpecial() {
    if (text_[at_] == '%') {
      SkipLine();
    } else {
      TakeCommand();
    }
  }

  void SkipLine() { at_ = std::min(text_.find_first_of(kLineBreaks, at_), text_.size()); }
  char Now() const { return at_ < text_.size() ? text_[at_] : '\0'; }

  /// Skips blanks, a line break and comments, but not an empty line, which ends a paragraph.
  void SkipSpace() {
    if (at_ == paragraph_end_) return;
    bool line_is_empty = false;  // since its start
    while (at_ < text_.size()) {
      const char byte = text_[at_];
      if (byte == '%') {
        SkipLine();
        if (Now() == '\r' && text_.substr(at_).starts_with("\r\n")) ++at_;
        at_ = std::min(at_ + 1, text_.size());
        line_is_empty = true;  // the line break belongs to the comment
        continue;
      }
      if (!IsBlank(byte)) return;
      const bool pair = byte == '\r' && text_.substr(at_).starts_with("\r\n");
      if (byte == '\n' || byte == '\r') {
        if (line_is_empty) {
          paragraph_end_ = at_;
          return;
        }
        line_is_empty = true;
      }
      at_ += pair ? 2 : 1;
    }
  }

  std::string_view TakeName() {
    const std::size_t begin = at_;
    while (at_ < text_.size() && (IsLetter(text_[at_]) || text_[at_] == '@')) ++at_;
    return text_.substr(begin, at_ - begin);
  }

  void TakeCommand() {
    const std::size_t offset = at_++;
    const std::string_view name = TakeName();
    if (name.empty()) {
      at_ = std::min(at_ + 1, text_.size());  // "\%" begins no comment
    } else if (const auto shape = commands_.Find(name)) {
      TakeCitation(*shape);
    } else if (Holds(kVerbatimCommands, name)) {
      SkipVerbatim(name);
    } else if (Holds(kFileCommands, name)) {
      TakeFile(name, offset);
    } else if (Holds(kImportCommands, name)) {
      TakeImport(name, offset);
    } else if (Holds(kDefinitions, name)) {
      TakeDefinition();
    } else if (name == "begin" || name == "end") {
      TakeEnvironment(name == "begin", offset);
    } else if (name == "iffalse") {
      SkipConditional();
    } else if (name == "endinput") {
      at_ = text_.size();
    } else if (observer_.on_other && LooksLikeCitation(name)) {
      observer_.on_other(name, offset);
    }
  }

  void TakeEnvironment(bool begins, std::size_t offset) {
    const std::optional<std::string_view> name = TakeGroupOnLine();
    if (!name) return;
    if (!begins) {
      if (*name == "document") at_ = text_.size();
      return;
    }
    if (const auto shape = commands_.Find(*name)) return TakeCitation(*shape);
    if (Holds(kVerbatimEnvironments, *name)) {
      const std::string last = std::string("\\end{").append(*name).append("}");
      const std::size_t found = text_.find(last, at_);
      at_ = found == kNone ? text_.size() : found + last.size();
    } else if (observer_.on_other && LooksLikeCitation(*name)) {
      observer_.on_other(std::string("begin{").append(*name).append("}"), offset);
    }
  }

  /// The text in braces that follows, if these are closed on the same line and hold neither others
  /// nor a command.
  std::optional<std::string_view> TakeGroupOnLine() {
    while (IsBlankOrTab(Now())) ++at_;
    if (Now() != '{') return std::nullopt;
    const std::size_t end = text_.find_first_of("{}\\\r\n", at_ + 1);
    if (end == kNone || text_[end] != '}') return std::nullopt;
    const std::string_view group = text_.substr(at_ + 1, end - at_ - 1);
    at_ = end + 1;
    return group;
  }

  void SkipVerbatim(std::string_view name) {
    if (Now() == '*') ++at_;
    if (Now() == '[' && name != "verb") {
      at_ = std::min(text_.find_first_of("]\r\n", at_), text_.size());
      if (Now() == ']') ++at_;
    }
    if (name == "mintinline") TakeGroupOnLine();
    if (Now() == '{') {
      SkipBraces();
    } else if (!IsLetter(Now()) && !IsBlank(Now()) && at_ < text_.size()) {
      const std::size_t end = text_.find_first_of(std::string{Now(), '\r', '\n'}, at_ + 1);
      at_ = end == kNone ? text_.size() : end + (text_[end] == Now() ? 1 : 0);
    }
  }

  /// Skips a group in which "%" is a character like others, at most to the end of the line.
  void SkipBraces() {
    int depth = 0;
    for (; at_ < text_.size() && text_[at_] != '\n' && text_[at_] != '\r'; ++at_) {
      depth += text_[at_] == '{' ? 1 : (text_[at_] == '}' ? -1 : 0);
      if (depth == 0) {
        ++at_;
        return;
      }
    }
  }

  void TakeFile(std::string_view command, std::size_t offset) {
    SkipSpace();
    SkipOptionals('[', ']');
    std::optional<std::string_view> name = TakeGroupOnLine();
    if (!name && command == "input") {  // TeX's own form ends with a blank
      const std::size_t end = std::min(text_.find_first_of(" \t\r\n%\\{}", at_), text_.size());
      name = text_.substr(at_, end - at_);
      at_ = end;
    }
    if (name) ReportFile(command, Trim(*name, kBlanks), offset);
  }

  void ReportFile(std::string_view command, std::string_view name, std::size_t offset) {
    if (name.empty() || name.find('#') != kNone || !observer_.on_file) return;
    observer_.on_file(command, name, offset);
  }

  void TakeImport(std::string_view command, std::size_t offset) {
    SkipSpace();
    const std::optional<std::string_view> directory = TakeGroupOnLine();
    SkipSpace();
    const std::optional<std::string_view> name = TakeGroupOnLine();
    if (!directory || !name) return;
    const std::string path = std::string(Trim(*directory, kBlanks)).append(Trim(*name, kBlanks));
    ReportFile(command, path, offset);
  }

  /// Takes the name of a macro that is defined, and neither its number of arguments nor its body.
  void TakeDefinition() {
    if (Now() == '*') ++at_;
    SkipSpace();
    if (Now() == '{') ++at_;
    SkipSpace();
    if (Now() != '\\') return;
    macro_offset_ = at_++;
    macro_ = TakeName();
  }

  /// Skips what is not read, up to the "\else" or "\fi" that belongs to it.
  void SkipConditional() {
    int depth = 1;
    while (at_ < text_.size() && depth > 0) {
      at_ = std::min(text_.find_first_of("%\\", at_), text_.size());
      if (Now() == '%') SkipLine();
      if (Now() != '\\') continue;
      ++at_;
      const std::string_view name = TakeName();
      if (name.empty()) at_ = std::min(at_ + 1, text_.size());
      if (name == "fi" || (name == "else" && depth == 1)) --depth;
      if (name.starts_with("if") && !Holds(kNoConditionals, name)) ++depth;
    }
  }

  void TakeCitation(CiteShape shape) {
    if (Now() == '*') ++at_;
    const bool several = shape == CiteShape::kLists || shape == CiteShape::kVolumeLists;
    const bool volume = shape == CiteShape::kVolume || shape == CiteShape::kVolumeLists;
    if (several) SkipOptionals('(', ')');
    while (TakeList(volume) && several) {
      const std::size_t end = at_;
      SkipSpace();
      if (Now() == '[' || Now() == '{') continue;
      at_ = end;
      return;
    }
  }

  /// Takes the optional arguments and the list of keys after them; false when there is none.
  bool TakeList(bool volume) {
    SkipOptionals('<', '>');
    SkipOptionals('[', ']');
    if (volume) {
      if (Now() != '{') return false;
      SkipArgument('{', '}');
      SkipOptionals('[', ']');
    }
    return Now() == '{' && TakeKeys();
  }

  /// Skips arguments in these brackets and the blanks around them.
  void SkipOptionals(char open, char close) {
    SkipSpace();
    while (Now() == open) {
      SkipArgument(open, close);
      SkipSpace();
    }
  }

  /// Skips one argument, up to the first `close` that stands in no braces of its own.
  void SkipArgument(char open, char close) {
    ++depth_;
    const bool braces = open == '{';
    int depth = 0;
    for (++at_; at_ < text_.size();) {
      const char byte = text_[at_];
      if (byte == close && depth == 0) {
        ++at_;
        break;
      }
      if (byte == '}' && depth == 0 && !braces) break;  // the argument has no end
      depth += byte == '{' ? 1 : (byte == '}' ? -1 : 0);
      if (byte == '%' || (byte == '\\' && depth_ < kDeepest)) {
        TakeSpecial();
      } else {
        at_ = std::min(at_ + (byte == '\\' ? 2 : 1), text_.size());
      }
    }
    --depth_;
  }

  /// Takes the keys of a list; false when it is none. Only its end shows that, and it can have
  /// millions of keys, so it is read twice.
  bool TakeKeys() {
    const std::size_t begin = at_;
    if (!ReadKeys([](const KeyInDocument&) {})) return false;
    at_ = begin;
    return ReadKeys([this](KeyInDocument& key) { ReportKey(key); });
  }

  /// Reads a list and calls `take(key)` for each key; false when it is none.
  template <typename Take>
  bool ReadKeys(const Take& take) {
    KeyInDocument key{{}, kNone, 0};
    for (++at_; at_ < text_.size() && text_[at_] != '}';) {
      const char byte = text_[at_];
      if (byte == '\\' || byte == '{') return false;
      if (byte == '%' || IsBlank(byte)) {
        const std::size_t begin = at_;
        SkipSpace();
        if (at_ == begin || Now() == '\n' || Now() == '\r') return false;  // an empty line
        if (byte != '%' && !key.text.empty()) key.text += ' ';
        continue;
      }
      if (byte == ',') {
        take(key);
        key = {{}, kNone, 0};
      } else {
        key.text += byte;
        key.begin = std::min(key.begin, at_);
        key.end = at_ + 1;
      }
      ++at_;
    }
    if (at_ == text_.size()) return false;
    ++at_;
    take(key);
    return true;
  }

  void ReportKey(KeyInDocument& key) {
    key.text.erase(TrimEnd(key.text, IsBlank).size());
    if (key.text.find('#') != kNone) return ReportMacro();
    if (!key.text.empty() && observer_.on_key) observer_.on_key(key);
  }

  /// Reports the macro whose body cites its argument, once.
  void ReportMacro() {
    const std::string_view macro = std::exchange(macro_, {});
    if (macro.empty() || commands_.Find(macro) || !observer_.on_other) return;
    observer_.on_other(macro, macro_offset_);
  }

  std::string_view text_;
  const CiteCommands& commands_;
  const DocumentObserver& observer_;
  std::size_t at_ = 0;
  std::size_t paragraph_end_ = kNone;  // the empty line that was met last
  int depth_ = 0;
  std::string_view macro_;  // that was defined last
  std::size_t macro_offset_ = 0;
};

}  // namespace

void ReadDocument(std::string_view document, const CiteCommands& commands,
                  const DocumentObserver& observer) {
  DocumentReader(document, commands, observer).Read();
}

}  // namespace tarvel
