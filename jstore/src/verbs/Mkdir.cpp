#include "options/Arguments.h"
#include "options/HelpText.h"
#include "verbs/Verb.h"
#include "work/ForEachLocation.h"

namespace jstore {

using foundation::storage::provider::IProvider;

namespace {

class Mkdir final : public Verb {
public:
    CLI::App& declare(CLI::App& commandLine) override {
        auto& verb = *commandLine.add_subcommand("mkdir", "Create folders");
        addArguments(verb, "FOLDER...", m_arguments, "The folders to create");
        verb.add_flag("-p,--parents", m_parents,
                      "Create missing folders above it too; a folder that exists is no error");
        verb.footer(helpText("", {"jstore mkdir backup/2026", "jstore mkdir -p backup/2026/november"}));
        return verb;
    }

    ExitCode run(Context& context) override {
        return forEachArgument(context, m_arguments, [this](const IProvider& provider, const Location& folder) {
            if (m_parents) {
                provider.createFolderRecursive(folder.iri());
            } else {
                provider.createFolder(folder.iri());
            }
        });
    }

private:
    std::vector<std::string> m_arguments;
    bool m_parents = false;
};

}  // namespace

std::unique_ptr<Verb> makeMkdir() { return std::make_unique<Mkdir>(); }

}  // namespace jstore
