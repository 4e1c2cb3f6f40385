// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "core/line_stream.h"
#include "core/output_file.h"
#include "core/reports.h"
#include "ops/entries/cited_entries.h"
#include "warnings/library_scan.h"

namespace tarvel {

/// Adds the keys that a LaTeX document cites with "\cite{" to `keys`, in the order of their first
/// citation and each once; returns how many `keys` holds then. Lines are read with at most 999
/// bytes; a command that is cut by that limit is missed. Blanks belong to a key. The keys are taken
/// from the first "\cite" of a line that holds a "\cite{", so "\citep{x} \cite{y}" cites both. For
/// each key that it adds it adds to `offsets` the offset of a byte of its line.
int ScanCitations(LineStream& document, std::vector<std::string>& keys,
                  std::vector<std::size_t>* offsets = nullptr);

/// What is called during a selection of entries. Each may be empty.
struct SelectionObserver {
  /// Called with each range of the library that matters for the cited keys, in their order.
  std::function<void(const LibraryRange&)> on_range = {};
  /// Called next, with the offsets of the entries.
  std::function<void(const CitedEntries&)> on_found = {};
  /// Then called with the number of each key that has no entry.
  std::function<void(std::size_t)> on_missing = {};
  /// Called with the number of the key and the offset of its entry when the library ends with the
  /// head of that: the selection has failed.
  std::function<void(std::size_t key, std::size_t head)> on_end = {};
};

/// Copies the entries of the keys (each key once) to `output`, in their order: for each the first
/// entry of the library on whose head "{", the key and "," stand. Returns the number of keys that
/// have one; 0 after a `PrintError` when the library ends with the head of such an entry.
int SelectAndWriteBibTeXEntriesIntoNewFile(Reporter& reporter, OutputFile& output,
                                           LineStream& library,
                                           const std::vector<std::string>& keys,
                                           const SelectionObserver& observer = {});

}  // namespace tarvel
