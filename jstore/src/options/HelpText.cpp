#include "options/HelpText.h"

#include <sstream>

namespace jstore {

namespace {

constexpr std::string_view ExamplesBegin = "Examples:";

/// Marks the name of a check that oneOf() made, which holds the words with blanks between.
constexpr std::string_view WordsMark = "words: ";

}  // namespace

std::string helpText(std::string_view text, std::initializer_list<std::string_view> examples) {
    std::string help(text);
    help += (help.empty() ? "" : "\n\n") + std::string(ExamplesBegin);
    for (const auto example : examples) {
        help += "\n  " + std::string(example);
    }
    return help + '\n';
}

HelpParts helpParts(const std::string& helpText) {
    HelpParts parts;
    std::istringstream in(helpText);
    bool examples = false;
    for (std::string line; std::getline(in, line);) {
        if (line == ExamplesBegin) {
            examples = true;
        } else if (!examples) {
            parts.text += line + '\n';
        } else if (line.starts_with("  ")) {
            parts.examples.push_back(line.substr(2));
        }
    }
    return parts;
}

CLI::Validator oneOf(const std::vector<std::string>& words) {
    std::string name(WordsMark);
    for (const auto& word : words) {
        name += word + ' ';
    }
    // Without a description of its own the check would be shown in the option's help, which tells about the words.
    return CLI::IsMember(words).description("").name(name);
}

std::vector<std::string> wordsOf(const CLI::Option& option) {
    const CLI::Validator* check = nullptr;
    try {
        // It is only read; the parser has no other way to it.
        check = const_cast<CLI::Option&>(option).get_validator();
    } catch (const CLI::OptionNotFound&) {
        return {};
    }
    std::vector<std::string> words;
    if (check->get_name().starts_with(WordsMark)) {
        std::istringstream in(check->get_name().substr(WordsMark.size()));
        for (std::string word; in >> word;) {
            words.push_back(word);
        }
    }
    return words;
}

}  // namespace jstore
