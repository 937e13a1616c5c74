#pragma once

#include <jni.h>
#include <jvmti.h>

namespace storage::javaprovider::test {

/// Counts the weak global references of a virtual machine from the moment it is made. The machine does not report them,
/// so this replaces the two functions that make and delete them. Safe from any thread.
///
/// Hazard: one at a time, and none together with a JniRecorder.
class WeakReferences {
public:
    /// The environment must outlive this. Throws std::runtime_error when the machine does not let itself be counted.
    explicit WeakReferences(jvmtiEnv* jvmti);
    ~WeakReferences();

    WeakReferences(const WeakReferences&) = delete;
    WeakReferences& operator=(const WeakReferences&) = delete;

    /// How many are alive of those made since.
    [[nodiscard]] static long live() noexcept;
    /// How many were made since.
    [[nodiscard]] static long made() noexcept;

private:
    jvmtiEnv* m_jvmti;
};

}  // namespace storage::javaprovider::test
