#include <fmt/format.h>
#include <boost/any.hpp>

#include <optional>

#include "base/Format.h"
#include "base/Text.h"
#include "foundation/storage/provider/Exception.h"
#include "options/Arguments.h"
#include "verbs/Verb.h"
#include "work/Entry.h"
#include "work/ForEachLocation.h"

namespace jstore {

using namespace foundation::storage::provider;

namespace {

/// The result of the query; empty when the back end does not support it.
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

/// The attributes whose values are text; those of a Java back end all are.
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
    [[nodiscard]] std::string name() const override { return "stat"; }

    [[nodiscard]] VerbHelp help() const override {
        return {.summary = "Show everything known about files and folders",
                .text =
                    "Prints the type, size in bytes, modification time (UTC), whether it is writable, the storage's\n"
                    "capacity and occupied bytes, and further attributes from the back end. Values that the back\n"
                    "end does not know are left out. Symbolic links are followed.",
                .examples = {"jstore stat report.txt", "jstore --json stat report.txt"}};
    }

    void declare(CLI::App& command) override {
        addArguments(command, "LOCATION...", m_arguments, "Files and folders to describe");
    }

    ExitCode run(Context& context) override {
        const std::vector<Location> locations = startWith(context, m_arguments);
        bool first = true;
        return forEachLocation(context, locations, [&](const Location& location) {
            show(context, location, first);
            first = false;
            return ExitCode::Done;
        });
    }

private:
    static void show(Context& context, const Location& location, bool first) {
        const IProvider& provider = context.provider();
        const Entry entry = entryAt(provider, location);
        const EntryAttributes attributes = attributesOf(provider, entry);
        const std::optional<ProviderStorageInfo> storage =
            ifSupported([&] { return provider.getProviderStorageInfo(location.iri()); });
        const std::optional<ExtendedAttributes> extended =
            ifSupported([&] { return provider.getExtendedAttributes(location.iri()); });
        const std::map<std::string, std::string> texts =
            extended ? textsOf(*extended) : std::map<std::string, std::string>();
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
