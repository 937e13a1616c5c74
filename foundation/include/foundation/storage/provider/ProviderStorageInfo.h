#pragma once

#include <cstdint>
#include <optional>

namespace foundation::storage::provider {

/// The size of the storage behind a location and how much of it is occupied, in bytes. What is left of the capacity is
/// what this process can still write: space reserved for others counts as occupied.
///
/// A back end in Java always states both numbers. They are not checked: a number that is negative in Java is 2^63 or
/// more here.
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

    /// Empty if the back end does not know.
    [[nodiscard]] const std::optional<std::uint64_t>& storageCapacity() const noexcept { return m_storageCapacity; }
    /// Empty if the back end does not know.
    [[nodiscard]] const std::optional<std::uint64_t>& spaceOccupied() const noexcept { return m_spaceOccupied; }

private:
    std::optional<std::uint64_t> m_storageCapacity;
    std::optional<std::uint64_t> m_spaceOccupied;
};

}  // namespace foundation::storage::provider
