#include <boost/log/core.hpp>
#include <boost/log/sinks/basic_sink_backend.hpp>
#include <boost/log/sinks/unlocked_frontend.hpp>
#include <boost/make_shared.hpp>

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

struct Level {
    const char* name;
    std::uint32_t mask;
};

constexpr std::uint32_t bit(Severity severity) { return static_cast<std::uint32_t>(severity); }

constexpr std::uint32_t FailureMask = bit(Severity::Failure) | bit(Severity::Caught);

constexpr Level Levels[] = {
    {"failures", FailureMask},
    {"progress", FailureMask | bit(Severity::Progress)},
    {"arguments", FailureMask | bit(Severity::Progress) | bit(Severity::Arguments)},
    {"trace", foundation::log::AllSeverities},
};

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

}  // namespace

std::vector<Row> measureLogLevels(const Effort& effort) {
    const Machine machine;
    const auto provider = machine.makeProvider();
    const auto sink = boost::make_shared<sinks::unlocked_sink<DroppingBackend>>();
    boost::log::core::get()->add_sink(sink);
    const Operation plain = operation([&provider] { return provider->getFileAttributes(File.iri); });
    std::vector<Row> rows;
    for (const Level& level : Levels) {
        rows.push_back(measure({std::string("getFileAttributes/log ") + level.name, "log levels", std::nullopt, 1,
                                plain, withMask(plain, level.mask)},
                               effort));
    }
    boost::log::core::get()->remove_sink(sink);
    return rows;
}

}  // namespace bench
