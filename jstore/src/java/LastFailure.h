#pragma once

#include <jni.h>

#include <optional>
#include <string>

#include "foundation/storage/provider/Exception.h"
#include "foundation/storage/provider/StorageIRI.h"

namespace jstore {

/// The failure that the contract's Java side remembers for this thread. It also holds the reason, for which a native
/// exception has no room.
struct LastFailure {
    foundation::storage::provider::ErrorCode code = foundation::storage::provider::ErrorCode::Unknown;
    foundation::storage::provider::StorageIRI location;  ///< empty when no location is concerned
    std::string reason;                                  ///< why, in the back end's words; may be empty

    /// Whether the exception reports this failure: both have the same code, and their locations are the same or in the
    /// same folder. The folder is enough because a new file is first written there under a hidden name.
    [[nodiscard]] bool isReportedBy(const foundation::storage::provider::Exception& error) const;
};

/// Takes what is remembered; a second call returns nothing. `object` is a back end, or an exception that one threw: its
/// class knows the contract. Empty if nothing is remembered, or if the contract there is too old to remember.
///
/// Blocks in Java. The caller provides a local frame and has no exception pending. Leaves none.
[[nodiscard]] std::optional<LastFailure> takeLastFailure(JNIEnv* env, jobject object);

}  // namespace jstore
