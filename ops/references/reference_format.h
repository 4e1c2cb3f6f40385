// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace tarvel {

/// The widest field that a format can ask for, in bytes; a wider one is no placeholder.
inline constexpr std::size_t kWidestField = 10'000;

/// The format with each "%s" replaced by the next of the values and "%%" by "%". A placeholder may
/// have flags, a width and a precision, which count bytes, and does with them what `printf` does.
/// One beyond the values prints nothing. Any other "%" is a byte like any other: formats come from
/// a file that users edit, so none of it ever reaches `printf`.
///
/// Bit i of `shown` is set when a placeholder shows the i-th value; one with the precision 0 passes
/// a value over. Of at most 64 values.
std::string FormatReference(std::string_view format, std::span<const std::string_view> values,
                            std::uint64_t* shown = nullptr);

}  // namespace tarvel
