#pragma once

#include <sys/types.h>

#include <chrono>
#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <stop_token>
#include <string>
#include <thread>

#include "storage/provider/polling/ChangeDifference.h"
#include "storage/provider/polling/ChangeSnapshot.h"
#include "storage/provider/polling/DueQueue.h"

namespace foundation::storage::provider::detail {

/// Compares the watched locations of one provider at their intervals and tells what has changed.
///
/// One thread looks at all of them in turn. It runs from the first location on until none is left. No lock is held
/// while the provider or a callback is called. Safe on any thread, the callbacks' included. To start, to stop, and to
/// find the next location to look at takes the logarithm of their number.
class ChangePoller final : public std::enable_shared_from_this<ChangePoller> {
public:
    explicit ChangePoller(const IProvider& provider);
    ~ChangePoller();

    ChangePoller(const ChangePoller&) = delete;
    ChangePoller& operator=(const ChangePoller&) = delete;

    /// Begins to watch. For a location that is watched already the callback and the interval are replaced; what is
    /// known of it stays. When it returns, the replaced callback does not run on any other thread.
    void start(const StorageIRI& location, const ChangeCallback& callback, std::chrono::milliseconds interval);

    /// Watches no more. When it returns, neither a look at the location nor its callback runs on any other thread.
    void stop(const StorageIRI& location);

    /// Watches nothing more, and returns when the thread has ended or, if it is the caller, will not touch the provider
    /// again. Returns how many locations were still watched.
    std::size_t end() noexcept;

    /// False in a child made by fork(), where the thread is missing: there it can only be let go.
    [[nodiscard]] bool isOfThisProcess() const noexcept;

private:
    using Clock = std::chrono::steady_clock;
    using Callback = std::shared_ptr<const ChangeCallback>;
    using Lock = std::unique_lock<std::mutex>;

    struct Watch;
    using Queue = DueQueue<Clock::time_point, std::shared_ptr<Watch>>;

    struct Watch {
        StorageIRI location;
        Callback callback;  ///< null once the watch is stopped
        std::chrono::milliseconds interval;
        Queue::Place place;  ///< among those that are due; means nothing once the watch is stopped
        std::stop_source stopped;
        // Used by the thread alone.
        ChangeSnapshot known;
        bool failing = false;
    };
    using Watches = std::map<std::u16string, std::shared_ptr<Watch>>;

    bool replace(Lock& lock, const std::u16string& key, const Watch& watch);
    void add(const std::u16string& key, const std::shared_ptr<Watch>& watch);
    void ensureThread();
    [[nodiscard]] bool onThread() const { return std::this_thread::get_id() == m_thread.get_id(); }

    void run();
    void schedule(Watch& watch);
    void look(Lock& lock, const std::shared_ptr<Watch>& watch);
    void compare(Watch& watch, const StorageIRI& location);
    void deliver(Watch& watch, const ChangeEvent& event);

    const IProvider& m_provider;
    const pid_t m_process;

    std::mutex m_mutex;
    std::condition_variable m_changed;
    Watches m_watches;
    Queue m_queue;  ///< the same watches by the time of their next look
    std::thread m_thread;
    bool m_running = false;
    const Watch* m_looking = nullptr;           ///< what the thread is busy with
    const ChangeCallback* m_calling = nullptr;  ///< what it is calling
};

}  // namespace foundation::storage::provider::detail
