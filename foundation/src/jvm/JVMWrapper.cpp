#include "storage/jvm/JVMWrapper.h"

#include "jvm/Failure.h"
#include "jvm/ForkWatch.h"
#include "jvm/ThreadEnvironment.h"

namespace storage::jvm {

namespace {

/// Enough references for a usual operation. The machine makes room for more as needed.
constexpr jint FrameCapacity = 16;

[[gnu::cold]] JNIEnv* attach(JavaVM* vm) {
    void* env = nullptr;
    const jint result = vm->AttachCurrentThread(&env, nullptr);
    if (result != JNI_OK) {
        detail::fail("The Java virtual machine refuses the thread: " + detail::describeJniError(result));
    }
    return static_cast<JNIEnv*>(env);
}

}  // namespace

JVMWrapper::JVMWrapper(JavaVM* vm) : m_vm(vm) {
    if (vm == nullptr) {
        detail::fail("JVM remvoed");
    }
    m_env = detail::findEnv(vm);
    if (m_env == nullptr) {
        m_env = attach(vm);
        m_attached = true;
    }
    if (m_env->PushLocalFrame(FrameCapacity) == JNI_OK) {
        return;
    }
    // The machine has thrown an OutOfMemoryError. It must not stay pending beside the C++ exception.
    m_env->ExceptionClear();
    if (m_attached) {
        detail::detachThread(vm, m_env);
    }
    detail::failOutOfMemory();
}

JVMWrapper::~JVMWrapper() {
    // After a shutdown, after someone else detached the thread, or in a forked child the environment is dead memory:
    // the frame and the attachment are gone with it.
    if (detail::inForkedChild() || detail::attachedEnv(m_vm) != m_env) {
        return;
    }
    m_env->PopLocalFrame(nullptr);
    if (m_attached) {
        // Refused when Java methods are on the stack, which happens only if destructors run out of order. The thread
        // then stays attached.
        detail::detachThread(m_vm, m_env);
    }
}

JNIEnv* JVMWrapper::getEnv() { return m_env; }

}  // namespace storage::jvm
