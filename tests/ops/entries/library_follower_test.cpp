// SPDX-License-Identifier: MIT
#include "ops/entries/library_follower.h"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <set>

#include "core/text_primitives.h"
#include "tests/support/hostile_library.h"

namespace tarvel::testing {
namespace {

constexpr std::string_view kHeader = "#\n\nheader\n\n";

struct PlainEntry {
  std::size_t head;
  std::size_t end;
  EntryRecord record;
};

/// The entries that have ended, found by reading the library from its beginning.
std::vector<PlainEntry> ReadAgain(std::string_view library) {
  LineStream stream(library);
  const TagReader tags(kDoublesTags);
  std::vector<PlainEntry> entries;
  std::size_t head = 0;
  for (Line line; ReadLine(stream, limits::kPairLine, line); head = stream.Position()) {
    if (!IsKnownEntry(line)) continue;
    EntryRecord record;
    record.Start(line.Text());
    if (tags.ReadEntry(stream, record) != EntryLineEnd::kClosed) break;
    for (FieldValue& field : record.fields) {  // views end with the stream
      const std::string text(field.Text());
      field.SetJoined() = text;
    }
    entries.push_back({head, stream.Position(), record});
  }
  return entries;
}

std::size_t HeadOf(const KeptEntry* entry) { return entry ? entry->head : std::string::npos; }

/// Expects that the values of an entry are those that a reading from the beginning gave.
void ExpectSameValues(const KeptValues& kept, const EntryRecord& plain) {
  ASSERT_EQ(kept.Type(), DoublesRuleFor(plain.type).type);
  for (const DoublesRule& rule : kDoublesRules) {
    ASSERT_EQ(kept.ComparedValuesOf(rule.group), ComparedValuesOf(rule.group, plain));
  }
}

/// Expects that every question about the entries is answered as reading again answers it.
void ExpectSame(const KeptEntries& kept, std::string_view library) {
  const std::vector<PlainEntry> plain = ReadAgain(library);
  std::set<std::string> keys{"", "nowhere"};
  for (const PlainEntry& entry : plain) keys.insert(entry.record.key);
  for (const std::string& key : keys) {
    std::vector<const PlainEntry*> same;
    for (const PlainEntry& entry : plain) {
      if (entry.record.key == key) same.push_back(&entry);
    }
    ASSERT_EQ(kept.CountWithKey(key, library.size()), same.size()) << key << "\n" << library;
    const KeptEntry* const kept_first = kept.FirstWithKey(key);
    ASSERT_EQ(HeadOf(kept_first), same.empty() ? std::string::npos : same[0]->head) << library;
    if (kept_first) {
      ASSERT_EQ(kept_first->Key(), key) << library;
      ASSERT_EQ(kept_first->end, same[0]->end) << library;
      ExpectSameValues(kept.ValuesOf(*kept_first), same[0]->record);
    }
    for (const DoublesRule& rule : kDoublesRules) {
      if (rule.group.compared.empty()) continue;
      const PlainEntry* first = nullptr;
      for (const PlainEntry* entry : same) {
        if (first) break;
        if (ComparedValuesOf(rule.group, entry->record).Complete()) first = entry;
      }
      const KeptEntry* const complete = kept.FirstComplete(key, rule);
      ASSERT_EQ(HeadOf(complete), first ? first->head : std::string::npos) << key << "\n"
                                                                           << library;
      if (complete) ExpectSameValues(kept.ValuesOf(*complete), first->record);
    }
  }
  for (const PlainEntry& entry : plain) {
    const TypeRule<DoublesRule> rule = DoublesRuleFor(entry.record.type);
    if (!rule.rule || rule.rule->group.compared.empty()) continue;
    const ComparedValues values = ComparedValuesOf(rule.rule->group, entry.record);
    std::size_t first = std::string::npos;
    for (const PlainEntry& other : plain) {
      if (first != std::string::npos || !values.Complete()) break;
      if (other.record.type == entry.record.type &&
          ComparedValuesOf(rule.rule->group, other.record) == values) {
        first = other.head;
      }
    }
    ASSERT_EQ(HeadOf(kept.FirstEqual(rule, values)), first) << library;
  }
}

struct Followed {
  explicit Followed(unsigned block_bits = EntryPath::kBlockBits) : follower(library, block_bits) {}

