#include <optional>

#include "base/Format.h"
#include "base/Text.h"
#include "foundation/storage/provider/Exception.h"
#include "options/Arguments.h"
#include "verbs/Verb.h"
#include "work/ForEachLocation.h"

namespace jstore {

using boost::posix_time::ptime;
using foundation::storage::provider::ErrorCode;
using foundation::storage::provider::Exception;
using foundation::storage::provider::IProvider;

namespace {

void createUnlessThere(const IProvider& provider, const Location& file) {
    try {
        provider.createFile(file.iri());
    } catch (const Exception& error) {
        // A link that leads nowhere occupies the name, though no file is there.
        if (error.code() != ErrorCode::AlreadyExists || !provider.exists(file.iri())) {
            throw;
        }
    }
}

class Touch final : public Verb {
public:
    [[nodiscard]] std::string name() const override { return "touch"; }

    [[nodiscard]] VerbHelp help() const override {
        return {.summary = "Create empty files where nothing exists; set times",
                .text =
                    "Without -d, existing files and folders are left as they are. TIME is the word now, @SECONDS\n"
                    "since 1970, or a date YYYY-MM-DD. THH:MM, :SS and a fraction may follow the date, as in\n"
                    "2026-11-21T13:20:05.5Z. The time is local unless it ends in Z or +HH:MM.",
                .examples = {"jstore touch new.txt", "jstore touch -d 2026-11-21T13:20:05Z report.txt"}};
    }

    void declare(CLI::App& command) override {
        addArguments(command, "FILE...", m_arguments, "Files to create");
        command.add_option("-d,--date", m_date, "Set the modification time of files and folders")->type_name("TIME");
    }

    ExitCode run(Context& context) override {
        const std::optional<ptime> time = readTime();
        return forEachArgument(context, m_arguments, [&](const IProvider& provider, const Location& file) {
            createUnlessThere(provider, file);
            if (time) {
                provider.setLastModified(file.iri(), *time);
            }
        });
    }

private:
    [[nodiscard]] std::optional<ptime> readTime() const {
        if (!m_date) {
            return std::nullopt;
        }
        const std::string text = unmarked(*m_date);
        std::optional<ptime> time = parseTime(text);
        if (!time) {
            throw usageError("touch: -d " + printable(text) + ": not a time (see jstore touch --help)");
        }
        return time;
    }

    std::vector<std::string> m_arguments;
    std::optional<std::string> m_date;
};

}  // namespace

std::unique_ptr<Verb> makeTouch() { return std::make_unique<Touch>(); }

}  // namespace jstore
