// SPDX-License-Identifier: MIT
#include "bench/library_maker.h"

#include <array>
#include <numeric>
#include <span>
#include <string_view>

#include "bench/library_words.h"

namespace tarvel::bench {

namespace {

/// A small generator of its own, because the distributions of the C++ library give other numbers
/// on other machines.
class Dice {
 public:
  explicit Dice(std::uint64_t seed) : state_(seed * 0x9E3779B97F4A7C15u + 0x7A5Eu) {}

  /// A number below `sides`.
  std::uint64_t Roll(std::uint64_t sides) {
    state_ += 0x9E3779B97F4A7C15u;
    std::uint64_t mixed = state_;
    mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9u;
    mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBu;
    return ((mixed ^ (mixed >> 31)) >> 11) % sides;
  }
  template <typename T, std::size_t N>
  const T& Pick(const std::array<T, N>& rows, std::size_t of = N) {
    return rows[Roll(of)];
  }

 private:
  std::uint64_t state_;
};

// What a number is rolled for; keeps the rolls of one entry apart.
enum class Purpose : std::uint64_t { kKind, kWork, kExtras, kSecond, kDocument };

Dice DiceFor(std::uint64_t number, Purpose purpose) {
  return Dice(number * 8 + static_cast<std::uint64_t>(purpose));
}

std::string Number(std::uint64_t number) { return std::to_string(number); }

/// Letters that count: 0 is "a", 26 is "ba".
std::string Letters(std::uint64_t number) {
  std::string letters;
  do {
    letters.insert(letters.begin(), static_cast<char>('a' + number % 26));
    number /= 26;
  } while (number != 0);
  return letters;
}

enum class Kind { kOriginal, kExactDouble, kOtherKey, kConflict };

/// What entry `index` is and, for a double, which entry it repeats.
struct Place {
  Kind kind = Kind::kOriginal;
  std::uint64_t original = 0;
};

Kind KindOf(std::uint64_t index) {
  if (index == 0) return Kind::kOriginal;
  const std::uint64_t roll = DiceFor(index, Purpose::kKind).Roll(100);
  if (roll < 2) return Kind::kExactDouble;
  if (roll < 4) return Kind::kOtherKey;
  return roll == 4 ? Kind::kConflict : Kind::kOriginal;
}

Place PlaceOf(std::uint64_t index) {
  Place place{KindOf(index), index};
  if (place.kind == Kind::kOriginal) return place;
  Dice dice = DiceFor(index, Purpose::kKind);
  dice.Roll(100);
  place.original = dice.Roll(index);
  while (KindOf(place.original) != Kind::kOriginal) --place.original;
  return place;
}

void AppendWords(Dice& dice, std::uint64_t count, std::string& out) {
  for (std::uint64_t i = 0; i < count; ++i) {
    if (i != 0) out += ' ';
    out += dice.Pick(kWords);
  }
}

struct Author {
  FamilyName name;
  std::string_view given;
  char initial;
};

/// One of the ways in which people write an author.
void AppendAuthor(const Author& author, std::uint64_t form, std::string& out) {
  const std::string family(author.name.written);
  const std::string given(author.given);
  const std::string first = given.substr(0, 1) + ".";
  const std::string second = std::string(1, author.initial) + ".";
  const std::array<std::string, 6> forms{
      family + ", " + first + " " + second, given + " " + second + " " + family,
      first + " " + second + " " + family,  family + ", " + given,
      family + ", " + first + second,       given + " " + family};
  out += forms[form];
}

/// What a work is, whatever the key it is filed under.
struct Work {
  std::string_view type;
  std::array<Author, 6> authors;
  std::size_t author_count = 1;
  std::uint64_t form = 0;
  bool others = false;
  std::string title;
  JournalName journal;
  bool short_journal = false;
  std::uint64_t year = 0;
  std::uint64_t volume = 0;
  std::uint64_t page = 0;
  std::uint64_t last_page = 0;
};

struct TypeShare {
  std::string_view type;
  std::uint64_t up_to;  // of 100
};
constexpr std::array<TypeShare, 10> kTypes{{{"article", 70},
                                            {"inproceedings", 80},
                                            {"book", 85},
                                            {"phdthesis", 88},
                                            {"incollection", 92},
                                            {"techreport", 94},
                                            {"misc", 96},
                                            {"inbook", 97},
                                            {"proceedings", 98},
                                            {"unpublished", 100}}};

std::string_view PickType(Dice& dice) {
  const std::uint64_t roll = dice.Roll(100);
  std::size_t row = 0;
  while (roll >= kTypes[row].up_to) ++row;
  return kTypes[row].type;
}

Work MakeWork(std::uint64_t number, Form form = Form::kAscii) {
  Dice dice = DiceFor(number, Purpose::kWork);
  Work work;
  work.type = PickType(dice);
  work.author_count = 1 + dice.Roll(work.authors.size());
  for (Author& author : work.authors) {
    author = {dice.Pick(kFamilyNames, kPlainFamilyNames), dice.Pick(kGivenNames),
              static_cast<char>('A' + dice.Roll(26))};
  }
  if (dice.Roll(100) == 0 && form != Form::kAscii) {
    work.authors[work.author_count - 1].name =
        kFamilyNames[kPlainFamilyNames + dice.Roll(kFamilyNames.size() - kPlainFamilyNames)];
  }
  work.form = dice.Roll(6);
  work.others = dice.Roll(20) == 0;
  AppendWords(dice, 5 + dice.Roll(8), work.title);
  work.title[0] = static_cast<char>(work.title[0] - 'a' + 'A');
  if (dice.Roll(5) == 0) work.title.append(" ").append(dice.Pick(kTitleMarks));
  work.journal = dice.Pick(kJournals);
  work.short_journal = dice.Roll(3) == 0;
  work.year = 1960 + dice.Roll(55);
  work.volume = work.year - 1930 + dice.Roll(10);
  work.page = 1 + dice.Roll(25000);
  work.last_page = work.page + dice.Roll(20);
  return work;
}

std::string KeyOf(std::uint64_t number) {
  const Work work = MakeWork(number);
  return std::string(work.authors[0].name.plain) + Number(work.year) + Letters(number);
}

constexpr std::size_t kNone = std::string::npos;
/// What must be found elsewhere as it stands gets no accents.
constexpr std::string_view kExactTags = "journal doi url file month";

/// Writes one entry field by field.
class EntryWriter {
 public:
  EntryWriter(const Work& work, Dice extras, Form form, std::string& out)
      : work_(work), dice_(extras), form_(form), out_(out) {}

