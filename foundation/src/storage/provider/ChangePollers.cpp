#include "storage/provider/ChangePollers.h"

#include <unordered_map>

#include "foundation/log/basic_diagnostic_logger.h"

namespace foundation::storage::provider::detail {

namespace {

struct Registry {
    std::mutex mutex;
    std::unordered_map<const IProvider*, std::shared_ptr<ChangePoller>> pollers;
};

/// Never destroyed: providers may go as late as in static destructors, and their threads may still run then.
Registry& registry() {
    static Registry& instance = *new Registry;
    return instance;
}

std::shared_ptr<ChangePoller> take(const IProvider& provider) {
    const std::lock_guard lock(registry().mutex);
    auto node = registry().pollers.extract(&provider);
    return node.empty() ? nullptr : std::move(node.mapped());
}

void logForgotten(std::size_t locations) noexcept {
    try {
        static log::basic_diagnostic_logger<char> logger("foundation::storage");
        FOUNDATION_LOG(logger, log::Severity::Failure)
            << "A provider was destroyed while it was polled for changes of " << locations << " locations";
    } catch (...) {
        // A sink that fails costs the record; thrown from a destructor it would end the process.
    }
}

}  // namespace

std::shared_ptr<ChangePoller> pollerOf(const IProvider& provider) {
    const std::lock_guard lock(registry().mutex);
    std::shared_ptr<ChangePoller>& poller = registry().pollers[&provider];
    if (!poller || !poller->isOfThisProcess()) {
        poller = std::make_shared<ChangePoller>(provider);
    }
    return poller;
}

std::shared_ptr<ChangePoller> findPollerOf(const IProvider& provider) {
    const std::lock_guard lock(registry().mutex);
    const auto found = registry().pollers.find(&provider);
    const bool usable = found != registry().pollers.end() && found->second->isOfThisProcess();
    return usable ? found->second : nullptr;
}

void endPollerOf(const IProvider& provider) noexcept {
    const std::shared_ptr<ChangePoller> poller = take(provider);
    if (poller && poller->isOfThisProcess()) {
        if (const std::size_t locations = poller->end(); locations != 0) {
            logForgotten(locations);
        }
    }
}

}  // namespace foundation::storage::provider::detail
