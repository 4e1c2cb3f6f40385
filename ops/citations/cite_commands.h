// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarvel {

/// What follows the name of a citation command. Optional arguments may stand before each list.
enum class CiteShape : std::uint8_t {
  kList,         // \cite[see][p. 3]{one,two}
  kLists,        // \cites(see)(more)[p. 3]{one}[p. 4]{two}
  kVolume,       // \volcite[see]{volume}[p. 3]{one}, \foreigntextcquote{language}[p. 3]{one}
  kVolumeLists,  // \volcites(see)(more){volume}[p. 3]{one}{volume}[p. 4]{two}
};

/// The commands of LaTeX that cite: those that are read, without their "\" and "*".
class CiteCommands {
 public:
  /// "cite" and the named ones; "all" stands for all of LaTeX, natbib, biblatex and
  /// csquotes.
  explicit CiteCommands(const std::vector<std::string>& names);

  /// The shape of the command with this name; nothing when it is not read.
  std::optional<CiteShape> Find(std::string_view name) const;

 private:
  bool all_ = false;
  std::vector<std::string> names_;
};

/// Whether `name` can be that of a command: "all", or letters and "@" only.
bool IsCommandName(std::string_view name);

/// The commands that "all" stands for, in the order of the alphabet.
std::vector<std::string_view> KnownCiteCommands();

}  // namespace tarvel
