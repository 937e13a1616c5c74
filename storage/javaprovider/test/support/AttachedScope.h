#pragma once

#include <jni.h>

namespace storage::javaprovider::test {

/// Keeps the calling thread attached for the life of a scope; a thread that is attached already stays as it is.
class AttachedScope {
public:
    /// Throws std::runtime_error when the machine refuses the thread.
    explicit AttachedScope(JavaVM* vm);
    ~AttachedScope();

    AttachedScope(const AttachedScope&) = delete;
    AttachedScope& operator=(const AttachedScope&) = delete;

    [[nodiscard]] JNIEnv* env() const noexcept { return m_env; }

private:
    JavaVM* m_vm;
    JNIEnv* m_env = nullptr;
    bool m_attached = false;
};

}  // namespace storage::javaprovider::test
