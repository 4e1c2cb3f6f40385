// SPDX-License-Identifier: MIT
#include "core/output_file.h"

#include <utility>

namespace tarvel {

OutputFile::OutputFile(std::unique_ptr<ByteSink> sink, std::string path)
    : sink_(std::move(sink)),
      path_(std::move(path)),
      buffer_(std::make_unique_for_overwrite<char[]>(kBufferSize)) {}

OutputFile::~OutputFile() {
  (void)Close();  // a run that matters has closed its files and reported what failed
}

void OutputFile::Flush() {
  if (error_.empty() && used_ != 0) error_ = sink_->Write({buffer_.get(), used_});
  flushed_ += used_;
  used_ = 0;
}

/// Writes what the buffer has no room for.
void OutputFile::WriteLarge(std::string_view bytes) {
  Flush();
  if (bytes.size() <= kBufferSize) {
    Append(bytes);
  } else {
    if (error_.empty()) error_ = sink_->Write(bytes);  // a run on a full disk ends soon
    flushed_ += bytes.size();
  }
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
