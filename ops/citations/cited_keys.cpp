// SPDX-License-Identifier: MIT
#include "ops/citations/cited_keys.h"

#include <optional>
#include <unordered_map>
#include <utility>

#include "core/text_primitives.h"
#include "ops/entries/entry_warnings.h"
#include "warnings/citation_warnings.h"

namespace tarvel {

namespace {

/// LaTeX itself cannot have as many files open at once.
constexpr int kDeepest = 100;

std::string_view DirectoryOf(std::string_view path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string_view::npos ? std::string_view() : path.substr(0, slash + 1);
}

/// Where LaTeX looks for a file that is asked for by `name`: its own order.
std::vector<std::string> NamesOf(std::string_view command, std::string_view name) {
  std::vector<std::string> names{std::string(name).append(".tex")};
  if (command != "include") names.emplace_back(name);
  return names;
}

/// The name of a command with its "\".
std::string AsCommand(std::string_view name) { return std::string("\\").append(name); }

/// The entries of a library that a document needs neither itself nor as the parents, and the
/// parents' parents, of what it cites.
class UncitedEntries {
 public:
  /// Adds the entry whose first line ends at `offset`; `text` goes from that line to the next
  /// entry.
  void Add(const std::string& key, std::size_t offset, bool is_cited, std::string_view text) {
    const std::optional<std::string_view> parent = ParentOf(text);
    if (!is_cited) uncited_.emplace_back(key, offset);
    if (!parent) return;
    if (is_cited) parents_.emplace_back(*parent);
    parent_of_.try_emplace(InCapitals(key), *parent);
  }

  /// Reports each key once, with its first entry.
  void Report(FileWarnings& warnings) {
    KeysAnyCase needed;
    while (!parents_.empty()) {
      const std::string_view parent = parents_.back();
      parents_.pop_back();
      if (needed.Has(parent)) continue;
      needed.Add(parent);
      const auto next = parent_of_.find(InCapitals(parent));
      if (next != parent_of_.end()) parents_.push_back(next->second);
    }
    std::unordered_set<std::string_view, KeyedStringHash> reported;
    for (const auto& [key, offset] : uncited_) {
      if (needed.Has(key) || !reported.insert(key).second) continue;
      warnings.Report(WarningKind::kUncitedEntry, offset, key,
                      "the document does not cite the entry");
    }
  }

