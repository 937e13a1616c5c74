#pragma once

#include <pthread.h>

#include <memory>
#include <thread>

#include "storage/jvm/EmbeddedJVM.h"

namespace storage::javaprovider::test {

/// A thread that is in the middle of an operation, waiting in the back end's Java code. Safe from one thread.
class KeptInJava {
public:
    /// Returns when the thread is there; throws std::runtime_error when it does not come.
    explicit KeptInJava(std::shared_ptr<storage::jvm::EmbeddedJVM> jvm);

    [[nodiscard]] pthread_t thread() { return m_thread.native_handle(); }

    /// Lets the operation end and waits for that; fails the test where the operation does. Without this call the
    /// object must not be destroyed.
    void letGo();

private:
    std::shared_ptr<storage::jvm::EmbeddedJVM> m_jvm;
    std::thread m_thread;
};

}  // namespace storage::javaprovider::test
