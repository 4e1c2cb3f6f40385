// SPDX-License-Identifier: MIT
#include "app/operations.h"

#include <algorithm>

namespace tarvel {

namespace {

constexpr bool All(bool (*test)(const Operation&)) {
  return std::all_of(kOperations.begin(), kOperations.end(), test);
}

static_assert(All([](const Operation& row) {
                return !row.button.empty() && !row.batch_name.empty() && !row.description.empty() &&
                       !row.error_caption.empty() && !row.no_memory.empty();
              }),
              "a row of kOperations lacks its button, batch_name, description, error_caption or "
              "no_memory");
static_assert(All([](const Operation& row) { return !row.help.empty(); }),
              "a row of kOperations lacks its help text: it belongs into app/texts.h");
static_assert(All([](const Operation& row) { return !row.outputs.empty(); }),
              "a row of kOperations lacks its outputs");
static_assert(All([](const Operation& row) {
                return std::all_of(row.outputs.begin(), row.outputs.end(), HasRow);
              }),
              "an output of a row of kOperations lacks its row in kOutputRows (core/file_names.h)");

constexpr std::size_t CountOutputs() {
  std::size_t count = 0;
  for (const Operation& row : kOperations) count += row.outputs.size();
  return count;
}
static_assert(CountOutputs() == kOutputRows.size(),
              "each row of kOutputRows (core/file_names.h) belongs to one row of kOperations");

}  // namespace

const Operation* FindOperation(int code) {
  for (const Operation& operation : kOperations) {
    if (static_cast<int>(operation.code) == code) return &operation;
  }
  return nullptr;
}

}  // namespace tarvel
