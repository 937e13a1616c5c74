#include "JNIUtilsInstance.h"

#include "JNIUtilsClass.h"
#include "JNIUtilsException.h"

namespace storage::javaprovider {

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
