// SPDX-License-Identifier: MIT
#include "ops/large_outputs.h"

#include <algorithm>

#include "core/line_stream.h"

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

void GrowingOutput::Warn(std::uint64_t read, std::uint64_t size) {
  const std::uint64_t estimate = file_.Written() / (read + 1) * size;
  most_ = 10 * estimate;
  WarnOfLargeOutput(run_, file_.Path(), estimate, why_);
}

void KeptStrings::AddUpTo(std::size_t entry) {
  for (; next_ < entry; next_ = library_.find(marker_, next_ + 1)) bytes_ += entry - next_;
}

void NamedKeys::Take(const EntryHead& entry) {
  AddLast(entry.offset);
  key_size_ = std::min(entry.key.size(), limits::kLongLine);
  begin_ = entry.offset;
}

std::uint64_t NamedKeys::Bytes() {
  AddLast(library_.size());
  key_size_ = 0;
  return bytes_;
}

/// Adds the entry that was taken last, which ends at `end`. Keys of a usual size are not looked at:
/// with them a log stays about as large as the library.
void NamedKeys::AddLast(std::size_t end) {
  constexpr std::size_t kLongKey = 500;
  if (key_size_ < kLongKey) return;
  bytes_ += std::uint64_t{key_size_} * count_(library_.substr(begin_, end - begin_));
}

}  // namespace tarvel
