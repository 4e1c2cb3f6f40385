// SPDX-License-Identifier: MIT
#include "tests/support/faulty_files.h"

#include <algorithm>
#include <utility>

namespace tarvel::testing {

namespace {

using Call = FaultyFiles::Call;

class FaultySource final : public ByteSource {
 public:
  FaultySource(FaultyFiles& files, std::unique_ptr<ByteSource> source)
      : files_(files), source_(std::move(source)) {}
  std::ptrdiff_t Read(char* buffer, std::size_t size) override {
    return files_.Fails(Call::kRead) ? -1 : source_->Read(buffer, size);
  }
  std::size_t Size() const override { return source_->Size(); }

 private:
  FaultyFiles& files_;
  std::unique_ptr<ByteSource> source_;
};

class FaultySink final : public ByteSink {
 public:
  FaultySink(FaultyFiles& files, std::unique_ptr<ByteSink> sink)
      : files_(files), sink_(std::move(sink)) {}

  /// What fails has written half of the bytes, or as many as the disk still takes.
  std::string Write(std::string_view bytes) override {
    const bool fails = files_.Fails(Call::kWrite);
    const std::size_t fits = std::min(files_.room, fails ? bytes.size() / 2 : bytes.size());
    if (files_.room != FaultyFiles::kNever) files_.room -= fits;
    const std::string error = sink_->Write(bytes.substr(0, fits));
    if (fails) return "Input/output error";
    return fits < bytes.size() ? "No space left on device" : error;
  }
  std::string Close() override {
    const bool fails = files_.Fails(Call::kClose);
    const std::string error = sink_->Close();
    return fails ? "Disk quota exceeded" : error;
  }

 private:
  FaultyFiles& files_;
  std::unique_ptr<ByteSink> sink_;
};

}  // namespace

bool FaultyFiles::Fails(Call call) {
  calls.push_back(call);
  return calls.size() - 1 == fail_at;
}

std::unique_ptr<ByteSource> FaultyFiles::OpenSource(const std::string& path, ReadMode mode) {
  if (Fails(Call::kOpen)) return nullptr;
  std::unique_ptr<ByteSource> source = files_.OpenSource(path, mode);
  if (!source) return nullptr;
  return std::make_unique<FaultySource>(*this, std::move(source));
}

std::unique_ptr<ByteSink> FaultyFiles::CreateSink(const std::string& path, CreateMode mode) {
  if (Fails(Call::kCreate)) return nullptr;
  std::unique_ptr<ByteSink> sink = files_.CreateSink(path, mode);
  if (!sink) return nullptr;
  return std::make_unique<FaultySink>(*this, std::move(sink));
}

}  // namespace tarvel::testing
