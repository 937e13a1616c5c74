#pragma once

#include <cstdint>
#include <optional>

namespace foundation::storage::provider {

/// How large the storage behind a location is and how much of it is in use, in bytes.
class ProviderStorageInfo {
public:
    ProviderStorageInfo& withStorageCapacity(std::uint64_t bytes) noexcept {
        m_storageCapacity = bytes;
        return *this;
    }
    ProviderStorageInfo& withSpaceOccupied(std::uint64_t bytes) noexcept {
        m_spaceOccupied = bytes;
        return *this;
    }

    /// Empty when the back end does not know.
    [[nodiscard]] const std::optional<std::uint64_t>& storageCapacity() const noexcept { return m_storageCapacity; }
    /// Empty when the back end does not know.
    [[nodiscard]] const std::optional<std::uint64_t>& spaceOccupied() const noexcept { return m_spaceOccupied; }

private:
    std::optional<std::uint64_t> m_storageCapacity;
    std::optional<std::uint64_t> m_spaceOccupied;
};

}  // namespace foundation::storage::provider
