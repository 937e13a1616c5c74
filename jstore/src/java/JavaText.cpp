#include "java/JavaText.h"

#include <array>

namespace jstore {

using foundation::storage::provider::ErrorCode;

std::u16string javaText(JNIEnv* env, jstring text) {
    if (text == nullptr) {
        return {};
    }
    std::u16string units(static_cast<std::size_t>(env->GetStringLength(text)), u'\0');
    env->GetStringRegion(text, 0, static_cast<jsize>(units.size()), reinterpret_cast<jchar*>(units.data()));
    return units;
}

std::u16string callForText(JNIEnv* env, jobject object, const char* name) {
    auto* const method = env->GetMethodID(env->GetObjectClass(object), name, "()Ljava/lang/String;");
    auto* const text = method == nullptr ? nullptr : static_cast<jstring>(env->CallObjectMethod(object, method));
    if (env->ExceptionCheck() == JNI_TRUE) {
        env->ExceptionClear();
        return {};
    }
    return javaText(env, text);
}

ErrorCode errorCodeOf(jint number) {
    constexpr std::array codes = {ErrorCode::Unknown,        ErrorCode::NotFound,     ErrorCode::AlreadyExists,
                                  ErrorCode::AccessDenied,   ErrorCode::NotAFile,     ErrorCode::NotAFolder,
                                  ErrorCode::FolderNotEmpty, ErrorCode::NotSupported, ErrorCode::InvalidLocation,
                                  ErrorCode::StorageFull,    ErrorCode::InUse,        ErrorCode::Unavailable};
    const auto index = static_cast<std::size_t>(number);
    return number >= 0 && index < codes.size() ? codes[index] : ErrorCode::Unknown;
}

}  // namespace jstore
