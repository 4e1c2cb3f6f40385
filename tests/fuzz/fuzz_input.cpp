// SPDX-License-Identifier: MIT
#include "tests/fuzz/fuzz_input.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace tarvel::fuzz {

namespace {

/// Flags whose defaults a bit of the head's second byte turns round.
constexpr std::array<Flag Settings::*, 8> kFlags{
    &Settings::PagesRange,         &Settings::PrintTitle,           &Settings::PrintBibitem,
    &Settings::UseLaTeXCode,       &Settings::RemoveEmptyEntries,   &Settings::RemoveJournalStrings,
    &Settings::JournalAbbreviated, &Settings::RemoveJabRefStructure};

std::string Expand(std::string_view text, std::size_t& room) {
  std::string file;
  file.reserve(text.size());
  while (!text.empty()) {
    if (text.front() != kRepeat || text.size() < 4) {
      file += text.front();
      text.remove_prefix(1);
      continue;
    }
    const std::size_t wanted =
        static_cast<std::uint8_t>(text[1]) * 256U + static_cast<std::uint8_t>(text[2]);
    const std::size_t times = std::min(wanted, room);
    room -= times;
    file.append(times, text[3]);
    text.remove_prefix(4);
  }
  return file;
}

}  // namespace

FuzzInput Decode(std::string_view input) {
  std::array<std::uint8_t, kHeadSize> head{};
  const std::size_t size = std::min(input.size(), kHeadSize);
  std::copy_n(input.begin(), size, head.begin());
  input.remove_prefix(size);

  FuzzInput decoded;
  Settings& settings = decoded.settings;
  Choose(settings, kStyleFlags, kStyleFlags[head[0] % kStyleFlags.size()]);
  for (std::size_t i = 0; i < kFlags.size(); ++i) settings.*kFlags[i] ^= (head[1] >> i) & 1;
  settings.PagesFirstOnly = 1 - settings.PagesRange;
  settings.JournalFullNames = 1 - settings.JournalAbbreviated;
  for (std::size_t i = 0; i < kTagCount; ++i) {
    settings.RemoveTag[i] ^= (head[2 + i / 8 % 4] >> (i % 8)) & 1;
  }
  decoded.own_list = (head[6] & 1) != 0;
  settings.UseOwnJournalFile = decoded.own_list ? 1 : 0;
  decoded.run_twice = (head[6] & 2) != 0;
  decoded.piece = head[7];

  std::size_t room = kMostRepeated;
  for (;;) {
    const std::size_t end = input.find(kFileSeparator);
    decoded.files.push_back(Expand(input.substr(0, end), room));
    if (end == std::string_view::npos) return decoded;
    input.remove_prefix(end + kFileSeparator.size());
  }
}

}  // namespace tarvel::fuzz
