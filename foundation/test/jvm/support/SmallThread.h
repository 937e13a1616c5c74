#pragma once

#include <pthread.h>

#include <cstddef>
#include <functional>
#include <stdexcept>

#if defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define TEST_STACKS_ARE_ENLARGED
#endif
#endif

namespace test {

/// ThreadSanitizer gives every thread the stack that it needs itself.
#ifdef TEST_STACKS_ARE_ENLARGED
inline constexpr bool StacksAreEnlarged = true;
#else
inline constexpr bool StacksAreEnlarged = false;
#endif

/// Runs the work on a thread whose stack has that many bytes, and waits for its end.
inline void runWithStack(std::size_t bytes, std::function<void()> work) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, bytes);
    pthread_t thread{};
    const auto run = [](void* raw) -> void* {
        (*static_cast<std::function<void()>*>(raw))();
        return nullptr;
    };
    const int error = pthread_create(&thread, &attributes, run, &work);
    pthread_attr_destroy(&attributes);
    if (error != 0) {
        throw std::runtime_error("no thread with a stack of that size");
    }
    pthread_join(thread, nullptr);
}

}  // namespace test
