// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "app/settings.h"

namespace tarvel::testing {

/// The journal list in tables of rows, twenty rows of variations a journal, as they are filled and
/// scanned from their first rows.
struct PlainJournalTable {
  explicit PlainJournalTable(std::size_t most);

  /// The number of the failure, 5 to 8, or 0.
  int Read(std::string_view list);
  bool Find(const std::string& value, std::string& matched, std::size_t& index) const;

  std::size_t most;
  std::size_t read = 0;
  std::vector<std::string> full_names;
  std::vector<std::string> abbreviations;
  std::vector<std::string> variations;  // those of journal j from row 20j on
  std::vector<int> counts;
};

/// What Journals gives, prints and writes when all files can be opened. A table of fewer journals
/// than 20,000 serves shorter lists just as well.
struct PlainJournals {
  int result = 0;
  std::string printed;
  std::string library;
  std::string log;
};

PlainJournals PlainRunJournals(const std::string& library, std::string_view list,
                               const Settings& settings, const std::string& new_path,
                               std::size_t most = 20000);

}  // namespace tarvel::testing
