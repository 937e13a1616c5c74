#pragma once

#include <jni.h>

#include <atomic>
#include <cstddef>
#include <memory>

#include "jvm_interface/JVM.h"

namespace storage::javaprovider::test {

/// A handle on the running virtual machine that can lose it, counts who asks, and counts attachments.
///
/// What it gives is a JavaVM of its own that forwards to the machine's. Safe from any thread. A JavaVM it gave may be
/// used for as long as the handle lives.
class FakeJVM final : public jvm_interface::JVM {
public:
    explicit FakeJVM(std::shared_ptr<jvm_interface::JVM> real);

    /// The forwarding JavaVM, or null after remove().
    [[nodiscard]] JavaVM* getJavaVM() override;

    /// From now on (or after so many more questions) the machine is gone.
    void remove() { removeAfter(0); }
    void removeAfter(std::size_t lookups);
    /// The machine is back.
    void restore();
    /// While set, AttachCurrentThread and AttachCurrentThreadAsDaemon give JNI_ERR.
    void refuseAttachments(bool refuse) { m_vm.refuse = refuse; }

    /// How often getJavaVM() was called.
    [[nodiscard]] std::size_t lookups() const noexcept { return m_lookups; }
    /// How often a thread was attached, or detached, through a JavaVM of this handle.
    [[nodiscard]] std::size_t attachments() const noexcept { return m_vm.attachments; }
    [[nodiscard]] std::size_t detachments() const noexcept { return m_vm.detachments; }

private:
    struct ForwardingVM : JavaVM_ {
        JavaVM* real = nullptr;
        std::atomic<std::size_t> attachments = 0;
        std::atomic<std::size_t> detachments = 0;
        std::atomic<bool> refuse = false;
    };
    struct Forwarding;

    ForwardingVM m_vm;
    std::shared_ptr<jvm_interface::JVM> m_real;
    std::atomic<std::size_t> m_lookups = 0;
    std::atomic<std::size_t> m_lookupsUntilGone;
};

}  // namespace storage::javaprovider::test
