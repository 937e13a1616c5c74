#include <optional>

#include "base/RawName.h"
#include "base/Text.h"
#include "fl/i18n/text.h"
#include "foundation/storage/provider/Wildcards.h"
#include "options/Arguments.h"
#include "verbs/Verb.h"
#include "work/Entry.h"
#include "work/ForEachLocation.h"
#include "work/TreeWalk.h"

namespace jstore {

using foundation::storage::provider::EntryType;
using foundation::storage::provider::Wildcards;

namespace {

struct Filter {
    std::optional<Wildcards> name;
    std::optional<EntryType> type;

    [[nodiscard]] bool fits(const Entry& entry) const {
        return (!name || name->matches(entry.name)) && (!type || *type == entry.type);
    }
};

/// A UTF-8 pattern matches names as lists show them. Any other pattern is bytes, and matches the bytes of names.
std::u16string patternOf(const std::string& argument) {
    return isUtf8(argument) ? fl::i18n::to_ustring(argument) : textOfName(argument);
}

/// Prints the entries that fit.
class Search final : public TreeWalk {
public:
    Search(Context& context, const Filter& filter) : TreeWalk(context), m_filter(filter) {}

protected:
    void enter(const Entry& folder, const std::vector<Entry>& /*entries*/) override {
        if (folder.depth == 0) {
            visit(folder);
        }
    }

    void visit(const Entry& entry) override {
        context().progress().at(entry.location);
        context().progress().countItem();
        if (m_filter.fits(entry)) {
            context().reporter().line(printable(entry.location.text()));
            context().reporter().done(entry.location, {{"type", wordFor(entry.type)}});
        }
    }

private:
    const Filter& m_filter;
};

class Find final : public Verb {
public:
    [[nodiscard]] std::string name() const override { return "find"; }

    [[nodiscard]] VerbHelp help() const override {
        return {.summary = "Find files and folders below folders",
                .text =
                    "Prints the location of each match in the form that other verbs accept. FOLDER itself can match\n"
                    "too. Finding nothing is not a failure. Symbolic links to folders are found but not followed.",
                .examples = {"jstore find --name '*.jpg' photos", "jstore find --type d photos"},
                .words = {{"--type", {"f", "file", "d", "folder"}}}};
    }

    void declare(CLI::App& command) override {
        addArguments(command, "FOLDER...", m_arguments, "Where to search");
        command.add_option("--name", m_name, "Find only names that match; * stands for any characters, ? for one")
            ->type_name("PATTERN");
        command.add_option("--type", m_type, "Find only files (f or file) or only folders (d or folder)")
            ->type_name("TYPE");
    }

    ExitCode run(Context& context) override {
        const Filter filter = readFilter();
        const std::vector<Location> locations = startWith(context, m_arguments);
        context.progress().begin("searched");
        return forEachLocation(context, locations,
                               [&](const Location& folder) { return Search(context, filter).run(folder); });
    }

private:
    [[nodiscard]] Filter readFilter() const {
        Filter filter;
        if (m_name) {
            filter.name.emplace(patternOf(unmarked(*m_name)));
        }
        if (m_type) {
            filter.type = m_type->front() == 'f' && *m_type != "folder" ? EntryType::File : EntryType::Folder;
        }
        return filter;
    }

    std::vector<std::string> m_arguments;
    std::optional<std::string> m_name;
    std::optional<std::string> m_type;
};

}  // namespace

std::unique_ptr<Verb> makeFind() { return std::make_unique<Find>(); }

}  // namespace jstore
