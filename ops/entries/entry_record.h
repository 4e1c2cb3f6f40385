// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "core/line_stream.h"
#include "core/name_matcher.h"
#include "ops/entries/joined_text.h"

namespace tarvel {

/// The tags by which Compare and Clean doubles distinguish entries.
enum class Field : std::uint8_t {
  kJournal,
  kYear,
  kPages,
  kVolume,
  kAuthor,
  kTitle,
  kNote,
  kUrl,
  kNumber,
  kNationality,
  kComment,
};
inline constexpr std::size_t kFieldCount = 11;

/// A tag name that is searched for in an entry's lines, and the field that its value goes to.
struct FieldTag {
  std::string_view name;
  Field field;
};

// ORDER: the first name of a list that stands anywhere in a line decides whose value it is. So a
// booktitle line fills the title, and a title that mentions a journal fills the journal.
inline constexpr std::array<FieldTag, 11> kCompareTags{{
    {"journal", Field::kJournal},
    {"year", Field::kYear},
    {"pages", Field::kPages},
    {"volume", Field::kVolume},
    {"author", Field::kAuthor},
    {"title", Field::kTitle},
    {"note", Field::kNote},
    {"url", Field::kUrl},
    {"number", Field::kNumber},
    {"nationality", Field::kNationality},
    {"comment", Field::kComment},
}};
inline constexpr std::array<FieldTag, 10> kDoublesTags{{
    {"journal", Field::kJournal},
    {"year", Field::kYear},
    {"pages", Field::kPages},
    {"volume", Field::kVolume},
    {"author", Field::kAuthor},
    {"title", Field::kTitle},
    {"url", Field::kUrl},
    {"note", Field::kNote},
    {"number", Field::kNumber},
    {"nationality", Field::kNationality},
}};

/// The names of a list of tags.
template <std::size_t N>
constexpr std::array<std::string_view, N> NamesOf(const std::array<FieldTag, N>& tags) {
  std::array<std::string_view, N> names{};
  for (std::size_t i = 0; i < N; ++i) names[i] = tags[i].name;
  return names;
}
inline constexpr auto kCompareTagNames = NamesOf(kCompareTags);
inline constexpr auto kDoublesTagNames = NamesOf(kDoublesTags);

/// Owns texts that must outlive the buffers they were read into.
class TextStore {
 public:
  /// A copy of `text` that lives as long as the store.
  std::string_view Keep(std::string_view text);
  /// The same for texts that are to stand after each other.
  std::string_view Keep(std::span<const std::string_view> texts);

 private:
  std::pmr::monotonic_buffer_resource texts_{std::size_t{1} << 16};
};

/// A tag's value: a view into the file when it stands on one line, else its joined text.
class FieldValue {
 public:
  void Clear() {
    SetView({});
    offset_ = 0;
  }
  void SetView(std::string_view text) {
    view_ = text;
    is_joined_ = false;
  }
  /// The buffer for a value that is put together from several lines.
  std::string& SetJoined() {
    is_joined_ = true;
    return joined_;
  }
  /// Keeps the first `size` bytes of the value.
  void Truncate(std::size_t size);
  /// Where in its file the line begins that the value was read from; 0 for a field that no line
  /// filled, as an entry's first line is never a tag's.
  std::size_t Offset() const { return offset_; }
  void SetOffset(std::size_t offset) { offset_ = offset; }

  std::string_view Text() const { return is_joined_ ? std::string_view(joined_) : view_; }
  /// The value as a view that lives as long as the file's bytes and `store`.
  std::string_view Keep(TextStore& store) const { return is_joined_ ? store.Keep(joined_) : view_; }

 private:
  std::string_view view_;
  std::string joined_;
  std::size_t offset_ = 0;
  bool is_joined_ = false;
};

/// What an entry is recognised by. A field is present when it is not empty.
struct EntryRecord {
  std::string key;
  std::string type;
  std::array<FieldValue, kFieldCount> fields;

  const FieldValue& operator[](Field field) const {
    return fields[static_cast<std::size_t>(field)];
  }
  FieldValue& operator[](Field field) { return fields[static_cast<std::size_t>(field)]; }

  /// Takes key and type to the letter from an entry's first line, and empties all fields.
  void Start(std::string_view head);
};

/// Values of several lines, of entries that may overlap. They are read line by line until that has
/// cost as much as reading the file twice; from then on each is looked up in the joined text of the
/// file.
class LongValues {
 public:
  /// `line` must be a view into the bytes of `stream`. Returns the value after its first "{", and
  /// leaves the stream after the line that ends the value. The result lives as long as this.
  /// Returns nothing, and does not move the stream, if `line` itself ends the value, or while
  /// values are still to be read line by line.
  std::optional<std::string_view> LookUp(std::string_view line, LineStream& stream);
  /// Counts the bytes that were read for a value.
  void CountRead(std::size_t bytes) { read_ += bytes; }

 private:
  std::size_t read_ = 0;
  std::optional<JoinedText> joined_;
};

/// What a line did to the entry that is being read, or why there was none.
enum class EntryLineEnd {
  kInside,      // the entry goes on
  kClosed,      // the line begins with "}" and names no tag: it ends the entry
  kFileEnded,   // no line: the read before had already met the end of the file
  kReadFailed,  // no line: this read is the one that met the end of the file
};

/// Reads the lines after an entry's head into a record. Only a line that begins with "}" and
/// names no tag, or the end of the file, ends an entry: one whose closing brace stands elsewhere
/// goes on through the lines of those that follow it.
class TagReader {
 public:
  /// At most 64 names; `tags` must outlive the reader.
  template <std::size_t N>
  explicit TagReader(const std::array<FieldTag, N>& tags) : tags_(tags), matcher_(NamesOf(tags)) {}

  /// Reads one line (at most 4,999 bytes) and, when it names a tag, the tag's value. Views in
  /// `record` point into the stream's bytes, or into `long_values`. That is needed where the stream
  /// is set back, so that lines are read more than once. Of pages only the first page is kept.
  EntryLineEnd ReadLine(LineStream& stream, EntryRecord& record,
                        LongValues* long_values = nullptr) const;
  /// Reads lines until the entry ends; returns what ended it.
  EntryLineEnd ReadEntry(LineStream& stream, EntryRecord& record) const;

 private:
  std::span<const FieldTag> tags_;
  NameMatcher matcher_;
};

}  // namespace tarvel
