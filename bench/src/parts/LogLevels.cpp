#include <boost/log/core.hpp>
#include <boost/log/sinks/basic_sink_backend.hpp>
#include <boost/log/sinks/unlocked_frontend.hpp>
#include <boost/make_shared.hpp>

#include <exception>

#include "Locations.h"
#include "Machine.h"
#include "PairRunner.h"
#include "foundation/log/Severity.h"
#include "foundation/log/SeverityMask.h"
#include "parts/Parts.h"

namespace bench {

namespace {

namespace sinks = boost::log::sinks;
using foundation::log::Severity;

constexpr const char* Channel = "storage::javaprovider";

/// Takes every record and does nothing with it, so that what remains is the library's share and the log's.
class DroppingBackend : public sinks::basic_sink_backend<sinks::concurrent_feeding> {
public:
    void consume(const boost::log::record_view& /*record*/) {}
};

constexpr std::uint32_t bit(Severity severity) { return static_cast<std::uint32_t>(severity); }

constexpr std::uint32_t FailureMask = bit(Severity::Failure) | bit(Severity::Caught);
constexpr std::uint32_t ProgressMask = FailureMask | bit(Severity::Progress);
constexpr std::uint32_t ArgumentsMask = ProgressMask | bit(Severity::Arguments);

/// The same operation with the channel's mask set for as long as it is measured.
Operation withMask(const Operation& plain, std::uint32_t mask) {
    const auto masked = [mask](const auto& run) {
        foundation::log::setSeverityMask(Channel, mask);
        run();
        foundation::log::setSeverityMask(Channel, 0);
    };
    return {[masked, plain] { masked(plain.once); },
            [masked, plain](benchmark::State& state) { masked([&] { plain.loop(state); }); }};
}

/// An operation that writes records of a level, with the log at that level.
struct Level {
    const char* name;
    std::uint32_t mask;
    Operation operation;
};

/// Fails in Java, and the search for the exception's class writes of its progress.
void removeFullFolder(const foundation::storage::provider::IProvider& provider) {
    try {
        provider.removeFolder(Folder.iri);
    } catch (const std::exception& error) {
        benchmark::DoNotOptimize(error.what());
    }
}

std::vector<Level> levels(const foundation::storage::provider::IProvider& provider) {
    // The empty location is no text in Java, which counts as a failure.
    const auto nowhere = operation(
        [&provider, empty = foundation::storage::provider::StorageIRI()] { return provider.fileExists(empty); });
    const auto refused = operation([&provider] { removeFullFolder(provider); });
    const auto attributes = operation([&provider] { return provider.getFileAttributes(File.iri); });
    return {{"fileExists of nothing/log failures", FailureMask, nowhere},
            {"removeFolder refused/log progress", ProgressMask, refused},
            {"getFileAttributes/log arguments", ArgumentsMask, attributes},
            {"getFileAttributes/log trace", foundation::log::AllSeverities, attributes}};
}

}  // namespace

std::vector<Row> measureLogLevels(const Effort& effort) {
    const Machine machine;
    const auto provider = machine.makeProvider();
    const auto sink = boost::make_shared<sinks::unlocked_sink<DroppingBackend>>();
    boost::log::core::get()->add_sink(sink);
    std::vector<Row> rows;
    for (const Level& level : levels(*provider)) {
        rows.push_back(
            measure({level.name, "log levels", std::nullopt, 1, level.operation, withMask(level.operation, level.mask)},
                    effort));
    }
    boost::log::core::get()->remove_sink(sink);
    return rows;
}

}  // namespace bench
