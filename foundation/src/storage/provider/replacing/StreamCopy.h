#pragma once

#include <cstdint>
#include <limits>

#include "foundation/storage/provider/ByteStream.h"
#include "foundation/storage/provider/StorageIRI.h"

namespace foundation::storage::provider::detail {

/// One end of a copy: an open stream and the location that errors name.
struct StreamEnd {
    ByteStream& stream;
    const StorageIRI& location;
};

/// Copies from where one stream stands to where the other stands, up to the end but at most `limit` bytes; the number
/// of bytes copied. Reads and writes at most 256 KiB at a time.
///
/// Short reads and writes are gone on with. Throws what the streams throw, and Exception at the end concerned with
/// Unavailable if a stream keeps giving or taking nothing, Unknown if it claims a count that it cannot have had.
std::uint64_t copyBytes(StreamEnd from, StreamEnd to, std::uint64_t limit = std::numeric_limits<std::uint64_t>::max());

/// Writes that many zero bytes. Fails like copyBytes().
void writeZeros(StreamEnd to, std::uint64_t count);

}  // namespace foundation::storage::provider::detail
