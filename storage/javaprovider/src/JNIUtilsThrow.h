#pragma once

#include <string>

#include "JNIUtilsEnv.h"

namespace storage::javaprovider {

/// Throws AnonymousInternalException<std::runtime_error> with the text.
[[noreturn]] void throwInternalError(const std::string& text);

/// If a Java exception is pending, clears it and throws AnonymousInternalException<std::runtime_error> with the prefix,
/// a blank (neither if the prefix is empty) and the exception's toString() text. Otherwise returns.
void throwPendingJavaException(const JNIEnvPtr& env, const std::string& prefix);

/// The same with the text "Method … with signature … not found.\n" (or "Method … not found.\n") before the description.
void throwMethodNotFound(const JNIEnvPtr& env, const std::string& name, const std::string& signature);
void throwMethodNotFound(const JNIEnvPtr& env, const std::string& name);

}  // namespace storage::javaprovider
