#pragma once

#include "foundation/storage/provider/StorageIRI.h"

namespace storage::javaprovider::test {

/// The back end under the sweep, with slashes.
inline constexpr const char* SweptBackEnd = "com/corvallen/storage/test/data/PublishingProvider";
/// One that cannot be made.
inline constexpr const char* ThrowingBackEnd = "com/corvallen/storage/test/ThrowingConstructorProvider";
/// The location that operations are about.
inline const foundation::storage::provider::StorageIRI SweptLocation{u"java://test/a"};
/// The second one, of those that need two.
inline const foundation::storage::provider::StorageIRI OtherLocation{u"java://test/b"};

}  // namespace storage::javaprovider::test
