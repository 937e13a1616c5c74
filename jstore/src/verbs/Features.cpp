#include <fmt/format.h>

#include <array>
#include <optional>
#include <utility>

#include "foundation/storage/provider/Exception.h"
#include "options/Arguments.h"
#include "verbs/Verb.h"
#include "work/ForEachLocation.h"

namespace jstore {

using namespace foundation::storage::provider;

namespace {

constexpr std::array<std::pair<ExtendedFeature, const char*>, 8> Names{{
    {ExtendedFeature::RecursiveFolderRemoval, "RecursiveFolderRemoval"},
    {ExtendedFeature::AtomicCopy, "AtomicCopy"},
    {ExtendedFeature::TransactionalStreams, "TransactionalStreams"},
    {ExtendedFeature::RecursiveChangeEvents, "RecursiveChangeEvents"},
    {ExtendedFeature::WritableFlag, "WritableFlag"},
    {ExtendedFeature::CanonicalLocations, "CanonicalLocations"},
    {ExtendedFeature::AllowsMovesAndDeletesWhenOpen, "AllowsMovesAndDeletesWhenOpen"},
    {ExtendedFeature::AllowsMovesAndDeletesWhenOpenReadOnly, "AllowsMovesAndDeletesWhenOpenReadOnly"},
}};

void show(Context& context, const std::optional<Location>& location) {
    Reporter& reporter = context.reporter();
    for (const auto& [feature, name] : Names) {
        const bool supported = context.hasFeature(feature);
        reporter.line(fmt::format("{:<37}  {}", name, supported ? "yes" : "no"));
        const Reporter::Fields fields = {{"feature", name}, {"supported", supported}};
        if (location) {
            reporter.done(*location, fields);
        } else {
            Reporter::Fields object = fields;
            object["ok"] = true;
            reporter.object(object);
        }
    }
}

class Features final : public Verb {
public:
    [[nodiscard]] std::string name() const override { return "features"; }

    [[nodiscard]] VerbHelp help() const override {
        return {.summary = "List which optional features the back end has",
                .text =
                    "Prints each feature with yes or no. Features belong to the whole back end: they are the same\n"
                    "for every mount and location. If LOCATION is given and nothing is there, the command fails.",
                .examples = {"jstore features", "jstore --json features backup"}};
    }

    void declare(CLI::App& command) override {
        addArguments(command, "LOCATION", m_arguments, "A location that must exist", /*fewest=*/0)
            .required(false)
            ->expected(0, 1);
    }

    ExitCode run(Context& context) override {
        const std::vector<Location> locations = startWith(context, m_arguments);
        const IProvider& provider = context.provider();
        if (locations.empty()) {
            show(context, std::nullopt);
            return ExitCode::Done;
        }
        return forEachLocation(context, locations, [&](const Location& location) {
            if (!provider.existsExtended(location.iri())) {
                throw Exception(ErrorCode::NotFound, location.iri());
            }
            show(context, location);
            return ExitCode::Done;
        });
    }

private:
    std::vector<std::string> m_arguments;
};

}  // namespace

std::unique_ptr<Verb> makeFeatures() { return std::make_unique<Features>(); }

}  // namespace jstore
