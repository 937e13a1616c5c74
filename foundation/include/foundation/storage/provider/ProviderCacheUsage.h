#pragma once

#include <cstdint>

namespace foundation::storage::provider {

/// How full a provider's cache is, in bytes.
struct ProviderCacheUsage {
    std::uint64_t bytesUsed = 0;
    std::uint64_t bytesAllowed = 0;
};

}  // namespace foundation::storage::provider
