#include "java/JavaProperty.h"

#include "fl/i18n/text.h"
#include "java/JavaText.h"

namespace jstore {

namespace {

jstring propertyText(JNIEnv* env, const char* name) {
    const jstring key = env->NewStringUTF(name);
    const jclass system = key == nullptr ? nullptr : env->FindClass("java/lang/System");
    if (system == nullptr) {
        return nullptr;
    }
    const jmethodID get = env->GetStaticMethodID(system, "getProperty", "(Ljava/lang/String;)Ljava/lang/String;");
    return get == nullptr ? nullptr : static_cast<jstring>(env->CallStaticObjectMethod(system, get, key));
}

}  // namespace

std::optional<std::string> javaProperty(JNIEnv* env, const char* name) {
    const jstring text = propertyText(env, name);
    if (env->ExceptionCheck() == JNI_TRUE) {
        env->ExceptionClear();
        return std::nullopt;
    }
    if (text == nullptr) {
        return std::nullopt;
    }
    return fl::i18n::to_string(javaText(env, text));
}

}  // namespace jstore
