// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tarvel {

/// Finds the bytes that give a library its structure, a word of 64 bytes at a time: looking at one
/// byte after the other took most of the time of a scan. Asking in the order of the bytes is
/// linear; going back costs at most a new look at one window.
class ByteMarks {
 public:
  /// Vector code where the processor has any, or one byte after the other, for tests.
  enum class Way { kFastest, kPlain };
  /// The marks of `text`, which must outlive this.
  explicit ByteMarks(std::string_view text, Way way = Way::kFastest) : text_(text), way_(way) {}

  /// A line as `NextLine` finds it.
  struct Line {
    std::size_t end;  // the offset after its line break, or the size of the text
    bool has_at;      // holds an "@"
    bool is_plain;    // holds only printable ASCII, tabs and what breaks lines
  };
  /// The line that begins at the offset `from`, or the first `most` bytes of a longer one.
  Line NextLine(std::size_t from, std::size_t most = static_cast<std::size_t>(-1));

  /// The offset of the first brace or quote from `from` on, or `end`.
  std::size_t FindBrace(std::size_t from, std::size_t end) {
    return Find(from, end, [](const Word& word) { return word.braces; });
  }
  /// The same for braces, quotes, "=" and ",".
  std::size_t FindNameEnd(std::size_t from, std::size_t end) {
    return Find(from, end, [](const Word& word) { return word.braces | word.separators; });
  }
  /// The same for bytes that are neither printable ASCII nor a tab nor break lines.
  std::size_t FindOdd(std::size_t from, std::size_t end) {
    return Find(from, end, [](const Word& word) { return word.odd; });
  }

 private:
  /// A bit for each byte of 64.
  struct Word {
    std::uint64_t breaks = 0;
    std::uint64_t ats = 0;
    std::uint64_t odd = 0;
    std::uint64_t braces = 0;
    std::uint64_t separators = 0;
  };
  static constexpr std::size_t kWordSize = 64;
  static constexpr std::size_t kWindow = 64;  // words

  /// The bits from that of `offset` on.
  static constexpr std::uint64_t From(std::size_t offset) {
    return ~std::uint64_t{0} << (offset % kWordSize);
  }
  static Word FastMarksOf(const char* bytes);
  static Word PlainMarksOf(const char* bytes);
  void Load(std::size_t from);
  const Word& WordAt(std::size_t offset) {
    if (offset - begin_ >= kWindow * kWordSize || !loaded_) Load(offset);
    return words_[(offset - begin_) / kWordSize];
  }
  /// The first bit of those that `marks` takes of a word, as an offset.
  template <typename Marks>
  std::size_t Find(std::size_t from, std::size_t end, Marks marks) {
    std::uint64_t bits = From(from);
    for (std::size_t at = from; at < end; at = (at / kWordSize + 1) * kWordSize) {
      const std::uint64_t found = marks(WordAt(at)) & bits;
      if (found != 0) return std::min(at / kWordSize * kWordSize + FirstOf(found), end);
      bits = ~std::uint64_t{0};
    }
    return end;
  }
  static std::size_t FirstOf(std::uint64_t bits) {
    return static_cast<std::size_t>(std::countr_zero(bits));
  }

  std::string_view text_;
  Way way_;
  std::size_t begin_ = 0;  // of the window
  bool loaded_ = false;
  std::array<Word, kWindow> words_;
};

inline ByteMarks::Line ByteMarks::NextLine(std::size_t from, std::size_t most) {
  // A line that crosses the end of the window is marked from its start on, as it is looked at
  // again.
  const std::size_t window_end = begin_ + kWindow * kWordSize;
  const std::size_t end = most < text_.size() - from ? from + most : text_.size();
  std::uint64_t ats = 0;
  std::uint64_t odd = 0;
  std::uint64_t bits = From(from);
  for (std::size_t at = from; at < end; at = (at / kWordSize + 1) * kWordSize) {
    if (at == window_end && at > from && from - begin_ < kWindow * kWordSize) Load(from);
    const Word& word = WordAt(at);
    const std::size_t word_begin = at / kWordSize * kWordSize;
    if (end - word_begin < kWordSize) bits &= ~From(end);
    const std::uint64_t breaks = word.breaks & bits;
    if (breaks != 0) bits &= breaks ^ (breaks - 1);
    ats |= word.ats & bits;
    odd |= word.odd & bits;
    if (breaks != 0) return {word_begin + FirstOf(breaks) + 1, ats != 0, odd == 0};
    bits = ~std::uint64_t{0};
  }
  return {end, ats != 0, odd == 0};
}

}  // namespace tarvel
