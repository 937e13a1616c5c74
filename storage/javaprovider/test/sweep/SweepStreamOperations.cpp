// Operations of streams, and those that open them.
#include <utility>

#include "sweep/SweepNames.h"
#include "sweep/SweepOperations.h"
#include "sweep/SweepResults.h"

namespace storage::javaprovider::test {

namespace {

using foundation::storage::provider::ByteStream;
using Uses = SweepOperation::Uses;

void openStream(SweepStage& stage) {
    stage.makeProvider();
    stage.openStream();
}

/// An operation of an open stream, from its beginning on.
SweepOperation of(const std::string& name, std::function<std::string(ByteStream&)> run) {
    return {name, openStream,
            [run = std::move(run)](SweepStage& stage) {
                stage.stream->seek(0, std::ios_base::beg);
                return run(*stage.stream);
            },
            Uses::Stream};
}

std::string seek(ByteStream& stream, std::ios_base::seekdir way) {
    return std::to_string(std::streamoff(stream.seek(1, way)));
}

SweepOperation opening(const std::string& name, void (*open)(SweepStage&)) {
    return {name, &SweepStage::makeProvider, [open](SweepStage& stage) { return stage.told([&] { open(stage); }); },
            Uses::Provider};
}

void openReadOnly(SweepStage& stage) { stage.stream = stage.provider->openReadOnlyByteStream(SweptLocation); }

}  // namespace

std::vector<SweepOperation> sweptStreamOperations() {
    return {opening("open stream", [](SweepStage& stage) { stage.openStream(); }),
            opening("open read-only stream", openReadOnly),
            of("read", bytesOf),
            of("write", [](auto& s) { return std::to_string(s.write("xy", 2)); }),
            of("seek from the beginning", [](auto& s) { return seek(s, std::ios_base::beg); }),
            of("seek from here", [](auto& s) { return seek(s, std::ios_base::cur); }),
            of("seek from the end", [](auto& s) { return seek(s, std::ios_base::end); }),
            {"close", openStream, [](SweepStage& stage) { return stage.told([&] { stage.stream->close(); }); },
             Uses::Stream}};
}

}  // namespace storage::javaprovider::test
