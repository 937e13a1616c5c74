#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <chrono>
#include <thread>

#include "support/Jstore.h"

namespace jstore::test {

/// Whether a run that was started has come to its end.
[[nodiscard]] inline bool hasEnded(const Jstore& run) {
    siginfo_t info{};
    return ::waitid(P_PID, static_cast<id_t>(run.pid()), &info, WEXITED | WNOHANG | WNOWAIT) == 0 && info.si_pid != 0;
}

/// Returns when the condition holds or the run has ended. The test fails if neither comes within a minute.
template <class Condition>
void await(const Jstore& run, const Condition& condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (!condition() && !hasEnded(run)) {
        ASSERT_LT(std::chrono::steady_clock::now(), deadline) << "the moment did not come";
        std::this_thread::yield();
    }
}

}  // namespace jstore::test
