#pragma once

#include <functional>

namespace test {

/// Runs the scenario in a process of its own, made by fork(): a process can hold one virtual machine in its life, and
/// locale, environment and signal handlers belong to the whole of it. The calling process must have no machine.
///
/// Fails the running test unless the scenario's expectations all hold and its process then ends by itself through
/// exit(); what failed is printed there. A scenario that takes longer than a minute is killed.
void inOwnProcess(const std::function<void()>& scenario);

/// The wait status of the scenario's process, made as above.
[[nodiscard]] int waitStatusOf(const std::function<void()>& scenario);

}  // namespace test
