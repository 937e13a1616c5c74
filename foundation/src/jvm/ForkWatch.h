#pragma once

#include <atomic>

namespace storage::jvm::detail {

/// Set in a child made by fork() from a process that had a virtual machine, or was about to have one: none runs there.
extern std::atomic<bool> forkedFromMachine;

/// Whether this process is such a child.
[[nodiscard]] inline bool inForkedChild() noexcept {
    // Relaxed: the flag is set in the child's only thread, before anything else runs there.
    return forkedFromMachine.load(std::memory_order_relaxed);
}

/// Marks the children that are forked during the life of the object, and all later ones when a machine came of it.
///
/// To be made before the start of a machine takes any lock, and to outlive them all: a child that is not marked may
/// take them. Safe to use from any thread.
class ForkWatch final {
public:
    /// Throws AnonymousInternalException<std::bad_alloc> when forks cannot be watched.
    ForkWatch();
    ~ForkWatch();

    ForkWatch(const ForkWatch&) = delete;
    ForkWatch& operator=(const ForkWatch&) = delete;

    /// There is a machine now: every later child is marked.
    static void keep() noexcept;
};

}  // namespace storage::jvm::detail
