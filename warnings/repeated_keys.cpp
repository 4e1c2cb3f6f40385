// SPDX-License-Identifier: MIT
#include "warnings/repeated_keys.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>

#include "core/text_primitives.h"

namespace tarvel {

namespace {

/// A hash of the key in which the case of letters does not count.
std::size_t HashNoCase(std::string_view key) {
  constexpr std::uint64_t kLowerCase = 0x2020202020202020U;
  constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15U;
  constexpr std::size_t kWord = sizeof(std::uint64_t);
  std::uint64_t hash = key.size();
  const auto mix = [&](std::uint64_t word) {
    hash = (hash ^ (word | kLowerCase)) * kFactor;
    hash ^= hash >> 32U;
  };
  std::uint64_t word = 0;
  for (; key.size() >= kWord; key.remove_prefix(kWord)) {
    std::memcpy(&word, key.data(), kWord);
    mix(word);
  }
  word = 0;
  for (const char byte : key) word = word << 8U | static_cast<unsigned char>(byte);
  mix(word);
  return (hash * kFactor) ^ (hash >> 29U);
}

}  // namespace

void RepeatedKeys::Check(const EntryHead& head) {
  const auto offset = static_cast<std::size_t>(head.key.data() - library_.data());
  const auto earlier = offsets_.FindOrPut(
      HashNoCase(head.key), offset, [&](std::size_t other) { return IsKey(other, head.key); });
  if (!earlier || warnings_.ReportNumber(WarningKind::kKeyTwice)) return;
  warnings_.Report(
      WarningKind::kKeyTwice, head.offset, head.key,
      "the key stands in line " + std::to_string(warnings_.LineOf(*earlier)) + " already");
}

/// The key at `offset`, where one begins.
std::string_view RepeatedKeys::KeyAt(std::size_t offset) const {
  const std::string_view line = library_.substr(offset, library_.find('\n', offset) - offset);
  return line.substr(0, line.find(','));
}

bool RepeatedKeys::IsKey(std::size_t offset, std::string_view key) const {
  const std::string_view other = KeyAt(offset);
  return std::equal(key.begin(), key.end(), other.begin(), other.end(),
                    [](char a, char b) { return ToUpper(a) == ToUpper(b); });
}

}  // namespace tarvel
