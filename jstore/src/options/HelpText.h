#pragma once

#include <CLI/App.hpp>

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace jstore {

/// What stands below a verb's options in its help: a text and command lines that can be run as they are, in a folder
/// that has such files.
[[nodiscard]] std::string helpText(std::string_view text, std::initializer_list<std::string_view> examples);

/// The two parts of what helpText() made.
struct HelpParts {
    std::string text;
    std::vector<std::string> examples;
};
[[nodiscard]] HelpParts helpParts(const std::string& helpText);

/// A check that a value is one of these words. wordsOf() finds them again.
[[nodiscard]] CLI::Validator oneOf(const std::vector<std::string>& words);

/// The words that the option's value is one of; none if it may be anything.
[[nodiscard]] std::vector<std::string> wordsOf(const CLI::Option& option);

}  // namespace jstore
