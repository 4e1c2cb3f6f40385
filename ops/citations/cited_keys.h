// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <list>
#include <optional>
#include <set>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include "core/keyed_hash.h"
#include "ops/citations/cite_commands.h"
#include "ops/citations/document_reader.h"
#include "ops/run_context.h"
#include "warnings/warnings.h"

namespace tarvel {

/// The keys that a document cites, each once, in the order of their first citation, and where.
class CitedKeys {
 public:
  explicit CitedKeys(const RunContext& run) : run_(run) {}

  /// Reads the run's document, and with `CitationRules::follow` what it includes, as LaTeX does.
  void ReadLikeLaTeX(LineStream document);
  /// Adds keys to the first list, and to the second for each the offset of a byte of its line.
  using Scanner = int (*)(LineStream& document, std::vector<std::string>& keys,
                          std::vector<std::size_t>* places);
  /// Reads the run's document alone, with `scan`.
  void ReadPlainly(LineStream document, Scanner scan);

  /// Whether the keys of the whole library are wanted: all are asked for, or a report of those that
  /// are not cited.
  bool NeedsLibrary() const { return all_.has_value() || run_.citations.report_uncited; }
  /// Takes the keys of the library that `\nocite{*}` asks for, or reports those that are not cited.
  void ReadLibrary(LineStream library);

  const std::vector<std::string>& Keys() const { return keys_; }
  /// Reports that the document cites nothing, for a run that fails because of that.
  void ReportNone();
  /// Reports something about key number `i` where it is cited first.
  void Report(WarningKind kind, std::size_t i, std::string_view text);

 private:
  /// A document that was read. Its warnings look at its bytes.
  struct Document {
    std::string path;
    LineStream lines;
    FileWarnings warnings;
  };
  struct Place {
    Document* document;
    std::size_t offset;
  };

  Document& Add(std::string path, LineStream lines);
  void Read(Document& document);
  void FollowFiles(Document& document, DocumentObserver& observer);
  void Follow(Document& from, std::string_view command, std::string_view name, std::size_t offset);
  bool TakeFile(Document& from, std::string_view command, std::string_view name, std::size_t offset,
                const std::string& path);
  void ReportUnread(Document& unread, const std::function<void()>& report);
  /// Notes that the file at `path` is read; returns whether it was not noted before, and nothing
  /// when there is no such file.
  std::optional<bool> MarkRead(const std::string& path);

  const RunContext& run_;
  std::list<Document> documents_;
  std::vector<std::string> keys_;
  std::vector<Place> places_;
  std::unordered_set<std::string, KeyedStringHash> known_;
  std::set<std::pair<std::uint64_t, std::uint64_t>> read_;  // files: their devices and numbers
  std::optional<Place> all_;                                // where all entries are asked for
  CiteCommands commands_{run_.citations.commands};
  int depth_ = 0;
};

}  // namespace tarvel
