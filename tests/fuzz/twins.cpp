// SPDX-License-Identifier: MIT
#include "tests/fuzz/twins.h"

#include <array>
#include <cstdlib>

#include "core/file_names.h"
#include "tests/support/plain_clean_authors.h"
#include "tests/support/plain_clean_characters.h"
#include "tests/support/plain_clean_doubles.h"
#include "tests/support/plain_clean_tags.h"
#include "tests/support/plain_compare.h"
#include "tests/support/plain_extract.h"
#include "tests/support/plain_journals.h"
#include "tests/support/plain_text.h"

namespace tarvel::fuzz {

namespace {

using Files = std::map<std::string, std::string>;

/// The files of a run; all libraries are "NAME.bib" and their outputs begin with "NAME".
struct World {
  const RunContext& run;
  const Files& inputs;

  const std::string& First() const { return inputs.at(run.first_path); }
  const std::string& Second() const { return inputs.at(run.second_path); }
  std::string Beside(const std::string& library, std::string_view suffix) const {
    return library.substr(0, library.rfind('.')).append(suffix);
  }
  std::string Beside(std::string_view suffix) const { return Beside(run.first_path, suffix); }
  const std::string& Configuration(std::string_view file) const {
    return inputs.at("/program" + std::string(file));
  }
};

Expected Characters(const World& world) {
  const std::string path = world.Beside("_char.bib");
  const auto plain = testing::PlainCleanCharacters(world.First(), world.run.first_path, path);
  return {1, {{path, plain.library}, {world.Beside("_char.log"), plain.log}}, ""};
}

Expected Tags(const World& world) {
  const std::string path = world.Beside("_tag.bib");
  const auto plain =
      testing::PlainCleanTags(world.First(), world.run.first_path, path, world.run.settings);
  return {plain.result, {{path, plain.library}, {world.Beside("_tag.log"), plain.log}}, {}};
}

Expected Authors(const World& world) {
  const std::string path = world.Beside("_author.bib");
  const auto plain = testing::PlainCleanAuthors(world.First(), world.run.first_path, path);
  return {1,
          {{path, plain.library}, {world.Beside("_author.log"), plain.log}},
          path + " " + world.run.first_path + "\n"};
}

Expected Doubles(const World& world) {
  const std::string path = world.Beside("_double.bib");
  const auto plain = testing::PlainCleanDoubles(world.First(), world.run.first_path, path);
  return {plain.result, {{path, plain.library}, {world.Beside("_double.log"), plain.log}}, ""};
}

Expected Comparison(const World& world) {
  const auto plain = testing::PlainCompare(world.run.first_path, world.First(),
                                           world.run.second_path, world.Second());
  return {1,
          {{world.Beside("_comp.log"), plain.log},
           {world.Beside("_comp_missing.bib"), plain.missing},
           {world.Beside("_comp_equal.bib"), plain.equal}},
          ""};
}

Expected Journals(const World& world) {
  const bool own = world.run.settings.UseOwnJournalFile != 0;
  const std::string& list = own ? world.Second() : world.Configuration(kJournalListFile);
  const std::string path = world.Beside("_journal.bib");
  // No list of this size holds more journals: the line that begins one is longer than this.
  constexpr std::size_t kLeastJournal = 25;
  const auto plain = testing::PlainRunJournals(world.First(), list, world.run.settings, path,
                                               list.size() / kLeastJournal + 2);
  return {plain.result,
          {{path, plain.library}, {world.Beside("_journal.log"), plain.log}},
          plain.printed};
}

Expected FromOutcome(const World& world, const testing::PlainOutcome& plain,
                     const std::string& library) {
  Expected expected{plain.result, {}, plain.printed};
  for (const auto& [suffix, bytes] : plain.files) {
    expected.files[world.Beside(library, suffix)] = bytes;
  }
  return expected;
}

Expected Extraction(const World& world) {
  testing::PlainStyles styles;
  const testing::PlainOutcome plain =
      testing::PlainExtract({.document = world.First(),
                             .library = world.Second(),
                             .styles = world.Configuration(kStylesFile),
                             .commands = {},
                             .settings = world.run.settings},
                            styles);
  return FromOutcome(world, plain, world.run.second_path);
}

Expected Text(const World& world) {
  testing::PlainStyles styles;
  const testing::PlainOutcome plain =
      testing::PlainText({.document = {},
                          .library = world.First(),
                          .styles = world.Configuration(kStylesFile),
                          .commands = world.Configuration(kLaTeXCommandsFile),
                          .settings = world.run.settings},
                         styles);
  return FromOutcome(world, plain, world.run.first_path);
}

struct Twin {
  std::string_view operation;
  Expected (*run)(const World& world);
};

constexpr std::array<Twin, 8> kTwins{{{"extract", Extraction},
                                      {"compare", Comparison},
                                      {"text", Text},
                                      {"journals", Journals},
                                      {"clean-doubles", Doubles},
                                      {"clean-authors", Authors},
                                      {"clean-characters", Characters},
                                      {"clean-tags", Tags}}};

}  // namespace

std::optional<Expected> ExpectedOf(std::string_view operation, const RunContext& run,
                                   const Files& inputs) {
  const bool no_list = operation == "journals" && run.settings.UseOwnJournalFile != 0 &&
                       !inputs.contains(run.second_path);
  if (no_list) return std::nullopt;
  for (const Twin& twin : kTwins) {
    if (twin.operation == operation) return twin.run({run, inputs});
  }
  std::abort();
}

}  // namespace tarvel::fuzz
