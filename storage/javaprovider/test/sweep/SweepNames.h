#pragma once

#include "foundation/storage/provider/StorageIRI.h"

namespace storage::javaprovider::test {

/// The back end under the sweep, with slashes.
inline constexpr const char* SweptBackEnd = "com/corvallen/storage/test/data/PublishingProvider";
/// The location that operations are about.
inline const foundation::storage::provider::StorageIRI SweptLocation{u"java://test/a"};

}  // namespace storage::javaprovider::test
