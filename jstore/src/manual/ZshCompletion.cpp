#include <fmt/format.h>

#include "manual/Completion.h"

namespace jstore::manual {

namespace {

constexpr const char* ZshStart = R"(#compdef jstore
# Completion of jstore's command lines for zsh. Made by: jstore completion zsh

# Files and folders, after java:// too. Names that a location spells differently are left out.
_jstore_files() {
  if [[ $PREFIX == java:///* ]]; then
    compset -P 'java://'
    _files -F '(*[\#?%]*)'
  else
    _files
  fi
}

_jstore() {
  local curcontext="$curcontext" state line ret=1
  typeset -A opt_args
  local -a common verbs
)";

/// Text for a place between apostrophes, where _arguments and _describe interpret brackets and colons.
std::string quoted(const std::string& text) {
    std::string result;
    for (const char c : text) {
        if (c == '\'') {
            result += R"('\'')";
            continue;
        }
        if (c == '[' || c == ']' || c == ':' || c == '\\') {
            result += '\\';
        }
        result += c;
    }
    return result;
}

std::string zshAction(const Option& option) {
    if (!option.words.empty()) {
        return fmt::format("({})", fmt::join(option.words, " "));
    }
    if (option.value == "PATH") {
        return "_files -/";
    }
    return option.value == "P" || option.value == "NAME=URI" ? "_files" : " ";
}

/// The specifications for `_arguments`, a line for each name; an option may be given again.
std::string specifications(const std::vector<Option>& options, const char* indent) {
    std::string text;
    for (const Option& option : options) {
        for (const std::string& name : option.names) {
            const bool isLong = name.starts_with("--");
            const char* const valueMark = option.value.empty() ? "" : isLong ? "=" : "+";
            const std::string value =
                option.value.empty() ? "" : fmt::format(":{}:{}", quoted(option.value), zshAction(option));
            text += fmt::format("{}'*{}{}[{}]{}'\n", indent, name, valueMark, quoted(option.help), value);
        }
    }
    return text;
}

std::string zshCase(const Verb& verb) {
    std::string text =
        fmt::format("        {})\n          specs+=(\n{}", verb.name, specifications(verb.options, "            "));
    for (const Option& argument : verb.arguments) {
        const std::string how = argument.words.empty() ? "_jstore_files" : zshAction(argument);
        text += fmt::format("            '*:{}:{}'\n", quoted(argument.names.front()), how);
    }
    return text + "          ) ;;\n";
}

}  // namespace

std::string zshCompletion(const Grammar& grammar) {
    std::string script =
        ZshStart + fmt::format("  common=(\n{}  )\n  verbs=(\n", specifications(grammar.options, "    "));
    std::string cases;
    for (const Verb& verb : grammar.verbs) {
        script += fmt::format("    '{}:{}'\n", verb.name, quoted(verb.help.summary));
        cases += zshCase(verb);
    }
    script +=
        "  )\n  _arguments -C $common '1:verb:->verb' '*::argument:->argument' && ret=0\n  case $state in\n"
        "    verb) _describe -t verbs verb verbs && ret=0 ;;\n    argument)\n"
        "      local -a specs=($common)\n      case $words[1] in\n";
    script += cases + "      esac\n      _arguments $specs && ret=0 ;;\n  esac\n  return ret\n}\n\n";
    // As a function of fpath the file is the function's body the first time; sourced, it only defines.
    return script + "if [[ $funcstack[1] == _jstore ]]; then\n  _jstore \"$@\"\nelse\n  compdef _jstore jstore\nfi\n";
}

}  // namespace jstore::manual
