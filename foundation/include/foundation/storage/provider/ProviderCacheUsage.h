#pragma once

#include <cstdint>

namespace foundation::storage::provider {

/// What a provider's own cache holds at the moment.
struct ProviderCacheUsage {
    std::uint64_t bytesUsed = 0;
    std::uint64_t bytesAllowed = 0;
};

}  // namespace foundation::storage::provider
