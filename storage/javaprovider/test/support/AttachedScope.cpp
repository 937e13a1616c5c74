#include "support/AttachedScope.h"

#include <stdexcept>

namespace storage::javaprovider::test {

AttachedScope::AttachedScope(JavaVM* vm) : m_vm(vm) {
    if (vm->GetEnv(reinterpret_cast<void**>(&m_env), JNI_VERSION_1_8) == JNI_OK) {
        return;
    }
    if (vm->AttachCurrentThread(reinterpret_cast<void**>(&m_env), nullptr) != JNI_OK) {
        throw std::runtime_error("the virtual machine refuses this thread");
    }
    m_attached = true;
}

AttachedScope::~AttachedScope() {
    if (m_attached) {
        m_vm->DetachCurrentThread();
    }
}

}  // namespace storage::javaprovider::test
