#include "PairRunner.h"
#include "Pairs.h"
#include "parts/Parts.h"

namespace bench {

namespace {

std::vector<Row> measureAll(std::vector<Pair> (*makePairs)(Sides&), const Effort& effort) {
    const Machine machine;
    Sides sides(machine);
    std::vector<Row> rows;
    for (const Pair& pair : makePairs(sides)) {
        rows.push_back(measure(pair, effort));
    }
    return rows;
}

}  // namespace

std::vector<Row> measureOperations(const Effort& effort) { return measureAll(operationPairs, effort); }

std::vector<Row> measureStreams(const Effort& effort) { return measureAll(streamPairs, effort); }

std::vector<Row> measureErrors(const Effort& effort) { return measureAll(errorPairs, effort); }

std::vector<Row> measureEvents(const Effort& effort) { return measureAll(eventPairs, effort); }

std::vector<Row> measurePieces(const Effort& effort) { return measureAll(piecePairs, effort); }

std::vector<Row> measureListings(const Effort& effort) {
    const Machine machine;
    Sides sides(machine);
    std::vector<Row> rows;
    for (const int entryCount : {1000, 100'000}) {
        rows.push_back(measure(listingPair(sides, entryCount), effort));
    }
    return rows;
}

}  // namespace bench
