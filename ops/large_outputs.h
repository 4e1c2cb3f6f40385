// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "core/output_file.h"
#include "ops/run_context.h"
#include "warnings/library_scan.h"

namespace tarvel {

/// The size in bytes from which on a file is worth a warning before it is written.
inline constexpr std::uint64_t kLargeOutput = 10'000'000;

/// Warns that the file at `path` may get about `bytes` bytes, for the reason `why`, when that is
/// `kLargeOutput` or more and anybody wants warnings. For what grows with the square of a library.
void WarnOfLargeOutput(const RunContext& run, const std::string& path, std::uint64_t bytes,
                       std::string_view why);

/// Watches a new file that may grow with the square of the library. Warns when it has
/// `kLargeOutput` bytes more than `usual`. The final size is not known yet: it is estimated from
/// how much of the library has been read. Warns again at ten times the estimate.
class GrowingOutput {
 public:
  /// `run`, `file` and what `why` shows must outlive this.
  GrowingOutput(const RunContext& run, const OutputFile& file, std::uint64_t usual,
                std::string_view why)
      : run_(run), file_(file), most_(usual + kLargeOutput), why_(why) {}
  /// Looks at the file, where `read` bytes of `size` have been read.
  void Look(std::size_t read, std::size_t size) {
    if (file_.Written() >= most_) Warn(read, size);
  }

 private:
  void Warn(std::uint64_t read, std::uint64_t size);

  const RunContext& run_;
  const OutputFile& file_;
  std::uint64_t most_;
  std::string_view why_;
};

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

/// The reason for an output that shows very long keys or values.
inline constexpr std::string_view kLongValues = "it repeats very long keys or values";

/// The reason for a log that `NamedKeys` finds large: it repeats very long keys.
inline constexpr std::string_view kLongKeys = "it repeats very long keys";

/// Adds up the size of a log that repeats the keys of entries. It is large only when a key is very
/// long: text that is taken for a key because its comma is far away.
class NamedKeys {
 public:
  /// `library`, its bytes, must outlive this. `count` gives how often the log names the key of an
  /// entry with this text, or more.
  NamedKeys(std::string_view library, std::function<std::size_t(std::string_view)> count)
      : library_(library), count_(std::move(count)) {}
  /// Takes the entries in their order.
  void Take(const EntryHead& entry);
  /// The sum, when all entries are taken.
  std::uint64_t Bytes();

 private:
  void AddLast(std::size_t end);

  std::string_view library_;
  std::function<std::size_t(std::string_view)> count_;
  std::size_t key_size_ = 0;  // of the entry that was taken last
  std::size_t begin_ = 0;
  std::uint64_t bytes_ = 0;
};

}  // namespace tarvel
