#pragma once

#include <CLI/App.hpp>

#include <string>
#include <vector>

namespace jstore::manual {

/// What is to be known of an option, or of a verb's arguments, by whoever explains or completes command lines.
struct Option {
    std::vector<std::string> names;  ///< "-r", "--recursive"; of arguments the one word that stands for them
    std::string value;               ///< the word for its value; empty for one without
    std::string help;
    std::vector<std::string> words;  ///< the values it takes; empty when it may be anything
};

struct Verb {
    std::string name;
    std::string help;  ///< a line
    std::string text;  ///< further lines; may be empty
    std::vector<std::string> examples;
    std::vector<Option> options;
    std::vector<Option> arguments;
};

/// The command line as data.
struct Grammar {
    std::string help;
    std::vector<Option> options;  ///< those that all verbs have
    std::vector<Verb> verbs;
};

/// Reads the parser's grammar, so that what is made of it is never out of date.
[[nodiscard]] Grammar grammarOf(const CLI::App& commandLine);

}  // namespace jstore::manual
