// SPDX-License-Identifier: MIT
#include "core/run_files.h"

#include <algorithm>
#include <cerrno>
#include <set>
#include <utility>

#include "core/file_places.h"
#include "core/pending_file.h"

namespace tarvel {

/// Writes into a new file, which stays with the run.
class RunFiles::Writer final : public ByteSink {
 public:
  Writer(const NewFile& file, bool& failed)
      : sink_(file.sink), is_protected_(file.is_protected), failed_(failed) {}
  std::string Write(std::string_view bytes) override {
    return Noted(*is_protected_ ? kProtected : sink_->Write(bytes));
  }
  std::string Close() override { return Noted(*is_protected_ ? kProtected : sink_->Close()); }

 private:
  static constexpr const char* kProtected = "the run reads it";

  std::string Noted(std::string error) {
    failed_ = failed_ || !error.empty();
    return error;
  }
  std::shared_ptr<ByteSink> sink_;
  std::shared_ptr<bool> is_protected_;
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
  ProtectFromLinks(path);
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
  // A link to it. The file itself may be one that an earlier run has written, and is replaced.
  if (sink->PendingPath().empty() && HasRead(path)) {
    errno = EBUSY;
    return nullptr;
  }
  new_files_.push_back({path, std::move(sink), std::make_shared<bool>(false)});
  return std::make_unique<Writer>(new_files_.back(), write_failed_);
}

/// Keeps an output that is a link to the file at `path` from being written.
void RunFiles::ProtectFromLinks(const std::string& path) {
  for (const NewFile& file : new_files_) {
    const bool is_link = file.sink->PendingPath().empty() && files_.IsSameFile(path, file.path);
    if (is_link) *file.is_protected = true;
  }
}

bool RunFiles::HasRead(const std::string& path) const {
  return std::any_of(read_.begin(), read_.end(),
                     [&](const auto& file) { return files_.IsSameFile(path, file.first); });
}

bool RunFiles::Protect(const std::string& path) {
  bool any = false;
  for (const NewFile& file : new_files_) {
    if (!files_.IsSamePlace(path, file.path)) continue;
    *file.is_protected = true;
    any = true;
  }
  return any;
}

void RunFiles::Drop(const std::string& path) {
  std::erase_if(new_files_, [&](const NewFile& file) {
    const bool is_dropped = file.path == path;
    if (is_dropped) *file.is_protected = true;
    return is_dropped;
  });
}

std::string RunFiles::ChangedInput() const {
  for (const auto& [path, state] : read_) {
    if (files_.StateAt(path) != state) return path;
  }
  return {};
}

/// The message that nothing is published because the file at `changed` was changed.
std::string RunFiles::NotPublished(const std::string& changed) const {
  std::string in_place;
  for (const NewFile& file : new_files_) {
    if (!file.sink->PendingPath().empty()) continue;
    in_place.append(in_place.empty() ? ", except in place: '" : ", '")
        .append(file.path)
        .append("'");
  }
  return "The file '" + changed + "' was changed during the run. No new file was written" +
         in_place + ".";
}

std::string RunFiles::PublishAll() {
  if (new_files_.empty()) return {};
  std::set<std::string> directories;
  for (const NewFile& file : new_files_) {
    if (!file.sink->PendingPath().empty()) directories.insert(DirectoryOfFile(file.path));
  }
  const PublishGuard guard(directories);
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
    error = changed.empty() ? PublishAll() : NotPublished(changed);
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
