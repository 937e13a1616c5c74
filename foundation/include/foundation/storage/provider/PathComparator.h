#pragma once

#include <functional>

#include "foundation/storage/provider/StorageIRI.h"

namespace foundation::storage::provider {

/// Compares two locations as the back end does: negative if the first comes first, zero if they are the same location,
/// positive otherwise.
using PathComparator = std::function<int(const StorageIRI&, const StorageIRI&)>;

}  // namespace foundation::storage::provider
