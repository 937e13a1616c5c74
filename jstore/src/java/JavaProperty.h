#pragma once

#include <jni.h>

#include <optional>
#include <string>

namespace jstore {

/// The system property of the running virtual machine as UTF-8; empty when it is not set or cannot be read.
///
/// Blocks in Java. The caller provides a local frame. Leaves no exception pending.
[[nodiscard]] std::optional<std::string> javaProperty(JNIEnv* env, const char* name);

}  // namespace jstore
