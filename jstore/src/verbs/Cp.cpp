#include "base/Facts.h"
#include "base/Problem.h"
#include "copy/FileCopy.h"
#include "copy/FolderCopy.h"
#include "options/Arguments.h"
#include "options/HelpText.h"
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
    CLI::App& declare(CLI::App& commandLine) override {
        auto& verb = *commandLine.add_subcommand("cp", "Copy files and folders");
        addArguments(verb, "SOURCE... DESTINATION", m_arguments, "What to copy, and where to", /*fewest=*/2);
        verb.add_flag("-r,-R,--recursive", m_recursive, "Copy folders too, with all they hold");
        verb.add_flag("--replace", m_replace, "Replace files at the destination, and add to folders there");
        verb.footer(helpText(
            "A destination that is a folder takes the sources in under their own names; for several sources it\n"
            "must be one. What is at the destination already is kept, and the copy fails with 4, unless\n"
            "--replace is given. Bytes and times of modification are copied. A file is written under a hidden\n"
            "name and moved into place when it is complete: after an error or Ctrl-C its target is as it was.\n"
            "\n"
            "--replace writes through links to files and keeps permissions and attributes of what it replaces,\n"
            "as far as the back end can. It replaces no folder, pipe or device, adds to no folder through a link,\n"
            "and replaces nothing that this command has put there itself. A full storage ends the command.",
            {"jstore cp report.txt backup", "jstore cp -r photos backup",
             "jstore --mount store=backup cp -r photos java://store/2026"}));
        return verb;
    }

    ExitCode run(Context& context) override {
        auto sources = toLocations(m_arguments);
        auto last = sources.back();
        sources.pop_back();
        MadeHere made(context.provider());
        const Destination destination(context, std::move(last), sources.size());
        return forEachLocation(context, sources, [&](const Location& source) {
            return copy(context, source, destination.targetOf(source, "copied into a folder"), made);
        });
    }

private:
    [[nodiscard]] ExitCode copy(Context& context, const Location& source, const Location& target,
                                MadeHere& made) const {
        const auto& provider = context.provider();
        if (!entryAt(provider, source).isFolder()) {
            return copyFile(context, source, target, made);
        }
        if (!m_recursive) {
            throw refusal(source, ErrorCode::NotAFile, "it is a folder; use cp -r to copy it with all it holds");
        }
        if (isInside(provider, target.iri(), source.iri())) {
            throw refusal(target, ErrorCode::InvalidLocation, "a folder cannot be copied into itself");
        }
        context.progress().begin("copied");
        FolderCopy folder(context, target, m_replace, made);
        const auto code = folder.run(source);
        return code == ExitCode::Done ? done(context, source, target, folder.bytes()) : code;
    }

    [[nodiscard]] ExitCode copyFile(Context& context, const Location& source, const Location& target,
                                    MadeHere& made) const {
        const bool single = m_arguments.size() == 2;
        context.progress().begin("copied", single);
        const auto action = [&] {
            return copyOneFile(context.provider(), source, {target, m_replace}, context.progress(), made);
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
