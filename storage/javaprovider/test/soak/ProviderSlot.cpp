#include "soak/ProviderSlot.h"

#include "storage/javaprovider/EntryPoints.h"

namespace storage::javaprovider::test {

using foundation::storage::provider::IProvider;
using foundation::storage::provider::StorageIRI;

ProviderSlot::ProviderSlot(std::shared_ptr<jvm_interface::JVM> jvm) : m_jvm(std::move(jvm)), m_current(make()) {}

ProviderSlot::ProviderPtr ProviderSlot::get() const {
    const std::lock_guard lock(m_mutex);
    return m_current;
}

void ProviderSlot::replace() {
    ProviderPtr next = make();
    const std::lock_guard lock(m_mutex);
    m_current.swap(next);
}

void ProviderSlot::watch(const IProvider& provider, const StorageIRI& location, bool onParent) const {
    const auto count = [events = m_events](auto&&...) { ++*events; };
    if (onParent) {
        provider.startChangeNotificationOnParent(location, count);
    } else {
        provider.startChangeNotification(location, count);
    }
}

ProviderSlot::ProviderPtr ProviderSlot::make() {
    ProviderPtr provider(buildProvider(m_jvm, "com/corvallen/storage/test/soak/FlakyProvider"));
    ++m_made;
    return provider;
}

}  // namespace storage::javaprovider::test
