#include "JNIUtilsThrow.h"

#include <optional>
#include <stdexcept>

#include "JNIUtilsText.h"
#include "fl/i18n/text.h"
#include "foundation/core/except/AnonymousInternalException.h"

namespace storage::javaprovider {

using foundation::core::except::detail::AnonymousInternalException;

namespace {

/// The throwable's toString() text; empty when toString() gives none.
std::string describe(const JNIEnvPtr& env, jthrowable throwable) {
    jclass cls = env->GetObjectClass(throwable);
    jmethodID toString = env->GetMethodID(cls, "toString", "()Ljava/lang/String;");
    auto* text = toString != nullptr ? static_cast<jstring>(env->CallObjectMethod(throwable, toString)) : nullptr;
    if (text == nullptr) {
        // If toString() throws, its own exception must not stay pending in place of the described one.
        env->ExceptionClear();
    }
    return fl::i18n::to_string(jstringToUString(env, text));
}

/// Takes the pending Java exception off the thread; its description, or nothing when none is pending.
std::optional<std::string> takePendingDescription(const JNIEnvPtr& env) {
    if (env->ExceptionCheck() == JNI_FALSE) {
        return std::nullopt;
    }
    jthrowable throwable = env->ExceptionOccurred();
    env->ExceptionClear();
    return describe(env, throwable);
}

/// Throws `text` followed by the description of the pending Java exception; returns when none is pending.
void throwPendingAs(const JNIEnvPtr& env, std::string text) {
    if (const auto description = takePendingDescription(env)) {
        throwInternalError(text.append(*description));
    }
}

}  // namespace

void throwInternalError(const std::string& text) {
    throw AnonymousInternalException<std::runtime_error>(std::runtime_error(text));
}

void throwPendingJavaException(const JNIEnvPtr& env, const std::string& prefix) {
    throwPendingAs(env, prefix.empty() ? prefix : prefix + " ");
}

void throwMethodNotFound(const JNIEnvPtr& env, const std::string& name, const std::string& signature) {
    throwPendingAs(env, "Method " + name + " with signature " + signature + " not found.\n");
}

void throwMethodNotFound(const JNIEnvPtr& env, const std::string& name) {
    throwPendingAs(env, "Method " + name + " not found.\n");
}

}  // namespace storage::javaprovider
