#pragma once

#include <boost/date_time/posix_time/posix_time_types.hpp>

#include <cstdint>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

#include "foundation/storage/provider/IProvider.h"

namespace foundation::storage::provider::detail {

/// The attributes that show a change.
struct EntryStamp {
    std::optional<std::uint64_t> size;
    boost::posix_time::ptime lastModified;
    bool writable = false;

    [[nodiscard]] bool operator==(const EntryStamp&) const = default;
};

/// What is remembered of a file or folder.
struct EntryState {
    EntryType type = EntryType::File;
    std::optional<EntryStamp> stamp;  ///< empty while the back end has not let it be read

    /// Whether it is known to have changed. What could not be read does not count as changed.
    [[nodiscard]] bool isChanged(const EntryState& later) const {
        return stamp && later.stamp && *stamp != *later.stamp;
    }
};

/// A child of a folder by its name.
struct ChildState {
    std::u16string name;
    EntryState state;
};

/// What is remembered of a watched location and, for a folder, of its children, in the order of their names.
struct ChangeSnapshot {
    std::optional<EntryState> self;  ///< empty while nothing is there
    std::vector<ChildState> children;

    [[nodiscard]] const ChildState* find(const std::u16string& name) const;
};

/// Reads a location through the provider's own operations.
///
/// Skips children whose names no location can hold. Takes a child whose attributes cannot be read as it was in
/// `before`. Empty when `stop` is requested before the end. Throws what the provider throws when the location or its
/// listing cannot be read, so that what cannot be seen does not count as gone.
[[nodiscard]] std::optional<ChangeSnapshot> takeSnapshot(const IProvider& provider, const StorageIRI& location,
                                                         const ChangeSnapshot& before, const std::stop_token& stop);

}  // namespace foundation::storage::provider::detail
