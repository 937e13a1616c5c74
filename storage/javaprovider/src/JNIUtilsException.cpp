#include "JNIUtilsException.h"

#include <optional>
#include <stdexcept>

#include "JNIUtilsClass.h"
#include "JNIUtilsText.h"
#include "fl/i18n/text.h"
#include "foundation/core/except/AnonymousInternalException.h"
#include "foundation/storage/provider/Exception.h"
#include "storage/javaprovider/ErrorNumbers.h"

namespace storage::javaprovider {

using foundation::core::except::detail::AnonymousInternalException;
using foundation::storage::provider::ErrorCode;
using foundation::storage::provider::StorageIRI;
using ProviderError = foundation::storage::provider::Exception;

namespace {

constexpr const char* ProviderExceptionClass = "com/corvallen/storage/provider/ProviderException";

ErrorCode toErrorCode(jint number) {
    const std::optional<ErrorCode> code = errorCodeOf(number);
    if (!code) {
        throw std::runtime_error("Unexpected error number: " + std::to_string(number));
    }
    return *code;
}

/// Looks a method of ProviderException up on the class of `exception`.
jmethodID providerExceptionMethod(const LocalRef<jthrowable>& exception, const char* name, const char* signature) {
    jclass cls = exception.env()->GetObjectClass(exception.get());
    return getMethodID(exception.env(), cls, name, signature);
}

std::exception_ptr translateProviderException(const LocalRef<jthrowable>& exception) {
    static auto* const getLocationString =
        providerExceptionMethod(exception, "getLocationString", "()Ljava/lang/String;");
    static auto* const getErrorCodeNumber = providerExceptionMethod(exception, "getErrorCodeNumber", "()I");
    const JNIEnvPtr& env = exception.env();
    const LocalRef<jstring> text(env, static_cast<jstring>(env->CallObjectMethod(exception.get(), getLocationString)));
    const StorageIRI location(jstringToUString(env, text.get()));
    const jint number = env->CallIntMethod(exception.get(), getErrorCodeNumber);
    return std::make_exception_ptr(ProviderError(toErrorCode(number), location));
}

/// Calls a method without arguments that returns a string.
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

}  // namespace storage::javaprovider
