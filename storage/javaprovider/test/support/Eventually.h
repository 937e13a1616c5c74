#pragma once

#include <chrono>
#include <thread>

namespace storage::javaprovider::test {

/// Waits until the condition holds; false when it does not within the deadline.
template <class Condition>
[[nodiscard]] bool eventually(Condition condition, std::chrono::seconds deadline = std::chrono::seconds(10)) {
    const auto end = std::chrono::steady_clock::now() + deadline;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::yield();
    }
    return true;
}

}  // namespace storage::javaprovider::test
