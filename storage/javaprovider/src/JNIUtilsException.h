#pragma once

#include <jni.h>

#include <exception>
#include <string>

#include "JNIUtilsEnv.h"
#include "JNIUtilsRef.h"

namespace storage::javaprovider {

namespace detail {
/// What checkJavaException() does once it knows that an exception is pending.
[[nodiscard]] std::exception_ptr translatePendingException(const JNIEnvPtr& env);
}  // namespace detail

/// What a call into Java left pending, as a native exception; null when nothing is. Called right after each call.
///
/// A ProviderException becomes foundation::storage::provider::Exception with its error code and location. Any other
/// Java exception becomes AnonymousInternalException<std::runtime_error> "ProviderCallback threw an unexpected …".
/// In both cases the Java exception is cleared. Throws std::runtime_error "Unexpected error number: …" for a
/// ProviderException outside the number table; the Java exception then stays pending.
[[nodiscard]] inline std::exception_ptr checkJavaException(const JNIEnvPtr& env) {
    return env->ExceptionCheck() == JNI_FALSE ? nullptr : detail::translatePendingException(env);
}

/// Rethrows what checkJavaException() returns, if anything. In line, since each function that an exception leaves on
/// its way costs hundreds of nanoseconds.
inline void rethrowJavaException(const JNIEnvPtr& env) {
    if (const std::exception_ptr exception = checkJavaException(env)) {
        std::rethrow_exception(exception);
    }
}

/// Whether the object is an instance of the class of that name, as the object's own class loader knows it. False when
/// the class cannot be loaded. Leaves whatever Java exceptions the loaders throw pending.
[[nodiscard]] bool isInstanceOfClass(LocalRef<jthrowable>& object, const std::string& className);

/// Whether the object is a ProviderException.
[[nodiscard]] bool isProviderException(LocalRef<jthrowable>& object);

}  // namespace storage::javaprovider
