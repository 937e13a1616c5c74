#pragma once

#include <jni.h>
#include <jvmti.h>

#include <optional>
#include <ostream>

#include "soak/WeakReferences.h"

namespace storage::javaprovider::test {

/// What a process holds at one moment.
struct Sample {
    long residentKiB = 0;
    long nativeKiB = 0;         ///< in use by malloc(), of the program and of the machine
    long localReferences = 0;   ///< of all attached threads
    long globalReferences = 0;  ///< strong ones
    long weakReferences = 0;    ///< those made since the Sampler was
    long javaThreads = 0;       ///< those that the machine knows: its own and the attached ones
    long tasks = 0;             ///< threads as the kernel counts them
    long openFiles = 0;
};

std::ostream& operator<<(std::ostream& out, const Sample& sample);

/// Takes samples of this process and of the virtual machine in it.
class Sampler {
public:
    /// Needs an attached thread. Throws std::runtime_error when the machine cannot list its references.
    /// One at a time.
    explicit Sampler(JavaVM* vm);
    ~Sampler();

    Sampler(const Sampler&) = delete;
    Sampler& operator=(const Sampler&) = delete;

    /// Collects garbage first. Needs an attached thread; stops the others for a moment.
    [[nodiscard]] Sample take() const;

private:
    JavaVM* m_vm;
    jvmtiEnv* m_jvmti = nullptr;
    std::optional<WeakReferences> m_weakReferences;
};

}  // namespace storage::javaprovider::test
