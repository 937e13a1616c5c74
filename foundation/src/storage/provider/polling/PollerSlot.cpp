#include "storage/provider/polling/PollerSlot.h"

#include "storage/provider/polling/Log.h"

namespace foundation::storage::provider::detail {

namespace {

/// Whether there is a poller that can poll: one of a parent process has no thread here.
bool isUsable(const PollerHolder* holder) noexcept { return holder != nullptr && holder->poller->isOfThisProcess(); }

void logForgotten(std::size_t locations) noexcept {
    try {
        FOUNDATION_LOG(logger(), log::Severity::Failure)
            << "A provider was destroyed while it was polled for changes of " << locations << " locations";
    } catch (...) {
        // Without memory for a logger there is no record. A throw from a destructor would end the process.
    }
}

}  // namespace

std::shared_ptr<ChangePoller> pollerOf(const IProvider& provider, PollerSlot& slot) {
    PollerHolder* present = slot.load(std::memory_order_acquire);
    while (!isUsable(present)) {
        auto made = std::make_unique<PollerHolder>(PollerHolder{std::make_shared<ChangePoller>(provider)});
        if (slot.compare_exchange_strong(present, made.get(), std::memory_order_acq_rel)) {
            // If it replaced a holder of the parent process, that one is never freed: another thread may be reading it.
            present = made.release();
        }
    }
    return present->poller;
}

std::shared_ptr<ChangePoller> findPoller(const PollerSlot& slot) {
    const PollerHolder* const present = slot.load(std::memory_order_acquire);
    return isUsable(present) ? present->poller : nullptr;
}

void endPoller(PollerSlot& slot) noexcept {
    PollerHolder* const present = slot.exchange(nullptr, std::memory_order_acq_rel);
    if (!isUsable(present)) {
        return;  // One of the parent process stays as it is: neither its locks nor its thread can be released here.
    }
    const std::unique_ptr<PollerHolder> holder(present);
    if (const std::size_t locations = holder->poller->end(); locations != 0) {
        logForgotten(locations);
    }
}

}  // namespace foundation::storage::provider::detail
