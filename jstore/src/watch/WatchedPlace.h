#pragma once

#include <cstddef>
#include <optional>
#include <utility>

#include "base/Location.h"
#include "foundation/storage/provider/StorageIRI.h"

namespace jstore {

/// A location that is watched, as the user wrote it.
class WatchedPlace {
public:
    explicit WatchedPlace(Location location)
        : m_location(std::move(location)), m_normal(m_location.iri().normalized()) {}

    [[nodiscard]] const Location& location() const noexcept { return m_location; }

    /// Something at or below the place.
    struct Below {
        Location location;  ///< spelled as the place is, and as a listing spells names
        std::size_t depth;  ///< 0 for the place itself, 1 for what is directly in it
    };

    /// Where `changed` lies; empty if it is neither the place nor below it.
    [[nodiscard]] std::optional<Below> find(const foundation::storage::provider::StorageIRI& changed) const;

private:
    Location m_location;
    foundation::storage::provider::StorageIRI m_normal;
};

}  // namespace jstore
