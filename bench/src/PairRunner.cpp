#include "PairRunner.h"

#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <vector>

#include "Samples.h"

namespace bench {

namespace {

using Clock = std::chrono::steady_clock;

/// Takes the one run of a sample instead of printing it.
class SampleReporter final : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context& /*context*/) override { return true; }

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.error_occurred) {
                throw std::runtime_error(run.benchmark_name() + ": " + run.error_message);
            }
            m_seconds += run.cpu_accumulated_time;
            m_iterations += run.iterations;
        }
    }

    [[nodiscard]] double nanosecondsPerIteration() const {
        if (m_iterations == 0) {
            throw std::runtime_error("a sample did not run");
        }
        return m_seconds * 1e9 / static_cast<double>(m_iterations);
    }

private:
    double m_seconds = 0;
    std::int64_t m_iterations = 0;
};

/// One side of a pair as a registered benchmark.
class Side {
public:
    Side(const std::string& name, const Operation& operation)
        : m_name(name), m_benchmark(benchmark::RegisterBenchmark(name.c_str(), operation.loop)) {}

    void setIterations(std::int64_t count) { m_benchmark->Iterations(count); }

    [[nodiscard]] double sample() const {
        SampleReporter reporter;
        // With a fixed count the name goes on with a slash and that count.
        benchmark::RunSpecifiedBenchmarks(&reporter, "^" + m_name + "/iterations");
        return reporter.nanosecondsPerIteration();
    }

private:
    std::string m_name;
    benchmark::internal::Benchmark* m_benchmark;
};

/// Runs the operation for the given time, at least once; how long one call takes in the end.
std::chrono::nanoseconds warmUp(const Operation& operation, std::chrono::microseconds duration) {
    const auto end = Clock::now() + duration;
    std::chrono::nanoseconds fastest = std::chrono::nanoseconds::max();
    do {
        const auto start = Clock::now();
        operation.once();
        fastest = std::min<std::chrono::nanoseconds>(fastest, Clock::now() - start);
    } while (Clock::now() < end);
    return std::max(fastest, std::chrono::nanoseconds(1));
}

Row summarize(const Pair& pair, const Rounds& rounds) {
    const auto units = static_cast<double>(pair.units);
    const std::vector<double> ratios = rounds.ratios();
    Row row;
    row.name = pair.name;
    row.group = pair.group;
    row.floor = median(rounds.floor) / units;
    row.bridge = median(rounds.bridge) / units;
    if (!rounds.bare.empty()) {
        row.bare = median(rounds.bare) / units;
    }
    row.target = pair.target;
    row.ratioLow = quantile(ratios, 0.25);
    row.ratioHigh = quantile(ratios, 0.75);
    return row;
}

}  // namespace

Row measure(const Pair& pair, const Effort& effort) {
    benchmark::ClearRegisteredBenchmarks();
    Side floor(pair.name + "/floor", pair.floor);
    Side bridge(pair.name + "/bridge", pair.bridge);
    std::optional<Side> bare;
    if (pair.bare) {
        bare.emplace(pair.name + "/bare", *pair.bare);
        warmUp(*pair.bare, effort.warmUp);
    }
    const auto each = std::max(warmUp(pair.floor, effort.warmUp), warmUp(pair.bridge, effort.warmUp));
    const auto iterations = std::max<std::int64_t>(1, effort.sample / each);
    floor.setIterations(iterations);
    bridge.setIterations(iterations);
    if (bare) {
        bare->setIterations(iterations);
    }
    Rounds rounds;
    for (int round = 0; round < effort.rounds; ++round) {
        rounds.floor.push_back(floor.sample());
        rounds.bridge.push_back(bridge.sample());
        if (bare) {
            rounds.bare.push_back(bare->sample());
        }
    }
    return summarize(pair, rounds);
}

}  // namespace bench
