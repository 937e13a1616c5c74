#include "jvm/ThreadEnvironment.h"

#include "jvm/Failure.h"

namespace storage::jvm::detail {

namespace {

[[noreturn, gnu::cold]] void failEnvironment(jint result) {
    fail("The Java virtual machine provides no JNI environment: " + describeJniError(result));
}

}  // namespace

JNIEnv* attachedEnv(JavaVM* vm) noexcept {
    void* env = nullptr;
    return vm->GetEnv(&env, JniVersion) == JNI_OK ? static_cast<JNIEnv*>(env) : nullptr;
}

JNIEnv* findEnv(JavaVM* vm) {
    void* env = nullptr;
    const jint result = vm->GetEnv(&env, JniVersion);
    if (result == JNI_OK) {
        return static_cast<JNIEnv*>(env);
    }
    if (result == JNI_EDETACHED) {
        return nullptr;
    }
    failEnvironment(result);
}

jint detachThread(JavaVM* vm, JNIEnv* env) noexcept {
    if (env->ExceptionCheck() == JNI_TRUE) {
        env->ExceptionClear();
    }
    return vm->DetachCurrentThread();
}

}  // namespace storage::jvm::detail
