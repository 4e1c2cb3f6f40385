// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "core/descriptor.h"
#include "core/output_file.h"

namespace tarvel {

/// What fopen asks for when it makes a file; the umask decides.
inline constexpr unsigned kNewFileMode = 0666;

/// Writes to an open descriptor.
class FileSink : public ByteSink {
 public:
  explicit FileSink(Descriptor descriptor) : descriptor_(std::move(descriptor)) {}

  /// Writes all of `bytes`. That the system takes none of them is an error, too.
  std::string Write(std::string_view bytes) override;
  std::string Close() override;

 protected:
  int Number() const { return descriptor_.Number(); }

 private:
  Descriptor descriptor_;
};

}  // namespace tarvel
