// Change events for back ends that report none.
#include "foundation/storage/provider/IProvider.h"
#include "storage/provider/polling/PollerSlot.h"

namespace foundation::storage::provider {

void IProvider::doStartChangePollingMechanism(const StorageIRI& location, const ChangeCallback& callback,
                                              std::chrono::milliseconds interval) const {
    if (!callback || interval <= std::chrono::milliseconds::zero()) {
        throw Exception(ErrorCode::NotSupported, location);
    }
    detail::pollerOf(*this, m_poller)->start(location, callback, interval);
}

void IProvider::doStopChangePollingMechanism(const StorageIRI& location) const {
    if (const auto poller = detail::findPoller(m_poller)) {
        poller->stop(location);
    }
}

}  // namespace foundation::storage::provider
