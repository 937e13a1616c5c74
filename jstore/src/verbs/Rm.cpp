#include "base/Problem.h"
#include "foundation/storage/provider/Exception.h"
#include "options/Arguments.h"
#include "verbs/Verb.h"
#include "work/ForEachLocation.h"
#include "work/TreeRemoval.h"

namespace jstore {

using foundation::storage::provider::EntryType;
using foundation::storage::provider::ErrorCode;
using foundation::storage::provider::Exception;
using foundation::storage::provider::IProvider;

namespace {

void removeOneFile(const IProvider& provider, const Location& location) {
    try {
        provider.removeFile(location.iri());
    } catch (const Exception& error) {
        if (error.code() == ErrorCode::NotAFile) {
            throw refusal(location, ErrorCode::NotAFile, "it is a folder; use rm -r to remove it");
        }
        throw;
    }
}

/// A symbolic link to a folder counts as a folder here, but the back end removes only the link. A link that leads
/// nowhere is removed as a file.
ExitCode removeAll(Context& context, const Location& location) {
    const IProvider& provider = context.provider();
    if (provider.existsExtended(location.iri()) == EntryType::Folder) {
        return removeOneByOne(context, location);
    }
    provider.removeFile(location.iri());
    context.progress().countItem();
    return ExitCode::Done;
}

/// Nobody means `rm -r .` or `rm -r ..`.
void refuseDots(std::string_view argument) {
    const std::size_t last = argument.find_last_not_of('/');
    const std::string_view trimmed = argument.substr(0, last + 1);
    const std::string_view name = trimmed.substr(trimmed.rfind('/') + 1);
    if (name == "." || name == "..") {
        throw usageError("rm: . and .. are never removed: " + std::string(argument));
    }
}

class Rm final : public Verb {
public:
    [[nodiscard]] std::string name() const override { return "rm"; }

    [[nodiscard]] VerbHelp help() const override {
        return {.summary = "Remove files, and folders with everything in them",
                .text =
                    "The root of a file system is never removed. Entries of a folder are removed one by one. What\n"
                    "cannot be removed is reported and stays, and so do the folders above it. After Ctrl-C, part of\n"
                    "a folder may be gone; a line reports how much was removed. Links are removed, not followed.",
                .examples = {"jstore rm report.txt", "jstore rm -r photos"}};
    }

    void declare(CLI::App& command) override {
        addArguments(command, "LOCATION...", m_arguments, "What to remove");
        command.add_flag("-r,-R,--recursive", m_recursive, "Remove folders too, with everything in them");
    }

    ExitCode run(Context& context) override {
        for (const std::string& argument : m_arguments) {
            refuseDots(argument);
        }
        const std::vector<Location> locations = startWith(context, m_arguments);
        context.progress().begin("removed");
        return forEachLocation(context, locations, [&](const Location& location) {
            if (location.iri().normalized().isRoot()) {
                throw refusal(location, ErrorCode::AccessDenied, "a root is never removed");
            }
            context.progress().at(location);
            const ExitCode code = remove(context, location);
            if (code == ExitCode::Done) {
                context.reporter().done(location);
            }
            return code;
        });
    }

private:
    [[nodiscard]] ExitCode remove(Context& context, const Location& location) const {
        if (m_recursive) {
            return removeAll(context, location);
        }
        removeOneFile(context.provider(), location);
        context.progress().countItem();
        return ExitCode::Done;
    }

    std::vector<std::string> m_arguments;
    bool m_recursive = false;
};

}  // namespace

std::unique_ptr<Verb> makeRm() { return std::make_unique<Rm>(); }

}  // namespace jstore
