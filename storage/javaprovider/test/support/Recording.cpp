#include "support/Recording.h"

#include <algorithm>
#include <shared_mutex>
#include <utility>

namespace storage::javaprovider::test {

namespace {

std::shared_mutex activeMutex;

std::shared_ptr<Recording>& active() {
    // Never destroyed: threads of the machine may still call while the process exits.
    static auto& recording = *new std::shared_ptr<Recording>;
    return recording;
}

}  // namespace

int& unrecordedDepth() noexcept {
    thread_local int depth = 0;
    return depth;
}

std::shared_ptr<Recording> Recording::forCaller(const void* caller) {
    if (unrecordedDepth() > 0) {
        return nullptr;
    }
    std::shared_ptr<Recording> recording;
    {
        const std::shared_lock lock(activeMutex);
        recording = active();
    }
    return recording && !recording->m_runtime.contain(caller) ? recording : nullptr;
}

void Recording::activate(std::shared_ptr<Recording> recording) {
    const std::unique_lock lock(activeMutex);
    active() = std::move(recording);
}

Recording::Ticket Recording::begin(JniCall& call) {
    const std::lock_guard lock(m_mutex);
    numberReferences(call);
    Ticket ticket;
    ticket.failure = m_plan.count(call);
    call.failedOnPurpose = ticket.failure.has_value();
    ticket.serial = keep(call);
    if (call.failedOnPurpose) {
        return ticket;
    }
    m_ledger.beforeCall(call);
    ticket.depth = m_ledger.depth(call.thread);
    m_ledger.enterJava(call.thread);
    return ticket;
}

void Recording::end(const Ticket& ticket, const JniCall& call, bool succeeded) {
    const std::lock_guard lock(m_mutex);
    ReferenceNumber made = 0;
    if (!call.failedOnPurpose) {
        m_ledger.leaveJava(call.thread, ticket.depth);
        made = m_ledger.afterCall(call);
        if (succeeded && call.function->effect == ReferenceEffect::PushesFrame) {
            m_ledger.pushFrame(call.thread);
        }
    }
    if (ticket.serial < m_firstSerial) {
        return;  // forgotten by clear(), or not kept
    }
    JniCall& kept = m_calls.at(ticket.serial - m_firstSerial);
    kept.result = call.result;
    kept.resultReference = made;
    kept.pendingAfter = call.pendingAfter;
    kept.finished = true;
}

void Recording::numberReferences(JniCall& call) const {
    call.targetReference = m_ledger.numberOf(call.thread, call.target);
    for (JniArgument& argument : call.arguments) {
        if (argument.type == 'L' || argument.type == '[') {
            argument.reference = m_ledger.numberOf(call.thread, argument.value.l);
        }
    }
}

std::uint64_t Recording::keep(const JniCall& call) {
    if (!m_keepCalls) {
        return 0;
    }
    m_calls.push_back(call);
    return m_firstSerial + m_calls.size() - 1;
}

std::vector<JniCall> Recording::calls(const CallFilter& filter) const {
    const std::lock_guard lock(m_mutex);
    std::vector<JniCall> accepted;
    for (const JniCall& call : m_calls) {
        if (filter.accepts(call)) {
            accepted.push_back(call);
        }
    }
    return accepted;
}

std::size_t Recording::count(const CallFilter& filter) const {
    const std::lock_guard lock(m_mutex);
    const auto accepted =
        std::count_if(m_calls.begin(), m_calls.end(), [&filter](const JniCall& call) { return filter.accepts(call); });
    return static_cast<std::size_t>(accepted);
}

void Recording::addFault(JniFault fault, PlannedFailure failure) {
    const std::lock_guard lock(m_mutex);
    m_plan.add(std::move(fault), failure, thisThread());
}

std::size_t Recording::faultsLeft() const {
    const std::lock_guard lock(m_mutex);
    return m_plan.left();
}

std::size_t Recording::fallibleCalls() const {
    const std::lock_guard lock(m_mutex);
    return m_plan.fallibleCalls(thisThread());
}

std::vector<std::string> Recording::takeLeftToFrames() {
    const std::lock_guard lock(m_mutex);
    return m_ledger.takeLeftToFrames();
}

void Recording::clear() {
    const std::lock_guard lock(m_mutex);
    m_firstSerial += m_calls.size();
    m_calls.clear();
    m_ledger.clear();
    m_plan.clear();
}

void Recording::keepCalls(bool keep) {
    const std::lock_guard lock(m_mutex);
    m_keepCalls = keep;
}

}  // namespace storage::javaprovider::test
