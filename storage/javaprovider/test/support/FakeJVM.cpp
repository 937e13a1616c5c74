#include "support/FakeJVM.h"

#include <limits>
#include <utility>

namespace storage::javaprovider::test {

/// The functions of the JavaVM that a FakeJVM gives.
struct FakeJVM::Forwarding {
    static ForwardingVM& of(JavaVM* vm) { return *static_cast<ForwardingVM*>(vm); }

    static jint destroy(JavaVM* vm) { return of(vm).real->DestroyJavaVM(); }

    static jint getEnv(JavaVM* vm, void** env, jint version) { return of(vm).real->GetEnv(env, version); }

    static jint attach(JavaVM* vm, void** env, void* arguments) {
        return of(vm).refuse ? JNI_ERR : counted(of(vm), of(vm).real->AttachCurrentThread(env, arguments));
    }

    static jint attachAsDaemon(JavaVM* vm, void** env, void* arguments) {
        return of(vm).refuse ? JNI_ERR : counted(of(vm), of(vm).real->AttachCurrentThreadAsDaemon(env, arguments));
    }

    static jint counted(ForwardingVM& vm, jint status) {
        if (status == JNI_OK) {
            ++vm.attachments;
        }
        return status;
    }

    static jint detach(JavaVM* vm) {
        ++of(vm).detachments;
        return of(vm).real->DetachCurrentThread();
    }

    static constexpr JNIInvokeInterface_ functions{nullptr, nullptr, nullptr, destroy,
                                                   attach,  detach,  getEnv,  attachAsDaemon};
};

namespace {
constexpr std::size_t Never = std::numeric_limits<std::size_t>::max();
}  // namespace

FakeJVM::FakeJVM(std::shared_ptr<jvm_interface::JVM> real) : m_real(std::move(real)), m_lookupsUntilGone(Never) {
    m_vm.functions = &Forwarding::functions;
    m_vm.real = m_real->getJavaVM();
}

JavaVM* FakeJVM::getJavaVM() {
    ++m_lookups;
    std::size_t left = m_lookupsUntilGone;
    while (left != Never && left != 0 && !m_lookupsUntilGone.compare_exchange_weak(left, left - 1)) {
    }
    return left == 0 ? nullptr : &m_vm;
}

void FakeJVM::removeAfter(std::size_t lookups) { m_lookupsUntilGone = lookups; }

void FakeJVM::restore() { m_lookupsUntilGone = Never; }

}  // namespace storage::javaprovider::test
