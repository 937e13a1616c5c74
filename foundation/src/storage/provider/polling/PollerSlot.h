#pragma once

#include <atomic>
#include <memory>

#include "storage/provider/polling/ChangePoller.h"

namespace foundation::storage::provider::detail {

/// A provider's poller. A provider that is never polled holds only a null pointer for it.
struct PollerHolder {
    std::shared_ptr<ChangePoller> poller;
};

/// Where a provider keeps its poller. No lock guards it: a child made by fork() may destroy the provider, and could
/// never take a lock that another thread held at the fork. Safe on any thread.
using PollerSlot = std::atomic<PollerHolder*>;

/// The provider's poller, made when there is none.
[[nodiscard]] std::shared_ptr<ChangePoller> pollerOf(const IProvider& provider, PollerSlot& slot);

/// The provider's poller; null when this process never polled it.
[[nodiscard]] std::shared_ptr<ChangePoller> findPoller(const PollerSlot& slot);

/// Ends the provider's poller for good. Locations that are still polled are a mistake of the host; they are logged.
void endPoller(PollerSlot& slot) noexcept;

}  // namespace foundation::storage::provider::detail
