#include <ctime>

#include <algorithm>
#include <exception>
#include <functional>
#include <optional>
#include <thread>

#include "Locations.h"
#include "Machine.h"
#include "Samples.h"
#include "parts/Parts.h"

namespace bench {

namespace {

using foundation::storage::provider::IProvider;

double threadNanoseconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e9 + static_cast<double>(now.tv_nsec);
}

/// What one existence test costs a new thread, attached for all of them or for each by itself.
double costOnNewThread(const Machine& machine, const IProvider& provider, bool attached, int calls) {
    double cost = 0;
    std::exception_ptr failure;
    std::thread([&] {
        try {
            std::optional<storage::jvm::ThreadAttachment> attachment;
            if (attached) {
                attachment.emplace(machine.jvm());
            }
            const double start = threadNanoseconds();
            for (int i = 0; i < calls; ++i) {
                static_cast<void>(provider.fileExists(File.iri));
            }
            cost = (threadNanoseconds() - start) / calls;
        } catch (...) {
            failure = std::current_exception();
        }
    }).join();
    if (failure) {
        std::rethrow_exception(failure);
    }
    return cost;
}

}  // namespace

std::vector<Row> measureAttachment(const Effort& effort) {
    const Machine machine;
    const auto provider = machine.makeProvider();
    // An attachment costs tens of microseconds.
    const int calls = std::max(1, static_cast<int>(effort.sample.count() / 20));
    Rounds rounds;
    for (int round = 0; round < effort.rounds; ++round) {
        rounds.floor.push_back(costOnNewThread(machine, *provider, /*attached=*/true, calls));
        rounds.bridge.push_back(costOnNewThread(machine, *provider, /*attached=*/false, calls));
    }
    Row row;
    row.name = "fileExists/attached per call";
    row.group = "attachment";
    row.floor = median(rounds.floor);
    row.bridge = median(rounds.bridge);
    row.ratioLow = quantile(rounds.ratios(), 0.25);
    row.ratioHigh = quantile(rounds.ratios(), 0.75);
    return {row};
}

}  // namespace bench
