// SPDX-License-Identifier: MIT
#include "batch/batch_reporter.h"

#include <algorithm>
#include <array>
#include <utility>

#include "app/texts.h"

namespace tarvel {

namespace {

constexpr std::chrono::seconds kSilence{2};
constexpr std::chrono::milliseconds kPause{250};  // between two changes of the line

/// The captions of boxes that report no failure.
constexpr std::array<std::string_view, 6> kNotes{
    NoteTitle, DoneText, "No support !", "Correct files?", "File conversion", "Prepare"};

bool IsNote(std::string_view caption) {
  return std::find(kNotes.begin(), kNotes.end(), caption) != kNotes.end();
}

}  // namespace

ProgressLine::ProgressLine(std::FILE* stream, Clock clock)
    : stream_(stream), clock_(std::move(clock)), next_(clock_() + kSilence) {}

void ProgressLine::OnRead(std::size_t position, std::size_t size) {
  if (!stream_ || size == 0) return;
  const auto now = clock_();
  if (now < next_) return;
  next_ = now + kPause;
  const int percent =
      static_cast<int>(static_cast<double>(position) * 100.0 / static_cast<double>(size));
  if (percent == shown_) return;
  shown_ = percent;
  std::fprintf(stream_, "\rtarvel-batch: %3d %%", percent);
  std::fflush(stream_);
}

void ProgressLine::Remove() {
  if (shown_ < 0) return;
  shown_ = -1;
  PrintOn(stream_, "\r                    \r");
}

int BatchReporter::Print(std::string_view text) {
  progress_.Remove();
  return TerminalReporter::Print(text);
}

void BatchReporter::Box(std::string_view message, std::string_view caption) {
  progress_.Remove();
  if (!quiet_ || !IsNote(caption)) TerminalReporter::Box(message, caption);
}

void BatchReporter::Warn(std::string_view text) {
  progress_.Remove();
  TerminalReporter::Warn(text);
}

}  // namespace tarvel
