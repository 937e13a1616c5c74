#pragma once

#include <jni.h>

#include <optional>
#include <string>

#include "base/Problem.h"
#include "foundation/storage/provider/ErrorCode.h"

namespace jstore {

/// A Java exception in native words.
struct JavaError {
    std::string text;  ///< its toString()
    /// What a ProviderException says; Unknown and no location for any other.
    foundation::storage::provider::ErrorCode code = foundation::storage::provider::ErrorCode::Unknown;
    std::string location;
    std::string reason;  ///< a ProviderException's message without code and location; empty when it says no more
};

/// The exception that is pending on this thread, which it is no more afterwards; empty if there is none.
///
/// Blocks in Java. Needs a local frame of the caller's; leaves no exception pending.
[[nodiscard]] std::optional<JavaError> takeJavaError(JNIEnv* env);

/// An error of a back end's end as a problem: what was written may be lost. Empty for none.
[[nodiscard]] std::optional<Problem> problemOf(const std::optional<JavaError>& error);

}  // namespace jstore
