#include "manual/Completion.h"

#include <utility>

#include "output/Reporter.h"
#include "verbs/Verb.h"

namespace jstore {

namespace {

class Completion final : public Verb {
public:
    explicit Completion(std::function<manual::Grammar()> grammar) : m_grammar(std::move(grammar)) {}

    [[nodiscard]] std::string name() const override { return "completion"; }

    [[nodiscard]] VerbHelp help() const override {
        return {.summary = "Print a script that completes command lines in a shell",
                .text =
                    "For bash: source <(jstore completion bash). For zsh: save the script as _jstore in a folder of\n"
                    "fpath. The installation puts both in place. Neither this verb nor the scripts start Java.\n"
                    "--json does not change the script.",
                .examples = {"jstore completion bash > jstore.bash", "jstore completion zsh > _jstore"},
                .words = {{"SHELL", {"bash", "zsh"}}}};
    }

    void declare(CLI::App& command) override {
        command.add_option("SHELL", m_shell, "bash or zsh")->required()->type_name("");
    }

    ExitCode run(Context& /*context*/) override {
        const manual::Grammar grammar = m_grammar();
        writeOutput(m_shell == "bash" ? manual::bashCompletion(grammar) : manual::zshCompletion(grammar));
        return ExitCode::Done;
    }

private:
    std::function<manual::Grammar()> m_grammar;
    std::string m_shell;
};

}  // namespace

std::unique_ptr<Verb> makeCompletion(std::function<manual::Grammar()> grammar) {
    return std::make_unique<Completion>(std::move(grammar));
}

}  // namespace jstore
