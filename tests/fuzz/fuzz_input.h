// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "app/settings.h"

namespace tarvel::fuzz {

// An input is a head of `kHeadSize` bytes, which makes the settings, and then the files, with
// `kFileSeparator` between two. In the files the byte `kRepeat`, two bytes n (high byte first) and
// a byte c stand for n times c: so a short input reaches the line limits of up to 50,000 bytes.
// make_seeds.py writes inputs of this form.
inline constexpr std::size_t kHeadSize = 8;
inline constexpr std::string_view kFileSeparator = "\xfe\xff\xfe\xff";
inline constexpr char kRepeat = '\xfd';

/// All repetitions of an input together give at most this many bytes, a bit more than two of the
/// longest lines. An input's cost is then some milliseconds at most, and what a file of this size
/// cannot show by its lines, values and entries, a larger one does not either: the program keeps no
/// limits beyond those of the lines. (Clean tags reads lines of up to 499,999 bytes; the unit tests
/// go there.)
inline constexpr std::size_t kMostRepeated = 120000;

/// A log may name every byte of a line together with the line's key, and so be the square of the
/// line. No more than this of an output is kept; then the disk is full.
inline constexpr std::size_t kMostOutput = std::size_t{1} << 20;

/// A decoded input.
struct FuzzInput {
  Settings settings;
  bool own_list = false;   // the journal list is the picked one, not the program's
  std::size_t piece = 0;   // how many bytes a read gives; 0 for all
  bool run_twice = false;  // whether a second run must give the same
  std::vector<std::string> files;

  /// The file of this index; empty when the input holds fewer.
  std::string File(std::size_t index) const {
    return index < files.size() ? files[index] : std::string();
  }
};

FuzzInput Decode(std::string_view input);

}  // namespace tarvel::fuzz
