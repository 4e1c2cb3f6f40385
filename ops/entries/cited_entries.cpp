// SPDX-License-Identifier: MIT
#include "ops/entries/cited_entries.h"

#include <algorithm>
#include <functional>

#include "core/keyed_hash.h"
#include "core/text_primitives.h"

namespace tarvel {

namespace {

bool IsHead(std::string_view text) {
  Line line(text);
  return IsKnownEntry(line);
}

}  // namespace

CitedEntries::CitedEntries(const std::vector<std::string>& keys)
    : keys_(keys), heads_(keys.size()) {
  for (std::size_t i = keys.size(); i-- > 0;) {
    index_.Put(KeyedHash(keys[i]), i, [&](std::size_t other) { return keys[other] == keys[i]; });
    longest_ = std::max(longest_, keys[i].size());
  }
}

void CitedEntries::Find(LineStream& library,
                        const std::function<void(const LibraryRange&)>& on_range) {
  constexpr std::size_t kNone = std::string_view::npos;
  std::size_t begin = kNone;  // of a range whose end is still to come
  std::size_t seen = 0;
  std::size_t line = 0;  // the start of the one that holds the byte at `seen`
  const auto end_range = [&](std::size_t end) {
    if (begin >= end) return;
    on_range({begin, end});
    begin = kNone;
  };
  while (begin != kNone || found_ < heads_.size()) {
    const auto text = library.ReadLineWith('@', limits::kShortLine);
    if (!text) break;
    const std::size_t position = library.Position() - text->size();
    const bool has_key = FindOnLine(*text, position);
    if (!on_range || (!has_key && !(begin != kNone && IsHead(*text)))) continue;
    // A head may stand far after the start of a line, as long lines are read in pieces.
    const std::size_t newline = library.Bytes().substr(seen, position - seen).rfind('\n');
    if (newline != kNone) line = seen + newline + 1;
    seen = position;
    end_range(line);
    if (has_key) begin = line;
  }
  end_range(library.Bytes().size());
}

/// Notes the line as the head of every key that stands between a "{" and the next "," of it, if it
/// is a head; false when there is no such key. The keys are searched for before that test, which
/// upper-cases parts of the line.
bool CitedEntries::FindOnLine(std::string_view text, std::size_t position) {
  on_line_.clear();
  std::size_t comma = text.find(',');
  for (std::size_t brace = text.find('{'); brace != std::string_view::npos;
       brace = text.find('{', brace + 1)) {
    if (comma < brace) comma = text.find(',', brace);
    if (comma == std::string_view::npos) break;
    if (comma - brace - 1 > longest_) continue;
    const std::string_view between = text.substr(brace + 1, comma - brace - 1);
    const auto key =
        index_.Find(KeyedHash(between), [&](std::size_t i) { return keys_[i] == between; });
    if (key && !heads_[*key]) on_line_.push_back(*key);
  }
  if (on_line_.empty()) return false;
  if (!IsHead(text)) return true;
  for (const std::size_t key : on_line_) {
    if (heads_[key]) continue;  // it stands on the line twice
    heads_[key] = position;
    ++found_;
  }
  return true;
}

}  // namespace tarvel
