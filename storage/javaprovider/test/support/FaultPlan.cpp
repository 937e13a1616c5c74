#include "support/FaultPlan.h"

#include <utility>

namespace storage::javaprovider::test {

void FaultPlan::add(JniFault fault, PlannedFailure failure, ThreadNumber thread) {
    m_armed.push_back({std::move(fault), failure, thread});
}

bool FaultPlan::Armed::concerns(const JniCall& call) const {
    if (!fault.anyThread && call.thread != thread) {
        return false;
    }
    if (fault.call.empty()) {
        return call.function->fallibility == Fallibility::Always;
    }
    return call.function->fallibility != Fallibility::Never && call.matches(fault.call);
}

std::optional<PlannedFailure> FaultPlan::count(const JniCall& call) {
    if (call.function->fallibility == Fallibility::Always) {
        ++m_fallibleCalls[call.thread];
    }
    auto due = m_armed.end();
    for (auto armed = m_armed.begin(); armed != m_armed.end(); ++armed) {
        // A call fails once: a second fault that is due for it waits for the next call that it concerns.
        if (armed->concerns(call) && ++armed->seen >= armed->fault.occurrence && due == m_armed.end()) {
            due = armed;
        }
    }
    if (due == m_armed.end()) {
        return std::nullopt;
    }
    const PlannedFailure failure = due->failure;
    m_armed.erase(due);
    return failure;
}

std::size_t FaultPlan::fallibleCalls(ThreadNumber thread) const {
    const auto found = m_fallibleCalls.find(thread);
    return found == m_fallibleCalls.end() ? 0 : found->second;
}

void FaultPlan::clear() {
    m_armed.clear();
    m_fallibleCalls.clear();
}

}  // namespace storage::javaprovider::test