  void Write(std::string_view key) {
    const bool is_unknown = form_ == Form::kUnknown && work_.page % 2 == 0;
    out_.append("@").append(is_unknown ? "online" : work_.type).append("{").append(key);
    Field("author", Authors());
    Title();
    Source();
    Field("year", Number(work_.year));
    const std::uint64_t wanted = 8 + dice_.Roll(7);
    for (std::size_t row = 0; row < kExtras.size() && fields_ < wanted; ++row) {
      // Not always the same ones: a field is passed over while enough others are left.
      if (kExtras.size() - row > wanted - fields_ && dice_.Roll(3) == 0) continue;
      (this->*kExtras[row])();
    }
    out_.append(form_ == Form::kAttached ? "}\n\n" : "\n}\n\n");
  }

 private:
  using Extra = void (EntryWriter::*)();
  static const std::array<Extra, 12> kExtras;

  void Field(std::string_view name, std::string_view value) {
    const bool aligned = form_ == Form::kAligned;
    const bool bare = form_ == Form::kBare && value.find_first_not_of("0123456789") == kNone;
    const bool quotes = form_ == Form::kQuotes;
    const std::size_t line = out_.size() + 2;
    out_.append(aligned ? ",\n\t" : ",\n  ").append(name);
    out_.append(aligned ? 14 - name.size() : 1, ' ').append("= ");
    out_.append(bare ? "" : quotes ? "\"" : "{");
    const std::size_t begin = out_.size();
    out_.append(value);
    if (form_ != Form::kAscii && kExactTags.find(name) == kNone) Accent(begin);
    if (form_ == Form::kWrapped) Wrap(line, begin);
    out_.append(bare ? "" : quotes ? "\"" : "}");
    ++fields_;
  }

