// SPDX-License-Identifier: MIT
#include "ops/prepare/entry_former.h"

#include <algorithm>

#include "core/text_primitives.h"
#include "ops/prepare/letters.h"
#include "ops/prepare/tag_lines.h"

namespace tarvel {

namespace {

constexpr std::size_t kLongestName = 100;

/// Whether an "@" stands in the value as in front of a known type. Where the value is broken into
/// lines, what follows on the same line decides; so all of it is looked at.
bool LooksLikeHead(std::string_view value) {
  for (std::size_t at = value.find('@'); at != std::string_view::npos;
       at = value.find('@', at + 1)) {
    std::size_t end = at + 1;
    while (end < value.size() && IsLetter(value[end])) ++end;
    std::string head = std::string(value.substr(at, end - at)) + "{";
    if (IsKnownEntry(head)) return true;
  }
  return false;
}

/// The names of words, for the log.
std::string NamesOf(WordSet words) {
  std::string names;
  for (std::size_t word = 0; word < kWords.size(); ++word) {
    if ((words & WordBit(word)) == 0) continue;
    names.append(names.empty() ? "'" : ", '").append(kWords[word]).append("'");
  }
  return names;
}

}  // namespace

void EntryFormer::Form(const BibItem& entry, std::size_t inherited) {
  texts_.Clear();
  misread_ = 0;
  namer_.Name(entry, inherited);
  tags_.swap(namer_.Tags());
  printed_ = PrintedWords(Type());
  for (FormedTag& tag : tags_) GuardTag(tag);
  AddEmptyTags();
  Order();
  if (misread_ != 0) ReportTaken();
  if (crossrefs_.HasParent()) SayInherited();
}

void EntryFormer::SayInherited() {
  std::string names;
  for (const FormedTag& tag : tags_) {
    if (tag.is_inherited) names.append(names.empty() ? "'" : ", '").append(tag.Name()).append("'");
  }
  if (!names.empty()) log_.Say({"These tags are those of its 'crossref': ", names, "."});
}

/// Sees to it that no operation takes the tag's line for that of another.
void EntryFormer::GuardTag(FormedTag& tag) {
  if (tag.is_inherited && tag.value.empty()) {
    tag.is_left_out = true;
    return;
  }
  if (tag.known->row.use == TagRow::Use::kBookkeeping) {
    tag.rank = FormedTag::Rank::kBookkeeping;
  }
  if (tag.known->is_title) GuardTitle(tag);
  if (tag.known->is_of_names && HasPartsInBraces(tag.value)) GuardNamesOf(tag);
  const TagName& name = *tag.known;
  const WordSet harmful = HarmfulWords(name.words, printed_);
  const Harm harm = FindHarm(tag.value, tag.facts, harmful);
  const bool is_misread = !tag.IsNeeded() && (name.is_misread || name.name.size() > kLongestName);
  if (harm.Any() || is_misread || !HasFewLines(tag)) MendTag(tag, harm, harmful, is_misread);
}

/// Mends a tag that operations would misread, or leaves it out.
void EntryFormer::MendTag(FormedTag& tag, Harm harm, WordSet harmful, bool is_misread) {
  const TagName& name = *tag.known;
  if (!tag.IsNeeded() && (!keeps_all_ || name.holds_at)) return LeaveOut(tag, harm);
  GuardHarm(tag, harm, harmful);
  if (tag.known->is_title) GuardTitle(tag);  // it may end with a group now
  const bool is_head = harm.is_at && LooksLikeHead(tag.value);
  const bool swallows = harm.words != 0 && FitOf(tag.Name(), tag.value) >= LineFit::kTangledLines;
  if (is_head || swallows) {
    LeaveOut(tag, harm);
    if (tag.is_left_out) return;
    harm = {};
  }
  if (is_misread) harm.words |= name.words;
  if (harm.words != 0) {
    const bool is_own = tag.IsNeeded() && name.words != 0;
    tag.rank = is_own ? FormedTag::Rank::kMisreadOwn : FormedTag::Rank::kMisread;
  }
  tag.harm = harm.words;
  misread_ |= harm.words;
  ReportHarm(tag, harm);
}

void EntryFormer::GuardTitle(FormedTag& tag) {
  if (tag.Name() == "booktitle") tag.rank = FormedTag::Rank::kBooktitle;
  if (!NeedsEnds(tag.value)) return;
  std::string& guarded = texts_.Next();
  GuardEnds(tag.value, guarded);
  tag.SetValue(guarded);
}

/// A list in which a comma is misread as well stays legible: groups would not cure it.
void EntryFormer::GuardNamesOf(FormedTag& tag) {
  if (HasCommaInBraces(tag.value)) {
    Warn(tag, "a name of '" + std::string(tag.Name()) +
                  "' has a comma in braces: Extract and Text with style aps or wiley cut it there");
    return;
  }
  std::string& guarded = texts_.Next();
  GuardNames(tag.value, guarded);
  if (guarded == tag.value) return;
  tag.SetValue(guarded);
  if (!tag.is_inherited)
    log_.Say({"In the tag '", tag.Name(), "' {} was put into the word 'and'."});
}

/// Puts groups into the words that do harm; `harm` is then what is left.
void EntryFormer::GuardHarm(FormedTag& tag, Harm& harm, WordSet harmful) {
  if (!harm.Any() || tag.known->row.is_verbatim) return;
  std::string& guarded = texts_.Next();
  GuardWords(tag.value, harm.words, guarded);
  tag.SetValue(guarded);
  const Harm left = FindHarm(tag.value, tag.facts, harmful);
  const WordSet cured = harm.words & ~left.words;
  if (cured != 0 && !tag.is_inherited) {
    log_.Say({"In the tag '", tag.Name(), "' {} was put into the word ", NamesOf(cured), "."});
  }
  harm = left;
}

void EntryFormer::ReportHarm(const FormedTag& tag, const Harm& harm) {
  const WordSet own = tag.known->words;
  const bool is_compared = (own & ComparedWords(Type())) != 0;
  for (std::size_t word = 0; is_compared && word < kComparedWords; ++word) {
    if ((harm.words & WordBit(word)) == 0 || !WinsOver(word, own)) continue;
    Warn(tag, "Compare and Clean doubles read the line of '" + std::string(tag.Name()) +
                  "' as that of '" + std::string(kWords[word]) + "', which it mentions");
    break;
  }
  if (harm.is_at) {
    Warn(tag, "the text of '" + std::string(tag.Name()) +
                  "' between an \"@\" and the next \"{\" will be turned into capitals");
  }
  if (harm.is_exempt) {
    Warn(tag, "Clean characters leaves the line of '" + std::string(tag.Name()) + "' out");
  }
  if (!HasFewLines(tag)) {
    Warn(tag, "the value of '" + std::string(tag.Name()) +
                  "' is too long for one line, and operations misread its further lines");
  }
}

void EntryFormer::Warn(const FormedTag& tag, const std::string& text) {
  log_.Warn(WarningKind::kMisreadTag, tag.offset, text);
}

/// Whether the lines of a tag do no harm by their length or number: Clean tags skips a tag
/// that it does not know, but looks at the further lines of its value.
bool EntryFormer::HasFewLines(const FormedTag& tag) const {
  const LineFit fit = FitOf(tag.Name(), tag.value);
  if (fit == LineFit::kOneLine || fit == LineFit::kTooLong) return fit == LineFit::kOneLine;
  return IsInLineFilter(tag.Name()) || !HoldsFilterWord(tag.value);
}

/// Leaves a tag out. Where a further preparation, or BibTeX by a parent, could put another in its
/// place, it is written without its value.
void EntryFormer::LeaveOut(FormedTag& tag, const Harm& harm) {
  tag.is_left_out = true;
  if (tag.is_inherited) return;
  const WordSet words = harm.words | (tag.known->is_misread ? tag.known->words : WordSet{0});
  const std::string names = NamesOf(words);
  const std::string why = names.empty() ? "operations would misread other lines because of it"
                                        : "operations would take its line for that of " + names;
  log_.Say({"The tag '", tag.Name(), "' was left out, as ", why, ": {", tag.value, "}"});
  const bool may_stay = !keeps_all_ && !tag.IsNeeded() && !tag.known->holds_at;
  log_.LeaveOut(tag.offset, tag.Name(), why + (may_stay ? "; prepare --keep-all keeps it" : ""));
  const bool leaves_name = tag.IsNeeded() || (crossrefs_.HasParent() && !tag.known->is_misread);
  if ((!leaves_name && !keeps_all_) || tag.known->holds_at) return;
  tag.is_left_out = false;
  tag.value = {};
}

/// Whether a tag of this name will be written.
bool EntryFormer::Holds(std::string_view name) const {
  return std::any_of(tags_.begin(), tags_.end(), [name](const FormedTag& tag) {
    return tag.Name() == name && !tag.is_left_out;
  });
}

/// Where a line holds a word of a tag that the entry does not have, that tag is added, empty, so
/// that no operation keeps what it took from the line.
void EntryFormer::AddEmptyTags() {
  if (misread_ == 0) return;
  const WordSet wanted = misread_ & (printed_ | ComparedWords(Type()));
  for (std::size_t word = 0; word < kWords.size(); ++word) {
    if ((wanted & WordBit(word)) == 0 || Holds(kWords[word])) continue;
    log_.Say({"An empty tag '", kWords[word], "' was added: a line of another mentions it."});
    FormedTag tag{&namer_.NameOf(kWords[word]), {}};
    if (tag.Name() == "booktitle") tag.rank = FormedTag::Rank::kBooktitle;
    tags_.push_back(tag);
  }
}

/// Nearly all entries are in order.
void EntryFormer::Order() {
  std::erase_if(tags_, [](const FormedTag& tag) { return tag.is_left_out; });
  const auto by_rank = [](const FormedTag& a, const FormedTag& b) { return a.rank < b.rank; };
  if (std::is_sorted(tags_.begin(), tags_.end(), by_rank)) return;
  std::stable_sort(tags_.begin(), tags_.end(), by_rank);
}

/// Warns of lines that operations take for those of other tags, where no later line of the right
/// tag replaces the value.
void EntryFormer::ReportTaken() {
  const WordSet looked_for = printed_ | ComparedWords(Type());
  WordSet later = 0;
  for (auto tag = tags_.rbegin(); tag != tags_.rend(); ++tag) {
    const WordSet taken = tag->harm & ~later & looked_for;
    if (taken != 0) {
      Warn(*tag, "operations read the line of '" + std::string(tag->Name()) + "' as that of " +
                     NamesOf(taken));
    }
    if (tag->known->IsKnown()) later |= tag->known->words;
  }
}

}  // namespace tarvel
