#pragma once

#include <jni.h>

#include <optional>
#include <string>

#include "foundation/storage/provider/Exception.h"
#include "foundation/storage/provider/StorageIRI.h"

namespace jstore {

/// The failure that the contract's Java side remembers for this thread: what a native exception has no room for.
struct LastFailure {
    foundation::storage::provider::ErrorCode code = foundation::storage::provider::ErrorCode::Unknown;
    foundation::storage::provider::StorageIRI location;  ///< empty when no location is concerned
    std::string reason;                                  ///< why, in the back end's words; may be empty

    /// Whether the exception reports this failure: the same code, and the same location or one beside it, since a file
    /// is written under another name in the same folder before it takes its place.
    [[nodiscard]] bool isReportedBy(const foundation::storage::provider::Exception& error) const;
};

/// Takes what is remembered, so that it is asked for once. `object` is of a class that knows the contract: a back end,
/// or an exception of one. Empty when nothing is remembered, or when the contract there is older than this.
///
/// Blocks in Java. Needs a local frame of the caller's, and no pending exception; leaves none.
[[nodiscard]] std::optional<LastFailure> takeLastFailure(JNIEnv* env, jobject object);

}  // namespace jstore
