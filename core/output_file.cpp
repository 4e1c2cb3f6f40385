// SPDX-License-Identifier: MIT
#include "core/output_file.h"

#include <utility>

namespace tarvel {

namespace {

constexpr std::size_t kBufferSize = std::size_t{1} << 17;

}  // namespace

OutputFile::OutputFile(std::unique_ptr<ByteSink> sink, std::string path)
    : sink_(std::move(sink)), path_(std::move(path)) {
  buffer_.reserve(kBufferSize);
}

OutputFile::~OutputFile() {
  (void)Close();  // a run that matters has closed its files and reported what failed
}

void OutputFile::Flush() {
  if (error_.empty() && !buffer_.empty()) error_ = sink_->Write(buffer_);
  buffer_.clear();
}

void OutputFile::Write(std::string_view bytes) {
  if (!error_.empty()) return;  // a run on a full disk ends soon
  if (bytes.size() > kBufferSize - buffer_.size()) {
    Flush();
    if (bytes.size() >= kBufferSize) {
      if (error_.empty()) error_ = sink_->Write(bytes);
      return;
    }
  }
  buffer_.append(bytes);
}

void OutputFile::Write(std::initializer_list<std::string_view> parts) {
  for (const std::string_view part : parts) Write(part);
}

bool OutputFile::Close() {
  if (sink_) {
    Flush();
    const std::string error = sink_->Close();
    if (error_.empty()) error_ = error;
    sink_.reset();
  }
  return error_.empty();
}

}  // namespace tarvel
