// SPDX-License-Identifier: MIT
#include "ops/references/reference_format.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "core/ascii.h"

namespace tarvel {

namespace {

constexpr std::string_view kFlags = "-+ #0'";
constexpr std::string_view kDigits = "0123456789";
/// No text is as long, and ten times as much is still a number.
constexpr std::size_t kLargest = std::numeric_limits<std::size_t>::max() / 16;

/// A "%s" with what may stand between its two bytes.
struct Placeholder {
  bool left = false;
  std::size_t width = 0;
  std::size_t precision = std::string_view::npos;
  std::size_t size = 0;  // in the format
};

/// Reads the digits at `at` and moves `at` after them; no digits are 0. Numbers that no text is
/// long enough for come out as `kLargest`.
std::size_t ReadNumber(std::string_view format, std::size_t& at) {
  std::size_t number = 0;
  for (; at < format.size() && IsByteOf(format[at], kDigits); ++at) {
    const auto digit = static_cast<std::size_t>(format[at] - '0');
    number = std::min(number * 10 + digit, kLargest);
  }
  return number;
}

/// The placeholder that `format` begins with, if it does.
std::optional<Placeholder> ReadPlaceholder(std::string_view format) {
  Placeholder placeholder;
  std::size_t at = 1;
  for (; at < format.size() && IsByteOf(format[at], kFlags); ++at) {
    // The other flags mean nothing to a string; "0" pads it with blanks.
    if (format[at] == '-') placeholder.left = true;
  }
  placeholder.width = ReadNumber(format, at);
  if (placeholder.width > kWidestField) return std::nullopt;
  if (at < format.size() && format[at] == '.') {
    ++at;
    placeholder.precision = ReadNumber(format, at);
  }
  if (at >= format.size() || format[at] != 's') return std::nullopt;
  placeholder.size = at + 1;
  return placeholder;
}

void AppendField(std::string& result, const Placeholder& placeholder, std::string_view value) {
  value = value.substr(0, placeholder.precision);
  const std::size_t padding = placeholder.width - std::min(placeholder.width, value.size());
  if (!placeholder.left) result.append(padding, ' ');
  result.append(value);
  if (placeholder.left) result.append(padding, ' ');
}

}  // namespace

std::string FormatReference(std::string_view format, std::span<const std::string_view> values,
                            std::uint64_t* shown) {
  std::string result;
  std::size_t next = 0;
  while (!format.empty()) {
    const std::size_t literal = std::min(format.find('%'), format.size());
    result.append(format.substr(0, literal));
    format.remove_prefix(literal);
    if (format.empty()) break;
    if (format.starts_with("%%")) {
      result.push_back('%');
      format.remove_prefix(2);
    } else if (const auto placeholder = ReadPlaceholder(format)) {
      if (next < values.size()) {
        AppendField(result, *placeholder, values[next]);
        if (shown && placeholder->precision != 0) *shown |= std::uint64_t{1} << next;
      }
      ++next;
      format.remove_prefix(placeholder->size);
    } else {
      result.push_back('%');
      format.remove_prefix(1);
    }
  }
  return result;
}

}  // namespace tarvel
