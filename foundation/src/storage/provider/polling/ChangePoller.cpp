#include "storage/provider/polling/ChangePoller.h"

#include <unistd.h>

#include <boost/exception/diagnostic_information.hpp>

#include <algorithm>
#include <utility>

#include "storage/provider/polling/Log.h"

namespace foundation::storage::provider::detail {

namespace {

using log::Severity;

/// Logs the exception being handled.
void logCaught(const char* what, const StorageIRI& location) noexcept {
    try {
        FOUNDATION_LOG(logger(), Severity::Caught)
            << what << location << ": " << boost::current_exception_diagnostic_information();
    } catch (...) {
        // No memory for the text. The thread continues without the record.
    }
}

/// Longer than anyone waits, and small enough for the clock.
constexpr std::chrono::milliseconds LongestInterval = std::chrono::hours(24 * 365);

/// Details have the shape of those that back ends send. Who made the change cannot be known.
boost::property_tree::ptree unknownOrigin() {
    boost::property_tree::ptree details;
    details.put("originId", "");
    return details;
}

}  // namespace

ChangePoller::ChangePoller(const IProvider& provider) : m_provider(provider), m_process(getpid()) {}

ChangePoller::~ChangePoller() {
    if (m_thread.joinable()) {
        m_thread.detach();  // it has ended by itself
    }
}

bool ChangePoller::isOfThisProcess() const noexcept { return getpid() == m_process; }

void ChangePoller::start(const StorageIRI& location, const ChangeCallback& callback,
                         std::chrono::milliseconds interval) {
    const std::u16string key = location.normalized().text();
    const auto watch = std::make_shared<Watch>();
    watch->location = location;
    watch->callback = std::make_shared<const ChangeCallback>(callback);
    watch->interval = std::min(interval, LongestInterval);
    Lock lock(m_mutex);
    if (replace(lock, key, *watch)) {
        return;
    }
    lock.unlock();
    watch->known = takeSnapshot(m_provider, location, {}, watch->stopped.get_token()).value();
    if (!watch->known.self) {
        throw Exception(ErrorCode::NotFound, location);
    }
    lock.lock();
    // Another thread may have started to watch the same location in the meantime.
    if (!replace(lock, key, *watch)) {
        add(key, watch);
    }
}

bool ChangePoller::replace(Lock& lock, const std::u16string& key, const Watch& watch) {
    const auto found = m_watches.find(key);
    if (found == m_watches.end()) {
        return false;
    }
    Watch& present = *found->second;
    present.location = watch.location;
    present.interval = watch.interval;
    schedule(present);
    const Callback replaced = std::exchange(present.callback, watch.callback);
    m_changed.notify_all();
    if (!onThread()) {
        m_changed.wait(lock, [&] { return m_calling != replaced.get(); });
    }
    lock.unlock();  // the replaced callback is destroyed after this, under no lock
    return true;
}

void ChangePoller::add(const std::u16string& key, const std::shared_ptr<Watch>& watch) {
    watch->place = m_queue.add(Clock::now() + watch->interval, watch);
    try {
        m_watches.emplace(key, watch);
        ensureThread();
    } catch (...) {
        m_watches.erase(key);
        m_queue.remove(watch->place);
        throw;
    }
    m_changed.notify_all();
}

void ChangePoller::ensureThread() {
    if (m_running) {
        return;
    }
    if (m_thread.joinable()) {
        m_thread.join();  // it has released the lock for the last time
    }
    m_thread = std::thread([self = shared_from_this()] { self->run(); });
    m_running = true;
}

void ChangePoller::stop(const StorageIRI& location) {
    Callback callback;  // outlives the lock, since it must be destroyed under none
    Lock lock(m_mutex);
    const auto node = m_watches.extract(location.normalized().text());
    if (node.empty()) {
        return;
    }
    const std::shared_ptr<Watch> watch = node.mapped();
    m_queue.remove(watch->place);
    watch->stopped.request_stop();
    callback = std::move(watch->callback);
    m_changed.notify_all();
    if (!onThread()) {
        m_changed.wait(lock, [&] { return m_looking != watch.get(); });
    }
}

std::size_t ChangePoller::end() noexcept {
    Watches watches;
    Lock lock(m_mutex);
    watches.swap(m_watches);
    m_queue.clear();
    for (const auto& [key, watch] : watches) {
        watch->stopped.request_stop();
    }
    m_changed.notify_all();
    const bool fromCallback = onThread();
    lock.unlock();
    if (fromCallback) {
        m_thread.detach();
    } else if (m_thread.joinable()) {
        m_thread.join();
    }
    for (const auto& [key, watch] : watches) {
        watch->callback.reset();
    }
    return watches.size();
}

void ChangePoller::run() {
    Lock lock(m_mutex);
    while (const auto* const next = m_queue.first()) {
        if (const auto [due, watch] = *next; due > Clock::now()) {
            m_changed.wait_until(lock, due);
        } else {
            look(lock, watch);
        }
    }
    m_running = false;
}

void ChangePoller::schedule(Watch& watch) { watch.place = m_queue.move(watch.place, Clock::now() + watch.interval); }

void ChangePoller::look(Lock& lock, const std::shared_ptr<Watch>& watch) {
    m_looking = watch.get();
    const StorageIRI location = watch->location;
    lock.unlock();
    compare(*watch, location);
    lock.lock();
    m_looking = nullptr;
    if (!watch->stopped.stop_requested()) {
        schedule(*watch);
    }
    m_changed.notify_all();
}

void ChangePoller::compare(Watch& watch, const StorageIRI& location) {
    std::vector<ChangeEvent> events;
    try {
        std::optional<ChangeSnapshot> now = takeSnapshot(m_provider, location, watch.known, watch.stopped.get_token());
        if (!now) {
            return;
        }
        events = difference(watch.known, *now);
        watch.known = std::move(*now);
        watch.failing = false;
    } catch (...) {
        // What cannot be seen is not gone: the last snapshot stays. A row of failures is logged once.
        if (!std::exchange(watch.failing, true)) {
            logCaught("Cannot look for changes of ", location);
        }
    }
    for (const ChangeEvent& event : events) {
        deliver(watch, event);
    }
}

void ChangePoller::deliver(Watch& watch, const ChangeEvent& event) {
    Lock lock(m_mutex);
    if (watch.stopped.stop_requested()) {
        return;
    }
    Callback callback = watch.callback;
    const StorageIRI location = watch.location;
    m_calling = callback.get();
    lock.unlock();
    try {
        (*callback)(event.kind, location, event.child ? location.getChild(*event.child) : location, event.type,
                    unknownOrigin());
    } catch (...) {
        // Callbacks must not throw. One that does has had its event; the others still get theirs.
        logCaught("A callback threw at a change of ", location);
    }
    lock.lock();
    m_calling = nullptr;
    m_changed.notify_all();
    lock.unlock();
}

}  // namespace foundation::storage::provider::detail
