#pragma once

#include <ios>

#include "foundation/Export.h"

namespace foundation::storage::provider {

/// The bytes of one open file, and a position in it that starts at 0. The caller owns the stream.
///
/// Use it from any thread, one operation at a time; each blocks until the back end has answered. The stream of a back
/// end in Java calls Java on the calling thread. It may outlive its provider, but its operations then throw
/// Unavailable, because destroying the provider disposes of the back end. A TransactionalStream must be destroyed
/// before its provider.
///
/// The stream stays with the file that was opened. If the back end lets another file take its place (through
/// IProvider::truncateToSize(), an atomic copy or a commit) or lets it be removed, what is written to the stream from
/// then on is lost with the old file.
///
/// Failures are Exceptions with the codes listed below and the location of the file. Once the stream is closed or the
/// storage is gone, read(), write() and seek() throw Unavailable. A failure of the machinery in between is an
/// IInternalException. After a failure the position is unchanged, except that a failed write() may have moved it.
///
/// The slot order is fixed: destructor, read, write, seek, close.
class FOUNDATION_API ByteStream {
public:
    virtual ~ByteStream();

    /// Reads up to `count` bytes at the position and advances it. Returns the number of bytes read, or -1 at the end of
    /// the file. The number may be less than `count` even before the end, but is 0 only if `count` is 0.
    ///
    /// Throws AccessDenied if the stream cannot read. After a failure the memory at `destination` is undefined. `count`
    /// must not be negative; a stream of a back end in Java then throws an IInternalException that is a std::bad_alloc.
    virtual std::streamsize read(char* destination, std::streamsize count) = 0;

    /// Writes up to `count` bytes at the position and advances it. Returns the number of bytes written, which may be
    /// less than `count`. Bytes between the old end of the file and the position become zero.
    ///
    /// Throws AccessDenied on a stream for reading, StorageFull if there is no space or no file can be that long. After
    /// a failure some bytes may have been written. `count` must not be negative; see read().
    virtual std::streamsize write(const char* source, std::streamsize count) = 0;

    /// Moves the position to `offset` bytes from the beginning, the current position or the end, and returns the new
    /// position in bytes from the beginning. It may lie past the end: reading there returns -1.
    ///
    /// Throws InvalidLocation for a position before the beginning.
    virtual std::streampos seek(std::streamoff offset, std::ios_base::seekdir way) = 0;

    /// Closes the file. What was written is then visible to whoever opens the file next, but not forced to the disk: a
    /// power failure may still lose it. Closing a closed stream does nothing.
    ///
    /// Throws with the code of what went wrong while the last bytes were written, for example StorageFull; the stream
    /// is closed even so.
    ///
    /// Destroying a stream does not close the file. A back end in Java then keeps it open until Java's garbage
    /// collector finds the channel or the back end is disposed of.
    virtual void close() = 0;

    ByteStream(const ByteStream&) = delete;
    ByteStream& operator=(const ByteStream&) = delete;

protected:
    ByteStream() = default;
};

}  // namespace foundation::storage::provider
