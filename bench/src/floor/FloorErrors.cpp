#include "floor/FloorErrors.h"

#include <utility>

#include "floor/FloorProvider.h"

namespace bench {

namespace {

constexpr const char* ProviderExceptionName = "com/corvallen/storage/provider/ProviderException";

jmethodID providerExceptionMethod(JNIEnv* env, const char* name, const char* signature) {
    jclass cls = env->FindClass(ProviderExceptionName);
    jmethodID method = env->GetMethodID(cls, name, signature);
    env->DeleteLocalRef(cls);
    return method;
}

}  // namespace

FloorErrors::FloorErrors(const FloorJava& java)
    : m_java(java),
      m_getLocationString(providerExceptionMethod(java.env(), "getLocationString", "()Ljava/lang/String;")),
      m_getErrorCodeNumber(providerExceptionMethod(java.env(), "getErrorCodeNumber", "()I")) {}

void FloorErrors::call(FloorJava::Method method, std::u16string_view location) const {
    const FloorGuard env(m_java);
    jobject uri = m_java.newUri(location);
    env->CallVoidMethod(m_java.provider(), m_java.method(method), uri);
    if (env->ExceptionCheck() == JNI_FALSE) {
        env->DeleteLocalRef(uri);
        return;
    }
    FloorError error = take();
    env->DeleteLocalRef(uri);
    throw error;
}

FloorError FloorErrors::take() const {
    JNIEnv* env = m_java.env();
    jthrowable error = env->ExceptionOccurred();
    FloorError result = isProviderException(error) ? readProviderException(error) : readOtherException(error);
    env->ExceptionClear();
    env->DeleteLocalRef(error);
    return result;
}

bool FloorErrors::isProviderException(jthrowable error) const {
    JNIEnv* env = m_java.env();
    jclass errorClass = env->GetObjectClass(error);
    jobject loader = loaderOf(errorClass);
    jclass wanted = loadProviderException(loader);
    if (loader != nullptr) {
        env->DeleteLocalRef(loader);
    }
    env->DeleteLocalRef(errorClass);
    const bool result = wanted != nullptr && env->IsInstanceOf(error, wanted) == JNI_TRUE;
    if (wanted != nullptr) {
        env->DeleteLocalRef(wanted);
    }
    return result;
}

jobject FloorErrors::loaderOf(jclass cls) const {
    JNIEnv* env = m_java.env();
    jclass classClass = env->FindClass("java/lang/Class");
    return env->CallObjectMethod(cls, m_java.ask(classClass, "getClassLoader", "()Ljava/lang/ClassLoader;"));
}

jclass FloorErrors::loadProviderException(jobject loader) const {
    JNIEnv* env = m_java.env();
    jmethodID loadClass =
        m_java.ask(env->FindClass("java/lang/ClassLoader"), "loadClass", "(Ljava/lang/String;)Ljava/lang/Class;");
    jmethodID getParent = m_java.ask(env->FindClass("java/lang/ClassLoader"), "getParent", "()Ljava/lang/ClassLoader;");
    jstring name = env->NewStringUTF(ProviderExceptionName);
    while (loader != nullptr) {
        if (jobject found = env->CallObjectMethod(loader, loadClass, name)) {
            return static_cast<jclass>(found);
        }
        loader = env->CallObjectMethod(loader, getParent);
    }
    return env->FindClass(ProviderExceptionName);
}

FloorError FloorErrors::readProviderException(jthrowable error) const {
    JNIEnv* env = m_java.env();
    auto* text = static_cast<jstring>(env->CallObjectMethod(error, m_getLocationString));
    std::u16string location = m_java.text(text);
    const jint number = env->CallIntMethod(error, m_getErrorCodeNumber);
    env->DeleteLocalRef(text);
    return {number, std::move(location), "the back end refuses"};
}

FloorError FloorErrors::readOtherException(jthrowable error) const {
    JNIEnv* env = m_java.env();
    jclass cls = env->GetObjectClass(error);
    jclass classClass = env->GetObjectClass(cls);
    jmethodID getName = m_java.ask(classClass, "getName", "()Ljava/lang/String;");
    auto* name = static_cast<jstring>(env->CallObjectMethod(cls, getName));
    std::string text = narrow(m_java.text(name));
    env->DeleteLocalRef(name);
    jmethodID getMessage = m_java.ask(cls, "getMessage", "()Ljava/lang/String;");
    auto* message = static_cast<jstring>(env->CallObjectMethod(error, getMessage));
    text += ": ";
    text += narrow(m_java.text(message));
    env->DeleteLocalRef(message);
    env->DeleteLocalRef(classClass);
    env->DeleteLocalRef(cls);
    return {-1, {}, text};
}

}  // namespace bench
