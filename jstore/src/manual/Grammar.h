#pragma once

#include <CLI/App.hpp>

#include <map>
#include <string>
#include <vector>

#include "options/VerbHelp.h"

namespace jstore::manual {

/// An option, or the arguments of a verb, as manual pages and completions describe them.
struct Option {
    std::vector<std::string> names;  ///< "-r", "--recursive"; for arguments, the one word that stands for them
    std::string value;               ///< the word for its value; empty if it takes none
    std::string help;
    std::vector<std::string> words;  ///< the values it takes; empty when it may be anything
};

struct Verb {
    std::string name;
    VerbHelp help;
    std::vector<Option> options;
    std::vector<Option> arguments;
};

/// The command line as data.
struct Grammar {
    std::string help;
    std::vector<Option> options;  ///< the common options of all verbs
    std::vector<Verb> verbs;
};

/// Reads the parser's grammar, so that the manual page and the completions are never out of date. `words` are the
/// values of the common options, `helps` the help of each verb, by its name.
[[nodiscard]] Grammar grammarOf(const CLI::App& commandLine, const Words& words,
                                const std::map<std::string, VerbHelp>& helps);

}  // namespace jstore::manual
