#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>

#include "foundation/storage/provider/StorageIRI.h"

namespace jstore {

/// Finds which of many places a location means, however either is spelled. The time does not grow with their number.
class PlaceIndex {
public:
    /// Adds a place under its number. Of several that are the same, the first counts.
    void add(const foundation::storage::provider::StorageIRI& place, std::size_t number) {
        m_numbers.emplace(place.normalized().text(), number);
    }

    /// The number of the place that is at the location; empty if none is.
    [[nodiscard]] std::optional<std::size_t> find(const foundation::storage::provider::StorageIRI& location) const {
        const auto found = m_numbers.find(location.normalized().text());
        return found == m_numbers.end() ? std::nullopt : std::optional(found->second);
    }

private:
    std::unordered_map<std::u16string, std::size_t> m_numbers;
};

}  // namespace jstore
