#pragma once

#include <CLI/App.hpp>

#include <memory>
#include <string>
#include <vector>

#include "manual/Grammar.h"
#include "options/Options.h"
#include "verbs/Verb.h"

namespace jstore {

/// The grammar of the command line: the common options, the verbs, and their help. Reads nothing but its arguments.
class CommandLine {
public:
    CommandLine();

    /// Reads the arguments. Returns the text that --help or --version asks for; empty when a verb is to run.
    /// Throws CommandError "Usage" when they make no sense. Called once.
    [[nodiscard]] std::string parse(int argc, const char* const* argv);

    /// The grammar as data, for the manual page and the completions.
    [[nodiscard]] manual::Grammar grammar() const;

    /// The common options, without what the environment adds.
    [[nodiscard]] const Options& options() const noexcept { return m_options; }

    /// The verb to run and its name.
    [[nodiscard]] Verb& verb() const { return *m_chosen; }
    [[nodiscard]] std::string verbName() const { return m_chosen == nullptr ? "" : m_chosen->name(); }

private:
    void declareBackEnd();
    void declareJava();
    void declareOutput();
    void declareVerbs();
    [[nodiscard]] std::string complaint(const CLI::ParseError& error) const;

    CLI::App m_app;
    Options m_options;
    std::vector<std::unique_ptr<Verb>> m_verbs;
    Verb* m_chosen = nullptr;
};

}  // namespace jstore
