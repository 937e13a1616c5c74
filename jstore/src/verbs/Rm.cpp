#include "base/Problem.h"
#include "foundation/storage/provider/Exception.h"
#include "options/Arguments.h"
#include "options/HelpText.h"
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
            throw refusal(location, ErrorCode::NotAFile, "it is a folder; use rm -r to remove it with all it holds");
        }
        throw;
    }
}

/// A symbolic link to a folder counts as a folder here, but a back end removes the link and not what it leads to; one
/// that leads nowhere is removed as a file.
ExitCode removeAll(Context& context, const Location& location) {
    const auto& provider = context.provider();
    if (provider.existsExtended(location.iri()) == EntryType::Folder) {
        return removeOneByOne(context, location);
    }
    provider.removeFile(location.iri());
    context.progress().countItem();
    return ExitCode::Done;
}

/// `rm -r .` and `rm -r ..` are never meant.
void refuseDots(std::string_view argument) {
    const auto last = argument.find_last_not_of('/');
    const auto trimmed = argument.substr(0, last + 1);
    const auto name = trimmed.substr(trimmed.rfind('/') + 1);
    if (name == "." || name == "..") {
        throw usageError("rm does not remove . or ..: " + std::string(argument));
    }
}

class Rm final : public Verb {
public:
    CLI::App& declare(CLI::App& commandLine) override {
        auto& verb = *commandLine.add_subcommand("rm", "Remove files, or folders with all they hold");
        addArguments(verb, "LOCATION...", m_arguments, "What to remove");
        verb.add_flag("-r,-R,--recursive", m_recursive, "Remove folders too, with all they hold");
        verb.footer(helpText(
            "The root of a file system is never removed. What a folder holds is removed one by one; what cannot\n"
            "be removed is reported and stays, with the folders above it. After Ctrl-C, too, a part of a folder\n"
            "may be gone; a line reports how much was removed. Links are removed and not followed.",
            {"jstore rm report.txt", "jstore rm -r photos"}));
        return verb;
    }

    ExitCode run(Context& context) override {
        for (const auto& argument : m_arguments) {
            refuseDots(argument);
        }
        const auto locations = toLocations(m_arguments);
        static_cast<void>(context.provider());
        context.progress().begin("removed");
        return forEachLocation(context, locations, [&](const Location& location) {
            if (location.iri().normalized().isRoot()) {
                throw refusal(location, ErrorCode::AccessDenied, "a root is never removed");
            }
            context.progress().at(location);
            const auto code = remove(context, location);
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
