#pragma once

#include "foundation/storage/provider/ByteStream.h"

namespace foundation::storage::provider {

/// A byte stream whose writes become visible at its location only with commit().
///
/// close() is optional: it ends reading and writing, and commit() or rollback() may follow. Destroying the stream
/// without a commit rolls back and ignores failures.
///
/// By default commit() replaces the file with another one. ReplacementPolicy.h describes what becomes of permissions,
/// attributes, links and open streams, and of the content in a power failure.
class FOUNDATION_API TransactionalStream : public ByteStream {
public:
    /// Closes the stream and puts the new content in place of the old, in one step if the back end can. Readers in
    /// every process then find either the old content or the new. The new content may not survive a power failure.
    ///
    /// Throws AlreadyExists or NotAFile if a folder is now at the location, and Unavailable after commit(), rollback()
    /// or a failed close().
    ///
    /// After an error the location holds its old content. If closing failed, the transaction is rolled back; if only
    /// putting the content in place failed (with InUse, for example), commit() may be called again.
    virtual void commit() = 0;

    /// Closes the stream and discards what was written; the location keeps its old content. Does nothing after an
    /// earlier rollback. Throws Unavailable after commit(). Any other error means that the uncommitted bytes could not
    /// be removed from the storage.
    virtual void rollback() = 0;

    ~TransactionalStream() override;
};

}  // namespace foundation::storage::provider
