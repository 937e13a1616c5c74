#include <fmt/format.h>

#include "base/Text.h"
#include "options/Arguments.h"
#include "verbs/Verb.h"
#include "work/ForEachLocation.h"

namespace jstore {

using foundation::storage::provider::EntryType;
using foundation::storage::provider::IProvider;

namespace {

const char* answerFor(const std::optional<EntryType>& found) {
    if (!found) {
        return "missing";
    }
    return *found == EntryType::Folder ? "folder" : "file";
}

class Exists final : public Verb {
public:
    [[nodiscard]] std::string name() const override { return "exists"; }

    [[nodiscard]] VerbHelp help() const override {
        return {.summary = "Show whether anything is at each location",
                .text =
                    "Prints file, folder or missing. With several locations, each line has that word, a tab and the\n"
                    "location. The exit code is 0 if all exist, 3 if none does, and 6 if only some do.",
                .examples = {"jstore exists report.txt photos"}};
    }

    void declare(CLI::App& command) override {
        addArguments(command, "LOCATION...", m_arguments, "Locations to check");
    }

    ExitCode run(Context& context) override {
        const std::vector<Location> locations = startWith(context, m_arguments);
        const IProvider& provider = context.provider();
        return forEachLocation(context, locations, [&](const Location& location) {
            return answer(context.reporter(), location, provider.existsExtended(location.iri()));
        });
    }

private:
    [[nodiscard]] ExitCode answer(Reporter& reporter, const Location& location,
                                  const std::optional<EntryType>& found) const {
        const char* const word = answerFor(found);
        reporter.line(m_arguments.size() == 1 ? word : fmt::format("{}\t{}", word, printable(location.text())));
        if (found) {
            reporter.done(location, {{"type", word}});
            return ExitCode::Done;
        }
        reporter.denied(location, {"NotFound", location.text(), {}, ExitCode::NotFound});
        return ExitCode::NotFound;
    }

    std::vector<std::string> m_arguments;
};

}  // namespace

std::unique_ptr<Verb> makeExists() { return std::make_unique<Exists>(); }

}  // namespace jstore
