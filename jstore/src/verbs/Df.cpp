#include <fmt/format.h>

#include <algorithm>
#include <optional>

#include "base/Format.h"
#include "base/Text.h"
#include "options/Arguments.h"
#include "verbs/Verb.h"
#include "work/ForEachLocation.h"

namespace jstore {

using foundation::storage::provider::IProvider;
using foundation::storage::provider::ProviderStorageInfo;

namespace {

using Bytes = std::optional<std::uint64_t>;

/// What is left of the capacity; 0 when more is occupied than there is.
Bytes freeOf(const ProviderStorageInfo& info) {
    if (!info.storageCapacity() || !info.spaceOccupied()) {
        return std::nullopt;
    }
    return *info.storageCapacity() - std::min(*info.storageCapacity(), *info.spaceOccupied());
}

class Df final : public Verb {
public:
    [[nodiscard]] std::string name() const override { return "df"; }

    [[nodiscard]] VerbHelp help() const override {
        return {.summary = "Show how full the storage of each location is",
                .text = "Sizes are in bytes. A - stands for a size that the back end does not know.",
                .examples = {"jstore df -H ."}};
    }

    void declare(CLI::App& command) override {
        addArguments(command, "LOCATION...", m_arguments, "Files or folders in the storage");
        addHuman(command, m_human);
    }

    ExitCode run(Context& context) override {
        const std::vector<Location> locations = startWith(context, m_arguments);
        const IProvider& provider = context.provider();
        bool headed = false;
        return forEachLocation(context, locations, [&](const Location& location) {
            const ProviderStorageInfo info = provider.getProviderStorageInfo(location.iri());
            if (!headed) {
                context.reporter().line(fmt::format(Columns, "capacity", "occupied", "free", "location"));
                headed = true;
            }
            show(context.reporter(), location, info);
            return ExitCode::Done;
        });
    }

private:
    static constexpr const char* Columns = "{:>20}  {:>20}  {:>20}  {}";

    void show(Reporter& reporter, const Location& location, const ProviderStorageInfo& info) const {
        const Bytes free = freeOf(info);
        reporter.line(fmt::format(Columns, sizeText(info.storageCapacity(), m_human),
                                  sizeText(info.spaceOccupied(), m_human), sizeText(free, m_human),
                                  printable(location.text())));
        Reporter::Fields fields = Reporter::Fields::object();
        const auto add = [&fields](const char* name, const Bytes& bytes) {
            if (bytes) {
                fields[name] = *bytes;
            }
        };
        add("capacity", info.storageCapacity());
        add("occupied", info.spaceOccupied());
        add("free", free);
        reporter.done(location, fields);
    }

    std::vector<std::string> m_arguments;
    bool m_human = false;
};

}  // namespace

std::unique_ptr<Verb> makeDf() { return std::make_unique<Df>(); }

}  // namespace jstore
