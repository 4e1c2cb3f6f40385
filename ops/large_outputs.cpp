// SPDX-License-Identifier: MIT
#include "ops/large_outputs.h"

namespace tarvel {

void WarnOfLargeOutput(const RunContext& run, const std::string& path, std::uint64_t bytes,
                       std::string_view why) {
  constexpr std::uint64_t kMegabyte = 1'000'000;
  if (!run.warnings || bytes < kLargeOutput) return;
  const std::string text = "may become large, up to about " + std::to_string(bytes / kMegabyte) +
                           " MB: " + std::string(why);
  run.warnings->Report(
      {.kind = WarningKind::kLargeOutput, .file = path, .line = 0, .key = {}, .text = text});
}

void KeptStrings::AddUpTo(std::size_t entry) {
  for (; next_ < entry; next_ = library_.find(marker_, next_ + 1)) bytes_ += entry - next_;
}

}  // namespace tarvel
