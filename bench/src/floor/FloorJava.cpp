#include "floor/FloorJava.h"

#include <stdexcept>

namespace bench {

FloorJava::FloorJava(JNIEnv* env)
    : m_env(env),
      m_uriClass(hold("com/corvallen/storage/provider/StorageURI")),
      m_providerClass(hold("com/corvallen/bench/IdleProvider")),
      m_provider(nullptr) {
    jobject made = env->NewObject(m_providerClass, method("<init>", "()V"));
    m_provider = env->NewGlobalRef(made);
    env->DeleteLocalRef(made);
}

jclass FloorJava::hold(const char* name) const {
    jclass found = m_env->FindClass(name);
    check();
    auto* held = static_cast<jclass>(m_env->NewGlobalRef(found));
    m_env->DeleteLocalRef(found);
    return held;
}

jmethodID FloorJava::method(const char* name, const char* signature) const {
    jmethodID found = m_env->GetMethodID(m_providerClass, name, signature);
    check();
    return found;
}

jobject FloorJava::newUri(std::u16string_view text) const {
    jmethodID constructor = m_env->GetMethodID(m_uriClass, "<init>", "(Ljava/lang/String;)V");
    jstring string = m_env->NewString(reinterpret_cast<const jchar*>(text.data()), static_cast<jsize>(text.size()));
    jobject uri = m_env->NewObject(m_uriClass, constructor, string);
    m_env->DeleteLocalRef(string);
    return uri;
}

void FloorJava::check() const {
    if (m_env->ExceptionCheck() == JNI_FALSE) {
        return;
    }
    m_env->ExceptionClear();
    throw std::runtime_error("the floor met a Java exception");
}

std::u16string FloorJava::textOf(JNIEnv* env, jstring value) {
    const jchar* chars = env->GetStringChars(value, nullptr);
    std::u16string text(reinterpret_cast<const char16_t*>(chars));
    env->ReleaseStringChars(value, chars);
    return text;
}

jlong FloorJava::readLong(jobject object, const char* getter) const {
    jclass cls = m_env->GetObjectClass(object);
    const jlong value = m_env->CallLongMethod(object, m_env->GetMethodID(cls, getter, "()J"));
    m_env->DeleteLocalRef(cls);
    return value;
}

bool FloorJava::readBoolean(jobject object, const char* getter) const {
    jclass cls = m_env->GetObjectClass(object);
    const jboolean value = m_env->CallBooleanMethod(object, m_env->GetMethodID(cls, getter, "()Z"));
    m_env->DeleteLocalRef(cls);
    return value != JNI_FALSE;
}

}  // namespace bench
