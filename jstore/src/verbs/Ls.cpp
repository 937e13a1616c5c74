#include <fmt/format.h>

#include <algorithm>
#include <optional>

#include "base/Format.h"
#include "base/Problem.h"
#include "base/Text.h"
#include "fl/i18n/text.h"
#include "foundation/storage/provider/Exception.h"
#include "foundation/storage/provider/Wildcards.h"
#include "options/Arguments.h"
#include "options/HelpText.h"
#include "process/Interrupt.h"
#include "verbs/Verb.h"
#include "work/Entry.h"
#include "work/ForEachLocation.h"
#include "work/ReportFailure.h"
#include "work/TreeWalk.h"

namespace jstore {

using namespace foundation::storage::provider;

namespace {

struct LsOptions {
    bool details = false;
    bool recursive = false;
    bool filesOnly = false;
    bool foldersOnly = false;
    bool human = false;
};

/// Prints entries, and counts what it says so that groups are kept apart by an empty line.
class LsPrinter {
public:
    LsPrinter(Context& context, const LsOptions& options) : m_context(context), m_options(options) {}

    void heading(const Location& folder) {
        m_context.reporter().line((m_said ? "\n" : "") + printable(folder.text()) + ':');
        m_said = true;
    }

    /// Prints the entry under the name. False when its attributes could not be read, which is reported then.
    [[nodiscard]] bool print(const Entry& entry, const std::string& name) {
        m_context.progress().countItem();
        m_said = true;
        if (!m_options.details) {
            m_context.reporter().line(name);
            m_context.reporter().done(entry.location, fieldsOf(entry));
            return true;
        }
        try {
            printDetails(entry, name, attributesUnlessGone(entry));
            return true;
        } catch (...) {
            static_cast<void>(reportFailure(m_context, entry.location));
            return false;
        }
    }

private:
    static Reporter::Fields fieldsOf(const Entry& entry) {
        return {{"name", fl::i18n::to_string(entry.name)}, {"type", wordFor(entry.type)}};
    }

    /// Empty for what was listed and is not there: a link that leads nowhere, or removed since.
    [[nodiscard]] std::optional<EntryAttributes> attributesUnlessGone(const Entry& entry) const {
        try {
            return attributesOf(m_context.provider(), entry);
        } catch (const Exception& error) {
            if (error.code() != ErrorCode::NotFound) {
                throw;
            }
            return std::nullopt;
        }
    }

    void printDetails(const Entry& entry, const std::string& name, const std::optional<EntryAttributes>& attributes) {
        auto fields = fieldsOf(entry);
        const char type = entry.isFolder() ? 'd' : '-';
        if (!attributes) {
            m_context.reporter().line(fmt::format("{}?  {:>14}  {:<24}  {}", type, '-', '-', name));
            m_context.reporter().done(entry.location, fields);
            return;
        }
        m_context.reporter().line(fmt::format("{}{}  {:>14}  {:<24}  {}", type, attributes->writable ? 'w' : '-',
                                              sizeText(attributes->size, m_options.human),
                                              timeText(attributes->lastModified), name));
        fields.update(fieldsOf(*attributes));
        m_context.reporter().done(entry.location, fields);
    }

    static Reporter::Fields fieldsOf(const EntryAttributes& attributes) {
        Reporter::Fields fields = Reporter::Fields::object();
        if (attributes.size) {
            fields["size"] = *attributes.size;
        }
        fields["lastModified"] = timeText(attributes.lastModified);
        fields["writable"] = attributes.writable;
        return fields;
    }

    Context& m_context;
    const LsOptions& m_options;
    bool m_said = false;
};

/// Lists a folder, and those below it when the options say so.
class LsWalk final : public TreeWalk {
public:
    LsWalk(Context& context, LsPrinter& printer, const LsOptions& options, bool headings,
           std::optional<Wildcards> wildcards)
        : TreeWalk(context),
          m_printer(printer),
          m_options(options),
          m_headings(headings || options.recursive),
          m_wildcards(std::move(wildcards)) {}

    /// Lists the folder alone. Throws as TreeWalk::run() does.
    [[nodiscard]] ExitCode runFlat(const Entry& folder) {
        return list(folder, entriesOf(provider(), folder)) ? ExitCode::Done : ExitCode::SomeFailed;
    }

