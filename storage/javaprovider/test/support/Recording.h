#pragma once

#include <jni.h>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "support/FaultPlan.h"
#include "support/JavaNames.h"
#include "support/JniCall.h"
#include "support/ReferenceLedger.h"
#include "support/RuntimeModules.h"

namespace storage::javaprovider::test {

/// What a JniRecorder knows: the calls, the references and the faults. Shared with the calls that are running, which
/// may outlive the recorder. Safe to use from any thread.
class Recording {
public:
    /// What a running call remembers between its beginning and its end.
    struct Ticket {
        std::uint64_t serial = 0;
        std::size_t depth = 0;
        std::optional<PlannedFailure> failure;
    };

    Recording(jvmtiEnv* jvmti, const void* insideLibjvm) : m_names(jvmti), m_runtime(insideLibjvm) {}

    /// The recording that a call made from `caller` belongs to; null when it is not to be recorded.
    [[nodiscard]] static std::shared_ptr<Recording> forCaller(const void* caller);
    /// Makes this the recording of all calls; null ends that.
    static void activate(std::shared_ptr<Recording> recording);

    [[nodiscard]] const JavaNames& names() const noexcept { return m_names; }

    /// Notes that the call is about to be made, and returns whether it is to fail. Completes the call's numbers.
    [[nodiscard]] Ticket begin(JniCall& call);
    /// Notes how it ended. `succeeded` matters only for PushLocalFrame.
    void end(const Ticket& ticket, const JniCall& call, bool succeeded);

    [[nodiscard]] std::vector<JniCall> calls(const CallFilter& filter) const;
    [[nodiscard]] std::size_t count(const CallFilter& filter) const;
    void addFault(JniFault fault, PlannedFailure failure);
    [[nodiscard]] std::size_t faultsLeft() const;
    [[nodiscard]] std::size_t fallibleCalls() const;
    [[nodiscard]] std::vector<std::string> takeLeftToFrames();
    void clear();
    void keepCalls(bool keep);

    /// Asks the ledger: `recording.ledger([](const ReferenceLedger& l) { return l.globals(); })`.
    template <class Question>
    auto ledger(Question question) const {
        const std::lock_guard lock(m_mutex);
        return question(m_ledger);
    }

private:
    void numberReferences(JniCall& call) const;
    [[nodiscard]] std::uint64_t keep(const JniCall& call);

    JavaNames m_names;
    RuntimeModules m_runtime;

    mutable std::mutex m_mutex;
    std::deque<JniCall> m_calls;
    std::uint64_t m_firstSerial = 1;  ///< of m_calls.front()
    bool m_keepCalls = true;
    ReferenceLedger m_ledger;
    FaultPlan m_plan;
};

/// How many Unrecorded scopes the calling thread is in.
[[nodiscard]] int& unrecordedDepth() noexcept;

}  // namespace storage::javaprovider::test
