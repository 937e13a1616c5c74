#pragma once

#include <jni.h>

#include <memory>

#include "jvm_interface/JVM.h"
#include "storage/jvm/JVMWrapper.h"

namespace storage::javaprovider {

/// The running virtual machine of a handle.
///
/// Throws AnonymousInternalException<std::runtime_error> "JVM remvoed" (the spelling is deliberate: hosts match it)
/// when the handle is empty or its machine is gone.
[[nodiscard]] JavaVM* getJavaVM(std::shared_ptr<jvm_interface::JVM> jvm);

/// The calling thread's JNI environment for the life of one operation; every helper takes it as `const JNIEnvPtr&`.
///
/// Hazards:
///  - Made on the stack first thing in an operation, before any argument is converted, and used only on that thread.
///  - Remembers where its owner keeps the handle instead of sharing it: the owner outlives the guard.
///  - With the bundled framework, local references made under it die with it, so what must live longer needs a global
///    reference. A host's own JVMWrapper may leave them to the thread's attachment instead.
class JNIEnvPtr {
public:
    /// Throws "JVM remvoed" like getJavaVM(), having made nothing.
    explicit JNIEnvPtr(const std::shared_ptr<jvm_interface::JVM>& jvm)
        : m_jvm(&jvm), m_wrapper(lookUp(jvm)), m_env(m_wrapper.getEnv()) {}
    ~JNIEnvPtr() = default;

    JNIEnvPtr(const JNIEnvPtr&) = delete;
    JNIEnvPtr& operator=(const JNIEnvPtr&) = delete;

    [[nodiscard]] JNIEnv* get() const noexcept { return m_env; }
    [[nodiscard]] JNIEnv* operator->() const noexcept { return m_env; }
    [[nodiscard]] const std::shared_ptr<jvm_interface::JVM>& jvm() const noexcept { return *m_jvm; }

private:
    /// A function of its own, so that the lookup's copy of the handle is released before the thread is attached.
    static JavaVM* lookUp(const std::shared_ptr<jvm_interface::JVM>& jvm) { return getJavaVM(jvm); }

    const std::shared_ptr<jvm_interface::JVM>* m_jvm;
    storage::jvm::JVMWrapper m_wrapper;
    JNIEnv* m_env;
};

/// Called right after a JNI function that allocates gave null: if a Java exception is pending, clears it and throws
/// AnonymousInternalException<std::bad_alloc>; otherwise returns, and the caller goes on with the null.
void throwIfOutOfMemory(const JNIEnvPtr& env);
void throwIfOutOfMemory(JNIEnv* env);

}  // namespace storage::javaprovider
