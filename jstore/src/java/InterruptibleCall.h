#pragma once

#include <jni.h>

#include <exception>
#include <memory>
#include <thread>

#include "foundation/storage/provider/Exception.h"
#include "process/EventFile.h"
#include "process/Interrupt.h"
#include "storage/jvm/EmbeddedJVM.h"

namespace jstore {

/// A scope of the main thread in which the first signal that stops jstore also interrupts the thread in Java. It ends a
/// call that takes long, such as the move of a folder to another disk.
///
/// A second thread waits for the signal and enters Java only then. At the end of the scope the interruption in Java is
/// cleared. If no second thread can be started, a signal takes effect only after the call.
class InterruptibleCall {
public:
    explicit InterruptibleCall(std::shared_ptr<storage::jvm::EmbeddedJVM> jvm);
    ~InterruptibleCall();

    InterruptibleCall(const InterruptibleCall&) = delete;
    InterruptibleCall& operator=(const InterruptibleCall&) = delete;

private:
    void watch() const;
    void interruptCaller() const;

    std::shared_ptr<storage::jvm::EmbeddedJVM> m_jvm;
    jobject m_caller = nullptr;  ///< the java.lang.Thread that made this; a global reference
    std::unique_ptr<EventFile> m_end;
    std::thread m_watcher;
};

/// Whether a call whose Java thread was interrupted may fail with this code.
[[nodiscard]] bool mayBeInterruption(foundation::storage::provider::ErrorCode code) noexcept;

/// Does something in Java that may take long. Throws Interruption if it fails because of a signal, else what the action
/// throws. An action that completes despite the signal counts as done.
template <class Action>
void interruptibly(const std::shared_ptr<storage::jvm::EmbeddedJVM>& jvm, const Action& action) {
    try {
        const InterruptibleCall scope(jvm);
        action();
        return;
    } catch (const foundation::storage::provider::Exception& error) {
        if (!interrupted() || !mayBeInterruption(error.code())) {
            throw;
        }
    } catch (const std::exception&) {
        if (!interrupted()) {
            throw;
        }
    }
    throw Interruption();
}

}  // namespace jstore
