#include <fmt/format.h>

#include "manual/Completion.h"

namespace jstore::manual {

namespace {

constexpr const char* BashStart = R"(# Completion of jstore's command lines for bash. Made by: jstore completion bash

# Files and folders, after java:// too; there bash has cut off "java" and ":". Names that a location spells differently
# are left out.
_jstore_files() {
    local name
    while IFS= read -r name; do
        if [[ ${COMP_WORDS[COMP_CWORD-1]} == : && $name == *[\#?%]* ]]; then
            continue
        fi
        COMPREPLY+=("$name")
    done < <(compgen "${2:--f}" -- "$1")
    compopt -o filenames 2>/dev/null
    if (( ${#COMPREPLY[@]} == 0 )); then
        compopt -o default 2>/dev/null
    fi
}

_jstore_words() {
    mapfile -t COMPREPLY < <(compgen -W "$2" -- "$1")
}

# Completes the value of an option; fails if the option takes none. The verb is "" for the common options.
_jstore_value() {
    case $1$2 in
)";

constexpr const char* BashMiddle = R"(        *) return 1 ;;
    esac
}

_jstore() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]} verb= word index glued= skipped=
    COMPREPLY=()
    if [[ $current == = ]]; then
        current=
    elif [[ $previous == = ]] && (( COMP_CWORD >= 2 )); then
        previous=${COMP_WORDS[COMP_CWORD-2]}
    fi
    # The verb is the first word that is neither an option nor its value; bash has cut words at "=" and ":".
    for (( index = 1; index < COMP_CWORD; ++index )); do
        word=${COMP_WORDS[index]}
        case $word in
            [=:]*) glued=1 skipped= ; continue ;;
        esac
        if [[ $glued || $skipped ]]; then
            glued= skipped=
            continue
        fi
        case $word in
)";

constexpr const char* BashEnd = R"(            -*) ;;
            *) verb=$word ; break ;;
        esac
    done
    if _jstore_value '' "$previous" "$current" || _jstore_value "$verb" "$previous" "$current"; then
        return
    fi
    local common=')";

std::string joined(const std::vector<std::string>& words, const char* separator) {
    return fmt::format("{}", fmt::join(words, separator));
}

std::string names(const std::vector<Option>& options) {
    std::string all;
    for (const Option& option : options) {
        all += (all.empty() ? "" : " ") + joined(option.names, " ");
    }
    return all;
}

/// The command that completes a value, which is "$3".
std::string bashAction(const Option& option) {
    if (!option.words.empty()) {
        return fmt::format("_jstore_words \"$3\" '{}'", joined(option.words, " "));
    }
    if (option.value == "PATH") {
        return "_jstore_files \"$3\" -d";
    }
    const bool files = option.value == "P" || option.value == "NAME=URI";
    return files ? "_jstore_files \"$3\"" : ":";
}

std::string values(const std::string& verb, const std::vector<Option>& options) {
    std::string cases;
    for (const Option& option : options) {
        if (!option.value.empty()) {
            std::vector<std::string> patterns;
            for (const std::string& name : option.names) {
                patterns.push_back(verb + name);
            }
            cases += fmt::format("        {}) {} ;;\n", joined(patterns, "|"), bashAction(option));
        }
    }
    return cases;
}

std::string bashCase(const Verb& verb) {
    std::string arguments = ":";
    for (const Option& argument : verb.arguments) {
        arguments = argument.words.empty()
                        ? "_jstore_files \"$current\""
                        : fmt::format("_jstore_words \"$current\" '{}'", joined(argument.words, " "));
    }
    return fmt::format(
        "        {}) if [[ $current == -* ]]; then _jstore_words \"$current\" \"$common {}\"; else {}; fi ;;\n",
        verb.name, names(verb.options), arguments);
}

/// The options whose value is a word of its own.
std::string valued(const Grammar& grammar) {
    std::vector<std::string> patterns;
    for (const Option& option : grammar.options) {
        if (!option.value.empty()) {
            patterns.insert(patterns.end(), option.names.begin(), option.names.end());
        }
    }
    return fmt::format("            {}) skipped=1 ;;\n", joined(patterns, "|"));
}

}  // namespace

std::string bashCompletion(const Grammar& grammar) {
    std::string script = BashStart + values("", grammar.options);
    std::string cases;
    std::vector<std::string> verbs;
    for (const Verb& verb : grammar.verbs) {
        script += values(verb.name, verb.options);
        cases += bashCase(verb);
        verbs.push_back(verb.name);
    }
    script += BashMiddle + valued(grammar) + BashEnd + names(grammar.options) + "'\n    case $verb in\n" + cases;
    script += fmt::format(
        "        '') if [[ $current == -* ]]; then _jstore_words \"$current\" \"$common\"; else "
        "_jstore_words \"$current\" '{}'; fi ;;\n",
        joined(verbs, " "));
    return script + "    esac\n}\n\ncomplete -F _jstore jstore\n";
}

}  // namespace jstore::manual
