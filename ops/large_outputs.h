// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "ops/run_context.h"

namespace tarvel {

/// The size in bytes from which on a file is worth a warning before it is written.
inline constexpr std::uint64_t kLargeOutput = 10'000'000;

/// Warns that the file at `path` may get about `bytes` bytes, for the reason `why`, when that is
/// `kLargeOutput` or more and anybody wants warnings. For what grows with the square of a library.
void WarnOfLargeOutput(const RunContext& run, const std::string& path, std::uint64_t bytes,
                       std::string_view why);

/// Adds up what Clean tags writes of definitions of strings that it keeps: each is copied with all
/// that stands between it and the next entry.
class KeptStrings {
 public:
  /// `library`, its bytes, must outlive this; `marker` begins a definition.
  KeptStrings(std::string_view library, std::string_view marker)
      : library_(library), marker_(marker), next_(library.find(marker)) {}
  /// Takes the offsets of the entries in their order.
  void AddUpTo(std::size_t entry);
  std::uint64_t Bytes() const { return bytes_; }

 private:
  std::string_view library_;
  std::string_view marker_;
  std::size_t next_;
  std::uint64_t bytes_ = 0;
};

}  // namespace tarvel
