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

/// Compares the watched locations of one provider at their intervals and reports what has changed.
///
/// One thread visits them in turn. It runs while any location is watched. It holds no lock while it calls the provider
/// or a callback. Safe on any thread, the callbacks' included. Starting, stopping, and finding the next location take
/// the logarithm of their number.
class ChangePoller final : public std::enable_shared_from_this<ChangePoller> {
public:
    explicit ChangePoller(const IProvider& provider);
    ~ChangePoller();

    ChangePoller(const ChangePoller&) = delete;
    ChangePoller& operator=(const ChangePoller&) = delete;

    /// Begins to watch. For a location that is watched already it replaces the callback and the interval; what is known
    /// of the location stays. When it returns, the replaced callback does not run on any other thread.
    void start(const StorageIRI& location, const ChangeCallback& callback, std::chrono::milliseconds interval);

    /// Ends the watch. When it returns, no other thread reads the location or runs its callback.
    void stop(const StorageIRI& location);

    /// Ends all watches. Returns when the thread has ended or, if the thread is the caller, will not touch the provider
    /// again. Returns how many locations were still watched.
    std::size_t end() noexcept;

    /// False in a child made by fork(): the thread is missing there, and the poller can do nothing more.
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
        // Used only by the thread.
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
