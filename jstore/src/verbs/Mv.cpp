#include "base/Facts.h"
#include "base/Problem.h"
#include "copy/MadeHere.h"
#include "copy/Replacing.h"
#include "java/InterruptibleCall.h"
#include "options/Arguments.h"
#include "options/HelpText.h"
#include "verbs/Verb.h"
#include "work/Destination.h"
#include "work/ForEachLocation.h"

namespace jstore {

using foundation::storage::provider::EntryType;
using foundation::storage::provider::ErrorCode;
using foundation::storage::provider::IProvider;
using foundation::storage::provider::ReplacementPolicy;

namespace {

class Mv final : public Verb {
public:
    CLI::App& declare(CLI::App& commandLine) override {
        auto& verb = *commandLine.add_subcommand("mv", "Move or rename files and folders");
        addArguments(verb, "SOURCE... DESTINATION", m_arguments, "What to move, and where to", /*fewest=*/2);
        verb.add_flag("--replace", m_replace, "Replace what is at the destination; a folder with all it holds");
        verb.footer(helpText(
            "A destination that is a folder takes the sources in under their own names; for several sources it\n"
            "must be one. What is at the destination already is kept, and the move fails with 4, unless\n"
            "--replace is given. A file never replaces a folder, nor a folder a file, and nothing replaces a\n"
            "pipe, a device, a link to a folder, or what this command has put there itself. After Ctrl-C a\n"
            "folder that moves to another disk is where it was.",
            {"jstore mv report.txt final.txt", "jstore mv --replace report.txt photos backup"}));
        return verb;
    }

    ExitCode run(Context& context) override {
        auto sources = toLocations(m_arguments);
        auto last = sources.back();
        sources.pop_back();
        const auto& provider = context.provider();
        const Destination destination(context, std::move(last), sources.size());
        MadeHere made(provider);
        context.progress().begin("moved");
        return forEachLocation(context, sources, [&](const Location& source) {
            const auto target = destination.targetOf(source, "moved");
            context.progress().at(source);
            move(context, source, target, made);
            context.progress().countItem();
            context.reporter().done(source, {{"destination", target.text()}});
            return ExitCode::Done;
        });
    }

private:
    void move(Context& context, const Location& source, const Location& target, MadeHere& made) const {
        const auto& provider = context.provider();
        const bool folder = provider.existsExtended(source.iri()) == EntryType::Folder;
        if (m_replace) {
            requireRoom(provider, source, target, made);
        }
        interruptibly(context.jvm(), [&] {
            if (folder) {
                provider.moveFolder(source.iri(), target.iri(), policy(ReplacementPolicy::ReplaceExisting));
            } else {
                provider.moveFile(source.iri(), target.iri(), policy(ReplacementPolicy::ReplaceExistingFile));
            }
        });
        if (m_replace) {
            made.add(target.iri());
        }
    }

    /// A move onto itself under the same name is nothing, and the back end's to decide.
    static void requireRoom(const IProvider& provider, const Location& source, const Location& target, MadeHere& made) {
        if (source.iri().normalized() == target.iri().normalized()) {
            return;
        }
        const auto present = provider.existsExtended(target.iri());
        if (present == EntryType::Folder && factsOf(provider, target.iri()).link) {
            throw refusal(target, ErrorCode::AlreadyExists, "a link to a folder is there, and is not replaced");
        }
        if (present) {
            requireReplaceable(provider, source, target, made);
        }
    }

    [[nodiscard]] ReplacementPolicy policy(ReplacementPolicy replacing) const {
        return m_replace ? replacing : ReplacementPolicy::KeepExisting;
    }

    std::vector<std::string> m_arguments;
    bool m_replace = false;
};

}  // namespace

std::unique_ptr<Verb> makeMv() { return std::make_unique<Mv>(); }

}  // namespace jstore
