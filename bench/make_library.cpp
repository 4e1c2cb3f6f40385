// SPDX-License-Identifier: MIT
// tarvel-make-library: writes a made library, or a document that cites it, on standard output.
#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

#include "bench/library_maker.h"

namespace tarvel::bench {
namespace {

constexpr std::size_t kFlushAt = std::size_t{1} << 20;

constexpr std::string_view kUsage =
    "Usage: tarvel-make-library first|second|document|aux ENTRIES [FORM]\n"
    "Writes on standard output a library of ENTRIES entries of about 500 bytes; a second one of\n"
    "which four fifths stand in the first; a LaTeX document that cites a tenth of the first's\n"
    "keys; or what LaTeX would note of that document for bibtex. The same bytes every time.\n"
    "FORM is braces (the default), bare (numbers), aligned (with tabs), attached (the last "
    "brace),\n"
    "wrapped (at 70 columns), quotes, unknown (types), ascii or crlf.\n";

/// Collects text and writes it in large pieces.
class Output {
 public:
  std::string& Text() {
    if (text_.size() >= kFlushAt) Flush();
    return text_;
  }
  bool Flush() {
    good_ = good_ && std::fwrite(text_.data(), 1, text_.size(), stdout) == text_.size();
    text_.clear();
    return std::fflush(stdout) == 0 && good_;
  }

 private:
  std::string text_;
  bool good_ = true;
};

void WriteDocument(const LibraryMaker& maker, Output& output) {
  output.Text() += kDocumentHead;
  for (std::uint64_t i = 0; i < maker.Citations(); ++i) maker.AppendSentence(i, output.Text());
  output.Text() += kDocumentEnd;
}

void WriteAux(const LibraryMaker& maker, Output& output) {
  output.Text() += "\\relax\n";
  for (std::uint64_t i = 0; i < maker.Citations(); ++i) {
    std::string& text = output.Text();
    text += "\\citation{";
    maker.AppendCitedKeys(i, text);
    text += "}\n";
  }
  output.Text() += "\\bibstyle{plain}\n\\bibdata{first}\n";
}

bool WriteKind(std::string_view kind, const LibraryMaker& maker, std::uint64_t entries,
               Output& output) {
  if (kind == "first") {
    for (std::uint64_t i = 0; i < entries; ++i) maker.AppendFirst(i, output.Text());
  } else if (kind == "second") {
    for (std::uint64_t i = 0; i < entries; ++i) maker.AppendSecond(i, output.Text());
  } else if (kind == "document") {
    WriteDocument(maker, output);
  } else if (kind == "aux") {
    WriteAux(maker, output);
  } else {
    return false;
  }
  return true;
}

int Main(int argc, char** argv) {
  std::uint64_t entries = 0;
  const auto* form = kFormNames.begin();
  if (argc == 3 || argc == 4) {
    const std::string_view number = argv[2];
    std::from_chars(number.data(), number.data() + number.size(), entries);
    if (argc == 4) form = std::find(kFormNames.begin(), kFormNames.end(), argv[3]);
  }
  Output output;
  if (entries == 0 || form == kFormNames.end() ||
      !WriteKind(argv[1], {entries, static_cast<Form>(form - kFormNames.begin())}, entries,
                 output)) {
    std::fwrite(kUsage.data(), 1, kUsage.size(), stderr);
    return 2;
  }
  if (output.Flush()) return 0;
  std::perror("tarvel-make-library");
  return 1;
}

}  // namespace
}  // namespace tarvel::bench

int main(int argc, char** argv) { return tarvel::bench::Main(argc, argv); }
