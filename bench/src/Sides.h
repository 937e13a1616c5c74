#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "Machine.h"
#include "floor/FloorErrors.h"
#include "floor/FloorEvents.h"
#include "floor/FloorProvider.h"
#include "floor/FloorStream.h"

namespace bench {

/// A back end of its own, as it is without the library.
struct Floors {
    Floors(const Machine& machine, Lookups lookups);

    FloorProvider provider;
    FloorErrors errors;
    std::unique_ptr<FloorStream> stream;
};

/// The sides of every comparison: the library through its provider interface, the floors that look up what has to be
/// looked up on each call, and those that keep it. Used on the thread that made it.
struct Sides {
    explicit Sides(const Machine& machine);

    Sides(const Sides&) = delete;
    Sides& operator=(const Sides&) = delete;

    const Machine& machine;
    std::unique_ptr<foundation::storage::provider::IProvider> provider;
    std::unique_ptr<foundation::storage::provider::ByteStream> stream;
    Floors floor;
    Floors bare;
    std::vector<char> buffer;        ///< as large as the largest transfer
    std::uint64_t bridgeEvents = 0;  ///< how many reached the library's callback
    std::uint64_t floorEvents = 0;   ///< and the floor's
    FloorEvents events;
};

}  // namespace bench
