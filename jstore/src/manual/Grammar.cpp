#include "manual/Grammar.h"

#include "options/HelpText.h"

namespace jstore::manual {

namespace {

Option optionOf(const CLI::Option& option) {
    Option result;
    for (const auto& name : option.get_snames()) {
        result.names.push_back('-' + name);
    }
    for (const auto& name : option.get_lnames()) {
        result.names.push_back("--" + name);
    }
    result.value = option.get_type_name();
    result.help = option.get_description();
    result.words = wordsOf(option);
    return result;
}

Option argumentsOf(const CLI::Option& option) {
    auto result = optionOf(option);
    result.names = {option.get_name(/*positional=*/true)};
    return result;
}

Verb verbOf(const CLI::App& app) {
    const auto parts = helpParts(app.get_footer());
    Verb verb{app.get_name(), app.get_description(), parts.text, parts.examples, {}, {}};
    for (const auto* option : app.get_options()) {
        if (option->get_positional()) {
            verb.arguments.push_back(argumentsOf(*option));
        } else {
            verb.options.push_back(optionOf(*option));
        }
    }
    return verb;
}

}  // namespace

Grammar grammarOf(const CLI::App& commandLine) {
    Grammar grammar;
    grammar.help = commandLine.get_description();
    grammar.options = verbOf(commandLine).options;
    for (const auto* verb : commandLine.get_subcommands([](const CLI::App*) { return true; })) {
        grammar.verbs.push_back(verbOf(*verb));
    }
    return grammar;
}

}  // namespace jstore::manual
