#pragma once

#include <jni.h>

#include <string>

#include "JNIUtilsEnv.h"

namespace storage::javaprovider {

/// What the errors of newInstance() begin with; empty for the bare Java description.
struct InstanceErrors {
    std::string classNotFound;
    std::string notConstructed;
};

/// A new object of the class with that slashed name, made with its constructor without arguments: a local reference
/// that, like the one to the class, is left to the caller's local frame. Null only when Java gave no reason.
///
/// Throws AnonymousInternalException<std::runtime_error> with the texts of throwPendingJavaException() when the class
/// is not found or the constructor throws, and that of getMethodID() when there is no such constructor.
[[nodiscard]] jobject newInstance(const JNIEnvPtr& env, const std::string& className, const InstanceErrors& errors);

}  // namespace storage::javaprovider
