// SPDX-License-Identifier: MIT
#include "core/run_files.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include "core/file_places.h"
#include "core/pending_file.h"

namespace tarvel {

/// Writes into a new file, which stays with the run.
class RunFiles::Writer final : public ByteSink {
 public:
  Writer(std::shared_ptr<ByteSink> sink, bool& failed) : sink_(std::move(sink)), failed_(failed) {}
  std::string Write(std::string_view bytes) override { return Noted(sink_->Write(bytes)); }
  std::string Close() override { return Noted(sink_->Close()); }

 private:
  std::string Noted(std::string error) {
    failed_ = failed_ || !error.empty();
    return error;
  }
  std::shared_ptr<ByteSink> sink_;
  bool& failed_;
};

std::unique_ptr<ByteSource> RunFiles::OpenSource(const std::string& path, ReadMode mode) {
  for (const NewFile& file : new_files_) {
    if (file.path != path) continue;
    const std::string pending = file.sink->PendingPath();
    return files_.OpenSource(pending.empty() ? path : pending, mode);
  }
  std::unique_ptr<ByteSource> source = files_.OpenSource(path, mode);
  if (!source) return nullptr;
  if (const auto state = source->State()) read_.try_emplace(path, *state);
  return source;
}

std::unique_ptr<ByteSink> RunFiles::CreateSink(const std::string& path, CreateMode mode) {
  const bool taken = std::any_of(new_files_.begin(), new_files_.end(), [&](const NewFile& file) {
    return files_.IsSamePlace(path, file.path);
  });
  if (taken) {
    errno = EEXIST;
    return nullptr;
  }
  std::shared_ptr<ByteSink> sink = files_.CreatePending(path, mode);
  if (!sink) return nullptr;
  new_files_.push_back({path, sink});
  return std::make_unique<Writer>(std::move(sink), write_failed_);
}

std::string RunFiles::ChangedInput() const {
  for (const auto& [path, state] : read_) {
    if (files_.StateAt(path) != state) return path;
  }
  return {};
}

std::string RunFiles::PublishAll() {
  if (new_files_.empty()) return {};
  const PublishGuard guard(DirectoryOfFile(new_files_.front().path));
  std::stable_partition(new_files_.begin(), new_files_.end(),
                        [](const NewFile& file) { return !file.path.ends_with(".log"); });
  for (const auto step : {&ByteSink::MakeReady, &ByteSink::Publish}) {
    for (const NewFile& file : new_files_) {
      const std::string error = (file.sink.get()->*step)();
      if (!error.empty()) return "Could not write the file '" + file.path + "': " + error;
    }
  }
  return {};
}

std::string RunFiles::Publish() {
  std::string error;
  if (!write_failed_) {
    const std::string changed = ChangedInput();
    error = changed.empty()
                ? PublishAll()
                : "The file '" + changed + "' was changed during the run. No new file was written.";
  }
  Discard();
  return error;
}

void RunFiles::Discard() {
  new_files_.clear();
  read_.clear();
  write_failed_ = false;
}

}  // namespace tarvel
