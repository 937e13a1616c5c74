#include "storage/jvm/JVMWrapper.h"

#include "jvm/Failure.h"
#include "jvm/ForkWatch.h"
#include "jvm/ThreadEnvironment.h"

namespace storage::jvm {

namespace {

/// What a usual operation needs; the machine gives more when more is asked for.
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

JVMWrapper::JVMWrapper(JavaVM* vm) : m_vm(vm), m_env(nullptr), m_attached(false) {
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
    // The machine has thrown an OutOfMemoryError, which must not outlive the C++ exception that stands for it.
    m_env->ExceptionClear();
    if (m_attached) {
        detail::detachThread(vm, m_env);
    }
    detail::failOutOfMemory();
}

JVMWrapper::~JVMWrapper() {
    // After a shutdown, after a detachment behind this object's back, or in a forked child the environment is dead
    // memory: the frame and the attachment went with it.
    if (detail::inForkedChild() || detail::attachedEnv(m_vm) != m_env) {
        return;
    }
    m_env->PopLocalFrame(nullptr);
    if (m_attached) {
        // A refusal means that Java methods are on the stack, which only a destructor run out of order can meet; the
        // thread then stays attached.
        detail::detachThread(m_vm, m_env);
    }
}

JNIEnv* JVMWrapper::getEnv() { return m_env; }

}  // namespace storage::jvm
