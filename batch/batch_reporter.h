// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdio>
#include <functional>
#include <string_view>

#include "core/line_stream.h"
#include "core/reports.h"

namespace tarvel {

/// Shows how far a long run has come: a percentage on one line of a terminal, which it removes
/// again. Nothing is shown in the first two seconds.
class ProgressLine final : public ReadingObserver {
 public:
  using Clock = std::function<std::chrono::steady_clock::time_point()>;

  /// Writes to `stream`; null for no progress. The run begins now.
  explicit ProgressLine(std::FILE* stream, Clock clock = std::chrono::steady_clock::now);
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;
  ~ProgressLine() override { Remove(); }

  void OnRead(std::size_t position, std::size_t size) override;
  /// Removes the line, so that something else can be printed. The next call of `OnRead` may show
  /// it again.
  void Remove();

 private:
  std::FILE* stream_;
  Clock clock_;
  std::chrono::steady_clock::time_point next_;  // not shown before
  int shown_ = -1;                              // the percentage that stands there; -1: none
};

/// The reporter of the batch program: the terminal, without the line of progress in between.
class BatchReporter final : public TerminalReporter {
 public:
  /// `quiet`: no box of a run that succeeds is shown. `progress` must outlive this.
  BatchReporter(bool quiet, ProgressLine& progress)
      : TerminalReporter("tarvel-batch"), quiet_(quiet), progress_(progress) {}
  int Print(std::string_view text) override;
  void Box(std::string_view message, std::string_view caption) override;
  void Warn(std::string_view text) override;

 private:
  bool quiet_;
  ProgressLine& progress_;
};

}  // namespace tarvel
