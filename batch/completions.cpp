// SPDX-License-Identifier: MIT
#include "batch/completions.h"

#include <string_view>
#include <vector>

#include "batch/option_table.h"

namespace tarvel {

namespace {

constexpr char kComment[] = "# Completions of tarvel-batch, made from its table of options.\n";

/// The names with `separator` between.
std::string Joined(const std::vector<std::string_view>& names, std::string_view separator) {
  std::string text;
  for (const std::string_view name : names) text.append(text.empty() ? "" : separator).append(name);
  return text;
}

/// `text` with a backslash before each byte of `specials`.
std::string Escaped(std::string_view text, std::string_view specials) {
  std::string result;
  for (const char byte : text) {
    if (specials.find(byte) != std::string_view::npos) result += '\\';
    result += byte;
  }
  return result;
}

bool IsUsed(const OptionRow& row, const VerbRow& verb) {
  return row.answer == Answer::kHelp || IsUsedBy(row, verb);
}

std::vector<std::string_view> VerbNames() {
  std::vector<std::string_view> names;
  for (const VerbRow& verb : kVerbRows) names.push_back(verb.name);
  return names;
}

/// The names of the options that take a value.
std::vector<std::string_view> OptionsWithValue() {
  std::vector<std::string_view> names;
  for (const OptionRow& row : OptionRows()) {
    if (row.value != ValueKind::kNone) names.push_back(row.name);
  }
  return names;
}

std::string BashValues(const OptionRow& row) {
  const std::string names = Joined(ValueNames(row), " ");
  if (IsList(row.value)) return "_tarvel_batch_list \"$cur\" '" + names + "'";
  if (!names.empty()) return "mapfile -t COMPREPLY < <(compgen -W '" + names + "' -- \"$cur\")";
  const bool directory = row.value == ValueKind::kDirectory;
  return std::string("_tarvel_batch_files ") + (directory ? "-d" : "-f") + " \"$cur\"";
}

constexpr char kBashStart[] = R"(
_tarvel_batch_files() {
  compopt -o filenames 2>/dev/null
  mapfile -t COMPREPLY < <(compgen "$1" -- "$2")
}

# The last name of a list with commas.
_tarvel_batch_list() {
  local before=
  [[ $1 == *,* ]] && before=${1%,*},
  compopt -o nospace 2>/dev/null
  mapfile -t COMPREPLY < <(compgen -P "$before" -W "$2" -- "${1##*,}")
}

_tarvel_batch() {
  local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD - 1]} verb= options= i
  COMPREPLY=()
  # "--option=value" comes in three words.
  if [[ $cur == = ]]; then
    cur=
  elif [[ $prev == = ]]; then
    prev=${COMP_WORDS[COMP_CWORD - 2]}
  fi
)";

constexpr char kBashEnd[] = R"(  if [[ $cur == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$cur")
  elif [[ -z $verb ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$verbs" -- "$cur")
  else
    _tarvel_batch_files -f "$cur"
  fi
}

complete -F _tarvel_batch tarvel-batch
)";

/// The names of all options with their short forms, or of those that a verb uses.
std::string OptionNames(const VerbRow* verb) {
  std::string names;
  for (const OptionRow& row : OptionRows()) {
    if (verb && !IsUsed(row, *verb)) continue;
    names.append(names.empty() ? "" : " ").append(row.name);
    if (row.letter != 0) names.append(" -").append(1, row.letter);
  }
  return names;
}

/// A text in single quotes, as `_arguments` of zsh takes it: a quote ends them and begins them
/// again.
std::string ZshText(std::string_view text) {
  std::string result;
  for (const char byte : Escaped(text, "[]:\\")) {
    result += byte == '\'' ? std::string("'\\''") : std::string{byte};
  }
  return result;
}

/// What `_arguments` of zsh calls an option.
std::string ZshOption(const OptionRow& row) {
  std::string argument = "'*" + std::string(row.name) + (row.value == ValueKind::kNone ? "" : "=") +
                         "[" + ZshText(row.help) + "]";
  if (row.value == ValueKind::kNone) return argument + "'";
  const std::string names = Joined(ValueNames(row), " ");
  argument += ":" + ZshText(row.value_name) + ":";
  if (IsList(row.value)) return argument + "_values -s , name " + names + "'";
  if (!names.empty()) return argument + "(" + names + ")'";
  return argument + (row.value == ValueKind::kDirectory ? "_directories'" : "_files'");
}

std::string ZshOptions(const VerbRow* verb) {
  std::string options;
  for (const OptionRow& row : OptionRows()) {
    if (verb && !IsUsed(row, *verb)) continue;
    options.append("      ").append(ZshOption(row)).append("\n");
    if (row.letter == 0) continue;
    options.append("      '*-").append(1, row.letter).append("[").append(ZshText(row.help));
    options.append("]'\n");
  }
  return options;
}

