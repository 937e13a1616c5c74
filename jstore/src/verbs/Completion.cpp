#include "manual/Completion.h"

#include "options/HelpText.h"
#include "output/Reporter.h"
#include "verbs/Verb.h"

namespace jstore {

namespace {

class Completion final : public Verb {
public:
    CLI::App& declare(CLI::App& commandLine) override {
        m_commandLine = &commandLine;
        auto& verb =
            *commandLine.add_subcommand("completion", "Print a script that completes command lines in a shell");
        verb.add_option("SHELL", m_shell, "bash or zsh")->required()->type_name("")->check(oneOf({"bash", "zsh"}));
        verb.footer(
            helpText("For bash: source <(jstore completion bash). For zsh: put the script into a folder of fpath as\n"
                     "_jstore. What is installed has both in place. No Java is started, neither here nor by them. The\n"
                     "script is text; --json does not change it.",
                     {"jstore completion bash > jstore.bash", "jstore completion zsh > _jstore"}));
        return verb;
    }

    ExitCode run(Context& /*context*/) override {
        const auto grammar = manual::grammarOf(*m_commandLine);
        writeOutput(m_shell == "bash" ? manual::bashCompletion(grammar) : manual::zshCompletion(grammar));
        return ExitCode::Done;
    }

private:
    const CLI::App* m_commandLine = nullptr;
    std::string m_shell;
};

}  // namespace

std::unique_ptr<Verb> makeCompletion() { return std::make_unique<Completion>(); }

}  // namespace jstore
