#pragma once

#include <functional>

#include "foundation/storage/provider/StorageIRI.h"

namespace foundation::storage::provider {

/// Orders locations as the back end tells them apart: negative, zero (the same location) or positive.
using PathComparator = std::function<int(const StorageIRI&, const StorageIRI&)>;

}  // namespace foundation::storage::provider
