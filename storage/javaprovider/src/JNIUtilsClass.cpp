#include "JNIUtilsClass.h"

#include <algorithm>

#include "JNIUtilsLog.h"
#include "JNIUtilsThrow.h"
#include "TraceSites.h"

namespace storage::javaprovider {

namespace {

/// The two methods that a walk along the loaders needs.
struct ClassLoaderMethods {
    jmethodID loadClass;
    jmethodID getParent;

    explicit ClassLoaderMethods(const JNIEnvPtr& env)
        : loadClass(getMethodID(env, env->FindClass("java/lang/ClassLoader"), "loadClass",
                                "(Ljava/lang/String;)Ljava/lang/Class;")),
          getParent(
              getMethodID(env, env->FindClass("java/lang/ClassLoader"), "getParent", "()Ljava/lang/ClassLoader;")) {}
};

/// Asks `loader` and then its parents; null when none of them knows the class.
jclass loadThroughLoaders(const JNIEnvPtr& env, jobject loader, const std::string& clsName) {
    const ClassLoaderMethods methods(env);
    jstring name = env->NewStringUTF(clsName.c_str());
    while (loader != nullptr) {
        FOUNDATION_LOG(logger(), Severity::Progress)
            << "Asking ClassLoader (" << static_cast<const void*>(loader) << ") to loadClass ("
            << static_cast<const void*>(name) << ") " << clsName;
        auto* result = static_cast<jclass>(env->CallObjectMethod(loader, methods.loadClass, name));
        if (result != nullptr) {
            FOUNDATION_LOG(logger(), Severity::Progress) << "Loaded " << clsName << " from ClassLoader";
            return result;
        }
        FOUNDATION_LOG(logger(), Severity::Progress) << "loadClass returned null. Getting parent class loader";
        loader = env->CallObjectMethod(loader, methods.getParent);
    }
    return nullptr;
}

jclass loadThroughSystem(const JNIEnvPtr& env, std::string clsName) {
    std::replace(clsName.begin(), clsName.end(), '.', '/');
    jclass result = env->FindClass(clsName.c_str());
    if (result != nullptr) {
        FOUNDATION_LOG(logger(), Severity::Progress) << "Loaded " << clsName << " from system class loader";
    }
    return result;
}

}  // namespace

jmethodID getMethodID(const JNIEnvPtr& env, jclass cls, const std::string& methodName, const std::string& signature) {
    const TraceScope trace(JAVAPROVIDER_TRACE_SITE(JNIUtilsSource));
    FOUNDATION_LOG(logger(), Severity::Arguments) << " methodName=" << methodName << " signature=" << signature;
    // JNI leaves a look-up on a null class undefined. It has no methods; the Java error that says why is still
    // pending.
    jmethodID method = cls != nullptr ? env->GetMethodID(cls, methodName.c_str(), signature.c_str()) : nullptr;
    if (method != nullptr) {
        return method;
    }
    FOUNDATION_LOG(logger(), Severity::Failure) << "Failed to find " << methodName << " with signature " << signature;
    throwMethodNotFound(env, methodName, signature);
    return nullptr;
}

void throwMethodLacking(const std::string& name) { throwInternalError("Method " + name + " not found."); }

jobject getClassLoader(const JNIEnvPtr& env, jclass cls) {
    jclass classClass = env->FindClass("java/lang/Class");
    jmethodID method = getMethodID(env, classClass, "getClassLoader", "()Ljava/lang/ClassLoader;");
    return env->CallObjectMethod(cls, method);
}

jclass loadClass(const JNIEnvPtr& env, jobject classLoader, const std::string& clsName) {
    const TraceScope trace(TraceSite{LoadClassSignature, JNIUtilsSource, __LINE__});
    FOUNDATION_LOG(logger(), Severity::Arguments) << " clsName=" << clsName;
    jclass result = loadThroughLoaders(env, classLoader, clsName);
    return result != nullptr ? result : loadThroughSystem(env, clsName);
}

jobject newInstance(const JNIEnvPtr& env, const std::string& className, const InstanceErrors& errors) {
    jclass cls = env->FindClass(className.c_str());
    if (cls == nullptr) {
        throwPendingJavaException(env, errors.classNotFound);
        return nullptr;
    }
    jmethodID constructor = getMethodID(env, cls, "<init>", "()V");
    if (constructor == nullptr) {
        return nullptr;
    }
    jobject instance = env->NewObject(cls, constructor);
    if (instance == nullptr) {
        throwPendingJavaException(env, errors.notConstructed);
    }
    return instance;
}

}  // namespace storage::javaprovider
