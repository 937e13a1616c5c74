#include <atomic>
#include <barrier>
#include <chrono>
#include <functional>
#include <thread>

#include "Locations.h"
#include "Machine.h"
#include "Samples.h"
#include "floor/FloorProvider.h"
#include "parts/Parts.h"

namespace bench {

namespace {

using Clock = std::chrono::steady_clock;

/// Makes what a thread calls over and over, on that thread.
using MakeCall = std::function<std::function<void()>()>;

/// Calls until it is stopped; returns the number of calls.
std::int64_t callUntil(const std::atomic<bool>& stop, const std::function<void()>& call) {
    constexpr int CallsPerLook = 64;
    std::int64_t calls = 0;
    do {
        for (int i = 0; i < CallsPerLook; ++i) {
            call();
        }
        calls += CallsPerLook;
    } while (!stop.load(std::memory_order_relaxed));
    return calls;
}

/// Nanoseconds from one call to the next when that many threads make them at once.
double timeBetweenCalls(const Machine& machine, const MakeCall& makeCall, int threadCount,
                        std::chrono::microseconds duration) {
    std::atomic<bool> stop = false;
    std::atomic<std::int64_t> calls = 0;
    std::barrier ready(threadCount + 1);
    std::vector<std::jthread> threads;
    for (int i = 0; i < threadCount; ++i) {
        threads.emplace_back([&] {
            const storage::jvm::ThreadAttachment attachment(machine.jvm());
            const auto call = makeCall();
            ready.arrive_and_wait();
            calls += callUntil(stop, call);
        });
    }
    ready.arrive_and_wait();
    const auto start = Clock::now();
    std::this_thread::sleep_for(duration);
    stop = true;
    threads.clear();
    const std::chrono::duration<double, std::nano> elapsed = Clock::now() - start;
    return elapsed.count() / static_cast<double>(calls.load());
}

Row compare(const Machine& machine, const char* name, const MakeCall& makeCall, std::optional<double> target,
            const Effort& effort) {
    const auto duration = effort.sample * 10;
    timeBetweenCalls(machine, makeCall, 2, effort.warmUp);
    Rounds rounds;
    for (int round = 0; round < effort.rounds; ++round) {
        rounds.floor.push_back(timeBetweenCalls(machine, makeCall, 1, duration));
        rounds.bridge.push_back(timeBetweenCalls(machine, makeCall, 2, duration));
    }
    Row row;
    row.name = name;
    row.group = "threads";
    row.floor = median(rounds.floor);
    row.bridge = median(rounds.bridge);
    row.target = target;
    row.ratioLow = quantile(rounds.ratios(), 0.25);
    row.ratioHigh = quantile(rounds.ratios(), 0.75);
    return row;
}

}  // namespace

std::vector<Row> measureThreads(const Effort& effort) {
    // At least 1.8 times the calls in the same time.
    constexpr double Target = 1 / 1.8;
    const Machine machine;
    const auto provider = machine.makeProvider();
    const auto bridge = [&provider] { return [&provider] { static_cast<void>(provider->fileExists(File.iri)); }; };
    const auto floor = [&machine] {
        return
            [java = FloorProvider(machine.jvm(), Lookups::PerCall)] { static_cast<void>(java.fileExists(File.text)); };
    };
    return {compare(machine, "fileExists/2 threads", bridge, Target, effort),
            compare(machine, "floor's fileExists/2 threads", floor, std::nullopt, effort)};
}

}  // namespace bench
