// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "app/settings.h"
#include "ops/run_context.h"

namespace tarvel {

/// The journal styles, in the order in which the style file's prefixes are looked at.
enum class JournalStyle { kACS, kAPS, kIOP, kNature, kWiley, kSpringerCompSci };
inline constexpr std::size_t kStyleCount = 6;

/// The formats of one style, in the order in which the loader tries their keys.
enum class StyleKey {
  kArticleTitle,
  kArticle,
  kArticleTitleLaTeX,
  kArticleLaTeX,
  kBookLaTeX,
  kBook,
  kInproLaTeX,
  kInpro,
  kPhdLaTeX,
  kPhd,
  kIncolLaTeX,
  kIncol,
};
inline constexpr std::size_t kStyleKeyCount = 12;

/// The kinds of references. An article is printed with or without its title; `kIncol` is a part of
/// a book, `kInpro` a paper in proceedings, `kPhd` any thesis.
enum class ReferenceKind { kArticleTitle, kArticle, kBook, kIncol, kInpro, kPhd };

/// The values that a reference can be made of.
enum class ReferenceValue {
  kBibitem,  // the name of the reference
  kAuthor,
  kTitle,
  kJournal,
  kYear,
  kVolume,
  kPages,
  kPublisher,
  kAddress,
  kEditor,
  kBooktitle,
  kSchool,
};
inline constexpr std::size_t kValueCount = 12;

/// The values that the last entry left. They are emptied before the first entry and not between
/// entries: a tag that an entry lacks is printed as an earlier entry had it.
class EntryValues {
 public:
  std::string& operator[](ReferenceValue value) { return texts_[static_cast<std::size_t>(value)]; }
  const std::string& operator[](ReferenceValue value) const {
    return texts_[static_cast<std::size_t>(value)];
  }

 private:
  std::array<std::string, kValueCount> texts_;
};

/// The format strings of all styles.
class JournalStyles {
 public:
  const std::string& Format(JournalStyle style, StyleKey key) const;
  /// Sets every format whose name contains `key`.
  void Define(std::string_view key, const std::string& format);

 private:
  std::array<std::string, kStyleCount * kStyleKeyCount> formats_;
};

/// Reads the style file below the program directory into `styles`; returns 1 when it held exactly
/// 71 definitions, else 0 after a `PrintError`. A definition is a line (of at most 999 bytes) such
/// as
///   APS_book = "%s by %s\n"; // comment
/// It sets every format whose name, with one blank after it, contains the definition's key and
/// its blank. The plain theses of ACS and Springer_Comp_Sci have names without that blank and are
/// therefore never set: such references print nothing.
int ReadJournalStyles(const RunContext& run, JournalStyles& styles);

/// The style that the settings select; nothing when none is.
std::optional<JournalStyle> SelectedStyle(const Settings& settings);

/// The key of the format for a kind of reference.
StyleKey StyleKeyFor(ReferenceKind kind, bool latex);

/// The values that a reference's format receives, in their order.
std::span<const ReferenceValue> ValueOrder(ReferenceKind kind, JournalStyle style);

}  // namespace tarvel
