#include "Arguments.h"
#include "Entry.h"
#include "FileCopy.h"
#include "HelpText.h"
#include "Refusal.h"
#include "verbs/Destination.h"
#include "verbs/ForEachLocation.h"
#include "verbs/TreeWalk.h"
#include "verbs/Verb.h"

namespace jstore {

using namespace foundation::storage::provider;

namespace {

/// Copies a folder with all it holds. What fails in it is reported, and the rest follows.
class FolderCopy final : public TreeWalk {
public:
    FolderCopy(Context& context, const Location& target, bool replace)
        : TreeWalk(context), m_targets{{target, replace}} {}

    [[nodiscard]] std::uint64_t bytes() const noexcept { return m_bytes; }

protected:
    void enter(const Entry& folder, const std::vector<Entry>& /*entries*/) override {
        auto target = targetOf(folder);
        target.inNewFolder = createFolder(target);
        m_targets.resize(folder.depth, m_targets.front());
        m_targets.push_back(std::move(target));
    }

    void visit(const Entry& entry) override {
        if (!entry.isFolder()) {
            m_bytes += copyOneFile(provider(), entry.location, targetOf(entry), context().progress());
        }
    }

    void passLink(const Entry& entry) override {
        throw refusal(entry.location, ErrorCode::NotSupported, "a link to a folder is not copied with -r");
    }

    /// Last, since what is created in a folder changes its time.
    void leave(const Entry& folder) override {
        const auto attributes = provider().getFolderAttributes(folder.location.iri());
        keepTime(provider(), m_targets[folder.depth].location.iri(), attributes.lastModified());
    }

private:
    [[nodiscard]] CopyTarget targetOf(const Entry& entry) const {
        if (entry.depth == 0) {
            return m_targets.front();
        }
        auto target = m_targets[entry.depth - 1];
        target.location = Location(target.location.iri().getChild(entry.name));
        return target;
    }

    /// False if the folder is there already and may be added to.
    [[nodiscard]] bool createFolder(const CopyTarget& target) const {
        if (target.replace && provider().folderExists(target.location.iri())) {
            return false;
        }
        provider().createFolder(target.location.iri());
        return true;
    }

    /// The targets of the folders along the present path.
    std::vector<CopyTarget> m_targets;
    std::uint64_t m_bytes = 0;
};

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
            "name and moved into place when it is complete: after an error or Ctrl-C its target is as it was.",
            {"jstore cp report.txt backup", "jstore cp -r photos backup",
             "jstore --mount store=backup cp -r photos java://store/2026"}));
        return verb;
    }

    ExitCode run(Context& context) override {
        auto sources = toLocations(m_arguments);
        auto last = sources.back();
        sources.pop_back();
        static_cast<void>(context.provider());
        const Destination destination(context, std::move(last), sources.size());
        return forEachLocation(context, sources, [&](const Location& source) {
            return copy(context, source, destination.targetOf(source, "copied into a folder"));
        });
    }

private:
    [[nodiscard]] ExitCode copy(Context& context, const Location& source, const Location& target) const {
        const auto& provider = context.provider();
        if (!entryAt(provider, source).isFolder()) {
            context.progress().begin("files", /*single=*/m_arguments.size() == 2);
            return done(context, source, target,
                        copyOneFile(provider, source, {target, m_replace}, context.progress()));
        }
        if (!m_recursive) {
            throw refusal(source, ErrorCode::NotAFile, "it is a folder; use cp -r to copy it with all it holds");
        }
        if (isInside(target, source)) {
            throw refusal(target, ErrorCode::InvalidLocation, "a folder cannot be copied into itself");
        }
        context.progress().begin("files");
        FolderCopy folder(context, target, m_replace);
        const auto code = folder.run(source);
        return code == ExitCode::Done ? done(context, source, target, folder.bytes()) : code;
    }

    static ExitCode done(Context& context, const Location& source, const Location& target, std::uint64_t bytes) {
        context.reporter().done(source, {{"destination", target.text()}, {"bytes", bytes}});
        return ExitCode::Done;
    }

    /// Whether the location is the folder or lies in it.
    static bool isInside(const Location& location, const Location& folder) {
        const auto sought = folder.iri().normalized();
        for (auto above = location.iri().normalized(); above != sought; above = above.getParent()) {
            if (above.isRoot()) {
                return false;
            }
        }
        return true;
    }

    std::vector<std::string> m_arguments;
    bool m_recursive = false;
    bool m_replace = false;
};

}  // namespace

std::unique_ptr<Verb> makeCp() { return std::make_unique<Cp>(); }

}  // namespace jstore
