// SPDX-License-Identifier: MIT
#include "batch/rekey_command.h"

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/entry_points.h"
#include "app/globals.h"
#include "app/reporter.h"
#include "app/run_operation.h"
#include "batch/request.h"
#include "core/file_names.h"
#include "core/file_places.h"
#include "ops/citations/key_map.h"
#include "warnings/tally.h"

namespace tarvel {

namespace {

constexpr std::string_view kSuffix = "_rekeyed";
constexpr std::string_view kNoMemory = "Not enough memory!";

using FileId = std::pair<std::uint64_t, std::uint64_t>;  // device and number

/// A document, and the path of the new one.
struct Document {
  std::string path;
  std::string new_path;
};

void PrintReason(const std::string& reason) {
  PrintOn(stderr, "tarvel-batch: " + EscapeControls(reason) + "\n");
}

int Refuse(const std::string& reason) {
  PrintReason(reason);
  return kWrongUsage;
}

std::string NewPath(const std::string& path, const std::string& directory) {
  const std::size_t name_start = path.rfind('/') + 1;  // npos + 1 is 0
  const std::string name = path.substr(name_start);
  const std::string new_name =
      InsertBeforeExtension(name, kSuffix).value_or(name + std::string(kSuffix));
  return directory.empty() ? path.substr(0, name_start) + new_name
                           : InDirectory(new_name, directory);
}

std::string CouldNotRead(const std::string& path) {
  return "could not read the document '" + path + "'" + ReasonNotRead(path);
}

/// Reads the map; returns why that fails, or nothing.
std::string ReadMap(const std::string& path, KeyMap& map) {
  std::optional<LineStream> lines = GlobalFiles().OpenLines(path, ReadMode::kRead);
  if (!lines) return "could not read the key map '" + path + "'" + ReasonNotRead(path);
  const std::size_t line = map.Read(lines->Bytes());
  if (line == 0) return {};
  return path + ":" + std::to_string(line) +
         ": not a line of a key map: an old key, a tab, a new key that LaTeX can read";
}

std::optional<FileId> IdAt(const std::string& path) {
  const std::optional<FileState> state = GlobalFiles().StateAt(path);
  return state ? std::optional(FileId{state->device, state->number}) : std::nullopt;
}

/// Finds the documents; returns why one cannot be taken, or nothing.
std::string FindDocuments(const BatchRequest& request, std::vector<Document>& documents) {
  for (std::size_t i = 1; i < request.files.size(); ++i) {
    const std::string& path = request.files[i];
    if (!GlobalFiles().OpenSource(path, ReadMode::kRead)) return CouldNotRead(path);
    documents.push_back({path, NewPath(path, request.output_directory)});
  }
  std::set<FileId> inputs;
  for (const std::string& path : request.files) {
    if (const auto id = IdAt(path)) inputs.insert(*id);
  }
  std::set<std::string> new_places;
  std::set<FileId> replaced;
  for (const Document& document : documents) {
    const std::string& path = document.new_path;
    const std::optional<FileId> id = IdAt(path);
    if (id && inputs.contains(*id)) {
      return "the new file '" + path + "' would replace a file that is read";
    }
    if (!new_places.insert(PlaceOfFile(path)).second || (id && !replaced.insert(*id).second)) {
      return "two documents would become the file '" + path + "'";
    }
  }
  return {};
}

void Warn(const std::string& text) { GlobalReporter().Warn("warning: " + EscapeControls(text)); }

void WarnOfMap(const KeyMap& map) {
  for (const std::string& key : map.Ambiguous()) {
    Warn("the map has several new keys for '" + key + "'; the first one is taken");
  }
  for (const std::string& key : map.Divided()) {
    Warn("two entries had the key '" + key + "': the first one still has it, but citations of '" +
         key + "' now lead to the other one, '" + *map.Find(key) + "'");
  }
}

/// Warns once of each command that looks like a citation and is not read.
void WarnOfUnread(const Tally& unread, const std::string& path, std::string_view document) {
  LineNumbers numbers(document);
  for (const auto& [command, found] : unread.ByCount()) {
    const std::string text =
        Quoted("\\" + std::string(command)) +
        " is not read, and its keys are not replaced, times: " + std::to_string(found.count) +
        "; add it to the list of --cite-commands";
    GlobalReporter().Warn(LineOf({.kind = WarningKind::kOtherCitation,
                                  .file = path,
                                  .line = numbers.At(found.first),
                                  .key = {},
                                  .text = text}));
  }
}

/// Writes a document with its new keys; false after a message.
bool Write(const Document& document, const KeyMap& map, const BatchRequest& request) {
  const auto lines = GlobalRun().files.OpenLines(document.path, ReadMode::kRead);
  if (!lines) {
    PrintReason(CouldNotRead(document.path));
    return false;
  }
  std::vector<std::string> names = request.citations.commands;
  names.emplace_back("all");
  Tally unread;
  const RekeyedDocument rekeyed = ReplaceKeys(
      lines->Bytes(), CiteCommands(names), map,
      [&](std::string_view command, std::size_t offset) { unread.Add(command, offset); });
  if (!request.quiet) WarnOfUnread(unread, document.path, lines->Bytes());
  const auto output = CreateOutput(GlobalRun(), document.new_path, CreateMode::kWrite);
  if (output) output->Write(rekeyed.text);
  if (!output || !output->Close()) {
    PrintReason("could not write the file '" + document.new_path + "'" +
                (output ? ": " + output->Error() : std::string()));
    return false;
  }
  if (!request.quiet) {
    PrintOn(stderr, EscapeControls(document.new_path + ": " + std::to_string(rekeyed.replaced) +
                                   (rekeyed.replaced == 1 ? " key" : " keys") + " replaced") +
                        "\n");
  }
  return true;
}

}  // namespace

int RunRekeyCommand(const BatchRequest& request) {
  KeyMap map;
  if (const std::string reason = ReadMap(request.files[0], map); !reason.empty()) {
    return Refuse(reason);
  }
  std::vector<Document> documents;
  if (const std::string reason = FindDocuments(request, documents); !reason.empty()) {
    return Refuse(reason);
  }
  if (!request.quiet) WarnOfMap(map);
  bool good = true;
  for (const Document& document : documents) {
    const auto write = [&] { return Write(document, map, request) ? 1 : 0; };
    good = WholeRun().Run(write, kNoMemory) == 1 && good;
  }
  return good ? 0 : 1;
}

}  // namespace tarvel
