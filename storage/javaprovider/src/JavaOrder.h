#pragma once

// ThreadSanitizer does not see the instructions of the virtual machine, so it does not know the order that Java's
// monitors and volatiles create between threads. Where the library relies on that order, it declares it with the
// functions below. In all other builds they do nothing.
#if defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define JAVAPROVIDER_THREADS_ARE_WATCHED
#include <sanitizer/tsan_interface.h>
#endif
#endif

namespace storage::javaprovider {

/// The orders that Java keeps in the life of an event callback.
enum class JavaOrder {
    HandOverToDelivery,  ///< the callback is complete before Java has its address
    DeliveryToDisposal,  ///< each delivery ends before "dispose" returns
};

/// Everything before beforeJava() happens-before everything after a later afterJava() with the same order and address.
/// If Java breaks the order, ThreadSanitizer reports the race.
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