  /// Gives every fifth "e" of the entry an accent, from `begin` on.
  void Accent(std::size_t begin) {
    for (std::size_t at = begin; (at = out_.find('e', at)) != kNone; ++at) {
      if (++letters_ % 5 == 0) out_.replace(at, 1, "\xC3\xA9");
    }
  }

  /// Breaks the last line of the text, which begins at `line`, at the blanks after `begin`.
  void Wrap(std::size_t line, std::size_t begin) {
    while (out_.size() - line > 70) {
      const std::size_t blank = out_.rfind(' ', line + 70);
      if (blank == kNone || blank < begin) return;
      out_.replace(blank, 1, "\n    ");
      line = blank + 1;
      begin = line + 4;
    }
  }

  std::string Authors() {
    std::string list;
    for (std::size_t i = 0; i < work_.author_count; ++i) {
      if (i != 0) list += " and ";
      AppendAuthor(work_.authors[i], work_.form, list);
    }
    if (work_.others) list += " and others";
    return list;
  }

  void Title() {
    std::string title = work_.title;
    const std::uint64_t form = dice_.Roll(10);
    if (form < 3) title = "{" + title + "}";
    const std::size_t blank = title.find(' ', title.size() / 2);
    // Some programs break long values: the rest stands on a line of its own.
    if (form == 9 && blank != std::string::npos) title.replace(blank, 1, "\n           ");
    Field("title", title);
  }

  /// Where the work appeared, with the fields that its type asks for.
  void Source() {
    if (work_.type == "article") {
      Field("journal", work_.short_journal ? work_.journal.abbreviated : work_.journal.full);
      Field("volume", Number(work_.volume));
      Pages();
    } else if (work_.type == "inproceedings" || work_.type == "incollection") {
      Field("booktitle", "Proceedings on " + std::string(dice_.Pick(kWords)) + " in " +
                             std::string(dice_.Pick(kPlaces)));
      Pages();
      Publisher();
    } else if (work_.type == "phdthesis") {
      Field("school", "University of " + std::string(dice_.Pick(kPlaces)));
    } else if (work_.type == "techreport") {
      Field("institution", "Institute of " + std::string(dice_.Pick(kPlaces)));
      Field("number", Number(1 + dice_.Roll(999)));
    } else if (work_.type == "misc" || work_.type == "unpublished") {
      Field("note", "Private communication " + Number(dice_.Roll(100000)));
    } else {
      Publisher();
      Field("address", dice_.Pick(kPlaces));
    }
  }

  void Pages() { Field("pages", Number(work_.page) + "--" + Number(work_.last_page)); }
  void Publisher() { Field("publisher", dice_.Pick(kPublishers)); }
  void Abstract() {
    std::string text;
    AppendWords(dice_, 8 + dice_.Roll(24), text);
    Field("abstract", text + ".");
  }
  void Doi() { Field("doi", "10." + Number(1000 + dice_.Roll(8000)) + "/" + Identifier()); }
  void Url() { Field("url", "http://example.org/" + Identifier() + ".html"); }
  void Issue() { Field("issue", Number(1 + dice_.Roll(24))); }
  void Month() { Field("month", dice_.Pick(kMonths)); }
  void Owner() { Field("owner", "me"); }
  void Timestamp() {
    Field("timestamp", Number(2005 + dice_.Roll(10)) + "." + Number(10 + dice_.Roll(3)) + "." +
                           Number(10 + dice_.Roll(19)));
  }
  void Issn() {
    Field("issn", Number(1000 + dice_.Roll(9000)) + "-" + Number(1000 + dice_.Roll(9000)));
  }
  void Keywords() {
    std::string text(dice_.Pick(kWords));
    Field("keywords", text.append(", ").append(dice_.Pick(kWords)));
  }
  void Language() { Field("language", "English"); }
  void File() { Field("file", ":papers/" + Identifier() + ".pdf:PDF"); }
  void Comment() {
    std::string text;
    AppendWords(dice_, 3 + dice_.Roll(4), text);
    Field("comment", text);
  }
  std::string Identifier() { return Letters(dice_.Roll(100000)) + Number(dice_.Roll(1000000)); }

