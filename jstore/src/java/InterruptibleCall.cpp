#include "java/InterruptibleCall.h"

#include <poll.h>

#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

#include "process/NoSignals.h"
#include "storage/jvm/JVMWrapper.h"

namespace jstore {

using foundation::storage::provider::ErrorCode;
using storage::jvm::EmbeddedJVM;
using storage::jvm::JVMWrapper;

namespace {

/// A global reference to the java.lang.Thread of the calling thread; null if Java gives none.
jobject currentThread(JNIEnv* env) {
    const jclass type = env->FindClass("java/lang/Thread");
    const jmethodID method =
        type == nullptr ? nullptr : env->GetStaticMethodID(type, "currentThread", "()Ljava/lang/Thread;");
    const jobject thread = method == nullptr ? nullptr : env->CallStaticObjectMethod(type, method);
    if (env->ExceptionCheck() == JNI_TRUE || thread == nullptr) {
        env->ExceptionClear();
        return nullptr;
    }
    return env->NewGlobalRef(thread);
}

/// Clears the interruption of the current thread in Java.
void clearInterruption(JNIEnv* env) {
    const jclass type = env->FindClass("java/lang/Thread");
    const jmethodID method = type == nullptr ? nullptr : env->GetStaticMethodID(type, "interrupted", "()Z");
    if (method != nullptr) {
        static_cast<void>(env->CallStaticBooleanMethod(type, method));
    }
    env->ExceptionClear();
}

}  // namespace

InterruptibleCall::InterruptibleCall(std::shared_ptr<EmbeddedJVM> jvm) : m_jvm(std::move(jvm)) {
    if (interruptDescriptor() < 0) {
        return;
    }
    JVMWrapper attached(m_jvm->getJavaVM());
    m_caller = currentThread(attached.getEnv());
    if (m_caller == nullptr) {
        return;
    }
    const NoSignals scope;
    try {
        m_end = std::make_unique<EventFile>();
        m_watcher = std::thread([this] { watch(); });
    } catch (const std::system_error&) {
        // The call is made without the watcher.
    }
}

InterruptibleCall::~InterruptibleCall() {
    if (m_watcher.joinable()) {
        m_end->signal();
        m_watcher.join();
    }
    if (m_caller != nullptr) {
        JVMWrapper attached(m_jvm->getJavaVM());
        if (interrupted()) {
            clearInterruption(attached.getEnv());
        }
        attached.getEnv()->DeleteGlobalRef(m_caller);
    }
}

void InterruptibleCall::watch() const {
    std::array<pollfd, 2> sources{{{interruptDescriptor(), POLLIN, 0}, {m_end->descriptor(), POLLIN, 0}}};
    while (::poll(sources.data(), sources.size(), -1) < 0 && errno == EINTR) {
    }
    if (sources[0].revents != 0) {
        interruptCaller();
    }
}

void InterruptibleCall::interruptCaller() const {
    try {
        JVMWrapper attached(m_jvm->getJavaVM());
        JNIEnv* const env = attached.getEnv();
        const jclass type = env->GetObjectClass(m_caller);
        const jmethodID method = env->GetMethodID(type, "interrupt", "()V");
        if (method != nullptr) {
            env->CallVoidMethod(m_caller, method);
        }
        env->ExceptionClear();
    } catch (const std::exception&) {
        // Java takes no more threads: the call goes on to its end.
    }
}

bool mayBeInterruption(ErrorCode code) noexcept {
    return code == ErrorCode::Unavailable || code == ErrorCode::Cancelled || code == ErrorCode::Unknown;
}

}  // namespace jstore
