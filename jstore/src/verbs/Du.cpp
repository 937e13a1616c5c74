#include <fmt/format.h>

#include "base/Format.h"
#include "base/Text.h"
#include "foundation/storage/provider/Exception.h"
#include "options/Arguments.h"
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

void show(Context& context, const Entry& entry, std::uint64_t bytes, const DuOptions& options) {
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
        const std::uint64_t size = sizeOf(entry);
        m_sums[entry.depth - 1] += size;
        if (m_options.all && !m_options.summary) {
            show(context(), entry, size, m_options);
        }
    }

    void leave(const Entry& folder) override {
        const std::uint64_t sum = m_sums[folder.depth];
        if (folder.depth > 0) {
            m_sums[folder.depth - 1] += sum;
        }
        if (folder.depth == 0 || !m_options.summary) {
            show(context(), folder, sum, m_options);
        }
    }

private:
    /// 0 for what was listed but is gone: a link that leads nowhere, or an entry removed since.
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
    /// The sums so far, of each folder on the present path.
    std::vector<std::uint64_t> m_sums;
};

class Du final : public Verb {
public:
    [[nodiscard]] std::string name() const override { return "du"; }

    [[nodiscard]] VerbHelp help() const override {
        return {.summary = "Add up the sizes of the files in folders",
                .text =
                    "Prints a line for each folder: the bytes in all files below it, a tab, and its location.\n"
                    "Folders themselves add nothing. Symbolic links to folders are not followed; a link to a file\n"
                    "counts as the file that it leads to.",
                .examples = {"jstore du -s -H photos"}};
    }

    void declare(CLI::App& command) override {
        addArguments(command, "LOCATION...", m_arguments, "Folders or files");
        CLI::Option* const all = command.add_flag("-a,--all", m_options.all, "Show files too");
        command.add_flag("-s,--summary", m_options.summary, "Show only the total of each location")->excludes(all);
        addHuman(command, m_options.human);
    }

    ExitCode run(Context& context) override {
        const std::vector<Location> locations = startWith(context, m_arguments);
        context.progress().begin("found");
        return forEachLocation(context, locations, [&](const Location& location) {
            const Entry entry = entryAt(context.provider(), location);
            if (entry.isFolder()) {
                return SizeWalk(context, m_options).run(location);
            }
            show(context, entry, attributesOf(context.provider(), entry).size.value_or(0), m_options);
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
