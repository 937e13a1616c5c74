#pragma once

#include <atomic>

namespace storage::jvm::detail {

/// Set in a child made by fork() from a process that had a virtual machine or was starting one. No machine runs there.
extern std::atomic<bool> forkedFromMachine;

/// Whether this process is such a child.
[[nodiscard]] inline bool inForkedChild() noexcept {
    // Relaxed: the flag is set in the child's only thread, before anything else runs there.
    return forkedFromMachine.load(std::memory_order_relaxed);
}

/// Marks the children that are forked during the life of the object, and after keep() all later ones.
///
/// The start of a machine makes one before it takes any lock, and destroys it after it has released all: a child that
/// is not marked may take them. Safe to use from any thread.
class ForkWatch final {
public:
    /// Throws AnonymousInternalException<std::bad_alloc> when forks cannot be watched.
    ForkWatch();
    ~ForkWatch();

    ForkWatch(const ForkWatch&) = delete;
    ForkWatch& operator=(const ForkWatch&) = delete;

    /// A machine runs now: marks every later child.
    static void keep() noexcept;
};

}  // namespace storage::jvm::detail
