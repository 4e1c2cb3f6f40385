// SPDX-License-Identifier: MIT
#include "ops/journals/journal_table.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/plain_journals.h"

namespace tarvel {
namespace {

using namespace std::string_literals;

const std::string kStart = "******* Journal-start *******\n";
const std::string kVariations = "******* Variations    *******\n";
const std::string kEnd = "******* Journal-end   *******\n";

std::string Block(const std::string& full_name, const std::string& abbreviation,
                  const std::vector<std::string>& variations = {}) {
  std::string block = kStart + full_name + "\n" + abbreviation + "\n" + kVariations;
  for (const std::string& variation : variations) block += variation + "\n";
  return block + kEnd;
}

/// `letter` and a number.
std::string Numbered(char letter, int number) {
  return std::string(1, letter).append(std::to_string(number));
}

JournalTable TableOf(std::string_view list) {
  JournalTable table{LineStream(list)};
  EXPECT_EQ(table.Read(), JournalListFault::kNone);
  return table;
}

/// "index: matched text" or "-".
std::string Find(const JournalTable& table, std::string_view value) {
  const auto match = table.FindJournal(value);
  return match ? std::to_string(match->index) + ": " + std::string(match->text) : "-";
}

TEST(SqueezeJournalName, LeavesOutNineBytes) {
  std::string squeezed = "old";
  SqueezeJournalName(" a\tb.c:d;e{f}g\\h ", squeezed);
  EXPECT_EQ(squeezed, "abcdefgh");
  SqueezeJournalName("A,b-c/d&e\"f'(g)~\n\r\xe4"s + '\0', squeezed);
  EXPECT_EQ(squeezed, "A,b-c/d&e\"f'(g)~\n\r\xe4"s + '\0') << "and nothing else, nor any case";
  SqueezeJournalName(" .", squeezed);
  EXPECT_EQ(squeezed, "");
}

// Reading a list.

/// The journals as "full|abbreviation|number of variations", a line each.
std::string Listed(const JournalTable& table) {
  std::string listed;
  for (const Journal& journal : table.Journals()) {
    listed.append(journal.full_name).append("|").append(journal.abbreviation).append("|");
    listed.append(std::to_string(journal.variations)).append("\n");
  }
  return listed;
}

struct ListCase {
  std::string list;
  std::string journals;
  std::string_view says;
};

TEST(JournalTable, ReadsBlocks) {
  const ListCase cases[] = {
      {"START\n", "", "a list may be empty"},
      {"xSTARTx" + kStart + Block("A", "B"), "A|B|0\n", "any line with START begins the list"},
      {Block("P", "Q") + "START\n" + Block("A", "B"), "A|B|0\n", "blocks before it are preamble"},
      {"START\n" + Block("A", "B", {"v", "w"}) + "text\n\n" + Block("C", "D", {"x"}),
       "A|B|2\nC|D|1\n", "lines between blocks are passed over"},
      {"START\n" + kVariations + kEnd + Block("A", "B"), "A|B|0\n", "markers there, too"},
      {"START\nx " + kStart + "A\nB\nx\n" + kStart + "y\nz " + kVariations + "v\nw " + kEnd,
       "A|B|1\n", "a marker may stand anywhere in a line; lines before the variations are free"},
      {"START\n" + kStart + kStart + kEnd + kVariations + kStart + kVariations + kEnd,
       "******* Journal-start *******|******* Journal-end   *******|2\n",
       "where a name is due, a marker is one"},
      {"START\n******* journal-start *******\n*******  Journal-start *******\n", "",
       "a marker in another case or with another blank is none"},
      {"START\n" + kStart + "A\nB\n******* Variations *******\n" + kVariations +
           "******* Journal-end *******\n" + kEnd,
       "A|B|1\n", "nor with fewer"},
      {"START\n" + kStart + "A\nB\n" + kVariations + "v\nw", "A|B|2\n",
       "the end of the file ends the variations"},
      {"START\n" + kStart + "A\nB\n" + kVariations, "A|B|0\n", "at once, too"},
      {"START\n" + kStart + " A. b:\t\nB\r\n" + kVariations + "\n\n" + kEnd, " A. b:\t|B\r|2\n",
       "names stay as written, up to the line feed; an empty variation counts"},
      {"START\n" + Block("", ""), "||0\n", "names may be empty"},
      {"START\n" + kStart + "A\0B\n\0\n"s + kVariations, "A\0B|\0|0\n"s, "or hold any byte"},
  };
  for (const ListCase& c : cases) EXPECT_EQ(Listed(TableOf(c.list)), c.journals) << c.says;
}

TEST(JournalTable, CutsTheLastByteOfANameWhateverItIs) {
  EXPECT_EQ(Find(TableOf("START\n" + kStart + "A\nB\n" + kVariations + "abc"), "ab"), "0: ab");
  EXPECT_EQ(Find(TableOf("START\n" + kStart + "A\nB\n" + kVariations + "abc"), "abc"), "-");
  const JournalTable table =
      TableOf("START\n" + kStart + std::string(4999, 'f') + "x\n" + kVariations + kEnd);
  EXPECT_EQ(Listed(table), std::string(4998, 'f') + "|x|0\n")
      << "a piece of 4,999 bytes is a line, the rest of it is the next";
}

TEST(JournalTable, FindsMarkersInPiecesOf4999Bytes) {
  const std::string long_line(4999, '-');
  EXPECT_EQ(
      Listed(TableOf("START" + std::string(4990, '-') + kStart + "A\nB\n" + kVariations + kEnd)),
      "")
      << "the piece with START ends with its 4,999th byte, inside the marker";
  EXPECT_EQ(Listed(TableOf("START\n" + long_line + kStart + "A\nB\n" + kVariations)), "A|B|0\n");
  EXPECT_EQ(JournalTable(LineStream(std::string(4997, '-') + "START\n")).Read(),
            JournalListFault::kNoStart);
}

TEST(JournalTable, ReportsWhereTheListEndsTooEarly) {
  const struct {
    std::string list;
    JournalListFault fault;
  } cases[] = {
      {"", JournalListFault::kNoStart},
      {"start\nSTAR\n", JournalListFault::kNoStart},
      {Block("A", "B"), JournalListFault::kNoStart},
      {"START", JournalListFault::kNone},
      {"START\n" + kStart, JournalListFault::kNoName},
      {"START\n" + Block("A", "B") + kStart, JournalListFault::kNoName},
      {"START\n" + kStart + "A", JournalListFault::kNoAbbreviation},
      {"START\n" + kStart + "A\n", JournalListFault::kNoAbbreviation},
      {"START\n" + kStart + "A\nB", JournalListFault::kNoVariations},
      {"START\n" + kStart + "A\nB\nv\n" + kEnd, JournalListFault::kNoVariations},
      {"START\n" + kStart + "A\n" + kVariations, JournalListFault::kNoVariations},
      {"START\n" + kStart + "A\nB\n" + kVariations, JournalListFault::kNone},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(JournalTable(LineStream(c.list)).Read(), c.fault) << c.list;
  }
}

TEST(JournalTable, Reads20000Journals) {
  std::string list = "START\n";
  for (int i = 0; i < 20000; ++i) list += Block(Numbered('F', i), Numbered('A', i));
  const std::string last = Block("last", "l", {"v"});
  // After the last journal nothing is looked at: not even a block that breaks off.
  const JournalTable table = TableOf(list + last + kStart + "broken");
  ASSERT_EQ(table.Journals().size(), 20000U);
  EXPECT_EQ(Find(table, "F19999"), "19999: F19999");
  EXPECT_EQ(Find(table, "last"), "-");
  EXPECT_EQ(Find(table, "v"), "-");
}

// Finding a journal.

TEST(JournalTable, ComparesSqueezedAndUpperCased) {
  const JournalTable table =
      TableOf("START\n" + Block("Journal of {\\O}: x;", "J Chem Phys", {"J.O.X."}));
  EXPECT_EQ(Find(table, "J. Chem. Phys."), "0: J Chem Phys");
  EXPECT_EQ(Find(table, "\tj CHEM: phys; "), "0: J Chem Phys");
  EXPECT_EQ(Find(table, "{JOURNAL} of \\o x"), "0: Journal of {\\O}: x;");
  EXPECT_EQ(Find(table, "j o x"), "0: J.O.X.");
  EXPECT_EQ(Find(table, "J. Chem., Phys."), "-") << "a comma is not left out";
  EXPECT_EQ(Find(table, "J. Chem. Phys"), "0: J Chem Phys");
  EXPECT_EQ(Find(table, "J. Chem. Phys. B"), "-") << "nor does the beginning suffice";
  EXPECT_EQ(Find(table, ""), "-");
}

struct FindCase {
  std::string blocks;
  std::string value;
  std::string match;
  std::string_view says;
};

TEST(JournalTable, SearchesInItsOrder) {
  const FindCase cases[] = {
      {Block("x", "a") + Block("b", "x"), "x", "1: x", "abbreviations before full names"},
      {Block("a", "b", {"x"}) + Block("x", "c"), "x", "1: x", "full names before variations"},
      {Block("a", "b", {"x"}) + Block("c", "x"), "x", "1: x", "and so abbreviations"},
      {Block("a", "x.") + Block("b", "x"), "x", "0: x.", "the first abbreviation of equal ones"},
      {Block("x.", "a") + Block("x", "b"), "x", "0: x.", "the first full name"},
      {Block("a", "b", {"y", "X"}) + Block("c", "d", {"x"}), "x", "0: X", "the first variation"},
      {Block("a", "b", {"x.", "x"}), "x", "0: x.", "also within a journal"},
      // An empty row ends its table.
      {Block("a", "b") + Block("c", "") + Block("d", "x"), "x", "-", "of abbreviations"},
      {Block("a", "b") + Block("", "c") + Block("x", "d"), "x", "-", "of full names"},
      {Block("a", "b", {"c", "", "x"}) + Block("d", "e", {"f"}), "x", "-", "of one's variations"},
      {Block("a", "b", {"", "c"}) + Block("d", "e", {"x"}), "x", "1: x", "but not of another's"},
      {Block("a", "") + Block("x", "b"), "x", "1: x", "the other table goes on"},
      {Block("", "", {"x"}), "x", "0: x", "and so do the variations"},
      {Block("", "") + Block("a", "b", {"x"}), "x", "1: x", "of all journals"},
      {Block("", "", {""}), "", "-", "an empty row matches nothing"},
      // A row of left-out bytes is not empty.
      {Block("a", ".") + Block("b", "x"), "x", "1: x", "a row that squeezes to nothing ends none"},
      {Block("a", ".") + Block("b", "x"), "", "0: .", "and matches a value that does, too"},
      {Block("a", "b", {" "}), "{;}", "0:  ", "be it a variation"},
      {Block("\r", "\r"), "\r", "0: \r", "a carriage return is a name"},
  };
  for (const FindCase& c : cases) {
    EXPECT_EQ(Find(TableOf("START\n" + c.blocks), c.value), c.match) << c.says;
  }
}

TEST(JournalTable, SearchesTwentyVariationsOfAJournalAndCountsAll) {
  std::vector<std::string> many;
  for (int i = 1; i <= 45; ++i) many.push_back(Numbered('v', i));
  // The rows after the twentieth give way to the next journals', or are after the last one.
  const JournalTable table =
      TableOf("START\n" + Block("a", "b", many) + Block("c", "d") + Block("e", "f", many));
  EXPECT_EQ(Listed(table), "a|b|45\nc|d|0\ne|f|45\n");
  EXPECT_EQ(Find(table, "v20"), "0: v20");
  EXPECT_EQ(Find(table, "v21"), "-");
  EXPECT_EQ(Find(table, "v41"), "-");
  EXPECT_EQ(Find(table, "v45"), "-");
  const JournalTable blanks = TableOf("START\n" + Block("a", "b", std::vector<std::string>(30)));
  EXPECT_EQ(Listed(blanks), "a|b|30\n");
}

// Against the plain twin.

int RandomRuns() {
  const char* runs = std::getenv("TARVEL_RANDOM_RUNS");
  return runs ? std::atoi(runs) : 4000;
}

/// A block that may lack any of its lines.
std::string HostileBlock(std::mt19937& random) {
  const std::string names[] = {"\n",   "a\n",    "A.\n",  "a b\n", "b\r\n",  ".\n",   "\0\n"s,
                               "ab\n", "{a}b\n", "START", "c\n",   "\xe4\n", " c\n",  "\\b\n",
                               "d\n",  "Dd\n",   "e:\n",  ",\n",   "f",      "g;h\n", "gH\n"};
  const auto name = [&] { return names[random() % std::size(names)]; };
  const auto keep = [&] { return random() % 50 != 0; };
  std::string block = random() % 10 == 0 ? name() : "";
  if (keep()) block += kStart;
  if (keep()) block += name();
  if (keep()) block += name();
  if (random() % 10 == 0) block += name();
  if (keep()) block += kVariations;
  const auto variations = random() % 6 == 0 ? random() % 48 : random() % 4;
  for (auto i = variations; i > 0; --i) {
    block += random() % 4 == 0 ? name() : std::to_string(random() % 90) + "\n";
  }
  if (keep()) block += kEnd;
  return block;
}

TEST(JournalTable, AgreesWithItsPlainTwinAtEveryLimit) {
  std::mt19937 random(14);
  int matches = 0;
  for (int run = 0; run < RandomRuns(); ++run) {
    std::string list = random() % 20 == 0 ? "" : "START\n";
    for (auto i = random() % 7; i > 0; --i) list += HostileBlock(random);
    const std::size_t most = 1 + random() % 6;
    testing::PlainJournalTable plain(most);
    JournalTable table(LineStream(list), most);
    const int failure = plain.Read(list);
    const auto fault = static_cast<int>(table.Read());
    ASSERT_EQ(fault == 0 ? 0 : fault + 4, failure) << list;
    if (failure != 0) continue;
    ASSERT_EQ(table.Journals().size(), plain.read) << list;
    for (std::size_t i = 0; i < plain.read; ++i) {
      ASSERT_EQ(table.Journals()[i].full_name, plain.full_names[i]) << list;
      ASSERT_EQ(table.Journals()[i].abbreviation, plain.abbreviations[i]) << list;
      ASSERT_EQ(table.Journals()[i].variations, plain.counts[i]) << list;
    }
    for (const std::string& value : std::initializer_list<std::string>{
             "",   "a", "AB", "b",    "\0"s, "c",  "d d", "e",   "star", "f",
             "GH", ",", "\r", "\xe4", "1",   "17", "33",  "4.9", "{65}", "80"}) {
      std::string text;
      std::size_t index = 0;
      const bool found = plain.Find(value, text, index);
      matches += found ? 1 : 0;
      ASSERT_EQ(Find(table, value), found ? std::to_string(index) + ": " + text : "-")
          << value << "\n"
          << list;
    }
  }
  EXPECT_GT(matches, RandomRuns()) << "the lists hold what is looked for";
}

}  // namespace
}  // namespace tarvel
