// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "core/output_file.h"

namespace tarvel {

/// What fopen asks for when it makes a file; the umask decides.
inline constexpr unsigned kNewFileMode = 0666;

/// Writes to an open descriptor, which it owns.
class FileSink : public ByteSink {
 public:
  explicit FileSink(int descriptor) : descriptor_(descriptor) {}
  FileSink(const FileSink&) = delete;
  FileSink& operator=(const FileSink&) = delete;
  ~FileSink() override;

  /// Writes all of `bytes`. That the system takes none of them is an error, too.
  std::string Write(std::string_view bytes) override;
  std::string Close() override;

 protected:
  int Descriptor() const { return descriptor_; }

 private:
  int descriptor_;
};

}  // namespace tarvel
