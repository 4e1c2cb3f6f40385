// SPDX-License-Identifier: MIT
#include "tests/support/plain_bib_reader.h"

#include <algorithm>
#include <optional>

namespace tarvel::testing {

namespace {

bool IsWhite(char byte) { return byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n'; }

bool IsNamePart(char byte) {
  const auto code = static_cast<unsigned char>(byte);
  return code > ' ' && std::string_view("\"#%'(),={}").find(byte) == std::string_view::npos;
}

std::string Lower(std::string text) {
  for (char& byte : text) {
    if (byte >= 'A' && byte <= 'Z') byte = static_cast<char>(byte - 'A' + 'a');
  }
  return text;
}

/// White space drawn together; `trims`: none is left at the ends.
std::string Compress(const std::string& text, bool trims) {
  std::string result;
  for (const char byte : text) {
    const char plain = IsWhite(byte) ? ' ' : byte;
    if (plain != ' ' || result.empty() || result.back() != ' ') result += plain;
  }
  if (trims && !result.empty() && result.front() == ' ') result.erase(0, 1);
  if (trims && !result.empty() && result.back() == ' ') result.pop_back();
  return result;
}

class Reader {
 public:
  explicit Reader(std::string_view bytes) : bytes_(bytes) {
    const char* const months[] = {"January",   "February", "March",    "April",
                                  "May",       "June",     "July",     "August",
                                  "September", "October",  "November", "December"};
    for (const char* month : months) strings_[Lower(std::string(month).substr(0, 3))] = month;
  }

  PlainBibLibrary Read() {
    while (library_.is_whole && FindCommand()) library_.is_whole = ReadCommand();
    return library_;
  }

 private:
  char Peek() const { return at_ < bytes_.size() ? bytes_[at_] : '\0'; }
  bool AtEnd() const { return at_ >= bytes_.size(); }
  bool Take(char byte) {
    if (AtEnd() || bytes_[at_] != byte) return false;
    ++at_;
    return true;
  }
  void SkipWhite() {
    while (!AtEnd() && IsWhite(bytes_[at_])) ++at_;
  }
  std::string TakeName() {
    std::string name;
    if (!AtEnd() && Peek() >= '0' && Peek() <= '9') return name;
    while (!AtEnd() && IsNamePart(bytes_[at_])) name += bytes_[at_++];
    return name;
  }

  /// Goes to the next "@word{" or "@word("; what looks like neither is text.
  bool FindCommand() {
    const std::size_t begin = at_;
    const bool found = GoToCommand();
    for (std::size_t i = begin; i < (found ? command_ : at_); ++i) {
      if (!IsWhite(bytes_[i])) library_.outside += bytes_[i];
    }
    return found;
  }
  bool GoToCommand() {
    while (!AtEnd()) {
      command_ = at_;
      if (!Take('@')) {
        ++at_;
        continue;
      }
      SkipWhite();
      type_ = Lower(TakeName());
      if (type_ == "comment") continue;
      SkipWhite();
      if (type_.empty() || (Peek() != '{' && Peek() != '(')) continue;
      if (AtEnd()) continue;
      close_ = Peek() == '{' ? '}' : ')';
      ++at_;
      return true;
    }
    return false;
  }

  bool ReadCommand() {
    SkipWhite();
    if (type_ == "preamble") {
      const std::optional<std::string> text = ReadValue("", false);
      if (!text) return false;
      library_.preambles.push_back(*text);
      return Take(close_);
    }
    if (type_ == "string") return ReadString();
    return ReadEntry();
  }

  bool ReadString() {
    const std::string name = Lower(TakeName());
    SkipWhite();
    if (name.empty() || !Take('=')) return false;
    const std::optional<std::string> text = ReadValue(name, false);
    if (!text) return false;
    strings_[name] = *text;
    library_.strings.push_back(*text);
    return Take(close_);
  }

  bool ReadEntry() {
    PlainBibEntry entry;
    entry.type = type_;
    while (!AtEnd() && !IsWhite(Peek()) && Peek() != ',' && !(close_ == '}' && Peek() == '}')) {
      entry.key += bytes_[at_++];
    }
    SkipWhite();
    const bool is_whole = ReadTags(entry);
    library_.entries.push_back(entry);
    return is_whole;
  }

  bool ReadTags(PlainBibEntry& entry) {
    while (!Take(close_)) {
      if (!Take(',')) return false;
      SkipWhite();
      if (Take(close_)) return true;
      const std::string name = Lower(TakeName());
      SkipWhite();
      if (name.empty() || !Take('=')) return false;
      const std::optional<std::string> value = ReadValue("", true);
      if (!value) return false;
      entry.tags.emplace_back(name, *value);
    }
    return true;
  }

  std::optional<std::string> ReadValue(const std::string& defining, bool trims) {
    std::string value;
    do {
      SkipWhite();
      if (!ReadPiece(value, defining)) return std::nullopt;
      SkipWhite();
    } while (Take('#'));
    return Compress(value, trims);
  }

  bool ReadPiece(std::string& value, const std::string& defining) {
    if (Take('{')) return ReadUpTo('}', value);
    if (Take('"')) return ReadUpTo('"', value);
    if (!AtEnd() && Peek() >= '0' && Peek() <= '9') {
      while (!AtEnd() && Peek() >= '0' && Peek() <= '9') value += bytes_[at_++];
      return true;
    }
    const std::string name = TakeName();
    if (name.empty()) return false;
    const bool ends =
        AtEnd() || IsWhite(Peek()) || Peek() == ',' || Peek() == '#' || Peek() == close_;
    if (!ends) return false;
    if (Lower(name) == defining) return true;
    const auto found = strings_.find(Lower(name));
    value += found == strings_.end() ? name : found->second;
    return true;
  }

  bool ReadUpTo(char end, std::string& value) {
    int depth = 0;
    for (; !AtEnd(); ++at_) {
      const char byte = bytes_[at_];
      if (depth == 0 && byte == end) {
        ++at_;
        return true;
      }
      if (depth == 0 && byte == '}') return false;
      if (byte == '{') ++depth;
      if (byte == '}') --depth;
      value += byte;
    }
    return false;
  }

  std::string_view bytes_;
  std::size_t at_ = 0;
  std::size_t command_ = 0;  // where the last one begins
  std::string type_;
  char close_ = '}';
  std::map<std::string, std::string> strings_;
  PlainBibLibrary library_;
};

}  // namespace

std::string PlainBibEntry::Value(std::string_view name) const {
  for (const auto& [tag, value] : tags) {
    if (tag == name) return value;
  }
  return {};
}

bool PlainBibEntry::Holds(std::string_view name) const {
  return std::any_of(tags.begin(), tags.end(), [=](const auto& tag) { return tag.first == name; });
}

PlainBibLibrary ReadPlainBib(std::string_view bytes) { return Reader(bytes).Read(); }

}  // namespace tarvel::testing
