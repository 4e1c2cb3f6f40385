// SPDX-License-Identifier: MIT
#include "ops/entries/growing_library.h"

#include <algorithm>

#include "core/large_pages.h"

namespace tarvel {

GrowingLibrary::GrowingLibrary(std::string_view header, std::size_t expected_size) {
  bytes_.reserve(expected_size);
  AdviseLargePages(bytes_.data(), bytes_.capacity());
  bytes_ = header;
}

std::optional<std::string_view> GrowingLibrary::ReadLine(std::size_t position,
                                                         std::size_t limit) const {
  const std::string_view rest = std::string_view(bytes_).substr(position, limit - 1);
  if (rest.empty()) return std::nullopt;
  const std::size_t newline = rest.find('\n');
  return newline == std::string_view::npos ? rest : rest.substr(0, newline + 1);
}

void GrowingLibrary::Write(std::size_t position, std::string_view bytes) {
  const std::size_t replaced = std::min(bytes.size(), bytes_.size() - position);
  std::copy_n(bytes.data(), replaced, bytes_.data() + position);
  bytes_.append(bytes.substr(replaced));
}

}  // namespace tarvel
