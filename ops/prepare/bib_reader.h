// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "core/ascii.h"
#include "core/byte_set.h"
#include "ops/prepare/bib_strings.h"
#include "ops/prepare/text_facts.h"
#include "ops/prepare/text_pool.h"

namespace tarvel {

/// A tag as BibTeX reads it.
struct BibTag {
  std::string_view name;   // as it stands in the library
  std::string_view value;  // in one piece: with the texts of strings, white space as one blank
  std::size_t offset = 0;  // offset of the name
  TextFacts facts;         // of the value
};

/// A command of a library: an entry, a "@string" or a "@preamble".
struct BibItem {
  enum class Kind { kEntry, kString, kPreamble };

  Kind kind = Kind::kEntry;
  std::size_t begin = 0;     // offset of its "@"
  std::size_t end = 0;       // where reading continues
  std::string_view type;     // the word after the "@"
  std::string_view key;      // of an entry
  std::vector<BibTag> tags;  // a "@string" has one, a "@preamble" one without a name

  std::string fault;             // why it could not be read to its end; empty when it was
  std::size_t fault_offset = 0;  // of the byte at which reading failed
  std::vector<std::string_view> undefined;  // strings whose names stand for them in values

  /// Whether it is an entry of which enough could be read to write it.
  bool IsWritten() const {
    const bool is_cut_short = tags.empty() && !fault.empty();
    return kind == Kind::kEntry && !is_cut_short && key.find('}') == std::string_view::npos;
  }
};

/// Reads a library by the grammar of BibTeX 0.99d, byte for byte: text outside commands is skipped,
/// and so is "@comment". A value is made of pieces in braces or quotes, numbers and names of
/// strings, joined by "#". Unlike BibTeX, it takes the name of an undefined string as its text, and
/// it reads commands that follow another one on the last line of a file.
///
/// A command that breaks the grammar ends there. Reading continues after it as in BibTeX, or, when
/// a value has swallowed the beginnings of other commands, at the first line that begins like one.
/// From then on no value goes past such a line, so that reading takes linear time.
class BibReader {
 public:
  /// `bytes` and `strings` must outlive the reader, which defines what it reads in `strings`.
  BibReader(std::string_view bytes, BibStrings& strings);

  /// Reads the next command; false at the end. What `item` held before is no longer valid.
  bool Next(BibItem& item);
  /// Whether the tags of entries are needed. If they are not, only the first tag of most entries is
  /// read and a fault after it may be missed; this takes less time.
  void KeepTags(bool keeps) { keeps_tags_ = keeps; }
  /// Goes to the command whose "@" is at `begin`. `is_strict`: see `StrictFrom`.
  void GoTo(std::size_t begin, bool is_strict);
  /// The offset of the command after which no value goes past a line that begins like a command.
  std::size_t StrictFrom() const { return strict_from_; }

 private:
  bool StartCommand(BibItem& item);
  void ReadString(BibItem& item);
  void ReadPreamble(BibItem& item);
  void ReadEntry(BibItem& item);
  void PassTags();
  bool ReadKey(BibItem& item);
  bool ReadTag(BibItem& item);
  bool ReadNameAndValue(BibItem& item, BibTag& tag);
  bool ReadValue(BibItem& item, BibTag& tag);
  bool PutTogether(BibItem& item, BibTag& tag);
  bool ReadPiece(BibItem& item, BibTag& tag);
  bool Keeps(const BibItem& item) const {
    return keeps_tags_ || item.kind != BibItem::Kind::kEntry;
  }
  bool ReadDelimited(BibItem& item, BibTag& tag);
  bool ReadStringName(BibItem& item, BibTag& tag);
  std::string_view TakeString(BibItem& item, std::string_view name);

  [[gnu::cold]] bool Fail(BibItem& item, std::string_view reason, std::string_view name = {},
                          std::string_view rest = {});
  [[gnu::cold]] bool FailValue(BibItem& item, std::string_view name, std::size_t offset,
                               std::string_view reason);
  std::string_view TakeName();
  static constexpr ByteSet kBlankSet{kBlanks};
  void SkipWhite() { at_ = kBlankSet.FindOther(bytes_, at_); }
  bool IsAtEnd() const { return at_ >= bytes_.size(); }
  bool IsAt(char byte) const { return at_ < bytes_.size() && bytes_[at_] == byte; }
  std::size_t NextHeadLine(std::size_t from);
  void FindHeadLines();
  bool IsHeadLine(std::size_t at) const;

  std::string_view bytes_;
  BibStrings& strings_;
  std::size_t at_ = 0;
  char close_ = '}';           // what ends the command
  std::string_view defining_;  // the string that is being defined
  TextPool texts_;             // of values that do not stand in the library as they are
  bool keeps_tags_ = true;
  std::size_t room_;  // how many bytes strings may still add
  bool is_strict_ = false;
  std::size_t strict_from_;
  bool has_heads_ = false;
  std::vector<std::size_t> heads_;  // of all lines that begin like a command
};

/// An offset after which no preamble begins, and no entry with an "@" in its key. Does not read
/// values, so the offset may be later than necessary.
std::size_t EndOfFrontTexts(std::string_view bytes);

}  // namespace tarvel
