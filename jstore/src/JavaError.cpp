#include "JavaError.h"

#include <fmt/format.h>

#include <array>

#include "Text.h"
#include "fl/i18n/text.h"

namespace jstore {

using foundation::storage::provider::ErrorCode;

namespace {

std::string textOf(JNIEnv* env, jstring text) {
    if (text == nullptr) {
        return {};
    }
    std::u16string units(static_cast<std::size_t>(env->GetStringLength(text)), u'\0');
    env->GetStringRegion(text, 0, static_cast<jsize>(units.size()), reinterpret_cast<jchar*>(units.data()));
    return fl::i18n::to_string(units);
}

/// The result of a method without arguments that gives text; empty when it throws.
std::string callForText(JNIEnv* env, jobject object, const char* name) {
    auto* const method = env->GetMethodID(env->GetObjectClass(object), name, "()Ljava/lang/String;");
    auto* const text = method == nullptr ? nullptr : static_cast<jstring>(env->CallObjectMethod(object, method));
    if (env->ExceptionCheck() == JNI_TRUE) {
        env->ExceptionClear();
        return {};
    }
    return textOf(env, text);
}

/// By the number that Java's side gives it.
ErrorCode codeOf(jint number) {
    constexpr std::array codes = {ErrorCode::Unknown,        ErrorCode::NotFound,     ErrorCode::AlreadyExists,
                                  ErrorCode::AccessDenied,   ErrorCode::NotAFile,     ErrorCode::NotAFolder,
                                  ErrorCode::FolderNotEmpty, ErrorCode::NotSupported, ErrorCode::InvalidLocation,
                                  ErrorCode::StorageFull,    ErrorCode::InUse,        ErrorCode::Unavailable};
    const auto index = static_cast<std::size_t>(number);
    return number >= 0 && index < codes.size() ? codes[index] : ErrorCode::Unknown;
}

void readProviderException(JNIEnv* env, jthrowable throwable, JavaError& error) {
    auto* const type = env->FindClass("com/corvallen/storage/provider/ProviderException");
    if (type == nullptr) {
        env->ExceptionClear();  // Without the contract on the class path it is none of those.
        return;
    }
    if (env->IsInstanceOf(throwable, type) == JNI_TRUE) {
        error.code = codeOf(env->CallIntMethod(throwable, env->GetMethodID(type, "getErrorCodeNumber", "()I")));
        error.location = callForText(env, throwable, "getLocationString");
    }
}

}  // namespace

std::optional<JavaError> takeJavaError(JNIEnv* env) {
    auto* const throwable = env->ExceptionOccurred();
    if (throwable == nullptr) {
        return std::nullopt;
    }
    env->ExceptionClear();
    JavaError error;
    error.text = callForText(env, throwable, "toString");
    readProviderException(env, throwable, error);
    return error;
}

std::optional<Problem> problemOf(const std::optional<JavaError>& error) {
    if (!error) {
        return std::nullopt;
    }
    const auto code = std::string(toString(error->code));
    constexpr const char* loss = "what was written may be lost";
    if (error->location.empty()) {
        return Problem{code, {}, fmt::format("{}: {}: {}", code, loss, error->text), exitCodeOf(error->code)};
    }
    return Problem{code, error->location, loss, exitCodeOf(error->code)};
}

}  // namespace jstore
