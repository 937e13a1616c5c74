#include <fmt/format.h>

#include "base/Format.h"
#include "base/Text.h"
#include "foundation/storage/provider/Exception.h"
#include "options/Arguments.h"
#include "options/HelpText.h"
#include "verbs/Verb.h"
#include "work/Entry.h"
#include "work/ForEachLocation.h"
#include "work/TreeWalk.h"

namespace jstore {

using namespace foundation::storage::provider;

namespace {

struct DuOptions {
    bool all = false;
    bool summary = false;
    bool human = false;
};

void tell(Context& context, const Entry& entry, std::uint64_t bytes, const DuOptions& options) {
    context.reporter().line(fmt::format("{}\t{}", sizeText(bytes, options.human), printable(entry.location.text())));
    context.reporter().done(entry.location, {{"type", wordFor(entry.type)}, {"size", bytes}});
}

/// Adds up the sizes of files, folder by folder.
class SizeWalk final : public TreeWalk {
public:
    SizeWalk(Context& context, const DuOptions& options) : TreeWalk(context), m_options(options) {}

protected:
    void enter(const Entry& folder, const std::vector<Entry>& /*entries*/) override {
        m_sums.resize(folder.depth + 1);
        m_sums.back() = 0;
    }

    void visit(const Entry& entry) override {
        context().progress().at(entry.location);
        context().progress().countItem();
        if (entry.isFolder()) {
            return;
        }
        const auto size = sizeOf(entry);
        m_sums[entry.depth - 1] += size;
        if (m_options.all && !m_options.summary) {
            tell(context(), entry, size, m_options);
        }
    }

    void leave(const Entry& folder) override {
        const auto sum = m_sums[folder.depth];
        if (folder.depth > 0) {
            m_sums[folder.depth - 1] += sum;
        }
        if (folder.depth == 0 || !m_options.summary) {
            tell(context(), folder, sum, m_options);
        }
    }

private:
    /// What was listed and is not there takes no room: a link that leads nowhere, or removed since.
    [[nodiscard]] std::uint64_t sizeOf(const Entry& file) const {
        try {
            return attributesOf(provider(), file).size.value_or(0);
        } catch (const Exception& error) {
            if (error.code() != ErrorCode::NotFound) {
                throw;
            }
            return 0;
        }
    }

    const DuOptions& m_options;
    /// The sums so far of the folders along the present path.
    std::vector<std::uint64_t> m_sums;
};

class Du final : public Verb {
public:
    CLI::App& declare(CLI::App& commandLine) override {
        auto& verb = *commandLine.add_subcommand("du", "Add up the sizes of the files in folders");
        addArguments(verb, "LOCATION...", m_arguments, "Folders, or files");
        auto* const all = verb.add_flag("-a,--all", m_options.all, "Show files too");
        verb.add_flag("-s,--summary", m_options.summary, "Show only the sum of each location")->excludes(all);
        verb.add_flag("-H,--human", m_options.human, "Show sizes as 1.5K, 20.0M and so on");
        verb.footer(helpText(
            "Each folder has a line: the bytes in all files below it, a tab, and its location. Folders\n"
            "themselves count nothing. Symbolic links to folders are not entered, those to files count as what\n"
            "they lead to.",
            {"jstore du -s -H photos"}));
        return verb;
    }

    ExitCode run(Context& context) override {
        const auto locations = toLocations(m_arguments);
        static_cast<void>(context.provider());
        context.progress().begin("found");
        return forEachLocation(context, locations, [&](const Location& location) {
            const auto entry = entryAt(context.provider(), location);
            if (entry.isFolder()) {
                return SizeWalk(context, m_options).run(location);
            }
            tell(context, entry, attributesOf(context.provider(), entry).size.value_or(0), m_options);
            return ExitCode::Done;
        });
    }

private:
    std::vector<std::string> m_arguments;
    DuOptions m_options;
};

}  // namespace

std::unique_ptr<Verb> makeDu() { return std::make_unique<Du>(); }

}  // namespace jstore
