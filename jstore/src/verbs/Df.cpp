#include <fmt/format.h>

#include <algorithm>
#include <optional>

#include "base/Format.h"
#include "base/Text.h"
#include "options/Arguments.h"
#include "options/HelpText.h"
#include "verbs/Verb.h"
#include "work/ForEachLocation.h"

namespace jstore {

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
    CLI::App& declare(CLI::App& commandLine) override {
        auto& verb = *commandLine.add_subcommand("df", "Tell how full the storage behind each location is");
        addArguments(verb, "LOCATION...", m_arguments, "Files or folders in the storage");
        verb.add_flag("-H,--human", m_human, "Show sizes as 1.5K, 20.0M and so on");
        verb.footer(
            helpText("Sizes are bytes. A size that the back end does not know is shown as -.", {"jstore df -H ."}));
        return verb;
    }

    ExitCode run(Context& context) override {
        const auto locations = toLocations(m_arguments);
        const auto& provider = context.provider();
        bool headed = false;
        return forEachLocation(context, locations, [&](const Location& location) {
            const auto info = provider.getProviderStorageInfo(location.iri());
            if (!headed) {
                context.reporter().line(fmt::format(Columns, "capacity", "occupied", "free", "location"));
                headed = true;
            }
            tell(context.reporter(), location, info);
            return ExitCode::Done;
        });
    }

private:
    static constexpr const char* Columns = "{:>20}  {:>20}  {:>20}  {}";

    void tell(Reporter& reporter, const Location& location, const ProviderStorageInfo& info) const {
        const auto free = freeOf(info);
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
