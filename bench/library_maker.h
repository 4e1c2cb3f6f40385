// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace tarvel::bench {

/// The forms in which people and programs write the same library. ORDER: `kFormNames`
enum class Form {
  kBraces,    // "  tag = {value},"
  kBare,      // numbers without braces
  kAligned,   // tabs, the "=" below each other
  kAttached,  // the last "}" on the line of the last tag
  kWrapped,   // lines of at most 70 columns
  kQuotes,    // "  tag = "value","
  kUnknown,   // half of the entries of a type that is not known
  kAscii,     // braces, and no byte from 128 on
  kCrLf,      // braces, and the line breaks of Windows
};
inline constexpr std::array<std::string_view, 9> kFormNames{
    "braces", "bare", "aligned", "attached", "wrapped", "quotes", "unknown", "ascii", "crlf"};

/// Makes BibTeX libraries that look like real ones, the same bytes on every machine: everything
/// follows from the number of entries and the number of an entry, by integer arithmetic alone.
///
/// An entry has about 500 bytes and 8 to 14 fields. Of 100 entries five are doubles of an earlier
/// one: two exact ones, two with another key, and one that has the same key but other content. One
/// byte in a hundred is from 128 on, but for the form `kAscii`.
class LibraryMaker {
 public:
  /// REQUIRES: entries > 0.
  LibraryMaker(std::uint64_t entries, Form form = Form::kBraces);

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

  void Append(std::uint64_t work, std::uint64_t extras, std::string_view key,
              std::string& out) const;

  std::uint64_t entries_;
  std::uint64_t stride_;
  Form form_;
};

/// What stands before and after the sentences of the document.
inline constexpr std::string_view kDocumentHead = "\\documentclass{article}\n\\begin{document}\n";
inline constexpr std::string_view kDocumentEnd =
    "\\bibliographystyle{plain}\n\\bibliography{first}\n\\end{document}\n";

/// The whole first library, whole second library, and a LaTeX document that cites the first.
std::string FirstLibrary(std::uint64_t entries);
std::string SecondLibrary(std::uint64_t entries);
std::string Document(std::uint64_t entries);

}  // namespace tarvel::bench
