#pragma once

#include "foundation/storage/provider/StorageIRI.h"

namespace foundation::storage::provider::detail {

/// A location in the target's folder that nothing else uses: a hidden name that begins with the target's, is another
/// at every call and in every process, and is no longer than 104 bytes of UTF-8 whatever the target's length.
[[nodiscard]] StorageIRI temporaryBeside(const StorageIRI& target);

}  // namespace foundation::storage::provider::detail
