#include "manual/Grammar.h"

namespace jstore::manual {

namespace {

std::vector<std::string> namesOf(const CLI::Option& option) {
    if (option.get_positional()) {
        return {option.get_name(/*positional=*/true)};
    }
    std::vector<std::string> names;
    for (const std::string& name : option.get_snames()) {
        names.push_back('-' + name);
    }
    for (const std::string& name : option.get_lnames()) {
        names.push_back("--" + name);
    }
    return names;
}

Option optionOf(const CLI::Option& option, const Words& words) {
    Option result{namesOf(option), option.get_type_name(), option.get_description(), {}};
    for (const std::string& name : result.names) {
        const auto found = words.find(name);
        if (found != words.end()) {
            result.words = found->second;
        }
    }
    return result;
}

std::vector<Option> optionsOf(const CLI::App& command, const Words& words, bool positional) {
    std::vector<Option> options;
    for (const CLI::Option* option : command.get_options()) {
        if (option->get_positional() == positional) {
            options.push_back(optionOf(*option, words));
        }
    }
    return options;
}

}  // namespace

Grammar grammarOf(const CLI::App& commandLine, const Words& words, const std::map<std::string, VerbHelp>& helps) {
    Grammar grammar{commandLine.get_description(), optionsOf(commandLine, words, /*positional=*/false), {}};
    for (const CLI::App* verb : commandLine.get_subcommands([](const CLI::App*) { return true; })) {
        const VerbHelp& help = helps.at(verb->get_name());
        grammar.verbs.push_back({verb->get_name(), help, optionsOf(*verb, help.words, /*positional=*/false),
                                 optionsOf(*verb, help.words, /*positional=*/true)});
    }
    return grammar;
}

}  // namespace jstore::manual
