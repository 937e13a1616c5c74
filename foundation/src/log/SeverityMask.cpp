#include "foundation/log/SeverityMask.h"

#include <map>
#include <mutex>

namespace foundation::log {

namespace {

struct Registry {
    std::mutex mutex;
    std::map<std::string, std::atomic<std::uint32_t>, std::less<>> masks;
};

Registry& registry() {
    // Never destroyed: static loggers of other libraries may write until the very end of the process.
    static auto& instance = *new Registry;
    return instance;
}

}  // namespace

std::atomic<std::uint32_t>& detail::maskOf(const std::string& channel) {
    auto& [mutex, masks] = registry();
    const std::lock_guard lock(mutex);
    return masks.try_emplace(channel, 0U).first->second;
}

void setSeverityMask(const std::string& channel, std::uint32_t mask) {
    // Relaxed: nothing else is published with the mask.
    detail::maskOf(channel).store(mask, std::memory_order_relaxed);
}

std::uint32_t severityMask(const std::string& channel) {
    auto& [mutex, masks] = registry();
    const std::lock_guard lock(mutex);
    const auto found = masks.find(channel);
    return found == masks.end() ? 0 : found->second.load(std::memory_order_relaxed);
}

}  // namespace foundation::log
