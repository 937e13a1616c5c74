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

/// Prints entries, with an empty line between the groups of two folders.
class LsPrinter {
public:
    LsPrinter(Context& context, const LsOptions& options) : m_context(context), m_options(options) {}

    void heading(const Location& folder) {
        m_context.reporter().line((m_said ? "\n" : "") + printable(folder.text()) + ':');
        m_said = true;
    }

    /// Prints the entry under the name. Reports attributes that cannot be read, and returns false then.
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

    /// Empty for what was listed but is gone: a link that leads nowhere, or an entry removed since.
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
        Reporter::Fields fields = fieldsOf(entry);
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

/// Lists a folder, and with the option for it the folders below.
class LsWalk final : public TreeWalk {
public:
    LsWalk(Context& context, LsPrinter& printer, const LsOptions& options, bool headings,
           std::optional<Wildcards> wildcards)
        : TreeWalk(context),
          m_printer(printer),
          m_options(options),
          m_headings(headings || options.recursive),
          m_wildcards(std::move(wildcards)) {}

    /// Lists only this folder. Throws as TreeWalk::run() does.
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
        for (const Entry& entry : entries) {
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
    [[nodiscard]] std::string name() const override { return "ls"; }

    [[nodiscard]] VerbHelp help() const override {
        return {.summary = "List the contents of folders",
                .text =
                    "If a location does not exist, * in its last name stands for any characters, and ? (%3F in a\n"
                    "java:// location) for one. Matching files and folders are listed by name. -R does not follow\n"
                    "symbolic links to folders. -l marks folders with d, writable entries with w, and entries that\n"
                    "are gone with ?. Each name takes one line: a line break in it is shown as %0A, other control\n"
                    "characters likewise, and a % before two hexadecimal digits as %25.",
                .examples = {"jstore ls -l photos", "jstore ls -R --files photos", "jstore ls 'photos/*.jpg'"}};
    }

    void declare(CLI::App& command) override {
        addArguments(command, "LOCATION...", m_arguments, "Folders or files to list");
        command.add_flag("-l,--long", m_options.details, "Show type, write access, size and modification time (UTC)");
        command.add_flag("-R,--recursive", m_options.recursive, "List the folders below too");
        CLI::Option* const files = command.add_flag("--files", m_options.filesOnly, "List only files");
        command.add_flag("--folders", m_options.foldersOnly, "List only folders")->excludes(files);
        addHuman(command, m_options.human);
    }

    ExitCode run(Context& context) override {
        const std::vector<Location> locations = startWith(context, m_arguments);
        LsPrinter printer(context, m_options);
        context.progress().begin("found");
        return forEachLocation(context, locations,
                               [&](const Location& location) { return list(context, printer, location); });
    }

private:
    [[nodiscard]] ExitCode list(Context& context, LsPrinter& printer, const Location& location) const {
        const std::optional<EntryType> found = context.provider().existsExtended(location.iri());
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
        const std::u16string pattern = location.iri().normalized().getName();
        if (pattern.find_first_of(u"*?") == std::u16string::npos) {
            throw Exception(ErrorCode::NotFound, location.iri());
        }
        const Location folder(location.iri().normalized().getParent());
        LsWalk walk(context, printer, m_options, m_arguments.size() > 1, Wildcards(pattern));
        const ExitCode code = m_options.recursive ? walk.run(folder) : walk.runFlat({folder, {}, EntryType::Folder});
        if (walk.listed() == 0 && code == ExitCode::Done) {
            throw refusal(location, ErrorCode::NotFound, "nothing matches");
        }
        return code;
    }

    std::vector<std::string> m_arguments;
    LsOptions m_options;
};

}  // namespace

std::unique_ptr<Verb> makeLs() { return std::make_unique<Ls>(); }

}  // namespace jstore
