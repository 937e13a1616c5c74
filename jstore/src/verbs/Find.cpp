#include <optional>

#include "base/RawName.h"
#include "base/Text.h"
#include "fl/i18n/text.h"
#include "foundation/storage/provider/Wildcards.h"
#include "options/Arguments.h"
#include "options/HelpText.h"
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

/// A pattern that is UTF-8 is text, in which names stand as lists show them; another one is bytes, as names are.
std::u16string patternOf(const std::string& argument) {
    return isUtf8(argument) ? fl::i18n::to_ustring(argument) : textOfName(argument);
}

/// Tells what fits.
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
    CLI::App& declare(CLI::App& commandLine) override {
        auto& verb = *commandLine.add_subcommand("find", "Find files and folders below folders");
        addArguments(verb, "FOLDER...", m_arguments, "Where to search");
        verb.add_option("--name", m_name, "Names that fit, with * for any characters and ? for one")
            ->type_name("PATTERN");
        verb.add_option("--type", m_type, "Only f or file, or only d or folder")
            ->type_name("TYPE")
            ->check(oneOf({"f", "file", "d", "folder"}));
        verb.footer(helpText(
            "Prints the location of each, as other verbs take it. The folder itself counts too. Finding nothing\n"
            "is no failure. Symbolic links to folders are found and not entered.",
            {"jstore find --name \x27*.jpg\x27 photos", "jstore find --type d photos"}));
        return verb;
    }

    ExitCode run(Context& context) override {
        const auto locations = toLocations(m_arguments);
        const auto filter = readFilter();
        static_cast<void>(context.provider());
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
