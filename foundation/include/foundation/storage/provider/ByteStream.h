#pragma once

#include <ios>

#include "foundation/Export.h"

namespace foundation::storage::provider {

/// The bytes of one open file. The stream stays with the file that was opened: when another file takes its place at the
/// location (IProvider::truncateToSize(), an atomic copy, a commit), or when it is removed, what is written to the
/// stream from then on is lost with the old file, if the back end lets that happen at all.
///
/// One operation at a time; which threads may call is the implementation's affair. The slot order is fixed:
/// destructor, read, write, seek, close.
class FOUNDATION_API ByteStream {
public:
    virtual ~ByteStream();

    /// Reads up to `count` bytes; the number read, which may be short, or -1 at the end.
    virtual std::streamsize read(char* destination, std::streamsize count) = 0;

    /// Writes up to `count` bytes; the number written, which may be short.
    virtual std::streamsize write(const char* source, std::streamsize count) = 0;

    /// Moves to `offset` bytes from the beginning, the present position or the end; the new position.
    virtual std::streampos seek(std::streamoff offset, std::ios_base::seekdir way) = 0;

    /// Ends the use of the file and reports what could not be written. What was written is then visible to the next
    /// reader, and not forced to the disk: a power failure may still take it. Destroying a stream closes nothing by
    /// itself.
    virtual void close() = 0;

    ByteStream(const ByteStream&) = delete;
    ByteStream& operator=(const ByteStream&) = delete;

protected:
    ByteStream() = default;
};

}  // namespace foundation::storage::provider
