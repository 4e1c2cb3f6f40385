// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ops/prepare/bib_reader.h"
#include "ops/prepare/crossrefs.h"
#include "ops/prepare/entry_namer.h"
#include "ops/prepare/formed_tag.h"
#include "ops/prepare/guards.h"
#include "ops/prepare/prepare_log.h"
#include "ops/prepare/text_pool.h"

namespace tarvel {

/// Brings entries into the form that all operations read correctly.
class EntryFormer {
 public:
  /// All but the last must outlive this. `keeps_all`: no tag is left out because its line would be
  /// taken for that of another.
  EntryFormer(PrepareLog& log, const CrossReferences& crossrefs, bool keeps_all)
      : log_(log), crossrefs_(crossrefs), keeps_all_(keeps_all), namer_(log) {}

  /// Makes the type and the tags to write for an entry of which the last tags, from `inherited` on,
  /// come from its parents. They are valid until the next call.
  void Form(const BibItem& entry, std::size_t inherited);
  std::string_view Type() const { return namer_.Type(); }
  const std::vector<FormedTag>& Tags() const { return tags_; }

 private:
  void GuardTag(FormedTag& tag);
  void MendTag(FormedTag& tag, Harm harm, WordSet harmful, bool is_misread);
  void GuardTitle(FormedTag& tag);
  void GuardNamesOf(FormedTag& tag);
  void GuardHarm(FormedTag& tag, Harm& harm, WordSet harmful);
  void ReportHarm(const FormedTag& tag, const Harm& harm);
  void Warn(const FormedTag& tag, const std::string& text);
  void LeaveOut(FormedTag& tag, const Harm& harm);
  void AddEmptyTags();
  void Order();
  void ReportTaken();
  void SayInherited();
  bool Holds(std::string_view name) const;
  bool HasFewLines(const FormedTag& tag) const;

  PrepareLog& log_;
  const CrossReferences& crossrefs_;
  bool keeps_all_;
  EntryNamer namer_;
  TextPool texts_;
  std::vector<FormedTag> tags_;
  WordSet printed_ = 0;  // words that Extract and Text look for
  WordSet misread_ = 0;  // words that are taken from lines of other tags
};

}  // namespace tarvel
