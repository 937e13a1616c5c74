#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <vector>

#include "foundation/storage/provider/ChangeCallback.h"

namespace foundation::test {

/// Collects events as texts, "ChildAdded File name". Safe from any thread; outlives the callbacks it has made.
class EventTrail {
public:
    [[nodiscard]] storage::provider::ChangeCallback callback();

    /// Takes the next so many events; fewer when they do not come in time.
    [[nodiscard]] std::vector<std::string> next(std::size_t count);

    /// Takes what has come.
    [[nodiscard]] std::vector<std::string> rest();

private:
    std::mutex m_mutex;
    std::condition_variable m_came;
    std::vector<std::string> m_events;
};

}  // namespace foundation::test
