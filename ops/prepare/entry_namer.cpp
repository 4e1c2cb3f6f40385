// SPDX-License-Identifier: MIT
#include "ops/prepare/entry_namer.h"

#include <algorithm>
#include <array>
#include <string>

#include "ops/prepare/guards.h"
#include "ops/prepare/letters.h"

namespace tarvel {

namespace {

constexpr std::array<std::string_view, 12> kMonths{"January",   "February", "March",    "April",
                                                   "May",       "June",     "July",     "August",
                                                   "September", "October",  "November", "December"};

bool AreDigits(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), IsDigit);
}

/// The year and the month, as a number, of a date like "2001-03-12" or of the first of a range.
struct DateParts {
  std::string_view year;
  std::size_t month = 0;  // 0 for none
};
DateParts PartsOf(std::string_view date) {
  constexpr std::size_t kYear = 4;
  const std::string_view first = date.substr(0, date.find('/'));
  const std::string_view rest = date.substr(std::min(first.size() + 1, date.size()));
  const std::string_view year = first.substr(0, kYear);
  const bool is_date =
      year.size() == kYear && AreDigits(year) && (first.size() == kYear || first[kYear] == '-');
  if (!is_date || (!rest.empty() && !rest.starts_with(year))) return {date};
  const std::string_view month = first.substr(std::min(kYear + 1, first.size()), 2);
  if (month.size() != 2 || !AreDigits(month)) return {year};
  const auto number = static_cast<std::size_t>((month[0] - '0') * 10 + (month[1] - '0'));
  return {year, number <= kMonths.size() ? number : 0};
}

}  // namespace

void EntryNamer::Name(const BibItem& entry, std::size_t inherited) {
  texts_.Clear();
  names_.ForgetMany();
  ++entry_;
  TakeTags(entry, inherited);
  TakeType(entry);
  ChangeNames();
}

std::string_view EntryNamer::Make(std::string_view text) {
  std::string& made = texts_.Next();
  made = text;
  return made;
}

FormedTag* EntryNamer::Find(std::string_view name) {
  const auto found = std::find_if(tags_.begin(), tags_.end(),
                                  [name](const FormedTag& tag) { return tag.Name() == name; });
  return found == tags_.end() ? nullptr : &*found;
}

/// Of several tags of one name BibTeX reads the first.
void EntryNamer::TakeTags(const BibItem& entry, std::size_t inherited) {
  tags_.clear();
  for (std::size_t i = 0; i < entry.tags.size(); ++i) {
    const BibTag& tag = entry.tags[i];
    TagName& name = names_.Get(tag.name);
    if (name.last_entry == entry_) {
      log_.Say(
          {"The tag '", name.name, "' is there a second time and was left out: {", tag.value, "}"});
      log_.LeaveOut(tag.offset, name.name, "the entry has another one of this name before it");
      continue;
    }
    name.last_entry = entry_;
    const std::string_view value = StripOuterBraces(tag.value, name.is_of_names);
    tags_.push_back({&name, value, tag.offset, tag.facts});
    tags_.back().is_inherited = i >= inherited;
  }
}

void EntryNamer::TakeType(const BibItem& entry) {
  const FormedTag* const type = EqualNoCase(entry.type, "thesis") ? Find("type") : nullptr;
  const KnownType known = FindKnownType(entry.type, type ? type->value : std::string_view());
  type_ = known.type;
  if (known.is_same) return;
  log_.Say({"The type '@", entry.type, "' became '@", type_, "'."});
  if (known.is_in_table) return;
  log_.Warn(WarningKind::kUnknownType, entry.begin,
            "the type '@" + std::string(entry.type) + "' is unknown and became '@" +
                std::string(type_) + "'");
}

void EntryNamer::ChangeNames() {
  const bool any = std::any_of(tags_.begin(), tags_.end(),
                               [](const FormedTag& tag) { return tag.known->row.is_renamed; });
  if (!any) return;
  if (tags_.back().is_inherited) {
    for (const TagChange& change : TagChanges()) DropReplaced(change);
  }
  for (const TagChange& change : TagChanges()) {
    if (FormedTag* const tag = Find(change.from)) Change(change, *tag);
  }
  tags_.erase(std::remove_if(tags_.begin(), tags_.end(),
                             [](const FormedTag& tag) { return tag.is_left_out; }),
              tags_.end());
}

/// Drops what the entry has from a parent though it has its own, under a name that is changed. With
/// its own date it also has no use for the parent's month.
void EntryNamer::DropReplaced(const TagChange& change) {
  using How = TagChange::How;
  if (change.how != How::kRename && change.how != How::kDate) return;
  const FormedTag* const own = Find(change.from);
  const FormedTag* const other = Find(change.to);
  if (!own || own->is_inherited || (other && !other->is_inherited)) return;
  std::erase_if(tags_, [&change](const FormedTag& tag) {
    return tag.is_inherited &&
           (tag.Name() == change.to || (change.how == How::kDate && tag.Name() == "month"));
  });
}

void EntryNamer::Change(const TagChange& change, FormedTag& tag) {
  using How = TagChange::How;
  FormedTag* const other = Find(change.to);
  if (other && change.how == How::kAppend) return AppendTo(tag, *other);
  if (change.how == How::kDate) return ChangeDate(tag, other != nullptr);
  // With a parent it could be the parent's, for which it is no school.
  if (change.how == How::kRenameInThesis && (!IsThesis(type_) || Find("crossref"))) return;
  if (other) return;
  if (!tag.is_inherited) log_.Say({"The tag '", tag.Name(), "' became '", change.to, "'."});
  tag.known = &names_.Get(change.to);
}

/// Appends a subtitle to its title. One from a parent is of the parent's title, where it stands.
void EntryNamer::AppendTo(FormedTag& tag, FormedTag& whole) {
  tag.is_left_out = true;
  if (tag.is_inherited && !whole.is_inherited) return;
  const bool has_mark = whole.value.find_last_of(":?!.") + 1 == whole.value.size();
  const bool has_both = !whole.value.empty() && !tag.value.empty();
  const std::string_view seam = !has_both ? "" : has_mark ? " " : ": ";
  whole.SetValue(Make(std::string(whole.value).append(seam).append(tag.value)));
  if (tag.is_inherited) return;
  whole.is_inherited = false;
  log_.Say(
      {"The tag '", tag.Name(), "' was put at the end of '", whole.Name(), "': {", tag.value, "}"});
}

/// Makes a year of a date, and a month, where the entry has none. A parent's month, which comes
/// from its date, is kept from an entry that has a year of its own.
void EntryNamer::ChangeDate(FormedTag& tag, bool has_year) {
  if (has_year && !tag.is_inherited) return;
  const DateParts parts = PartsOf(tag.value);
  const bool adds_month = parts.month != 0 && !Find("month");
  if (!tag.is_inherited) {
    log_.Say(
        {"The tag 'date' became 'year'", adds_month ? " and 'month': {" : ": {", tag.value, "}"});
  }
  FormedTag month{&names_.Get("month"), {}, tag.offset};
  if (!has_year) {
    if (adds_month) month.SetValue(kMonths[parts.month - 1]);
    tag.known = &names_.Get("year");
    tag.SetValue(parts.year);
    month.is_inherited = tag.is_inherited;
  }
  if (adds_month) tags_.push_back(month);
}

}  // namespace tarvel
