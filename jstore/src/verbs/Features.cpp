#include <fmt/format.h>

#include <array>
#include <optional>
#include <utility>

#include "foundation/storage/provider/Exception.h"
#include "java/Feature.h"
#include "options/Arguments.h"
#include "options/HelpText.h"
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

void tell(Reporter& reporter, const IProvider& provider, const std::optional<Location>& location) {
    for (const auto& [feature, name] : Names) {
        const bool supported = hasFeature(provider, feature);
        reporter.line(fmt::format("{:<37}  {}", name, supported ? "yes" : "no"));
        const Reporter::Fields fields = {{"feature", name}, {"supported", supported}};
        if (location) {
            reporter.done(*location, fields);
        } else {
            auto object = fields;
            object["ok"] = true;
            reporter.object(object);
        }
    }
}

class Features final : public Verb {
public:
    CLI::App& declare(CLI::App& commandLine) override {
        auto& verb = *commandLine.add_subcommand("features", "Tell what the back end can do beyond the basic");
        addArguments(verb, "LOCATION", m_arguments, "Something that has to be there", /*fewest=*/0)
            .required(false)
            ->expected(0, 1);
        verb.footer(helpText(
            "Prints each feature with yes or no. They are the back end's as a whole, mounts included, and the\n"
            "same for every location; one that is given is looked for first.",
            {"jstore features", "jstore --json features backup"}));
        return verb;
    }

    ExitCode run(Context& context) override {
        const auto locations = toLocations(m_arguments);
        const auto& provider = context.provider();
        if (locations.empty()) {
            tell(context.reporter(), provider, std::nullopt);
            return ExitCode::Done;
        }
        return forEachLocation(context, locations, [&](const Location& location) {
            if (!provider.existsExtended(location.iri())) {
                throw Exception(ErrorCode::NotFound, location.iri());
            }
            tell(context.reporter(), provider, location);
            return ExitCode::Done;
        });
    }

private:
    std::vector<std::string> m_arguments;
};

}  // namespace

std::unique_ptr<Verb> makeFeatures() { return std::make_unique<Features>(); }

}  // namespace jstore
