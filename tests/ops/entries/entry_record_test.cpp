// SPDX-License-Identifier: MIT
#include "ops/entries/entry_record.h"

#include <gtest/gtest.h>

#include <array>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "core/value_reader.h"
#include "tests/support/hostile_library.h"

namespace tarvel::testing {

namespace {

struct Read {
  EntryRecord record;
  EntryLineEnd end;
  std::size_t position;
};

Read ReadTags(LineStream& stream, const TagReader& reader = TagReader(kCompareTags)) {
  Read read;
  read.end = reader.ReadEntry(stream, read.record);
  read.position = stream.Position();
  return read;
}

}  // namespace

TEST(EntryRecord, TakesKeyAndTypeToTheLetter) {
  struct Case {
    std::string_view head, key, type, says;
  };
  constexpr Case kCases[] = {
      {"@ARTICLE{Key,\n", "Key", "ARTICLE", "the usual form"},
      {"@book { k ,\n", " k ", "book ", "blanks belong to them"},
      {"}@MISC{a\n", "a", "MISC", "without a comma up to the line's end"},
      {"{x}@MISC{a,\n", "x}@MISC{a", "MISC", "the first brace begins the key"},
      {"a@b @MISC{a,\n", "a", "b @MISC", "the first at sign begins the type"},
      {"@MISC\n", "", "MISC", "without a brace the key is empty"},
      {"@MISC{,\n", "", "MISC", "a key of no bytes"},
  };
  for (const Case& c : kCases) {
    EntryRecord record;
    record[Field::kNote].SetView("old");
    record.Start(c.head);
    EXPECT_EQ(record.key, c.key) << c.says;
    EXPECT_EQ(record.type, c.type) << c.says;
    EXPECT_EQ(record[Field::kNote].Text(), "") << "fields are emptied";
    EXPECT_EQ(record[Field::kNote].Offset(), 0u);
  }
}

TEST(TagReader, TheFirstNameOfTheListDecides) {
  struct Case {
    std::string_view line;
    Field compare, doubles;
  };
  constexpr Case kCases[] = {
      {"booktitle = {v}", Field::kTitle, Field::kTitle},
      {"title of a Journal = {v}", Field::kJournal, Field::kJournal},
      {"note url = {v}", Field::kNote, Field::kUrl},  // where the lists differ
      {"year pages = {v}", Field::kYear, Field::kYear},
      {"pages volume = {v}", Field::kPages, Field::kPages},
      {"volume author = {v}", Field::kVolume, Field::kVolume},
      {"author title = {v}", Field::kAuthor, Field::kAuthor},
      {"title note = {v}", Field::kTitle, Field::kTitle},
      {"title url = {v}", Field::kTitle, Field::kTitle},
      {"url number = {v}", Field::kUrl, Field::kUrl},
      {"number note = {v}", Field::kNote, Field::kNote},
      {"number nationality = {v}", Field::kNumber, Field::kNumber},
      {"nationality comment = {v}", Field::kNationality, Field::kNationality},
      {"journal year = {v}", Field::kJournal, Field::kJournal},
  };
  for (const Case& c : kCases) {
    LineStream stream(c.line);
    EXPECT_EQ(ReadTags(stream).record[c.compare].Text(), "v") << c.line;
    LineStream again(c.line);
    EXPECT_EQ(ReadTags(again, TagReader(kDoublesTags)).record[c.doubles].Text(), "v") << c.line;
  }
}

TEST(TagReader, OnlyCompareKnowsComments) {
  LineStream stream("comment = {v}\n}\n");
  EXPECT_EQ(ReadTags(stream).record[Field::kComment].Text(), "v");
  LineStream again("comment = {v}\n}\n");
  EXPECT_EQ(ReadTags(again, TagReader(kDoublesTags)).record[Field::kComment].Text(), "");
}

TEST(TagReader, EveryFieldHasOneName) {
  std::set<Field> compare, doubles;
  for (const FieldTag& tag : kCompareTags) compare.insert(tag.field);
  for (const FieldTag& tag : kDoublesTags) doubles.insert(tag.field);
  EXPECT_EQ(compare.size(), kFieldCount);
  EXPECT_EQ(doubles.size(), kFieldCount - 1);
}

TEST(TagReader, ReportsWhatEndedTheEntry) {
  struct Case {
    std::string_view lines;
    EntryLineEnd end;
    std::size_t position;
    std::string_view says;
  };
  constexpr Case kCases[] = {
      {"x\n}\nrest", EntryLineEnd::kClosed, 4, "a line that begins with the brace"},
      {"}", EntryLineEnd::kClosed, 1, "also the last one"},
      {"} note\n}x\nrest", EntryLineEnd::kClosed, 10, "but not one that names a tag"},
      {"note = {a\n}\nx}\n}\n", EntryLineEnd::kClosed, 17, "nor one inside a value"},
      {"x\n", EntryLineEnd::kReadFailed, 2, "a read that meets the end takes no line"},
      {"x", EntryLineEnd::kFileEnded, 1, "the last line met the end already"},
      {"", EntryLineEnd::kReadFailed, 0, "nothing there"},
      {"note = {a", EntryLineEnd::kFileEnded, 9, "the value's line met the end"},
      {"note = {a\n", EntryLineEnd::kFileEnded, 10, "reading the value met the end"},
      {"note = {a}\n", EntryLineEnd::kReadFailed, 11, "the value's line did not"},
  };
  for (const Case& c : kCases) {
    LineStream stream(c.lines);
    const Read read = ReadTags(stream);
    EXPECT_EQ(read.end, c.end) << c.says;
    EXPECT_EQ(read.position, c.position) << c.says;
  }
}

TEST(TagReader, KeepsTheFirstPage) {
  struct Case {
    std::string_view line, pages;
  };
  for (const Case& c :
       {Case{"pages = {123-130}", "123"}, Case{"pages = {123--130}", "123"},
        Case{"pages = {-130}", ""}, Case{"pages = {--}", ""}, Case{"pages = {}", ""},
        Case{"pages = {12 - 3}", "12 "}, Case{"pages = {1\n2-3}", "1 2"},
        Case{"pages = {1\n-2}", "1 "}, Case{"pages = 12-3", ""}}) {
    LineStream stream(c.line);
    EXPECT_EQ(ReadTags(stream).record[Field::kPages].Text(), c.pages) << c.line;
  }
  LineStream title("title = {a-b}");
  EXPECT_EQ(ReadTags(title).record[Field::kTitle].Text(), "a-b") << "only pages are cut";
}

TEST(TagReader, AValueMayBeginOnThePieceAfterItsBrace) {
  const std::string start = "note = {";
  const std::string pad(4999 - start.size(), ' ');
  LineStream stream(pad + start + "  abc},\n}\n");
  EXPECT_EQ(ReadTags(stream).record[Field::kNote].Text(), "abc");
  LineStream cut(pad + start.substr(1) + "a" + "b},\n}\n");
  EXPECT_EQ(ReadTags(cut).record[Field::kNote].Text(), "") << "ote is no tag";
  LineStream ended(pad + "note={a" + "b},\n}\n");
  EXPECT_EQ(ReadTags(ended).record[Field::kNote].Text(), "ab") << "one byte short of the limit";
  LineStream piece(pad + " note={" + "\n");
  EXPECT_EQ(ReadTags(piece).record[Field::kNote].Text(), "");
}

TEST(TagReader, ReportsWhereAValueWasRead) {
  LineStream stream("x\nnote = {a}\nurl = {b}\nnote = {c}\n}\n");
  const Read read = ReadTags(stream);
  EXPECT_EQ(read.record[Field::kNote].Offset(), 23u);
  EXPECT_EQ(read.record[Field::kUrl].Offset(), 13u);
  EXPECT_EQ(read.record[Field::kYear].Offset(), 0u);
}

TEST(TagReader, AValueOfOneLineIsAViewIntoTheFile) {
  LineStream stream("note = {a {b} c},\nurl = {a\nb},\n}\n");
  Read read = ReadTags(stream);
  EXPECT_EQ(read.record[Field::kNote].Text().data(), stream.Bytes().data() + 8);
  TextStore store;
  EXPECT_EQ(read.record[Field::kNote].Keep(store).data(), stream.Bytes().data() + 8);
  const std::string_view kept = read.record[Field::kUrl].Keep(store);
  read.record.Start("@MISC{a,");
  EXPECT_EQ(kept, "a b");
}

TEST(TagReader, ReadsValuesAsReadFieldValueDoes) {
  HostileLibraries libraries(7);
  constexpr std::array<FieldTag, 1> kTitleOnly{{{"title", Field::kTitle}}};
  const TagReader reader(kTitleOnly);
  int joined = 0;
  for (int run = 0; run < 1000; ++run) {
    const std::string library = std::string("\n").append(libraries.Next());
    LineStream stream(library);
    LineStream twin(library);
    EntryRecord record;
    for (EntryLineEnd end = EntryLineEnd::kInside;
         end == EntryLineEnd::kInside || end == EntryLineEnd::kClosed;) {
      record.Start("");
      end = reader.ReadLine(stream, record);
      Line line;
      std::string value;
      ReadLine(twin, limits::kPairLine, line);
      if (record[Field::kTitle].Offset() != 0) {
        ReadFieldValue(line, twin, value);
        ASSERT_EQ(record[Field::kTitle].Text(), value) << library;
        joined += value.find(' ') != std::string::npos ? 1 : 0;
      }
      ASSERT_EQ(stream.Position(), twin.Position()) << library;
    }
  }
  EXPECT_GT(joined, 100);
}

TEST(TextStore, KeepsTextsOfAnySize) {
  TextStore store;
  std::vector<std::pair<std::string_view, std::string>> kept;
  for (std::size_t size : {0u, 1u, 10u, 65535u, 65536u, 65537u, 200000u, 3u, 40000u, 40000u}) {
    const std::string text(size, static_cast<char>('a' + kept.size()));
    kept.emplace_back(store.Keep(text), text);
  }
  for (const auto& [view, text] : kept) EXPECT_EQ(view, text);
}

TEST(TextStore, KeepsSeveralTextsOneAfterAnother) {
  TextStore store;
  const std::string large(70000, 'x');
  const std::array<std::string_view, 4> few{"ab", "", "c", "de"};
  const std::array<std::string_view, 2> many{large, "y"};
  const std::string_view first = store.Keep(few);
  const std::string_view second = store.Keep(many);
  const std::string_view third = store.Keep("z");
  EXPECT_EQ(first, "abcde");
  EXPECT_EQ(second, large + "y");
  EXPECT_EQ(third, "z");
  EXPECT_EQ(store.Keep(std::span<const std::string_view>()), "");
}

}  // namespace tarvel::testing
