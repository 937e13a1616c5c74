#include "watch/EventQueue.h"

#include <exception>
#include <utility>

namespace jstore {

void EventQueue::push(Event event) noexcept {
    const std::lock_guard lock(m_mutex);
    if (m_closed) {
        return;
    }
    try {
        // After a loss nothing is added until the batch has been taken: the loss is reported after its events.
        if (m_batch.lost == 0 && m_batch.events.size() < m_capacity) {
            m_batch.events.push_back(std::move(event));
        } else {
            ++m_batch.lost;
        }
    } catch (const std::exception&) {
        ++m_batch.lost;  // no memory
    }
    m_signal.signal();
}

void EventQueue::lose() noexcept {
    const std::lock_guard lock(m_mutex);
    if (!m_closed) {
        ++m_batch.lost;
        m_signal.signal();
    }
}

EventQueue::Batch EventQueue::take() {
    const std::lock_guard lock(m_mutex);
    m_signal.clear();
    return std::exchange(m_batch, {});
}

void EventQueue::close() noexcept {
    const std::lock_guard lock(m_mutex);
    m_closed = true;
}

}  // namespace jstore
