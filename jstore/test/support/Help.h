#pragma once

#include <regex>
#include <string>
#include <vector>

#include "support/Jstore.h"

namespace jstore::test {

/// The first groups of all that fits the pattern.
inline std::vector<std::string> allOf(const std::string& text, const std::regex& pattern) {
    std::vector<std::string> found;
    for (auto it = std::sregex_iterator(text.begin(), text.end(), pattern); it != std::sregex_iterator(); ++it) {
        found.push_back((*it)[1].str());
    }
    return found;
}

/// The verbs that --help lists.
inline std::vector<std::string> verbs() {
    const auto help = jstore({"--help"}).out;
    const auto begin = help.find("\nVerbs:\n");
    return allOf(help.substr(begin, help.find("\n\n", begin + 1) - begin), std::regex(R"(\n  ([a-z]+) )"));
}

/// The options that a verb's help lists, or that all have in common for "".
inline std::vector<std::string> optionsOf(const std::string& verb) {
    const auto help = verb.empty() ? jstore({"--help"}).out : jstore({verb, "--help"}).out;
    return allOf(help, std::regex(R"((?:\n  |,)(--?[a-zA-Z][a-z-]*))"));
}

}  // namespace jstore::test
