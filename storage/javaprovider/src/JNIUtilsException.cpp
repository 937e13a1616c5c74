#include "JNIUtilsException.h"

#include <array>
#include <cstddef>
#include <optional>
#include <stdexcept>

#include "JNIUtilsClass.h"
#include "JNIUtilsText.h"
#include "fl/i18n/text.h"
#include "foundation/core/except/AnonymousInternalException.h"
#include "foundation/storage/provider/Exception.h"

namespace storage::javaprovider {

using foundation::core::except::detail::AnonymousInternalException;
using foundation::storage::provider::ErrorCode;
using foundation::storage::provider::StorageIRI;
using ProviderError = foundation::storage::provider::Exception;

namespace {

constexpr const char* ProviderExceptionClass = "com/corvallen/storage/provider/ProviderException";

/// Java's error numbers as error codes. Java knows no Cancelled, so the two lists part at 7.
ErrorCode toErrorCode(jint number) {
    static constexpr std::array Codes = {ErrorCode::Unknown,        ErrorCode::NotFound,     ErrorCode::AlreadyExists,
                                         ErrorCode::AccessDenied,   ErrorCode::NotAFile,     ErrorCode::NotAFolder,
                                         ErrorCode::FolderNotEmpty, ErrorCode::NotSupported, ErrorCode::InvalidLocation,
                                         ErrorCode::StorageFull,    ErrorCode::InUse,        ErrorCode::Unavailable};
    const auto index = static_cast<std::size_t>(static_cast<unsigned>(number));
    if (index >= Codes.size()) {
        throw std::runtime_error("Unexpected error number: " + std::to_string(number));
    }
    return Codes[index];
}

/// Looks a method of ProviderException up on the class of `exception`.
jmethodID providerExceptionMethod(const LocalRef<jthrowable>& exception, const char* name, const char* signature) {
    jclass cls = exception.env()->GetObjectClass(exception.get());
    return getMethodID(exception.env(), cls, name, signature);
}

std::exception_ptr translateProviderException(const LocalRef<jthrowable>& exception) {
    static const jmethodID getLocationString =
        providerExceptionMethod(exception, "getLocationString", "()Ljava/lang/String;");
    static const jmethodID getErrorCodeNumber = providerExceptionMethod(exception, "getErrorCodeNumber", "()I");
    const JNIEnvPtr& env = exception.env();
    const LocalRef<jstring> text(env, static_cast<jstring>(env->CallObjectMethod(exception.get(), getLocationString)));
    const StorageIRI location(jstringToUString(env, text.get()));
    const jint number = env->CallIntMethod(exception.get(), getErrorCodeNumber);
    return std::make_exception_ptr(ProviderError(toErrorCode(number), location));
}

/// Calls a method without arguments that gives a string.
std::string callStringMethod(const JNIEnvPtr& env, jobject object, jmethodID method) {
    const LocalRef<jstring> text(env, static_cast<jstring>(env->CallObjectMethod(object, method)));
    return fl::i18n::to_string(jstringToUString(env, text.get()));
}

std::exception_ptr translateUnexpectedException(const LocalRef<jthrowable>& exception) {
    const JNIEnvPtr& env = exception.env();
    const LocalRef<jclass> cls(env, env->GetObjectClass(exception.get()));
    const LocalRef<jclass> classClass(env, env->GetObjectClass(cls.get()));
    jmethodID getName = getMethodID(env, classClass.get(), "getName", "()Ljava/lang/String;");
    const std::string name = callStringMethod(env, cls.get(), getName);
    jmethodID getMessage = getMethodID(env, cls.get(), "getMessage", "()Ljava/lang/String;");
    const std::string message = callStringMethod(env, exception.get(), getMessage);
    std::string report = "ProviderCallback threw an unexpected ";
    report.append(name).append(". The message was: ").append(message);
    return std::make_exception_ptr(AnonymousInternalException<std::runtime_error>(std::runtime_error(report)));
}

/// The throwable's toString() text; empty when toString() gives none.
std::string describe(const JNIEnvPtr& env, jthrowable throwable) {
    jclass cls = env->GetObjectClass(throwable);
    jmethodID toString = env->GetMethodID(cls, "toString", "()Ljava/lang/String;");
    auto* text = toString != nullptr ? static_cast<jstring>(env->CallObjectMethod(throwable, toString)) : nullptr;
    if (text == nullptr) {
        // A toString() that throws must not leave its own exception behind in place of the described one.
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

std::exception_ptr detail::translatePendingException(const JNIEnvPtr& env) {
    LocalRef<jthrowable> exception(env, env->ExceptionOccurred());
    if (!exception) {
        return nullptr;
    }
    // The Java exception stays pending while it is examined, so that it is still there if that fails.
    std::exception_ptr result = isProviderException(exception) ? translateProviderException(exception)
                                                               : translateUnexpectedException(exception);
    env->ExceptionClear();
    return result;
}

void throwInternalError(const std::string& text) {
    throw AnonymousInternalException<std::runtime_error>(std::runtime_error(text));
}

bool isInstanceOfClass(LocalRef<jthrowable>& object, const std::string& className) {
    const JNIEnvPtr& env = object.env();
    jclass loaded = nullptr;
    {
        const LocalRef<jclass> objectClass(env, env->GetObjectClass(object.get()));
        const LocalRef<jobject> loader(env, getClassLoader(env, objectClass.get()));
        loaded = loadClass(env, loader.get(), className);
    }
    const LocalRef<jclass> cls(env, loaded);
    return cls && env->IsInstanceOf(object.get(), cls.get()) == JNI_TRUE;
}

bool isProviderException(LocalRef<jthrowable>& object) {
    static const std::string name(ProviderExceptionClass);
    return isInstanceOfClass(object, name);
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
