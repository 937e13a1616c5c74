#pragma once

#include "foundation/storage/provider/ByteStream.h"

namespace foundation::storage::provider {

/// A byte stream whose writes show at its location only after commit().
///
/// close() ends reading and writing and leaves the decision open; it is optional. Once the stream is closed, read(),
/// write() and seek() throw Exception with Unavailable, and after the decision so does a second one.
///
/// The default stream replaces the file by another one: for what then becomes of its permissions, attributes, links and
/// open streams, and of its content in a power failure, see IProvider ("What replaces a file").
class FOUNDATION_API TransactionalStream : public ByteStream {
public:
    /// Puts what was written in the location's place, as one step where the back end can, and closes the stream.
    /// Readers and other processes find the old content or the new one. Whether the new one outlives a power failure is
    /// not promised.
    ///
    /// After an error the location holds its old content. What could not be written to its end is given up; what could
    /// not be put in place (InUse, for example) waits for another commit(). AlreadyExists or NotAFile if a folder is at
    /// the location by now, Unavailable after commit(), rollback() or an error of close().
    virtual void commit() = 0;

    /// Gives up what was written and closes the stream; the location keeps its old content. Unavailable after commit(),
    /// nothing if given up already. An error says that the uncommitted bytes could not be removed from the storage.
    /// Destroying a stream that was not committed does the same, and reports no error.
    virtual void rollback() = 0;

    ~TransactionalStream() override;
};

}  // namespace foundation::storage::provider
