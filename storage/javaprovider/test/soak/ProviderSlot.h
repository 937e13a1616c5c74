#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <utility>

#include "foundation/storage/provider/IProvider.h"
#include "jvm_interface/JVM.h"

namespace storage::javaprovider::test {

/// The provider that all threads of a soak use, which any of them may replace. The last operation on the old
/// provider destroys it. Safe from any thread.
class ProviderSlot {
public:
    using ProviderPtr = std::shared_ptr<foundation::storage::provider::IProvider>;

    /// Makes the first provider; needs a virtual machine with FlakyProvider on its class path.
    explicit ProviderSlot(std::shared_ptr<jvm_interface::JVM> jvm);

    [[nodiscard]] JavaVM* vm() const { return m_jvm->getJavaVM(); }
    [[nodiscard]] ProviderPtr get() const;
    void replace();

    /// How many providers were made.
    [[nodiscard]] long made() const noexcept { return m_made; }
    /// How many events reached a callback.
    [[nodiscard]] long events() const noexcept { return *m_events; }

    /// Starts change notification with a callback that counts.
    void watch(const foundation::storage::provider::IProvider& provider,
               const foundation::storage::provider::StorageIRI& location, bool onParent) const;

private:
    [[nodiscard]] ProviderPtr make();

    std::shared_ptr<jvm_interface::JVM> m_jvm;
    std::atomic<long> m_made = 0;
    std::shared_ptr<std::atomic<long>> m_events = std::make_shared<std::atomic<long>>(0);
    mutable std::mutex m_mutex;
    ProviderPtr m_current;
};

}  // namespace storage::javaprovider::test
