#include "java/JavaText.h"

namespace jstore {

std::u16string javaText(JNIEnv* env, jstring text) {
    if (text == nullptr) {
        return {};
    }
    std::u16string units(static_cast<std::size_t>(env->GetStringLength(text)), u'\0');
    env->GetStringRegion(text, 0, static_cast<jsize>(units.size()), reinterpret_cast<jchar*>(units.data()));
    return units;
}

std::u16string callForText(JNIEnv* env, jobject object, const char* name) {
    const jmethodID method = env->GetMethodID(env->GetObjectClass(object), name, "()Ljava/lang/String;");
    const jstring text = method == nullptr ? nullptr : static_cast<jstring>(env->CallObjectMethod(object, method));
    if (env->ExceptionCheck() == JNI_TRUE) {
        env->ExceptionClear();
        return {};
    }
    return javaText(env, text);
}

}  // namespace jstore
