// SPDX-License-Identifier: MIT
#include "ops/citations/key_map.h"

#include <optional>

#include "core/ascii.h"
#include "ops/citations/document_reader.h"

namespace tarvel {

namespace {

std::optional<unsigned> DigitOf(char byte) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  const std::size_t digit = kDigits.find(byte);
  if (digit == std::string_view::npos) return std::nullopt;
  return static_cast<unsigned>(digit);
}

/// The byte that an escape sequence at the start of `text` stands for; the sequence is taken away.
std::optional<char> TakeEscape(std::string_view& text) {
  constexpr std::string_view kLetters = "ntr\\";
  constexpr std::string_view kBytes = "\n\t\r\\";
  if (text.size() < 2) return std::nullopt;
  const std::size_t letter = kLetters.find(text[1]);
  if (letter != std::string_view::npos) {
    text.remove_prefix(2);
    return kBytes[letter];
  }
  if (text[1] != 'x' || text.size() < 4) return std::nullopt;
  const auto high = DigitOf(text[2]);
  const auto low = DigitOf(text[3]);
  if (!high || !low) return std::nullopt;
  text.remove_prefix(4);
  return static_cast<char>(static_cast<unsigned char>(*high * 16 + *low));
}

/// A field without its escape sequences; nothing when one of them is none.
std::optional<std::string> Unescape(std::string_view field) {
  std::string text;
  while (!field.empty()) {
    if (field.front() != '\\') {
      text += field.front();
      field.remove_prefix(1);
      continue;
    }
    const std::optional<char> byte = TakeEscape(field);
    if (!byte) return std::nullopt;
    text += *byte;
  }
  return text;
}

bool IsDivided(std::string_view old_key, std::string_view new_key) {
  return new_key.size() == old_key.size() + 2 && new_key.starts_with(old_key) &&
         new_key[old_key.size()] == '_';
}

}  // namespace

bool CanBeCited(std::string_view key) {
  return !key.empty() && key.find_first_of("{},%#\\~") == std::string_view::npos;
}

std::size_t KeyMap::Read(std::string_view bytes) {
  for (std::size_t number = 1; !bytes.empty(); ++number) {
    const std::size_t end = bytes.find('\n');
    std::string_view line = bytes.substr(0, end);
    bytes.remove_prefix(end == std::string_view::npos ? bytes.size() : end + 1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (!TakeLine(line)) return number;
  }
  return 0;
}

bool KeyMap::TakeLine(std::string_view line) {
  const std::size_t tab = line.find('\t');
  if (tab == std::string_view::npos || line.find('\t', tab + 1) != std::string_view::npos) {
    return false;
  }
  const auto old_key = Unescape(line.substr(0, tab));
  const auto new_key = Unescape(line.substr(tab + 1));
  if (!old_key || !new_key || old_key->empty() || !CanBeCited(*new_key)) return false;
  const auto [entry, is_new] = keys_.try_emplace(*old_key, *new_key);
  if (!is_new && entry->second != *new_key) ambiguous_.push_back(*old_key);
  if (is_new && IsDivided(*old_key, *new_key)) divided_.push_back(*old_key);
  return true;
}

const std::string* KeyMap::Find(const std::string& key) const {
  const auto found = keys_.find(key);
  return found == keys_.end() ? nullptr : &found->second;
}

RekeyedDocument ReplaceKeys(
    std::string_view document, const CiteCommands& commands, const KeyMap& map,
    const std::function<void(std::string_view command, std::size_t offset)>& on_other) {
  RekeyedDocument result;
  std::size_t copied = 0;
  DocumentObserver observer;
  observer.on_other = on_other;
  observer.on_key = [&](const KeyInDocument& key) {
    const std::string* new_key = map.Find(key.text);
    if (!new_key) return;
    result.text.append(document.substr(copied, key.begin - copied)).append(*new_key);
    copied = key.end;
    ++result.replaced;
  };
  ReadDocument(document, commands, observer);
  result.text.append(document.substr(copied));
  return result;
}

}  // namespace tarvel
