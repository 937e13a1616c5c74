#pragma once

#include "floor/FloorJava.h"

namespace bench {

/// The environment of one operation. Looked up per call, it is got the way every operation has to get it: the handle is
/// shared while it is asked, twice, for the machine; the machine is asked for the calling thread's environment; a local
/// frame releases what the operation leaves. Kept, the environment is stored, and there is no frame.
class FloorGuard {
public:
    explicit FloorGuard(const FloorJava& java)
        : m_env(java.lookups() == Lookups::PerCall ? enter(java.jvm()) : java.env()),
          m_framed(java.lookups() == Lookups::PerCall) {}
    ~FloorGuard() {
        if (m_framed) {
            m_env->PopLocalFrame(nullptr);
        }
    }

    FloorGuard(const FloorGuard&) = delete;
    FloorGuard& operator=(const FloorGuard&) = delete;

    [[nodiscard]] JNIEnv* operator->() const noexcept { return m_env; }

    /// The machine that the handle leads to.
    [[nodiscard]] static JavaVM* lookUp(std::shared_ptr<jvm_interface::JVM> jvm) {
        return jvm->getJavaVM() == nullptr ? nullptr : jvm->getJavaVM();
    }

private:
    static JNIEnv* enter(const std::shared_ptr<jvm_interface::JVM>& jvm) {
        constexpr jint Capacity = 16;
        JNIEnv* env = environmentOf(lookUp(jvm));
        env->PushLocalFrame(Capacity);
        return env;
    }

    JNIEnv* m_env;
    bool m_framed;
};

}  // namespace bench