 private:
  std::vector<std::pair<std::string, std::size_t>> uncited_;  // keys and offsets
  std::vector<std::string_view> parents_;                     // of the cited entries
  std::unordered_map<std::string, std::string_view, KeyedStringHash> parent_of_;  // in capitals
};

}  // namespace

CitedKeys::Document& CitedKeys::Add(std::string path, LineStream lines) {
  documents_.push_back({std::move(path), std::move(lines), FileWarnings(nullptr, {}, {})});
  Document& document = documents_.back();
  document.warnings = WarningsOf(run_, document.path, document.lines);
  return document;
}

void CitedKeys::ReadPlainly(LineStream lines, Scanner scan) {
  Document& document = Add(run_.first_path, std::move(lines));
  std::vector<std::size_t> offsets;
  scan(document.lines, keys_, &offsets);
  for (const std::size_t offset : offsets) places_.push_back({&document, offset});
  ReportCitations(document.lines.Bytes(), document.warnings);
  ReportKeys(keys_, offsets, document.warnings);
  if (!document.warnings.Wanted()) return;
  (void)MarkRead(run_.first_path);
  DocumentObserver observer;
  FollowFiles(document, observer);
  ReadDocument(document.lines.Bytes(), commands_, observer);
}

void CitedKeys::ReadLikeLaTeX(LineStream lines) {
  (void)MarkRead(run_.first_path);  // so that a file that includes it does not read it again
  Read(Add(run_.first_path, std::move(lines)));
}

void CitedKeys::Read(Document& document) {
  ++depth_;
  DocumentObserver observer;
  observer.on_key = [&](const KeyInDocument& key) {
    if (!known_.insert(key.text).second) return;
    if (key.text == "*") {
      all_ = Place{&document, key.begin};
      return;
    }
    keys_.push_back(key.text);
    places_.push_back({&document, key.begin});
  };
  if ((run_.citations.follow || document.warnings.Wanted()) && depth_ < kDeepest) {
    FollowFiles(document, observer);
  }
  observer.on_other = [&](std::string_view command, std::size_t offset) {
    document.warnings.Report(
        WarningKind::kOtherCitation, offset, {},
        Quoted(AsCommand(command)) + " is not read; add it to the list of --cite-commands");
  };
  ReadDocument(document.lines.Bytes(), commands_, observer);
  --depth_;
}

void CitedKeys::FollowFiles(Document& document, DocumentObserver& observer) {
  observer.on_file = [&](std::string_view command, std::string_view name, std::size_t offset) {
    Follow(document, command, name, offset);
  };
}

/// Reads the file that the command in `from` includes, which is looked for where LaTeX looks.
void CitedKeys::Follow(Document& from, std::string_view command, std::string_view name,
                       std::size_t offset) {
  const bool absolute = name.starts_with('/');
  for (const std::string_view directory :
       {std::string_view(run_.citations.directory), DirectoryOf(from.path)}) {
    for (const std::string& file : NamesOf(command, name)) {
      const std::string path = absolute ? file : std::string(directory).append(file);
      if (TakeFile(from, command, name, offset, path)) return;
    }
  }
  if (!run_.citations.follow) return;
  from.warnings.Report(WarningKind::kOtherCitation, offset, {},
                       {"the file ", Quoted(name), " of ", Quoted(AsCommand(command)),
                        " was not found, and its citations are missing"});
}

/// Reads the file at `path`, unless it was read before: then it cites nothing new. Where included
/// files are not followed, only reports that it has citations. False when it cannot be read.
bool CitedKeys::TakeFile(Document& from, std::string_view command, std::string_view name,
                         std::size_t offset, const std::string& path) {
  const std::optional<bool> is_new = MarkRead(path);
  if (!is_new) return false;
  if (!*is_new) return true;
  if (run_.citations.follow && run_.files.Protect(path)) return true;  // the run fails
  std::optional<LineStream> lines =
      run_.citations.follow ? run_.files.OpenLines(path, ReadMode::kRead) : run_.files.Peek(path);
  if (!lines) return false;
  Document& document = Add(path, std::move(*lines));
  if (run_.citations.follow) {
    Read(document);
    return true;
  }
  ReportUnread(document, [&] {
    from.warnings.Report(
        WarningKind::kOtherCitation, offset, {},
        {"the citations in the file ", Quoted(name), " of ", Quoted(AsCommand(command)),
         " are not read; tarvel-batch reads them with --follow"});
  });
  return true;
}

/// Calls `report` once if the document has citations, and does the same for the files that it
/// includes.
void CitedKeys::ReportUnread(Document& unread, const std::function<void()>& report) {
  ++depth_;
  bool is_reported = false;
  const auto note = [&] {
    if (!std::exchange(is_reported, true)) report();
  };
  DocumentObserver observer;
  observer.on_key = [&](const KeyInDocument& /*key*/) { note(); };
  observer.on_other = [&](std::string_view /*command*/, std::size_t /*offset*/) { note(); };
  if (depth_ < kDeepest) FollowFiles(unread, observer);
  ReadDocument(unread.lines.Bytes(), commands_, observer);
  --depth_;
}

std::optional<bool> CitedKeys::MarkRead(const std::string& path) {
  const std::optional<FileState> file = run_.files.StateAt(path);
  if (!file) return std::nullopt;
  return read_.insert({file->device, file->number}).second;
}

void CitedKeys::ReadLibrary(LineStream lines) {
  Document& library = Add(run_.second_path, std::move(lines));
  known_.insert(keys_.begin(), keys_.end());
  struct Head {
    std::string key;
    std::size_t begin;
    std::size_t last;  // the offset of the line's last byte
  };
  std::optional<Head> open;
  UncitedEntries uncited;
  const auto end_entry = [&](std::size_t end) {
    if (!open || all_) return;
    uncited.Add(open->key, open->last, known_.contains(open->key),
                library.lines.Bytes().substr(open->begin, end - open->begin));
  };
  Line line;
  while (ReadLineWith(library.lines, '@', limits::kShortLine, line)) {
    const std::size_t after = library.lines.Position();
    if (!IsKnownEntry(line) || line.Text().find(',') == std::string_view::npos) continue;
    Head head{std::string(CopyUntilChar(line.Text(), '{', ',')), after - line.Text().size(),
              after - 1};
    if (head.key.empty()) continue;
    end_entry(head.begin);
    if (all_ && known_.insert(head.key).second) {
      keys_.push_back(head.key);
      places_.push_back(*all_);
    }
    open = std::move(head);
  }
  end_entry(library.lines.Bytes().size());
  uncited.Report(library.warnings);
}

void CitedKeys::ReportNone() {
  if (!run_.warnings) return;
  run_.warnings->Report({.kind = WarningKind::kOtherCitation,
                         .file = run_.first_path,
                         .key = {},
                         .text = "no citation was read from the document: there is nothing to "
                                 "extract"});
}

void CitedKeys::Report(WarningKind kind, std::size_t i, std::string_view text) {
  places_[i].document->warnings.Report(kind, places_[i].offset, keys_[i], text);
}

}  // namespace tarvel
