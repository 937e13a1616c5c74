#include <fmt/format.h>

#include "base/Text.h"
#include "options/Arguments.h"
#include "options/HelpText.h"
#include "verbs/Verb.h"
#include "work/ForEachLocation.h"

namespace jstore {

using foundation::storage::provider::EntryType;

namespace {

const char* answerFor(const std::optional<EntryType>& found) {
    if (!found) {
        return "missing";
    }
    return *found == EntryType::Folder ? "folder" : "file";
}

class Exists final : public Verb {
public:
    CLI::App& declare(CLI::App& commandLine) override {
        auto& verb = *commandLine.add_subcommand("exists", "Tell whether something is at each location");
        addArguments(verb, "LOCATION...", m_arguments, "What to look for");
        verb.footer(
            helpText("Prints file, folder or missing; with several locations each line has the word, a tab and the\n"
                     "location. Ends with 0 when all are there, 3 when none is, 6 when some are.",
                     {"jstore exists report.txt photos"}));
        return verb;
    }

    ExitCode run(Context& context) override {
        const auto locations = toLocations(m_arguments);
        const auto& provider = context.provider();
        return forEachLocation(context, locations, [&](const Location& location) {
            return answer(context.reporter(), location, provider.existsExtended(location.iri()));
        });
    }

private:
    [[nodiscard]] ExitCode answer(Reporter& reporter, const Location& location,
                                  const std::optional<EntryType>& found) const {
        const auto* const word = answerFor(found);
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
