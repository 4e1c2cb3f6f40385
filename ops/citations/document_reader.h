// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "ops/citations/cite_commands.h"

namespace tarvel {

/// A key in a citation command.
struct KeyInDocument {
  std::string text;        // without blanks at its ends, comments and line breaks in it
  std::size_t begin, end;  // its bytes in the document
};

/// What is called during the reading of a document. Each may be empty.
struct DocumentObserver {
  /// A cited key, in the document's order. "*" is one where all entries are asked for.
  std::function<void(const KeyInDocument& key)> on_key = {};
  /// The name of a file that the command ("input", "include", "import"...) at `offset` asks for.
  std::function<void(std::string_view command, std::string_view name, std::size_t offset)> on_file =
      {};
  /// A command at `offset` that is not read: it looks like a citation, or it is defined there as a
  /// macro that cites its argument.
  std::function<void(std::string_view command, std::size_t offset)> on_other = {};
};

/// Reads a LaTeX document as LaTeX does as long as nothing redefines its characters: to
/// "\end{document}" or "\endinput", without comments, what is verbatim, and what stands between
/// "\iffalse" and "\fi". Macros are not expanded: a key that contains "#" or a command is no key. A
/// list of keys ends with its brace, and is none without one before the next empty line. Linear in
/// the bytes of the document.
void ReadDocument(std::string_view document, const CiteCommands& commands,
                  const DocumentObserver& observer);

}  // namespace tarvel
