#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <vector>

#include "process/EventFile.h"
#include "watch/Event.h"

namespace jstore {

/// Carries events from the back end's threads to the main thread.
///
/// A back end never waits: if the queue is full, the event is lost and counted. push(), lose() and close() may be
/// called on any thread, the rest on the main thread.
class EventQueue {
public:
    /// Some 30 MB of events with long locations.
    static constexpr std::size_t DefaultCapacity = 65'536;

    explicit EventQueue(std::size_t capacity = DefaultCapacity) : m_capacity(capacity) {}

    /// Events in the order in which they came, and how many were lost after the last of them.
    struct Batch {
        std::vector<Event> events;
        std::uint64_t lost = 0;
    };

    /// Adds an event, unless the queue is closed.
    void push(Event event) noexcept;
    /// Counts an event as lost.
    void lose() noexcept;
    /// Takes all that has come so far.
    [[nodiscard]] Batch take();
    /// Drops whatever comes from now on.
    void close() noexcept;

    /// Readable while there is something to take.
    [[nodiscard]] int descriptor() const noexcept { return m_signal.descriptor(); }

private:
    const std::size_t m_capacity;
    EventFile m_signal;
    std::mutex m_mutex;
    Batch m_batch;
    bool m_closed = false;
};

}  // namespace jstore
