#include "host/command/completion.h"

#include "host/command/option_table.h"

namespace px {
namespace {

// Behind "-o" or "--output", as the patterns of a shell have it: with `between` between.
std::string namesOf(const OptionRow &row, std::string_view between) {
  std::string names = std::string("--") + row.name;
  if (row.isShort()) names.append(between).append("-").append(1, static_cast<char>(row.id));
  return names;
}

// In single quotes; the help's apostrophes are closed, escaped and opened again.
std::string quoted(std::string_view text, std::string_view apostrophe) {
  std::string result = "'";
  for (const char c : text) {
    if (c == '\'') {
      result += apostrophe;
    } else {
      result += c;
    }
  }
  return result + "'";
}

// The help up to its first full clause: a menu has a line for each option.
std::string_view shortHelp(const OptionRow &row) {
  const std::string_view help = row.help;
  return help.substr(0, help.find(';'));
}

std::string bashScript() {
  std::string cases, names;
  for (const OptionRow &row : optionTable()) {
    names += namesOf(row, " ") + " ";
    if (!row.value) continue;
    std::string reply;
    switch (row.completes) {
      case Completes::Words:
        reply = std::string("compgen -W ") + quoted(row.words, "'\\''") + " -- \"$word\"";
        break;
      case Completes::Files:
        reply = "compgen -f -- \"$word\"";
        break;
      case Completes::Folders:
        reply = "compgen -d -- \"$word\"";
        break;
      case Completes::Nothing:
        reply = ":";
        break;
    }
    cases += "    " + namesOf(row, " | ") + ") mapfile -t COMPREPLY < <(" + reply + ") ;;\n";
  }
  names.pop_back();
  return "# Completion of pxcard for bash.\n"
         "_pxcard() {\n"
         "  local word=$2 option=$3\n"
         "  COMPREPLY=()\n"
         "  # The shell takes --format=j for three words.\n"
         "  [[ $word == = ]] && word=\n"
         "  [[ $option == = ]] && option=${COMP_WORDS[COMP_CWORD - 2]}\n"
         "  case $option in\n" +
         cases +
         "    *)\n"
         "      if [[ $word == -* ]]; then\n"
         "        mapfile -t COMPREPLY < <(compgen -W '" +
         names +
         "' -- \"$word\")\n"
         "      else\n"
         "        mapfile -t COMPREPLY < <(compgen -f -- \"$word\")\n"
         "      fi ;;\n"
         "  esac\n"
         "}\n"
         "complete -o filenames -F _pxcard pxcard\n";
}

// A row of _arguments: '(--output -o)'{--output,-o}'=[write to FILE]:FILE:_files'
std::string zshRow(const OptionRow &row) {
  std::string help, words;
  for (const char c : shortHelp(row)) {
    if (c == '[' || c == ']' || c == ':') help += '\\';
    help += c;
  }
  std::string tail = "[" + help + "]";
  if (row.value) {
    tail.append(":").append(row.value).append(":");
    if (row.completes == Completes::Words) tail.append("(").append(row.words).append(")");
    if (row.completes == Completes::Files) tail += "_files";
    if (row.completes == Completes::Folders) tail += "_files -/";
    if (row.completes == Completes::Nothing) tail += " ";
  }
  if (row.value) tail.insert(0, "=");  // the value may stand behind that too
  const std::string head = row.isShort()
                               ? "'(" + namesOf(row, " ") + ")'{" + namesOf(row, ",") + "}"
                               : namesOf(row, " ");
  return head + quoted(tail, "'\\''");
}

std::string zshScript() {
  std::string script = "#compdef pxcard\n# Completion of pxcard for zsh.\n_arguments -s -S";
  for (const OptionRow &row : optionTable()) script += " \\\n  " + zshRow(row);
  return script + " \\\n  '*:FILE:_files'\n";
}

std::string fishScript() {
  std::string script = "# Completion of pxcard for fish.\n";
  for (const OptionRow &row : optionTable()) {
    script += std::string("complete -c pxcard -l ") + row.name;
    if (row.isShort()) script += std::string(" -s ") + static_cast<char>(row.id);
    if (row.value) script += " -r";
    if (row.completes == Completes::Words) script += " -f -a " + quoted(row.words, "\\'");
    if (row.completes == Completes::Folders) script += " -f -a '(__fish_complete_directories)'";
    if (row.completes == Completes::Nothing && row.value) script += " -f";
    script += " -d " + quoted(shortHelp(row), "\\'") + "\n";
  }
  return script;
}

}  // namespace

std::string completionScript(std::string_view shell) {
  return shell == "bash" ? bashScript() : shell == "zsh" ? zshScript() : fishScript();
}

}  // namespace px
