#pragma once

#include <condition_variable>
#include <mutex>
#include <utility>

namespace storage::javaprovider {

/// Runs an action once for its owner, whatever number of threads ask.
///
/// Unlike std::call_once the outcome of a failure is stated: the action's exception reaches the caller that ran it,
/// everyone who waits is woken, and the next request runs the action again.
class OnceLatch {
public:
    OnceLatch() = default;
    OnceLatch(const OnceLatch&) = delete;
    OnceLatch& operator=(const OnceLatch&) = delete;

    /// Returns when an action has succeeded, here or on another thread. The action runs without the lock held, so it
    /// may block in Java; it must not call run() on the same latch.
    template <class Action>
    void run(Action&& action) {
        if (!begin()) {
            return;
        }
        try {
            std::forward<Action>(action)();
        } catch (...) {
            finish(NotRun);
            throw;
        }
        finish(Done);
    }

private:
    enum State : int { NotRun = 0, Running = 1, Done = 2 };

    /// Waits for a run under way. Returns whether the caller must run the action.
    bool begin();
    void finish(State outcome);

    int m_state = NotRun;
    std::mutex m_mutex;
    std::condition_variable m_changed;
};

}  // namespace storage::javaprovider
