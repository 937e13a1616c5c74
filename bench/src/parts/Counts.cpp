#include <algorithm>
#include <chrono>

#include "InstructionCounter.h"
#include "Machine.h"
#include "Pairs.h"
#include "Samples.h"
#include "parts/Parts.h"

namespace bench {

namespace {

constexpr int Samples = 9;

void repeat(const Operation& operation, std::int64_t times) {
    for (std::int64_t i = 0; i < times; ++i) {
        operation.once();
    }
}

/// Instructions of one call. Collections by Java and compilations are other threads' work and do not count; the median
/// leaves out what else may fall into a sample.
double instructionsOf(const Operation& operation, std::int64_t calls, const InstructionCounter& counter) {
    repeat(operation, calls * 2);
    std::vector<double> counts;
    for (int i = 0; i < Samples; ++i) {
        const std::uint64_t before = counter.count();
        repeat(operation, calls);
        counts.push_back(static_cast<double>(counter.count() - before) / static_cast<double>(calls));
    }
    return median(counts);
}

Row countedRow(const Pair& pair, std::int64_t calls, const InstructionCounter& counter) {
    const auto units = static_cast<double>(pair.units);
    const auto count = [&](const Operation& operation) { return instructionsOf(operation, calls, counter) / units; };
    Row row;
    row.name = pair.name + "/instructions";
    row.group = "instructions";
    row.unit = Unit::Instructions;
    row.floor = count(pair.floor);
    row.bridge = count(pair.bridge);
    if (pair.bare) {
        row.bare = count(*pair.bare);
    }
    row.ratioLow = row.ratioHigh = row.ratio();
    return row;
}

}  // namespace

std::vector<Row> measureCounts(const Effort& effort) {
    const InstructionCounter counter;
    const Machine machine;
    Sides sides(machine);
    // For each sample; the calls before the first are enough for Java to have compiled what it calls.
    const auto calls = std::max<std::int64_t>(1, effort.warmUp.count() / 5);
    std::vector<Row> rows;
    for (auto* makePairs : {operationPairs, streamPairs, piecePairs}) {
        for (const Pair& pair : makePairs(sides)) {
            rows.push_back(countedRow(pair, calls, counter));
        }
    }
    return rows;
}

}  // namespace bench
