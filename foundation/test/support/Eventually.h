#pragma once

#include <chrono>
#include <thread>

namespace foundation::test {

/// Waits until the condition holds; false when it does not within half a minute.
template <class Condition>
[[nodiscard]] bool eventually(Condition condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::yield();
    }
    return true;
}

}  // namespace foundation::test