    [[nodiscard]] std::size_t listed() const noexcept { return m_listed; }

protected:
    void enter(const Entry& folder, const std::vector<Entry>& entries) override {
        if (!list(folder, entries)) {
            noteFailure();
        }
    }

private:
    [[nodiscard]] bool wants(const Entry& entry) const {
        const bool unwanted = entry.isFolder() ? m_options.filesOnly : m_options.foldersOnly;
        return !unwanted && (!m_wildcards || m_wildcards->matches(entry.name));
    }

    /// False when the attributes of an entry could not be read.
    bool list(const Entry& folder, const std::vector<Entry>& entries) {
        bool complete = true;
        bool headed = !m_headings;
        if (!headed && !m_wildcards) {
            m_printer.heading(folder.location);
            headed = true;
        }
        for (const auto& entry : entries) {
            stopIfInterrupted();
            if (!wants(entry)) {
                continue;
            }
            if (!headed) {
                m_printer.heading(folder.location);
                headed = true;
            }
            ++m_listed;
            complete = m_printer.print(entry, entry.nameText()) && complete;
        }
        return complete;
    }

    LsPrinter& m_printer;
    const LsOptions& m_options;
    bool m_headings;
    std::optional<Wildcards> m_wildcards;
    std::size_t m_listed = 0;
};

class Ls final : public Verb {
public:
    CLI::App& declare(CLI::App& commandLine) override {
        auto& verb = *commandLine.add_subcommand("ls", "List what folders hold");
        addArguments(verb, "LOCATION...", m_arguments, "Folders to list, or files to name");
        verb.add_flag("-l,--long", m_options.details, "With type, writability, size and time of modification (UTC)");
        verb.add_flag("-R,--recursive", m_options.recursive, "List the folders below too");
        auto* const files = verb.add_flag("--files", m_options.filesOnly, "List files alone");
        verb.add_flag("--folders", m_options.foldersOnly, "List folders alone")->excludes(files);
        verb.add_flag("-H,--human", m_options.human, "Show sizes as 1.5K, 20.0M and so on");
        verb.footer(helpText(
            "In the last name of a location that does not exist * stands for any characters and ? (in java://\n"
            "locations %3F) for one; what fits is listed by name, folders too. Symbolic links to folders are\n"
            "not entered with -R. -l shows d for a folder, w for what may be written, ? for what is gone.\n"
            "Each name is one line: a line break in it is shown as %0A, other control characters likewise, and\n"
            "a % before two hexadecimal digits as %25.",
            {"jstore ls -l photos", "jstore ls -R --files photos", "jstore ls \x27photos/*.jpg\x27"}));
        return verb;
    }

    ExitCode run(Context& context) override {
        const auto locations = toLocations(m_arguments);
        LsPrinter printer(context, m_options);
        static_cast<void>(context.provider());
        context.progress().begin("found");
        return forEachLocation(context, locations,
                               [&](const Location& location) { return list(context, printer, location); });
    }

private:
    [[nodiscard]] ExitCode list(Context& context, LsPrinter& printer, const Location& location) const {
        const auto found = context.provider().existsExtended(location.iri());
        if (!found) {
            return listFitting(context, printer, location);
        }
        const Entry entry{location, location.iri().normalized().getName(), *found};
        if (!entry.isFolder()) {
            return printer.print(entry, printable(location.text())) ? ExitCode::Done : ExitCode::SomeFailed;
        }
        LsWalk walk(context, printer, m_options, m_arguments.size() > 1, std::nullopt);
        return m_options.recursive ? walk.run(location) : walk.runFlat(entry);
    }

    [[nodiscard]] ExitCode listFitting(Context& context, LsPrinter& printer, const Location& location) const {
        const auto pattern = location.iri().normalized().getName();
        if (pattern.find_first_of(u"*?") == std::u16string::npos) {
            throw Exception(ErrorCode::NotFound, location.iri());
        }
        const Location folder(location.iri().normalized().getParent());
        LsWalk walk(context, printer, m_options, m_arguments.size() > 1, Wildcards(pattern));
        const auto code = m_options.recursive ? walk.run(folder) : walk.runFlat({folder, {}, EntryType::Folder});
        if (walk.listed() == 0 && code == ExitCode::Done) {
            throw refusal(location, ErrorCode::NotFound, "nothing fits");
        }
        return code;
    }

    std::vector<std::string> m_arguments;
    LsOptions m_options;
};

}  // namespace

std::unique_ptr<Verb> makeLs() { return std::make_unique<Ls>(); }

}  // namespace jstore
