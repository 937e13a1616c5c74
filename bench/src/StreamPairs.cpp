#include <stdexcept>

#include "Locations.h"
#include "Pairs.h"

namespace bench {

namespace {

constexpr const char* Group = "streams";

struct TransferSize {
    const char* name;
    std::streamsize bytes;
    double target;
};

constexpr TransferSize TransferSizes[] = {
    {"64B", 64, 1.15}, {"4KiB", 4096, 1.10}, {"64KiB", 65536, 1.03}, {"1MiB", 1 << 20, 1.02}};

Pair readPair(Sides& sides, const TransferSize& size) {
    const std::streamsize count = size.bytes;
    return {std::string("read/") + size.name,
            Group,
            size.target,
            1,
            operation([&sides, count] { return sides.floorStream.read(sides.buffer.data(), count); }),
            operation([&sides, count] { return sides.stream->read(sides.buffer.data(), count); })};
}

Pair writePair(Sides& sides, const TransferSize& size) {
    const std::streamsize count = size.bytes;
    return {std::string("write/") + size.name,
            Group,
            size.target,
            1,
            operation([&sides, count] { return sides.floorStream.write(sides.buffer.data(), count); }),
            operation([&sides, count] { return sides.stream->write(sides.buffer.data(), count); })};
}

Pair openAndClose(Sides& sides) {
    return {"openReadOnlyByteStream/close",
            Group,
            1.15,
            1,
            operation([&sides] {
                const FloorStream stream(sides.floor.java(), sides.floorOpen, File.text);
                stream.close();
            }),
            operation([&sides] {
                const auto stream = sides.provider->openReadOnlyByteStream(File.iri);
                stream->close();
            })};
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
