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

/// Takes the pending exception off this thread. Empty if there is none.
///
/// Blocks in Java. The caller provides a local frame.
[[nodiscard]] std::optional<JavaError> takeJavaError(JNIEnv* env);

/// The problem for an error at a back end's end: what was written may be lost. Empty if there was no error.
[[nodiscard]] std::optional<Problem> problemOf(const std::optional<JavaError>& error);

}  // namespace jstore
