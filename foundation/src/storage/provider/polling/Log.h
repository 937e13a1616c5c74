#pragma once

#include "foundation/log/basic_diagnostic_logger.h"

namespace foundation::storage::provider::detail {

/// The framework's logger for storage, made at its first use. Safe from any thread; throws when there is no memory for
/// it.
inline log::basic_diagnostic_logger<char>& logger() {
    static log::basic_diagnostic_logger<char> instance("foundation::storage");
    return instance;
}

}  // namespace foundation::storage::provider::detail