  const Work& work_;
  Dice dice_;
  Form form_;
  std::string& out_;
  std::uint64_t fields_ = 0;
  std::uint64_t letters_ = 0;  // that may get an accent
};

const std::array<EntryWriter::Extra, 12> EntryWriter::kExtras{
    &EntryWriter::Abstract, &EntryWriter::Doi,       &EntryWriter::Url,     &EntryWriter::Issue,
    &EntryWriter::Month,    &EntryWriter::Owner,     &EntryWriter::Issn,    &EntryWriter::Keywords,
    &EntryWriter::File,     &EntryWriter::Timestamp, &EntryWriter::Comment, &EntryWriter::Language};

}  // namespace

LibraryMaker::LibraryMaker(std::uint64_t entries, Form form)
    : entries_(entries), stride_(entries * 5 / 8 + 1), form_(form) {
  while (std::gcd(stride_, entries_) != 1) ++stride_;
}

/// Writes work number `work` under a key, with the further fields that follow from `extras`.
void LibraryMaker::Append(std::uint64_t work, std::uint64_t extras, std::string_view key,
                          std::string& out) const {
  const std::size_t begin = out.size();
  EntryWriter(MakeWork(work, form_), DiceFor(extras, Purpose::kExtras), form_, out).Write(key);
  if (form_ != Form::kCrLf) return;
  for (std::size_t at = begin; (at = out.find('\n', at)) != kNone; at += 2) out.insert(at, 1, '\r');
}

std::uint64_t LibraryMaker::Shuffled(std::uint64_t index) const {
  return (index * stride_ + entries_ / 3) % entries_;
}

void LibraryMaker::AppendFirst(std::uint64_t index, std::string& out) const {
  const Place place = PlaceOf(index);
  switch (place.kind) {
    case Kind::kOriginal:
    case Kind::kExactDouble:
      return Append(place.original, place.original, KeyOf(place.original), out);
    case Kind::kOtherKey:
      return Append(place.original, index, KeyOf(index), out);
    case Kind::kConflict:
      return Append(index, index, KeyOf(place.original), out);
  }
}

void LibraryMaker::AppendSecond(std::uint64_t index, std::string& out) const {
  const std::uint64_t source = Shuffled(index);
  const std::uint64_t fresh = entries_ + source;
  if (source * 5 >= entries_ * 4) return Append(fresh, fresh, KeyOf(fresh), out);
  const Place place = PlaceOf(source);
  const std::uint64_t roll = DiceFor(source, Purpose::kSecond).Roll(100);
  if (place.kind != Kind::kOriginal || roll >= 10) return AppendFirst(source, out);
  if (roll < 5) return Append(source, fresh, KeyOf(fresh), out);  // filed under another key
  Append(fresh, fresh, KeyOf(source), out);                       // the same key for another
}

std::uint64_t LibraryMaker::Citations() const { return (entries_ + 19) / 20; }

void LibraryMaker::AppendCitedKeys(std::uint64_t index, std::string& out) const {
  for (const std::uint64_t cited : {2 * index, 2 * index + 1}) {
    if (cited != 2 * index) out += ',';
    out += KeyOf(PlaceOf(Shuffled(cited % entries_)).original);
  }
}

void LibraryMaker::AppendSentence(std::uint64_t index, std::string& out) const {
  Dice dice = DiceFor(index, Purpose::kDocument);
  out += "It was shown that ";
  AppendWords(dice, 6 + dice.Roll(8), out);
  out += " \\cite{";
  AppendCitedKeys(index, out);
  out += dice.Roll(6) == 0 ? "}.\n\n" : "}.\n";
}

std::string FirstLibrary(std::uint64_t entries) {
  const LibraryMaker maker(entries);
  std::string library;
  for (std::uint64_t i = 0; i < entries; ++i) maker.AppendFirst(i, library);
  return library;
}

std::string SecondLibrary(std::uint64_t entries) {
  const LibraryMaker maker(entries);
  std::string library;
  for (std::uint64_t i = 0; i < entries; ++i) maker.AppendSecond(i, library);
  return library;
}

std::string Document(std::uint64_t entries) {
  const LibraryMaker maker(entries);
  std::string document(kDocumentHead);
  for (std::uint64_t i = 0; i < maker.Citations(); ++i) maker.AppendSentence(i, document);
  return document.append(kDocumentEnd);
}

}  // namespace tarvel::bench
