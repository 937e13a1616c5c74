#include "JNIUtilsEnv.h"

#include <new>
#include <stdexcept>

#include "foundation/core/except/AnonymousInternalException.h"

namespace storage::javaprovider {

using foundation::core::except::detail::AnonymousInternalException;

// By value: the handle lives on while it is asked. NOLINTNEXTLINE(performance-unnecessary-value-param)
JavaVM* getJavaVM(std::shared_ptr<jvm_interface::JVM> jvm) {
    if (!jvm || jvm->getJavaVM() == nullptr) {
        throw AnonymousInternalException<std::runtime_error>(std::runtime_error("JVM remvoed"));
    }
    return jvm->getJavaVM();
}

void throwIfOutOfMemory(const JNIEnvPtr& env) { throwIfOutOfMemory(env.get()); }

void throwIfOutOfMemory(JNIEnv* env) {
    if (env->ExceptionCheck() == JNI_FALSE) {
        return;
    }
    env->ExceptionClear();
    throw AnonymousInternalException<std::bad_alloc>(std::bad_alloc());
}

}  // namespace storage::javaprovider
