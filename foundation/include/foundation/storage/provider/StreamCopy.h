#pragma once

#include <cstdint>
#include <limits>

#include "foundation/Export.h"
#include "foundation/storage/provider/ByteStream.h"
#include "foundation/storage/provider/StorageIRI.h"

/// Reading and writing in full, over streams that may read and write less than requested.
///
/// Each function continues after short reads and writes. It throws what the stream throws. It also throws Exception
/// with the location of the StreamEnd: Unavailable if a hundred operations in a row move nothing, Unknown if a stream
/// claims a count that it cannot have had. Used by one thread at a time for each stream.
namespace foundation::storage::provider {

/// One end of a copy: an open stream and the location that errors name. Both must outlive it.
struct StreamEnd {
    ByteStream& stream;
    const StorageIRI& location;
};

/// Reads at least one byte and at most `count`, which must be positive. Returns the number of bytes, 0 at the end of
/// the file.
[[nodiscard]] FOUNDATION_API std::streamsize readSome(StreamEnd from, char* destination, std::streamsize count);

/// Writes all `count` bytes.
FOUNDATION_API void writeAll(StreamEnd to, const char* source, std::streamsize count);

/// Writes that many zero bytes.
FOUNDATION_API void writeZeros(StreamEnd to, std::uint64_t count);

/// Copies from the present position of one stream to that of the other, up to the end but at most `limit` bytes.
/// Returns the number of bytes copied. Reads and writes at most 256 KiB at a time.
FOUNDATION_API std::uint64_t copyBytes(StreamEnd from, StreamEnd to,
                                       std::uint64_t limit = std::numeric_limits<std::uint64_t>::max());

}  // namespace foundation::storage::provider
