#pragma once

#include "foundation/storage/provider/StorageIRI.h"

namespace foundation::storage::provider::detail {

/// A location in the target's folder that nothing else uses: `.NAME.PID-NUMBER.tmp`, where NAME is the beginning of the
/// target's name and NUMBER has 16 hexadecimal digits. It differs at every call and in every process, and the name is
/// no longer than 95 bytes of UTF-8 whatever the target's length.
[[nodiscard]] StorageIRI temporaryBeside(const StorageIRI& target);

}  // namespace foundation::storage::provider::detail
