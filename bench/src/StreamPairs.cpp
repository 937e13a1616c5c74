#include <stdexcept>

#include "Locations.h"
#include "Pairs.h"

namespace bench {

namespace {

constexpr const char* StreamGroup = "streams";

struct TransferSize {
    const char* name;
    std::streamsize bytes;
    double target;
};

constexpr TransferSize TransferSizes[] = {
    {"64B", 64, 1.15}, {"4KiB", 4096, 1.10}, {"64KiB", 65536, 1.03}, {"1MiB", 1 << 20, 1.02}};

/// An operation on both kinds of floor and on the library.
template <class OnFloor, class OnLibrary>
Pair comparison(Sides& sides, std::string name, double target, OnFloor onFloor, OnLibrary onLibrary) {
    return {std::move(name),
            StreamGroup,
            target,
            1,
            operation([&floor = sides.floor, onFloor] { return onFloor(floor); }),
            operation(onLibrary),
            operation([&floor = sides.bare, onFloor] { return onFloor(floor); })};
}

Pair readPair(Sides& sides, const TransferSize& size) {
    char* memory = sides.buffer.data();
    const std::streamsize count = size.bytes;
    return comparison(
        sides, std::string("read/") + size.name, size.target,
        [memory, count](const Floors& floor) { return floor.stream->read(memory, count); },
        [&sides, memory, count] { return sides.stream->read(memory, count); });
}

Pair writePair(Sides& sides, const TransferSize& size) {
    const char* memory = sides.buffer.data();
    const std::streamsize count = size.bytes;
    return comparison(
        sides, std::string("write/") + size.name, size.target,
        [memory, count](const Floors& floor) { return floor.stream->write(memory, count); },
        [&sides, memory, count] { return sides.stream->write(memory, count); });
}

Pair openAndClose(Sides& sides) {
    return comparison(
        sides, "openReadOnlyByteStream/close", 1.15,
        [](const Floors& floor) {
            const auto stream = openReadOnly(floor.provider.java(), File.text);
            stream->close();
        },
        [&sides] {
            const auto stream = sides.provider->openReadOnlyByteStream(File.iri);
            stream->close();
        });
}

}  // namespace

std::vector<Pair> streamPairs(Sides& sides) {
    std::vector<Pair> pairs;
    for (const TransferSize& size : TransferSizes) {
        pairs.push_back(readPair(sides, size));
    }
    for (const TransferSize& size : TransferSizes) {
        pairs.push_back(writePair(sides, size));
    }
    pairs.push_back(openAndClose(sides));
    return pairs;
}

}  // namespace bench
