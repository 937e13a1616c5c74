#include "base/NodeInfo.h"
#include "base/Problem.h"
#include "copy/ReplacementChecks.h"
#include "copy/WrittenTargets.h"
#include "java/InterruptibleCall.h"
#include "options/Arguments.h"
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
    [[nodiscard]] std::string name() const override { return "mv"; }

    [[nodiscard]] VerbHelp help() const override {
        return {.summary = "Move or rename files and folders",
                .text =
                    "If DESTINATION is a folder, sources are moved into it under their own names. With several\n"
                    "sources, it must be a folder. Without --replace, the move fails with exit code 4 if its target\n"
                    "exists. A file never replaces a folder, nor a folder a file. Nothing replaces a pipe, a\n"
                    "device, a link to a folder, or anything that the same command has put there. If Ctrl-C stops\n"
                    "the move of a folder to another disk, the folder stays where it was.",
                .examples = {"jstore mv report.txt final.txt", "jstore mv --replace report.txt photos backup"}};
    }

    void declare(CLI::App& command) override {
        addArguments(command, "SOURCE... DESTINATION", m_arguments, "What to move, and where to", /*fewest=*/2);
        command.add_flag("--replace", m_replace, "Replace what is at the destination; folders with everything in them");
    }

    ExitCode run(Context& context) override {
        std::vector<Location> sources = startWith(context, m_arguments);
        Location last = sources.back();
        sources.pop_back();
        const Destination destination(context, std::move(last), sources.size());
        WrittenTargets written(context.provider());
        context.progress().begin("moved");
        return forEachLocation(context, sources, [&](const Location& source) {
            const Location target = destination.targetOf(source, "moved");
            context.progress().at(source);
            move(context, source, target, written);
            context.progress().countItem();
            context.reporter().done(source, {{"destination", target.text()}});
            return ExitCode::Done;
        });
    }

private:
    void move(Context& context, const Location& source, const Location& target, WrittenTargets& written) const {
        const IProvider& provider = context.provider();
        const bool folder = provider.existsExtended(source.iri()) == EntryType::Folder;
        if (m_replace) {
            requireRoom(provider, source, target, written);
        }
        interruptibly(context.jvm(), [&] {
            if (folder) {
                provider.moveFolder(source.iri(), target.iri(), policy(ReplacementPolicy::ReplaceExisting));
            } else {
                provider.moveFile(source.iri(), target.iri(), policy(ReplacementPolicy::ReplaceExistingFile));
            }
        });
        if (m_replace) {
            written.add(target.iri());
        }
    }

    /// The back end decides what happens if something is moved onto itself under the same name.
    static void requireRoom(const IProvider& provider, const Location& source, const Location& target,
                            WrittenTargets& written) {
        if (source.iri().normalized() == target.iri().normalized()) {
            return;
        }
        const std::optional<EntryType> present = provider.existsExtended(target.iri());
        if (present == EntryType::Folder && nodeInfoOf(provider, target.iri()).link) {
            throw refusal(target, ErrorCode::AlreadyExists, "a link to a folder is there; mv does not replace it");
        }
        if (present) {
            requireReplaceable(provider, source, target, written);
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
