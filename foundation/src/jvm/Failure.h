#pragma once

#include <jni.h>

#include <string>

namespace storage::jvm::detail {

/// Throws AnonymousInternalException<std::runtime_error> with the text.
[[noreturn, gnu::cold]] void fail(const std::string& text);

/// Throws AnonymousInternalException<std::bad_alloc>.
[[noreturn, gnu::cold]] void failOutOfMemory();

/// The JNI error number in words, for error texts: "JNI_EDETACHED (-2)".
[[nodiscard]] std::string describeJniError(jint error);

}  // namespace storage::jvm::detail
