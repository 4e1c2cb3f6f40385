// SPDX-License-Identifier: MIT
#include "warnings/citation_warnings.h"

#include <algorithm>
#include <array>

#include "core/line_stream.h"
#include "core/text_primitives.h"

namespace tarvel {

namespace {

constexpr std::string_view kCite = "\\cite";
constexpr std::string_view kCiteBrace = "\\cite{";
constexpr std::string_view kCites = "\\cites";  // takes several lists

/// Commands whose names hold "cite" and that cite nothing.
constexpr auto kOthers = std::to_array<std::string_view>({"AtEveryCite",
                                                          "AtEveryCitekey",
                                                          "AtNextCite",
                                                          "DeclareCiteCommand",
                                                          "DeclareMultiCiteCommand",
                                                          "citation",
                                                          "citecolor",
                                                          "citeindexfalse",
                                                          "citeindextrue",
                                                          "citeindextype",
                                                          "citenumfont",
                                                          "citepunct",
                                                          "citereset",
                                                          "citesetup",
                                                          "citestyle",
                                                          "citetext",
                                                          "citetrackerfalse",
                                                          "citetrackertrue",
                                                          "defcitealias",
                                                          "mancite",
                                                          "setcitestyle"});

/// The command at the start of `text`, its "\" and "*" included.
std::string_view CommandAt(std::string_view text) {
  std::size_t end = 1;
  while (end < text.size() && IsLetter(text[end])) ++end;
  if (end < text.size() && text[end] == '*') ++end;
  return text.substr(0, end);
}

/// The name of a command, without its "\" and "*".
std::string_view NameOf(std::string_view command) { return Trim(command, "\\*"); }

/// Where the comment of a line begins.
std::size_t CommentStart(std::string_view line) {
  for (std::size_t at = 0; at < line.size(); ++at) {
    if (line[at] == '\\') {
      ++at;
    } else if (line[at] == '%') {
      return at;
    }
  }
  return line.size();
}

/// One line of a document.
class CitationLine {
 public:
  CitationLine(std::string_view line, std::size_t offset, FileWarnings& warnings)
      : line_(line),
        offset_(offset),
        warnings_(warnings),
        comment_(CommentStart(line)),
        last_read_(line.rfind(kCiteBrace)) {}

  void Check() {
    for (std::size_t at = line_.find('\\'); at != std::string_view::npos;
         at = line_.find('\\', at + 1)) {
      const std::string_view command = CommandAt(line_.substr(at));
      if (ContainsNoCase(command, "cite") || ContainsNoCase(command, "cquote")) {
        CheckCommand(command, at);
      }
    }
  }

 private:
  /// As long as a "\cite{" is left on the line, the first command that begins with "\cite" is read.
  void CheckCommand(std::string_view command, std::size_t at) {
    const bool read =
        command.starts_with(kCite) && last_read_ != std::string_view::npos && at <= last_read_;
    if (!read && at < comment_) {
      if (!LooksLikeCitation(NameOf(command))) return;
      Report(command, "is not read without --cite-commands, only \"\\cite{\" is");
    } else if (read && at > comment_) {
      Report(command, "is in a comment, but is read");
    } else if (read && line_.find('}', at) == std::string_view::npos) {
      Report(command, "is read only to the end of its line");
    } else if (read && command.starts_with(kCites)) {
      Report(command, "is read only to the end of its first list");
    }
  }

  void Report(std::string_view command, std::string_view what) {
    warnings_.Report(WarningKind::kOtherCitation, offset_, {},
                     Quoted(command) + " " + std::string(what));
  }

  std::string_view line_;
  std::size_t offset_;
  FileWarnings& warnings_;
  std::size_t comment_;
  std::size_t last_read_;
};

}  // namespace

bool LooksLikeCitation(std::string_view name) {
  return (ContainsNoCase(name, "cite") || name.ends_with("cquote")) &&
         std::find(kOthers.begin(), kOthers.end(), name) == kOthers.end();
}

void ReportCitations(std::string_view document, FileWarnings& warnings) {
  if (!warnings.Wanted()) return;
  constexpr std::size_t kMost = limits::kShortLine - 1;
  for (std::size_t at = 0; at < document.size();) {
    const std::string_view piece = document.substr(at, kMost);
    const std::string_view line = piece.substr(0, std::min(piece.find('\n'), piece.size() - 1) + 1);
    CitationLine(line, at, warnings).Check();
    at += line.size();
  }
}

void ReportKeys(const std::vector<std::string>& keys, const std::vector<std::size_t>& offsets,
                FileWarnings& warnings) {
  for (std::size_t i = 0; i < keys.size(); ++i) {
    if (keys[i].find_first_of(" \t") == std::string::npos) continue;
    warnings.Report(WarningKind::kKeyWithBlank, offsets[i], keys[i],
                    "the key has a blank, which is read as a part of it");
  }
}

}  // namespace tarvel