  GrowingLibrary library{kHeader, 0};
  LibraryFollower follower;

  void Check() const { ExpectSame(follower.Entries(), library.Bytes()); }
  /// Writes after the entry that ends at `offset`, or at the end of the library.
  void Write(std::size_t offset, std::string_view text) {
    if (offset == library.Size()) return follower.Append(text);
    for (const PlainEntry& entry : ReadAgain(library.Bytes())) {
      if (entry.end == offset) return follower.WriteAfter(entry.head, text);
    }
    FAIL() << "no entry ends at " << offset;
  }
};

/// Blocks of some entries, of less than one, or of a whole library.
unsigned BlockBits(std::mt19937& random) { return 4 + static_cast<unsigned>(random() % 11); }

const std::string kMisc = "@MISC{k,\n  note = {n},\n}\n";

TEST(LibraryFollower, KnowsEntriesThatWereAppended) {
  Followed followed;
  followed.Check();
  followed.Write(followed.library.Size(), kMisc + "\n");
  ASSERT_NE(followed.follower.Entries().FirstWithKey("k"), nullptr);
  EXPECT_EQ(followed.follower.Entries().FirstWithKey("k")->head, kHeader.size());
  EXPECT_EQ(followed.follower.Entries().FirstWithKey("k")->end, kHeader.size() + kMisc.size());
  followed.Check();
}

TEST(LibraryFollower, ReadsOnInsideAValueThatGoesOn) {
  Followed followed;
  followed.Write(followed.library.Size(), "@MISC{a,\n  note = {x\n");
  EXPECT_EQ(followed.follower.Entries().FirstWithKey("a"), nullptr) << "it has not ended";
  followed.Write(followed.library.Size(), "\n   y {z}\n");
  followed.Write(followed.library.Size(), "w}\n}\n");
  const KeptEntry* const entry = followed.follower.Entries().FirstWithKey("a");
  ASSERT_NE(entry, nullptr);
  const TypeRule<DoublesRule> rule = DoublesRuleFor("MISC");
  EXPECT_EQ(
      followed.follower.Entries().ValuesOf(*entry).ComparedValuesOf(rule.rule->group).values[0],
      "x y {z} w");
  followed.Check();
}

TEST(LibraryFollower, ForgetsWhatAWriteReplaces) {
  Followed followed;
  for (const std::string key : {"a", "b", "c"}) {
    followed.Write(followed.library.Size(), "@MISC{" + key + ",\n  note = {n},\n}\n\n");
  }
  const std::size_t end = followed.follower.Entries().FirstWithKey("a")->end;
  followed.Write(end, "@MISC{x,\n  note = {a longer value},\n}\n\n");
  EXPECT_EQ(followed.follower.Entries().FirstWithKey("b"), nullptr);
  EXPECT_NE(followed.follower.Entries().FirstWithKey("x"), nullptr);
  EXPECT_NE(followed.follower.Entries().FirstWithKey("a"), nullptr);
  followed.Check();
}

TEST(LibraryFollower, KnowsThatAnEntryMayBeginAfterAnOpenValueThatReachesTheEnd) {
  Followed followed;
  followed.Write(followed.library.Size(), kMisc);
  const std::size_t end = followed.library.Size();
  followed.Write(end, "@MISC{other,\n  note = {a longer value},\n}\n");
  std::string opens = "@MISC{x,\n  note = {{\n}\n";
  opens.resize(followed.library.Size() - end, '\n');
  followed.Write(end, opens);
  followed.Check();
  followed.Write(followed.library.Size(), "@MISC{y,\n}\n");
  followed.Check();
  followed.Write(end, "@MISC{x,\n  note = {n}\n}\n");
  EXPECT_NE(followed.follower.Entries().FirstWithKey("y"), nullptr);
  followed.Check();
}

TEST(LibraryFollower, KnowsTheSizeOfAValueThatBeginsWhereLinesArePassed) {
  constexpr std::size_t kPassed = 1024;  // lines are passed from multiples of it on
  const std::string begin = "@MISC{a,\n  note = {\n";
  std::string value;
  while (value.size() < 2 * kPassed) value += "line\n";
  for (const std::size_t shift : {0U, 1U}) {
    Followed followed;
    followed.Write(followed.library.Size(),
                   std::string(kPassed - begin.size() - kHeader.size() - 1 + shift, '#') + "\n");
    followed.Write(followed.library.Size(), begin + value + "}\n}\n");
    ASSERT_NE(followed.follower.Entries().FirstWithKey("a"), nullptr);
    followed.Check();
  }
}

TEST(LibraryFollower, ForgetsTheEntryInsideAnotherWhoseEndIsReplaced) {
  Followed followed;
  const std::string opens = "@MISC{o,\n  note = {\n";
  const std::string text(opens.size() - 1, '#');
  followed.Write(followed.library.Size(), kMisc);
  const std::size_t first = followed.library.Size();
  followed.Write(first, text + "\n");
  const std::size_t inner = followed.library.Size();
  // Its last lines are text after the entry 'o', which ends at the first "}" line.
  followed.Write(inner, "@MISC{h,\n}} note = {{{\n}\n");
  const std::size_t end = followed.library.Size();
  followed.Write(end, "x}}\n}\n" + kMisc);
  EXPECT_NE(followed.follower.Entries().FirstWithKey("h"), nullptr);
  followed.Write(first, opens);
  EXPECT_EQ(followed.follower.Entries().FirstWithKey("h"), nullptr);
  followed.Check();
  followed.Write(end, "}\n@MISC{p,\n}\n");
  followed.Check();
  followed.Write(first, text + "\n");
  EXPECT_EQ(followed.follower.Entries().FirstWithKey("h"), nullptr) << "it does not end any more";
  followed.Check();
}

/// Libraries of many short lines, whose values are passed by blocks.
std::string ManyEntries(std::mt19937& random, std::size_t number) {
  std::string text;
  for (std::size_t i = 0; i < number; ++i) {
    const std::string key = "{f" + std::to_string(random() % 50) + ",\n";
    const bool has_pages = random() % 3 == 0;
    text += has_pages
                ? "@ARTICLE" + key + " journal = {j},\n volume = {1},\n year = {2},\n pages = {"
                : "@MISC" + key + "  note = {";
    if (random() % 8 == 0) text += '\n';
    for (std::size_t line = random() % 4; line > 0; --line) text += "n {m}\n\n";
    if (has_pages && random() % 20 == 0) text += "-9\n";
    if (random() % 4 == 0) text += "\n@MISC{q,\n  note = {r},\n}\n{";
    if (random() % 300 == 0) text.append(random() % 1500, '{');
    if (random() % 300 == 0) text.append(random() % 1500, '}');
    text += "},\n}\n\n";
  }
  return text;
}

/// Writes values that stay open, or close far away, over the beginning of a large library.
TEST(LibraryFollower, ReturnsToEntriesThatAnOpenValueHid) {
  std::mt19937 random(7);
  std::size_t hidden = 0;
  const int runs = RandomRuns(40);
  for (int run = 0; run < runs; ++run) {
    Followed followed(BlockBits(random));
    followed.Write(followed.library.Size(), ManyEntries(random, 400));
    for (int writes = 0; writes < 12; ++writes) {
      const std::vector<PlainEntry> entries = ReadAgain(followed.library.Bytes());
      const bool opens = random() % 2 == 0;
      const std::string text = "@MISC{x,\n  note = {" + std::string(opens ? random() % 9 : 0, '{') +
                               "y" + std::to_string(writes) + (opens ? "\n}\n\n" : "},\n}\n\n");
      const bool appends = entries.empty() || random() % 4 == 0;
      const std::size_t offset =
          appends ? followed.library.Size() : entries[random() % entries.size() / 3].end;
      const std::string closes = std::string(random() % 12, '}') + "\n}\n";
      followed.Write(offset, random() % 5 == 0              ? ManyEntries(random, 3)
                             : appends && random() % 2 == 0 ? closes
                                                            : text);
      // An entry that nobody asks about is read again late, after other writes.
      if (run % 2 == 0 || writes == 11) followed.Check();
      if (HasFatalFailure()) return;
      if (ReadAgain(followed.library.Bytes()).size() < entries.size() / 2) ++hidden;
    }
  }
  EXPECT_GT(hidden, static_cast<std::size_t>(runs) / 4);
}

/// Lines that open and close values and entries in any order, so that a library reads differently
/// from each of them on.
std::string LinesInAnyOrder(std::mt19937& random, std::size_t number) {
  static constexpr std::array<std::string_view, 20> kLines{"@MISC{a,\n",
                                                           "@MISC{b,\n",
                                                           "@BOOK{a,\n",
                                                           "@MISC{b, note = {\n",
                                                           "  note = {n},\n",
                                                           "  note = {m},\n",
                                                           "  title = {t},\n",
                                                           "  note = {\n",
                                                           "  note = {{{\n",
                                                           "  note = {}}}\n",
                                                           "} note = {\n",
                                                           "} title = {{\n",
                                                           "}\n",
                                                           "}\n",
                                                           "}\n",
                                                           "}}}\n",
                                                           "}}}}}}}}},\n",
                                                           "} text\r\n",
                                                           "{{\n",
                                                           "\n"};
  std::string text;
  for (; number > 0; --number) {
    text += kLines[random() % kLines.size()];
    if (random() % 8 == 0) text.insert(text.size() - 1, random() % 200, 'x');
  }
  return text;
}

/// Writes over the beginning of such a library, so that entries vanish and come back.
TEST(LibraryFollower, ReturnsToEntriesThatWereInsideOthers) {
  std::mt19937 random(12);
  std::size_t came_back = 0;
  const int runs = RandomRuns(1500);
  for (int run = 0; run < runs; ++run) {
    Followed followed(BlockBits(random));
    followed.Write(followed.library.Size(),
                   LinesInAnyOrder(random, 20 + random() % (run % 40 == 0 ? 1500 : 200)));
    std::size_t before = 0;
    for (int writes = 0; writes < 12; ++writes) {
      const std::vector<PlainEntry> entries = ReadAgain(followed.library.Bytes());
      if (entries.size() > before + 8) ++came_back;
      before = entries.size();
      const bool appends = entries.empty() || random() % 4 == 0;
      const std::size_t offset = appends
                                     ? followed.library.Size()
                                     : entries[random() % entries.size() / (1 + random() % 4)].end;
      followed.Write(offset, LinesInAnyOrder(random, 1 + random() % 5));
      if (run % 2 == 0 || writes == 11) followed.Check();
      if (HasFatalFailure()) return;
    }
  }
  EXPECT_GT(came_back, static_cast<std::size_t>(runs) / 4);
}

/// Appends and replaces parts of hostile libraries as Clean doubles does, and asks everything after
/// each write.
TEST(LibraryFollower, KnowsWhatReadingAgainWouldFind) {
  HostileLibraries libraries(20272);
  std::mt19937 random(5);
  std::size_t replaced = 0;
  std::size_t appended = 0;
  const int runs = RandomRuns(300);
  for (int i = runs; i > 0; --i) {
    Followed followed(BlockBits(random));
    for (int writes = 0; writes < 6; ++writes) {
      std::string text = libraries.Next() + "\n";
      const std::vector<PlainEntry> entries = ReadAgain(followed.library.Bytes());
      const std::vector<PlainEntry> alone = ReadAgain(text);
      if (random() % 3 == 0 && !entries.empty()) {
        const std::size_t offset = entries[random() % entries.size()].end;
        const std::size_t rest = followed.library.Size() - offset;
        // Now and then what is written reaches the end of the library and no further.
        if (random() % 4 == 0) text.resize(std::max(rest, text.size()), '\n');
        if (random() % 4 == 0 && text.size() > rest && rest > 0) {
          text.resize(rest);
          text.back() = '\n';
        }
        followed.Write(offset, text);
        ++replaced;
      } else if (random() % 2 == 0 && !alone.empty() && alone[0].head == 0) {
        followed.follower.Append(text.substr(0, alone[0].end), alone[0].record);
        ++appended;
      } else {
        followed.Write(followed.library.Size(), text);
      }
      if (i % 2 == 0 || writes == 5) followed.Check();
      if (HasFatalFailure()) return;
    }
  }
  EXPECT_GT(replaced, static_cast<std::size_t>(runs) / 2);
  EXPECT_GT(appended, static_cast<std::size_t>(runs) / 4);
}

}  // namespace
}  // namespace tarvel::testing
