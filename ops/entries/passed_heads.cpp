// SPDX-License-Identifier: MIT
#include "ops/entries/passed_heads.h"

#include <algorithm>
#include <optional>

#include "core/byte_set.h"
#include "core/hash_index.h"
#include "core/keyed_hash.h"
#include "core/text_primitives.h"

namespace tarvel {

namespace {

constexpr ByteSet kWhite(" \t\r\n");
constexpr ByteSet kNameEnds(" \t\r\n\"#%'(),={}");
constexpr ByteSet kKeyEnds(" \t\r\n,}@");

/// More bytes of a name, or of white space, are not looked at, so that a text full of "@" stays
/// cheap.
constexpr std::size_t kLongestName = 64;

/// Reads a text piece by piece.
class Pieces {
 public:
  explicit Pieces(std::string_view text) : text_(text) {}

  std::string_view UpTo(const ByteSet& ends, std::size_t most = kLongestName) {
    const std::size_t end = ends.Find(text_.substr(0, at_ + most), at_);
    const std::string_view piece = text_.substr(at_, end - at_);
    at_ = end;
    return piece;
  }
  void SkipWhite() { at_ = kWhite.FindOther(text_.substr(0, at_ + kLongestName), at_); }
  /// The next byte, or 0 at the end; `Take` goes past it.
  char Next() const { return at_ < text_.size() ? text_[at_] : '\0'; }
  char Take() { return at_ < text_.size() ? text_[at_++] : '\0'; }

 private:
  std::string_view text_;
  std::size_t at_ = 0;
};

/// The key of the entry after an "@", up to `longest` bytes; nothing where no entry begins. No
/// entry is taken for a key with an "@", and so no two searches look at the same bytes.
std::optional<std::string_view> ReadKey(std::string_view text, std::size_t longest) {
  Pieces pieces(text);
  pieces.SkipWhite();
  const std::string_view type = pieces.UpTo(kNameEnds);
  pieces.SkipWhite();
  const char opening = pieces.Take();
  if (type.empty() || (opening != '{' && opening != '(')) return std::nullopt;
  for (const std::string_view other : {"comment", "string", "preamble"}) {
    if (EqualNoCase(type, other)) return std::nullopt;
  }
  pieces.SkipWhite();
  const std::string_view key = pieces.UpTo(kKeyEnds, longest);
  return pieces.Next() == '@' ? std::nullopt : std::optional(key);
}

}  // namespace

void FindPassedHeads(std::string_view library, const std::vector<std::string>& keys,
                     const CitedEntries& taken,
                     const std::function<void(const PassedHead&)>& on_passed) {
  HashIndex index;
  std::size_t longest = 0;
  for (std::size_t i = keys.size(); i-- > 0;) {
    if (!taken.Head(i)) continue;
    longest = std::max(longest, keys[i].size() + 1);
    index.Put(KeyedHash(keys[i]), i, [&](std::size_t other) { return keys[other] == keys[i]; });
  }
  std::vector<bool> is_done(keys.size());
  for (std::size_t at = library.find('@'); at != std::string_view::npos;
       at = library.find('@', at + 1)) {
    const auto found = ReadKey(library.substr(at + 1), longest);
    if (!found) continue;
    const auto key =
        index.Find(KeyedHash(*found), [&](std::size_t other) { return keys[other] == *found; });
    if (!key || is_done[*key]) continue;
    is_done[*key] = true;
    if (at < *taken.Head(*key)) on_passed({*found, at, *taken.Head(*key)});
  }
}

}  // namespace tarvel
