// SPDX-License-Identifier: MIT
#include "ops/entries/compare_libraries.h"

#include "core/keyed_hash.h"
#include "core/text_primitives.h"

namespace tarvel {

namespace {

constexpr std::string_view kJabRefMarker = "@COMMENT{JABREF";

/// The bytes of an entry in a usual library, on the small side.
constexpr std::size_t kUsualEntry = 400;

/// Goes to the first line of a known entry, or to the end.
void SkipToFirstEntry(LineStream& stream) {
  Line line;
  for (std::size_t start = 0; ReadLine(stream, limits::kPairLine, line);
       start = stream.Position()) {
    if (!IsKnownEntry(line)) continue;
    stream.SetPosition(start);
    return;
  }
}

/// Reads lines up to the next that starts an entry, the block of data that JabRef appends included;
/// gives where the line begins, and the line itself in capitals in `head`.
std::optional<std::size_t> ReadHead(LineStream& stream, std::string& head) {
  for (;;) {
    const std::size_t start = stream.Position();
    const auto line = stream.ReadLine(limits::kPairLine);
    if (!line) return std::nullopt;
    if (line->find('@') == std::string_view::npos) continue;
    head.assign(*line);
    StringToUpper(head);
    if (IsKnownEntry(head) || head.find(kJabRefMarker) != std::string::npos) return start;
  }
}

/// Goes from the line at `start` to after the first that begins with "}"; false when there is none.
bool PassLines(LineStream& stream, std::size_t start) {
  stream.SetPosition(start);
  while (const auto line = stream.ReadLine(limits::kPairLine)) {
    if (line->front() == '}') return true;
  }
  return false;
}

/// Copies the same lines.
bool CopyLines(LineStream& stream, std::size_t start, OutputFile& out) {
  const bool closed = PassLines(stream, start);
  out.Write(stream.Bytes().substr(start, stream.Position() - start));
  return closed;
}

bool HasContent(const KnownEntry& entry, std::string_view type, const ComparedValues& values) {
  return entry.type == type && entry.compared == values;
}

}  // namespace

std::optional<Matches::Match> Matches::Next() {
  if (!by_key_ && !by_content_) return std::nullopt;
  const bool same_key = by_key_ && (!by_content_ || by_key_->start <= by_content_->start);
  const KnownEntry* entry = same_key ? by_key_ : by_content_;
  if (by_content_ == entry) by_content_ = by_content_->next_same_content;
  if (same_key) by_key_ = by_key_->next_same_key;
  return Match{entry, same_key};
}

FirstLibrary::FirstLibrary(LineStream& stream, const OnEntry& on_entry) : stream_(stream) {
  const TagReader tags(kCompareTags);
  entries_.reserve(stream.Bytes().size() / kUsualEntry);
  SkipToFirstEntry(stream);
  EntryRecord record;
  std::string head;
  while (const auto start = ReadHead(stream, head)) {
    record.Start(head);
    tags.ReadEntry(stream, record);
    const TypeRule<CompareRule> found = CompareRuleFor(record.type);
    if (!found.rule) continue;
    if (on_entry) on_entry(found.rule->group, record, *start);
    const ComparedValues compared = KeepComparedValues(found.rule->group, record, store_);
    entries_.push_back({.rule = found.rule,
                        .type = found.type,
                        .key = store_.Keep(record.key),
                        .compared = compared,
                        .start = *start,
                        .key_hash = KeyedHash(record.key),
                        .content_hash = ContentHash(found.type, compared)});
  }
  BuildIndexes();
}

void FirstLibrary::BuildIndexes() {
  // From the last entry on, so that each chain leads through the file from the front.
  for (std::size_t number = entries_.size(); number-- > 0;) {
    KnownEntry& entry = entries_[number];
    const auto key = by_key_.Put(entry.key_hash, number, [&](std::size_t other) {
      return entries_[other].key == entry.key;
    });
    if (key) entry.next_same_key = &entries_[*key];
    if (!entry.compared.Complete()) continue;
    const auto content = by_content_.Put(entry.content_hash, number, [&](std::size_t other) {
      return HasContent(entries_[other], entry.type, entry.compared);
    });
    if (content) entry.next_same_content = &entries_[*content];
  }
}

Matches FirstLibrary::Find(const EntryRecord& entry) const {
  const TypeRule<CompareRule> type = CompareRuleFor(entry.type);
  const ComparedValues values =
      type.rule ? ComparedValuesOf(type.rule->group, entry) : ComparedValues();
  const auto by_key = by_key_.Find(
      KeyedHash(entry.key), [&](std::size_t number) { return entries_[number].key == entry.key; });
  const KnownEntry* first_by_key = by_key ? &entries_[*by_key] : nullptr;
  // An entry that lacks a tag is found nowhere: only complete ones are in the index.
  if (!type.rule || !values.Complete()) return {first_by_key, nullptr};
  const auto by_content = by_content_.Find(ContentHash(type.type, values), [&](std::size_t number) {
    return HasContent(entries_[number], type.type, values);
  });
  return {first_by_key, by_content ? &entries_[*by_content] : nullptr};
}

LibraryRange FirstLibrary::LinesOf(const KnownEntry& entry) {
  stream_.SetPosition(entry.start);
  stream_.ReadLine(limits::kPairLine);
  PassLines(stream_, stream_.Position());
  return {entry.start, stream_.Position()};
}

void FirstLibrary::Copy(const KnownEntry& entry, OutputFile& out) {
  CopyLines(stream_, entry.start, out);
}

SecondLibrary::SecondLibrary(LineStream& stream) : stream_(stream) { SkipToFirstEntry(stream); }

bool SecondLibrary::Next() {
  const auto start = ReadHead(stream_, head_);
  if (!start) return false;
  start_ = *start;
  reader_.Read(stream_, head_);
  return true;
}

bool SecondLibrary::Copy(OutputFile& out) { return CopyLines(stream_, start_, out); }

}  // namespace tarvel
