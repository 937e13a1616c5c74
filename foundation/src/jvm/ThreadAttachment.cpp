#include "storage/jvm/ThreadAttachment.h"

#include <utility>

#include "jvm/Failure.h"
#include "jvm/ThreadEnvironment.h"

namespace storage::jvm {

ThreadAttachment::ThreadAttachment(std::shared_ptr<jvm_interface::JVM> jvm) : m_jvm(std::move(jvm)) {
    JavaVM* const vm = m_jvm ? m_jvm->getJavaVM() : nullptr;
    if (vm == nullptr) {
        detail::fail("JVM remvoed");
    }
    if (detail::findEnv(vm) != nullptr) {
        return;
    }
    void* env = nullptr;
    const jint result = vm->AttachCurrentThreadAsDaemon(&env, nullptr);
    if (result != JNI_OK) {
        detail::fail("The Java virtual machine refuses the thread: " + detail::describeJniError(result));
    }
    m_attached = true;
}

ThreadAttachment::~ThreadAttachment() {
    JavaVM* const vm = m_attached ? m_jvm->getJavaVM() : nullptr;
    if (vm == nullptr) {
        return;
    }
    if (JNIEnv* const env = detail::attachedEnv(vm); env != nullptr) {
        // Refused only while Java methods are on the stack, and no scope ends there.
        detail::detachThread(vm, env);
    }
}

}  // namespace storage::jvm
