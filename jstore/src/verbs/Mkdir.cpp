#include "options/Arguments.h"
#include "verbs/Verb.h"
#include "work/ForEachLocation.h"

namespace jstore {

using foundation::storage::provider::IProvider;

namespace {

class Mkdir final : public Verb {
public:
    [[nodiscard]] std::string name() const override { return "mkdir"; }

    [[nodiscard]] VerbHelp help() const override {
        return {.summary = "Create folders",
                .text = "",
                .examples = {"jstore mkdir backup/2026", "jstore mkdir -p backup/2026/november"}};
    }

    void declare(CLI::App& command) override {
        addArguments(command, "FOLDER...", m_arguments, "Folders to create");
        command.add_flag("-p,--parents", m_parents, "Create missing parent folders too; accept a folder that exists");
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
