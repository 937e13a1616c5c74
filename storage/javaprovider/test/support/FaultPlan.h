#pragma once

#include <jni.h>

#include <cstddef>
#include <map>
#include <optional>
#include <vector>

#include "support/JniCall.h"
#include "support/JniFault.h"

namespace storage::javaprovider::test {

/// How a call is to fail: with an exception of this class (a global reference) pending, or with nothing pending.
struct PlannedFailure {
    jclass exceptionClass = nullptr;
};

/// Decides which calls fail. Not safe to use from several threads at once.
class FaultPlan {
public:
    /// `failure` is what `fault` asks for; `thread` is the thread whose calls count.
    void add(JniFault fault, PlannedFailure failure, ThreadNumber thread);

    /// Counts the call; how it is to fail, if it is.
    [[nodiscard]] std::optional<PlannedFailure> count(const JniCall& call);

    [[nodiscard]] std::size_t left() const noexcept { return m_armed.size(); }
    /// How many calls of the thread were counted that may always fail.
    [[nodiscard]] std::size_t fallibleCalls(ThreadNumber thread) const;

    void clear();

private:
    struct Armed {
        JniFault fault;
        PlannedFailure failure;
        ThreadNumber thread;
        std::size_t seen = 0;

        [[nodiscard]] bool concerns(const JniCall& call) const;
    };

    std::vector<Armed> m_armed;
    std::map<ThreadNumber, std::size_t> m_fallibleCalls;
};

}  // namespace storage::javaprovider::test
