#include <optional>

#include "base/Format.h"
#include "foundation/storage/provider/Exception.h"
#include "options/Arguments.h"
#include "options/HelpText.h"
#include "verbs/Verb.h"
#include "work/ForEachLocation.h"

namespace jstore {

using foundation::storage::provider::ErrorCode;
using foundation::storage::provider::Exception;
using foundation::storage::provider::IProvider;

namespace {

void createUnlessThere(const IProvider& provider, const Location& file) {
    try {
        provider.createFile(file.iri());
    } catch (const Exception& error) {
        // A link that leads nowhere takes the name, and yet no file is there.
        if (error.code() != ErrorCode::AlreadyExists || !provider.exists(file.iri())) {
            throw;
        }
    }
}

class Touch final : public Verb {
public:
    CLI::App& declare(CLI::App& commandLine) override {
        auto& verb = *commandLine.add_subcommand("touch", "Create empty files where nothing is; set times");
        addArguments(verb, "FILE...", m_arguments, "The files to create");
        verb.add_option("-d,--date", m_date, "Set the time of modification of files and folders")->type_name("TIME");
        verb.footer(
            helpText("Without -d what exists already stays exactly as it is, its times included. TIME is now,\n"
                     "@SECONDS since 1970, or YYYY-MM-DD with HH:MM, :SS and a fraction behind it if wanted, such as\n"
                     "2026-11-21T13:20:05.5Z; without Z or +HH:MM at the end it is the local time.",
                     {"jstore touch new.txt", "jstore touch -d 2026-11-21T13:20:05Z report.txt"}));
        return verb;
    }

    ExitCode run(Context& context) override {
        const auto time = readTime();
        return forEachArgument(context, m_arguments, [&](const IProvider& provider, const Location& file) {
            createUnlessThere(provider, file);
            if (time) {
                provider.setLastModified(file.iri(), *time);
            }
        });
    }

private:
    [[nodiscard]] std::optional<boost::posix_time::ptime> readTime() const {
        if (!m_date) {
            return std::nullopt;
        }
        const auto text = unmarked(*m_date);
        auto time = parseTime(text);
        if (!time) {
            throw usageError("touch: no time is written as " + text + " (see jstore touch --help)");
        }
        return time;
    }

    std::vector<std::string> m_arguments;
    std::optional<std::string> m_date;
};

}  // namespace

std::unique_ptr<Verb> makeTouch() { return std::make_unique<Touch>(); }

}  // namespace jstore