std::string FishOption(const OptionRow& row) {
  std::string line("complete -c tarvel-batch");
  if (row.users != 0) {
    line += " -n '__tarvel_batch_is " + Joined(UsersOf(row), " ") + "'";
  }
  if (row.answer != Answer::kNone && row.answer != Answer::kHelp) {
    line += " -n __tarvel_batch_has_no_verb";
  }
  line.append(" -l ").append(row.name.substr(2));
  if (row.letter != 0) line.append(" -s ").append(1, row.letter);
  const std::string names = Joined(ValueNames(row), " ");
  if (IsList(row.value)) {
    line += " -x -a '(__fish_append , " + names + ")'";
  } else if (!names.empty()) {
    line += " -x -a '" + names + "'";
  } else if (row.value == ValueKind::kDirectory) {
    line += " -x -a '(__fish_complete_directories)'";
  } else if (row.value != ValueKind::kNone) {
    line += " -r -F";
  }
  return line + " -d '" + Escaped(row.help, "'\\") + "'\n";
}

}  // namespace

std::string BashCompletions() {
  std::string text = std::string(kComment) + kBashStart;
  text += "  local verbs='" + Joined(VerbNames(), " ") + "'\n";
  text += "  for ((i = 1; i < COMP_CWORD; i++)); do\n    case ${COMP_WORDS[i]} in\n      " +
          Joined(OptionsWithValue(), " | ") + ")\n        ((i++))\n" +
          "        [[ ${COMP_WORDS[i]} == = ]] && ((i++)) ;;\n      " + Joined(VerbNames(), " | ") +
          ")\n        verb=${COMP_WORDS[i]}\n        break ;;\n    esac\n  done\n";
  text += "  case $prev in\n";
  for (const OptionRow& row : OptionRows()) {
    if (row.value == ValueKind::kNone) continue;
    text += "    " + std::string(row.name) + ")\n      " + BashValues(row) + "\n      return ;;\n";
  }
  text += "  esac\n  case $verb in\n";
  for (const VerbRow& verb : kVerbRows) {
    text += "    " + std::string(verb.name) + ") options='" + OptionNames(&verb) + "' ;;\n";
  }
  return text + "    *) options='" + OptionNames(nullptr) + "' ;;\n  esac\n" + kBashEnd;
}

std::string ZshCompletions() {
  std::string text = std::string("#compdef tarvel-batch\n") + kComment +
                     "\n_tarvel_batch() {\n  local verb word state is_value\n"
                     "  local -a options verbs\n  verbs=(\n";
  for (const VerbRow& verb : kVerbRows) {
    text += "    '" + std::string(verb.name) + ":" + ZshText(verb.summary) + "'\n";
  }
  text +=
      "  )\n  for word in ${words[2,CURRENT-1]}; do\n"
      "    [[ -n $is_value ]] && is_value= && continue\n    case $word in\n      (" +
      Joined(OptionsWithValue(), "|") + ") is_value=1 ;;\n      (" + Joined(VerbNames(), "|") +
      ")\n        verb=$word\n        break ;;\n    esac\n  done\n  case $verb in\n";
  for (const VerbRow& verb : kVerbRows) {
    text += "    (" + std::string(verb.name) + ") options=(\n" + ZshOptions(&verb) + "    ) ;;\n";
  }
  text += "    (*) options=(\n" + ZshOptions(nullptr) + "    ) ;;\n  esac\n" +
          "  _arguments -S : $options '1: :->verb' '*: :_files'\n"
          "  [[ $state == verb ]] && _describe operation verbs\n}\n\n_tarvel_batch \"$@\"\n";
  return text;
}

std::string FishCompletions() {
  const std::string verbs = Joined(VerbNames(), " ");
  std::string text = std::string(kComment) +
                     "\n# Prints the verb; fails when it is still to come.\n"
                     "function __tarvel_batch_verb\n    set -l is_value\n"
                     "    for word in (commandline -opc)[2..]\n"
                     "        if test -n \"$is_value\"\n            set is_value\n"
                     "        else if contains -- $word " +
                     Joined(OptionsWithValue(), " ") +
                     "\n            set is_value yes\n        else if contains -- $word " + verbs +
                     "\n            echo $word\n            return 0\n        end\n"
                     "    end\n    return 1\nend\n\n"
                     "# Whether the verb is one of the arguments, or is still to come.\n"
                     "function __tarvel_batch_is\n"
                     "    set -l verb (__tarvel_batch_verb); or return 0\n"
                     "    contains -- $verb $argv\nend\n\n"
                     "function __tarvel_batch_has_no_verb\n"
                     "    not __tarvel_batch_verb >/dev/null\nend\n\n"
                     "complete -c tarvel-batch -n __tarvel_batch_has_no_verb -f\n";
  for (const VerbRow& verb : kVerbRows) {
    text += "complete -c tarvel-batch -n __tarvel_batch_has_no_verb -a " + std::string(verb.name) +
            " -d '" + Escaped(verb.summary, "'\\") + "'\n";
  }
  for (const OptionRow& row : OptionRows()) text += FishOption(row);
  return text;
}

}  // namespace tarvel
