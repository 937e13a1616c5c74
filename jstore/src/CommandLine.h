#pragma once

#include <CLI/App.hpp>

#include <memory>
#include <string>
#include <vector>

#include "options/Options.h"
#include "verbs/Verb.h"

namespace jstore {

/// The grammar of the command line: the common options, the verbs, and their help. Reads no more than its arguments.
class CommandLine {
public:
    CommandLine();

    /// Reads the arguments. Returns the text that --help or --version asks for; empty when a verb is to run.
    /// Throws CommandError "Usage" when they make no sense. Called once.
    [[nodiscard]] std::string parse(int argc, const char* const* argv);

    /// The grammar itself, for whoever explains it.
    [[nodiscard]] const CLI::App& app() const noexcept { return m_app; }

    /// What the common options say; the environment's part is not filled in.
    [[nodiscard]] const Options& options() const noexcept { return m_options; }

    /// The verb to run and its name.
    [[nodiscard]] Verb& verb() const { return *m_chosen; }
    [[nodiscard]] const std::string& verbName() const noexcept { return m_chosenName; }

private:
    void declareOptions();
    void declareVerbs();
    [[nodiscard]] std::string complaint(const CLI::ParseError& error) const;

    CLI::App m_app;
    Options m_options;
    std::vector<std::unique_ptr<Verb>> m_verbs;
    Verb* m_chosen = nullptr;
    std::string m_chosenName;
};

}  // namespace jstore
