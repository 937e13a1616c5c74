#include "java/JavaProperty.h"

#include <string_view>

#include "fl/i18n/text.h"

namespace jstore {

namespace {

jstring propertyText(JNIEnv* env, const char* name) {
    auto* const key = env->NewStringUTF(name);
    auto* const system = key == nullptr ? nullptr : env->FindClass("java/lang/System");
    if (system == nullptr) {
        return nullptr;
    }
    auto* const get = env->GetStaticMethodID(system, "getProperty", "(Ljava/lang/String;)Ljava/lang/String;");
    return get == nullptr ? nullptr : static_cast<jstring>(env->CallStaticObjectMethod(system, get, key));
}

}  // namespace

std::optional<std::string> javaProperty(JNIEnv* env, const char* name) {
    auto* const text = propertyText(env, name);
    if (env->ExceptionCheck() == JNI_TRUE) {
        env->ExceptionClear();
        return std::nullopt;
    }
    if (text == nullptr) {
        return std::nullopt;
    }
    std::u16string units(static_cast<std::size_t>(env->GetStringLength(text)), u'\0');
    env->GetStringRegion(text, 0, static_cast<jsize>(units.size()), reinterpret_cast<jchar*>(units.data()));
    return fl::i18n::to_string(units);
}

}  // namespace jstore
