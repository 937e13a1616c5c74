#pragma once

// ThreadSanitizer watches no instruction of the virtual machine, so what Java's monitors and volatiles order between
// threads looks unordered to it. Where the library relies on such an order it says so here. Every other build has
// nothing of this.
#if defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define JAVAPROVIDER_THREADS_ARE_WATCHED
#include <sanitizer/tsan_interface.h>
#endif
#endif

namespace storage::javaprovider {

/// What Java orders in the life of a callback for events.
enum class JavaOrder {
    HandOverToDelivery,  ///< it is whole before Java has its address
    DeliveryToDisposal,  ///< each delivery ends before "dispose" returns
};

/// What this thread did up to here was done before whatever a thread does after an afterJava() of the same order and
/// address that it reaches later. If Java does not keep the order, the other thread is there too early, and that is
/// reported.
inline void beforeJava([[maybe_unused]] JavaOrder order, [[maybe_unused]] const void* callback) noexcept {
#ifdef JAVAPROVIDER_THREADS_ARE_WATCHED
    __tsan_release(static_cast<char*>(const_cast<void*>(callback)) + static_cast<int>(order));
#endif
}

/// See beforeJava().
inline void afterJava([[maybe_unused]] JavaOrder order, [[maybe_unused]] const void* callback) noexcept {
#ifdef JAVAPROVIDER_THREADS_ARE_WATCHED
    __tsan_acquire(static_cast<char*>(const_cast<void*>(callback)) + static_cast<int>(order));
#endif
}

}  // namespace storage::javaprovider
