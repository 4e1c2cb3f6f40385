// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "ops/prepare/prepare_log.h"
#include "ops/run_context.h"

namespace tarvel {

struct PrepareOptions {
  bool keep_all = false;  // no tag is left out because its line would be taken for another's
};

/// Where the first parts of a long library and of a long log are written, so that they take no
/// memory. Without a writer everything is in the result.
struct PreparedWriters {
  std::function<void(std::string_view)> library;
  std::function<void(std::string_view)> log;
};

/// A prepared library and what was done, both without the headers of files.
struct Prepared {
  std::string library;       // what was not written before
  std::string log;           // likewise
  std::size_t entries = 0;   // written
  std::size_t left_out = 0;  // tags that stand in the log only
  std::size_t unread = 0;    // texts that break BibTeX's grammar
};

/// Brings a library that BibTeX reads into the form that all operations read correctly: known
/// types, one tag per line with its value in braces, "}" on a line of its own, and an empty line
/// after each entry. Whatever cannot stand in the new library stands in the log. `warn` is called
/// for what the user has to mend; its views last as long as the call. Takes time linear in the
/// bytes that it reads and writes.
Prepared PrepareLibrary(std::string_view bytes, const PrepareOptions& options,
                        const std::function<void(const PrepareWarning&)>& warn,
                        const PreparedWriters& writers = {});

/// Prepares the library of the run's first path: writes "_prepared.bib" and "_prepared.log" beside
/// it. Returns 1 on success, 0 after a failure that it reported with `PrintError`.
int RunPrepare(const RunContext& run, const PrepareOptions& options = {});

/// The path of the prepared library, beside `library` or in `directory` unless that is empty. Empty
/// when the library's path (with a directory: its name) holds no ".".
std::string PreparedPath(const std::string& library, const std::string& directory = {});
/// The same for the log.
std::string PreparedLogPath(const std::string& library, const std::string& directory = {});

}  // namespace tarvel
