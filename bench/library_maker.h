// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tarvel::bench {

/// Makes BibTeX libraries that look like real ones, the same bytes on every machine: everything
/// follows from the number of entries and the number of an entry, by integer arithmetic alone.
///
/// An entry has about 500 bytes and 8 to 14 fields. Of 100 entries five are doubles of an earlier
/// one: two exact ones, two with another key, and one that has the same key but other content. One
/// entry in a hundred holds bytes from 128 on.
class LibraryMaker {
 public:
  /// REQUIRES: entries > 0.
  explicit LibraryMaker(std::uint64_t entries);

  /// Appends entry `index` of the first library.
  void AppendFirst(std::uint64_t index, std::string& out) const;
  /// Appends entry `index` of a second library of the same size in another order. Four fifths of it
  /// stand in the first one too; some of those with another key or other content.
  void AppendSecond(std::uint64_t index, std::string& out) const;

  /// How many commands `AppendCitation` knows: together they cite a tenth of the keys.
  std::uint64_t Citations() const;
  /// Appends the keys, separated by commas, of citation number `index`.
  void AppendCitedKeys(std::uint64_t index, std::string& out) const;
  /// Appends a sentence of a LaTeX document with citation number `index`.
  void AppendSentence(std::uint64_t index, std::string& out) const;

 private:
  std::uint64_t Shuffled(std::uint64_t index) const;

  std::uint64_t entries_;
  std::uint64_t stride_;
};

/// What stands before and behind the sentences of the document.
inline constexpr std::string_view kDocumentHead = "\\documentclass{article}\n\\begin{document}\n";
inline constexpr std::string_view kDocumentEnd =
    "\\bibliographystyle{plain}\n\\bibliography{first}\n\\end{document}\n";

/// The whole first library, whole second library, and a LaTeX document that cites the first.
std::string FirstLibrary(std::uint64_t entries);
std::string SecondLibrary(std::uint64_t entries);
std::string Document(std::uint64_t entries);

}  // namespace tarvel::bench
