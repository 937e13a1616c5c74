#pragma once

#include <atomic>

namespace storage::jvm::detail {

/// Set in a child made by fork() after watchForks(): no virtual machine runs there, whatever the parent has.
extern std::atomic<bool> forkedFromMachine;

/// Whether this process is the fork()ed child of one that had a virtual machine.
[[nodiscard]] inline bool inForkedChild() noexcept {
    // Relaxed: the flag is set in the child's only thread, before anything else runs there.
    return forkedFromMachine.load(std::memory_order_relaxed);
}

/// Has every later fork() marked in the child. Call it before a machine exists; safe from any thread, any number of
/// times. Throws AnonymousInternalException<std::bad_alloc> when the handler cannot be registered.
void watchForks();

}  // namespace storage::jvm::detail
