#include <fmt/format.h>
#include <boost/any.hpp>

#include <optional>

#include "base/Format.h"
#include "base/Text.h"
#include "foundation/storage/provider/Exception.h"
#include "options/Arguments.h"
#include "options/HelpText.h"
#include "verbs/Verb.h"
#include "work/Entry.h"
#include "work/ForEachLocation.h"

namespace jstore {

using namespace foundation::storage::provider;

namespace {

/// What the query gives; empty when the back end does not support it.
template <class Query>
auto ifSupported(const Query& query) -> std::optional<decltype(query())> {
    try {
        return query();
    } catch (const Exception& error) {
        if (error.code() != ErrorCode::NotSupported) {
            throw;
        }
        return std::nullopt;
    }
}

/// The attributes whose values are text, which are all that a Java back end gives.
std::map<std::string, std::string> textsOf(const ExtendedAttributes& attributes) {
    std::map<std::string, std::string> texts;
    for (const auto& [name, value] : attributes.all()) {
        if (const auto* text = boost::any_cast<std::string>(&value)) {
            texts.emplace(name, *text);
        }
    }
    return texts;
}

class Stat final : public Verb {
public:
    CLI::App& declare(CLI::App& commandLine) override {
        auto& verb = *commandLine.add_subcommand("stat", "Tell everything that is known of files and folders");
        addArguments(verb, "LOCATION...", m_arguments, "What to tell about");
        verb.footer(
            helpText("Prints type, size in bytes, time of modification (UTC), whether it may be written, capacity and\n"
                     "occupied bytes of the storage, and the back end's further attributes. What it does not know is\n"
                     "left out. Symbolic links are followed.",
                     {"jstore stat report.txt", "jstore --json stat report.txt"}));
        return verb;
    }

    ExitCode run(Context& context) override {
        const auto locations = toLocations(m_arguments);
        static_cast<void>(context.provider());
        bool first = true;
        return forEachLocation(context, locations, [&](const Location& location) {
            tell(context, location, first);
            first = false;
            return ExitCode::Done;
        });
    }

private:
    static void tell(Context& context, const Location& location, bool first) {
        const auto& provider = context.provider();
        const auto entry = entryAt(provider, location);
        const auto attributes = attributesOf(provider, entry);
        const auto storage = ifSupported([&] { return provider.getProviderStorageInfo(location.iri()); });
        const auto extended = ifSupported([&] { return provider.getExtendedAttributes(location.iri()); });
        const auto texts = extended ? textsOf(*extended) : std::map<std::string, std::string>();
        if (context.reporter().json()) {
            context.reporter().done(location, fieldsOf(entry, attributes, storage, texts));
            return;
        }
        if (!first) {
            context.reporter().line("");
        }
        print(context.reporter(), entry, attributes);
        print(context.reporter(), storage, texts);
    }

    static void field(Reporter& reporter, const char* name, const std::string& value) {
        reporter.line(fmt::format("{:<10}  {}", name, value));
    }

    static void print(Reporter& reporter, const Entry& entry, const EntryAttributes& attributes) {
        field(reporter, "location", printable(entry.location.text()));
        field(reporter, "type", wordFor(entry.type));
        if (attributes.size) {
            field(reporter, "size", sizeText(attributes.size));
        }
        field(reporter, "modified", timeText(attributes.lastModified));
        field(reporter, "writable", attributes.writable ? "yes" : "no");
    }

    static void print(Reporter& reporter, const std::optional<ProviderStorageInfo>& storage,
                      const std::map<std::string, std::string>& texts) {
        if (storage && storage->storageCapacity()) {
            field(reporter, "capacity", sizeText(storage->storageCapacity()));
        }
        if (storage && storage->spaceOccupied()) {
            field(reporter, "occupied", sizeText(storage->spaceOccupied()));
        }
        for (const auto& [name, text] : texts) {
            field(reporter, "attribute", fmt::format("{}={}", printableName(name), printableName(text)));
        }
    }

    static Reporter::Fields fieldsOf(const Entry& entry, const EntryAttributes& attributes,
                                     const std::optional<ProviderStorageInfo>& storage,
                                     const std::map<std::string, std::string>& texts) {
        Reporter::Fields fields = {{"type", wordFor(entry.type)}};
        if (attributes.size) {
            fields["size"] = *attributes.size;
        }
        fields["lastModified"] = timeText(attributes.lastModified);
        fields["writable"] = attributes.writable;
        if (storage && storage->storageCapacity()) {
            fields["capacity"] = *storage->storageCapacity();
        }
        if (storage && storage->spaceOccupied()) {
            fields["occupied"] = *storage->spaceOccupied();
        }
        fields["attributes"] = texts;
        return fields;
    }

    std::vector<std::string> m_arguments;
};

}  // namespace

std::unique_ptr<Verb> makeStat() { return std::make_unique<Stat>(); }

}  // namespace jstore
