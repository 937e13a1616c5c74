#pragma once

#include <chrono>
#include <string>

#include "foundation/storage/events/Kind.h"
#include "foundation/storage/provider/StorageIRI.h"

namespace jstore::test {

/// A change that a watcher has reported, and when.
struct Change {
    foundation::storage::events::Kind kind{};
    std::string path;  ///< relative to the watched folder; empty for the folder itself
    bool isFolder = false;
    std::chrono::steady_clock::time_point time;
};

/// The path of `location` below `folder`, names decoded. Throws std::invalid_argument when it is not below it.
[[nodiscard]] std::string pathBelow(const foundation::storage::provider::StorageIRI& folder,
                                    const foundation::storage::provider::StorageIRI& location);

}  // namespace jstore::test
