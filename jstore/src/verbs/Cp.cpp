#include "base/NodeInfo.h"
#include "base/Problem.h"
#include "copy/FileCopy.h"
#include "copy/FolderCopy.h"
#include "options/Arguments.h"
#include "verbs/Verb.h"
#include "work/Destination.h"
#include "work/Entry.h"
#include "work/ForEachLocation.h"
#include "work/FullStorage.h"

namespace jstore {

using namespace foundation::storage::provider;

namespace {

class Cp final : public Verb {
public:
    [[nodiscard]] std::string name() const override { return "cp"; }

    [[nodiscard]] VerbHelp help() const override {
        return {.summary = "Copy files and folders",
                .text =
                    "If DESTINATION is a folder, sources are copied into it under their own names. With several\n"
                    "sources, it must be a folder. Without --replace, the copy fails with exit code 4 if its target\n"
                    "exists. Bytes and modification times are copied. Each file is written under a hidden name and\n"
                    "moved into place when it is complete: after an error or Ctrl-C, the target is unchanged.\n"
                    "\n"
                    "With --replace, a link to a file stays, and the file that it leads to is replaced. A replaced\n"
                    "file keeps its permissions and attributes if the back end can keep them. --replace never\n"
                    "replaces a folder, a pipe, a device, or anything that the same command has put there. It never\n"
                    "adds to a folder through a link. If the storage is full, the command ends.",
                .examples = {"jstore cp report.txt backup", "jstore cp -r photos backup",
                             "jstore --mount store=backup cp -r photos java://store/2026"}};
    }

    void declare(CLI::App& command) override {
        addArguments(command, "SOURCE... DESTINATION", m_arguments, "What to copy, and where to", /*fewest=*/2);
        command.add_flag("-r,-R,--recursive", m_recursive, "Copy folders too, with everything in them");
        command.add_flag("--replace", m_replace, "Replace files at the destination, and add to folders there");
    }

    ExitCode run(Context& context) override {
        std::vector<Location> sources = startWith(context, m_arguments);
        Location last = sources.back();
        sources.pop_back();
        WrittenTargets written(context.provider());
        const Destination destination(context, std::move(last), sources.size());
        return forEachLocation(context, sources, [&](const Location& source) {
            return copy(context, source, destination.targetOf(source, "copied into a folder"), written);
        });
    }

private:
    [[nodiscard]] ExitCode copy(Context& context, const Location& source, const Location& target,
                                WrittenTargets& written) const {
        const IProvider& provider = context.provider();
        if (!entryAt(provider, source).isFolder()) {
            return copyFile(context, source, target, written);
        }
        if (!m_recursive) {
            throw refusal(source, ErrorCode::NotAFile, "it is a folder; use cp -r to copy it");
        }
        if (isInside(provider, target.iri(), source.iri())) {
            throw refusal(target, ErrorCode::InvalidLocation, "a folder cannot be copied into itself");
        }
        context.progress().begin("copied");
        FolderCopy folder(context, target, m_replace, written);
        const ExitCode code = folder.run(source);
        return code == ExitCode::Done ? done(context, source, target, folder.bytes()) : code;
    }

    [[nodiscard]] ExitCode copyFile(Context& context, const Location& source, const Location& target,
                                    WrittenTargets& written) const {
        const bool single = m_arguments.size() == 2;
        context.progress().begin("copied", single);
        const auto action = [&] {
            return copyOneFile(context.provider(), source, {target, m_replace}, context.progress(), written);
        };
        return done(context, source, target, single ? action() : unlessFull(context, source, action));
    }

    static ExitCode done(Context& context, const Location& source, const Location& target, std::uint64_t bytes) {
        context.reporter().done(source, {{"destination", target.text()}, {"bytes", bytes}});
        return ExitCode::Done;
    }

    std::vector<std::string> m_arguments;
    bool m_recursive = false;
    bool m_replace = false;
};

}  // namespace

std::unique_ptr<Verb> makeCp() { return std::make_unique<Cp>(); }

}  // namespace jstore
