#pragma once

#include <memory>

#include "storage/provider/ChangePoller.h"

namespace foundation::storage::provider::detail {

/// The pollers of all providers, kept beside them: a provider that is never polled carries nothing for it.
/// Safe on any thread.

/// The provider's poller, made when there is none.
[[nodiscard]] std::shared_ptr<ChangePoller> pollerOf(const IProvider& provider);

/// The provider's poller; null when it was never polled.
[[nodiscard]] std::shared_ptr<ChangePoller> findPollerOf(const IProvider& provider);

/// Ends the provider's poller for good. Locations that are still polled are the host's mistake, and are logged.
void endPollerOf(const IProvider& provider) noexcept;

}  // namespace foundation::storage::provider::detail
